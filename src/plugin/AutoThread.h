// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class QThread;

/// Keeps a thread that outlives the request that started it, and goes away together with it:
/// connect the thread's end to `deleteThread()`. The thread that the keeper lives in must run an
/// event loop.
class AutoThread : public QObject
{
    Q_OBJECT

public:
    /// Takes over `thread`.
    explicit AutoThread(QThread* thread);

    /// Waits for a thread that still runs, then deletes it.
    ~AutoThread() override;

public slots:
    /// Deletes the thread and then the keeper itself.
    void deleteThread();

private:
    Q_DISABLE_COPY(AutoThread)

    QThread* mThread;
};
