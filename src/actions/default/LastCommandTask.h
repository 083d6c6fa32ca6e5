#pragma once

#include <QString>
#include <QThread>

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

    /// Waits for the pool, then runs the pending last command or, where the hand-over file
    /// "/tmp/last-apply-command" exists, writes it there for somebody else to run.
    void executeCommand();

protected:
    void run() override;

private:
    Q_DISABLE_COPY(LastCommandTask)

    void notify();

    Vantora* mBackend;
    QThreadPool* mPool;
    QString mKey;
};
