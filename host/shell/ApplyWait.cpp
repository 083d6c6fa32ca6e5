#include "shell/ApplyWait.h"

#include <QEventLoop>
#include <QScopedPointer>
#include <QThread>
#include <QTimer>

#include <cstdio>

#include <unistd.h>

namespace {

int const kMillisecondsPerSecond = 1000;
int const kProgressMilliseconds = 1000;

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

bool terminalReadsMessages()
{
    return isatty(STDERR_FILENO) != 0;
}

} // namespace

ApplyWait::ApplyWait(QString const& semaphoreName, QString const& subject)
    : mSemaphoreName(semaphoreName)
    , mSubject(subject)
    , mSemaphore(semaphoreName, 0, QSystemSemaphore::Create)
    , mIsProgressOpen(false)
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
    connect(thread.data(), SIGNAL(finished()), &loop, SLOT(quit()));
    connect(&limit, SIGNAL(timeout()), &loop, SLOT(quit()));
    connect(&progress, SIGNAL(timeout()), this, SLOT(showProgress()));
    limit.setSingleShot(true);

    mElapsed.start();
    thread->start();
    progress.start(kProgressMilliseconds);
    limit.start(timeoutSeconds * kMillisecondsPerSecond);
    loop.exec();

    if (mIsProgressOpen)
        std::fputc('\n', stderr);
    bool const isInTime = limit.isActive();
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
    qint64 const seconds = mElapsed.elapsed() / kMillisecondsPerSecond;
    QByteArray const subject = mSubject.toUtf8();
    // On a terminal one line counts on; a log gets a line every time.
    mIsProgressOpen = terminalReadsMessages();
    std::fprintf(stderr, "applying %s: %lld s%s", subject.constData(),
                 static_cast<long long>(seconds), mIsProgressOpen ? "\r" : "\n");
    std::fflush(stderr);
}
