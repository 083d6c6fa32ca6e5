// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QPointer>

class IConfigEntry;
class QObject;
class QString;
class QThreadPool;
class Vantora;

/// The apply requests under way. Each has a pool of threads for its scripts and a thread that waits
/// for them, and goes when that has ended.
class ApplyRequests
{
public:
    /// @param plugin  the requests go through the event loop of the thread that it lives in.
    explicit ApplyRequests(QObject& plugin);

    /// Waits for those that are left; without an event loop that is all of them.
    ~ApplyRequests();

    /// Queues the scripts of the entry and of all below it and returns.
    ///
    /// @param backend  told of the end through `key`; must outlive this object.
    void start(IConfigEntry& entry, Vantora* backend, QString const& key);

private:
    Q_DISABLE_COPY(ApplyRequests)

    QObject& mPlugin;
    QList<QPointer<QThreadPool>> mPools; // null when the request has ended
};
