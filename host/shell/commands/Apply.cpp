// SPDX-License-Identifier: MIT

#include "shell/commands/Apply.h"

#include "options/ExitStatus.h"
#include "shell/Events.h"
#include "shell/Interrupt.h"
#include "shell/KeyNames.h"
#include "shell/Terminal.h"
#include "shell/TracedHost.h"
#include "shell/commands/Commands.h"

#include <QElapsedTimer>
#include <QScopedPointer>
#include <QThread>

#include <cstdio>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

char const* const kApplyKeys = "tmp/apply/";
char const* const kApplyRunning = "1";
char const* const kApplyOver = "0";

int const kMillisecondsPerSecond = 1000;
unsigned long const kLookMilliseconds = 20;
int const kLongestOrphanMilliseconds = 2000;
useconds_t const kOrphanLookMicroseconds = 5000;

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

/// Says once a second how long it takes; not where that is shown of every command.
void showSeconds(QString const& subject, qint64 seconds)
{
    if (Terminal::sShowsProgress())
        return;
    std::fprintf(stderr, "applying %s: %lld s\n", subject.toUtf8().constData(),
                 static_cast<long long>(seconds));
    std::fflush(stderr);
}

/// Whether a program that was started and left to itself still runs. An ended one is cleared away;
/// the wrappers of the apply are no children any more by then.
bool hasRunningOrphans()
{
    siginfo_t info = siginfo_t();
    while (waitid(P_ALL, 0, &info, WEXITED | WNOHANG) == 0) {
        if (info.si_pid == 0)
            return true;
        info = siginfo_t();
    }
    return false;
}

/// Waits a moment for the end of the commands that an apply has started and left to themselves: a
/// sandbox ends together with the program in it, and they are to come to their end before. Not to
/// be called while an apply is running: its wrappers are children as well, and would be cleared
/// away under it.
void awaitLastCommands()
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (hasRunningOrphans() && elapsed.elapsed() < kLongestOrphanMilliseconds)
        usleep(kOrphanLookMicroseconds);
}

/// Makes a key that tells the state of an apply, for the plugins to reset.
QString announceApply(ShellState& shell)
{
    QString const command = QString::fromLatin1("%1%2-%3")
                                .arg(QLatin1String(kApplyKeys))
                                .arg(getpid())
                                .arg(++shell.applies);
    static_cast<void>(shell.host.set(command, QLatin1String(kApplyRunning), REG_PARAM_VALUE));
    static_cast<void>(shell.host.commit(command)); // the semaphore alone is waited for
    return command;
}

/// Whether the state of an apply tells of its end.
bool isOver(ShellState& shell, QString const& command)
{
    QString state;
    return shell.host.get(command, state, REG_PARAM_VALUE, QString::fromLatin1("")) == 0
        && state == QLatin1String(kApplyOver);
}

void forgetApply(ShellState& shell, QString const& command)
{
    static_cast<void>(shell.host.del(command));
    static_cast<void>(shell.host.commit(command)); // it is gone with the process at the latest
}

/// The answer when nothing has told of the end.
Reply givenUp(ShellState const& shell, QString const& key, QString const& failure)
{
    if (failure.isEmpty())
        return Reply(kTimedOut,
                     QString::fromLatin1("%1: not finished after %2 s, no longer waiting")
                         .arg(key)
                         .arg(shell.timeoutSeconds));
    return Reply(kNoSemaphore,
                 QString::fromLatin1("%1: cannot wait for its end: %2").arg(key, failure));
}

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
    QElapsedTimer elapsed;
    elapsed.start();
    thread->start();
    qint64 seconds = 0;
    bool isInTime = false;
    while (!isInTime && seconds < timeoutSeconds && !isInterrupted()) {
        isInTime = thread->wait(kLookMilliseconds);
        serveEvents();
        qint64 const before = seconds;
        seconds = elapsed.elapsed() / kMillisecondsPerSecond;
        if (!isInTime && seconds > before && seconds < timeoutSeconds)
            showSeconds(mSubject, seconds);
    }
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

Reply Commands::apply(ShellState& shell, QStringList const& arguments)
{
    QString const command = announceApply(shell);
    ApplyWait end(command, arguments.at(0));
    QString error;
    if (!end.isReady(error))
        return Reply(kNoSemaphore, error);

    // A program that is started detached becomes a child of this process instead of one of init's,
    // so it can be told when it has ended.
    static_cast<void>(prctl(PR_SET_CHILD_SUBREAPER, 1));
    Reply reply(shell.host.apply(fullKey(arguments.at(0)), command));
    bool const isInTime = reply.code != 0 || end.wait(shell.timeoutSeconds);
    bool const isFinished = isInTime || isOver(shell, command);
    if (!isFinished)
        reply = givenUp(shell, arguments.at(0), end.failure());
    else if (!isInTime)
        reply = Reply(kNoSemaphore,
                      arguments.at(0) + QLatin1String(": finished, but released no semaphore"));
    reply.events = shell.host.trace().takeApplied();
    if (!isFinished) {
        shell.hasUnfinishedApply = true;
        return reply;
    }
    forgetApply(shell, command);
    // One that was given up earlier may still be running.
    if (!shell.hasUnfinishedApply)
        awaitLastCommands();
    return reply;
}
