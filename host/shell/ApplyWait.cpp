#include "shell/ApplyWait.h"

#include "shell/Interrupt.h"
#include "shell/Terminal.h"

#include <QEventLoop>
#include <QScopedPointer>
#include <QThread>
#include <QTimer>

#include <cstdio>

namespace {

int const kMillisecondsPerSecond = 1000;
int const kProgressMilliseconds = 1000;
int const kInterruptMilliseconds = 50;

/// Sits in the semaphore, which cannot be waited for with a limit or by an event loop.
class SemaphoreThread : public QThread
{
public:
    explicit SemaphoreThread(QString const& name)
        : mName(name)
    {
    }

    /// Why it could not be waited for; empty when it was released.
    QString const& failure() const { return mFailure; }

protected:
    void run() override
    {
        QSystemSemaphore semaphore(mName, 0, QSystemSemaphore::Open);
        if (!semaphore.acquire())
            mFailure = semaphore.errorString();
    }

private:
    QString const mName;
    QString mFailure;
};

} // namespace

ApplyWait::ApplyWait(QString const& semaphoreName, QString const& subject)
    : mSemaphoreName(semaphoreName)
    , mSubject(subject)
    , mSemaphore(semaphoreName, 0, QSystemSemaphore::Create)
{
}

bool ApplyWait::isReady(QString& error) const
{
    if (mSemaphore.error() == QSystemSemaphore::NoError)
        return true;
    error = QLatin1String("cannot make a semaphore: ") + mSemaphore.errorString();
    return false;
}

bool ApplyWait::wait(int timeoutSeconds)
{
    QScopedPointer<SemaphoreThread> thread(new SemaphoreThread(mSemaphoreName));
    QEventLoop loop;
    QTimer progress;
    QTimer limit;
    QTimer interrupt;
    connect(thread.data(), SIGNAL(finished()), &loop, SLOT(quit()));
    connect(&limit, SIGNAL(timeout()), &loop, SLOT(quit()));
    connect(&progress, SIGNAL(timeout()), this, SLOT(showProgress()));
    connect(&interrupt, SIGNAL(timeout()), this, SLOT(lookForInterrupt()));
    connect(this, SIGNAL(interrupted()), &loop, SLOT(quit()));
    limit.setSingleShot(true);

    mElapsed.start();
    thread->start();
    progress.start(kProgressMilliseconds);
    limit.start(timeoutSeconds * kMillisecondsPerSecond);
    interrupt.start(kInterruptMilliseconds);
    loop.exec();

    bool const isInTime = limit.isActive() && !isInterrupted();
    // Nobody else will wake the thread.
    if (!isInTime && !mSemaphore.release()) {
        mFailure = mSemaphore.errorString();
        // It cannot be woken either, and sits there until the process ends.
        static_cast<void>(thread.take());
        return false;
    }
    thread->wait();
    mFailure = thread->failure();
    return isInTime && mFailure.isEmpty();
}

QString ApplyWait::failure() const
{
    return mFailure;
}

void ApplyWait::showProgress()
{
    // There it is shown of every command that takes long.
    if (Terminal::sShowsProgress())
        return;
    qint64 const seconds = mElapsed.elapsed() / kMillisecondsPerSecond;
    QByteArray const subject = mSubject.toUtf8();
    std::fprintf(stderr, "applying %s: %lld s\n", subject.constData(),
                 static_cast<long long>(seconds));
    std::fflush(stderr);
}

void ApplyWait::lookForInterrupt()
{
    if (isInterrupted())
        emit interrupted();
}
