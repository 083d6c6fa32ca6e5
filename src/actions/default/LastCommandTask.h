// SPDX-License-Identifier: MIT

#pragma once

#include "actions/IActivityObserver.h"

#include <QString>
#include <QThread>

class HandOverFile;
class QThreadPool;
class Vantora;

/// The end of an apply request, on its own thread: waits for the request's scripts, carries out the
/// pending last command and tells the host.
class LastCommandTask : public QThread
{
    Q_OBJECT

public:
    /// @param backend  told of the end; must outlive the thread.
    /// @param pool     the request's; must outlive the thread.
    /// @param key      set to "0" and committed at the end, and the name of the system semaphore
    ///                 that is then released once; empty: nobody is told.
    LastCommandTask(Vantora* backend, QThreadPool* pool, QString const& key);

    /// Waits for the pool, then runs the pending last command or, where the hand-over file exists,
    /// writes it there for somebody else to run. What waits there already competes with it. It is
    /// dropped when there is something of that name that cannot be written, or is no file of its
    /// own: see HandOverFile.
    void executeCommand();

protected:
    void run() override;

private:
    Q_DISABLE_COPY(LastCommandTask)

    /// What was done; nothing when its command is null.
    struct Settlement
    {
        QString command;
        IActivityObserver::Outcome outcome;
    };

    static Settlement sSettlePending();
    static Settlement sCarryOut(QString const& pending, HandOverFile& file);

    void notify();

    Vantora* mBackend;
    QThreadPool* mPool;
    QString mKey;
};
