// SPDX-License-Identifier: MIT

#pragma once

#include "shell/PendingValues.h"

#include <vantora/vantora.h>

#include <atomic>

class Trace;

/// A host whose calls are traced and whose pending values are remembered. It answers what the host
/// behind it answers, and is what plugins are given as their backend.
class TracedHost : public Vantora
{
public:
    /// Both outlive this object.
    TracedHost(Vantora& host, Trace& trace);

    Trace& trace() const { return mTrace; }
    PendingValues& pending() { return mPending; }

    using Vantora::get;

    int set(QString const& key, QString const& value, _RegEntryParam const& param) override;
    int get(QString const& key, QMap<QString, _RegNodeType>& result, _RegEntryParam const& param,
            QString const& extra) override;
    int contains(QString const& key) override;
    int commit(QString const& key) override;
    int apply(QString const& key, QString const& command) override;
    int clone(QString const& source, QString const& target) override;
    int rollback(QString const& key) override;
    int watch(QStringList const& keys, int id) override;
    int changes(QMap<QString, _RegEntryChange>& changes) override;
    int create(QString const& key, _RegEntryType const& type) override;
    int del(QString const& key) override;
    int importRegistry(QByteArray& data) override;
    int exportRegistry(QString const& key, QByteArray& data) override;

private:
    Vantora& mHost;
    Trace& mTrace;
    PendingValues mPending;

    // Of keys that are no plugin's.
    std::atomic<int> mDeletions;
};
