// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/registry.h>

#include <QScopedPointer>

class DefaultNode;

/// The default settings: every key that the registry knows, with its type and default.
///
/// Session directories appear as their templates, "{UUID}" or "{uuid}"; a key with a concrete UUID
/// is unknown here. Loaded before the first request, then only read: safe from any thread.
class DefaultSettings : public Reg::Registry
{
public:
    DefaultSettings();
    ~DefaultSettings() override;

    /// Adds what all "*.xml" files of `directory` declare, in the order of their names. A directory
    /// key may be declared several times and collects its children; a value key only once.
    ///
    /// @return false with a message (file, line, reason) in `error`: nothing has been added.
    bool load(QString const& directory, QString& error);

    int query(QString const& key, Reg::NodeSet& nodes, QString const& extra) override;

    /// The directory that holds the first components of all keys; it has no key of its own.
    DefaultNode const& top() const { return *mTop; }

private:
    Q_DISABLE_COPY(DefaultSettings)

    QScopedPointer<DefaultNode> mTop;
};
