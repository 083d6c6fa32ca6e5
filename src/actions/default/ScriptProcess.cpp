// SPDX-License-Identifier: MIT

#include "actions/default/ScriptProcess.h"

#include "common/QtCompat.h"

#include <QFile>
#include <QStringList>

#include <cerrno>

#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

ScriptProcess::ScriptProcess()
{
    void* const shared = ::mmap(nullptr, sizeof(*mStartError), PROT_READ | PROT_WRITE,
                                MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared != MAP_FAILED)
        mStartError = static_cast<int*>(shared);
    connect(this, SIGNAL(readyReadStandardOutput()), SLOT(limitOutput()));
    connect(this, SIGNAL(readyReadStandardError()), SLOT(limitErrorOutput()));
    connect(this, SIGNAL(error(QProcess::ProcessError)),
            SLOT(waitForChild(QProcess::ProcessError)));
}

ScriptProcess::~ScriptProcess()
{
    if (mStartError)
        ::munmap(mStartError, sizeof(*mStartError));
}

void ScriptProcess::startScript(QString const& script, QStringList const& arguments)
{
    mArguments.append(QFile::encodeName(script));
    for (QString const& argument : arguments)
        mArguments.append(QFile::encodeName(argument));
    QStringList const variables = environment();
    for (QString const& variable : variables)
        mEnvironment.append(variable.toLocal8Bit());
    start(script, arguments);
}

bool ScriptProcess::isEnvironmentTooLong() const
{
    return error() == FailedToStart && mStartError && *mStartError == E2BIG;
}

QByteArray ScriptProcess::errorOutput()
{
    limitErrorOutput();
    return mErrorOutput;
}

void ScriptProcess::killGroup()
{
    pid_t const leader = static_cast<pid_t>(QtCompat::processId(*this));
    // One that still waits to become the script has no group yet.
    if (leader > 0 && ::kill(-leader, SIGKILL) != 0)
        kill();
}

// The child becomes the script here. The toolkit would do it next, but its versions differ in what
// they do with a file without "#!", and none tells why it failed but in words. It still tries, and
// fails in the same way: so it learns that the start has failed.
void ScriptProcess::setupChildProcess()
{
    ::setpgid(0, 0);
    if (mArguments.isEmpty())
        return;
    char* const* const arguments = mArguments.pointers();
    if (mEnvironment.isEmpty())
        ::execvp(arguments[0], arguments);
    else
        ::execve(arguments[0], arguments, mEnvironment.pointers());
    if (mStartError)
        *mStartError = errno;
}

void ScriptProcess::limitOutput()
{
    if (bytesAvailable() > kLongestScriptOutput)
        killGroup();
}

void ScriptProcess::limitErrorOutput()
{
    mErrorOutput += readAllStandardError();
    mErrorOutput = mErrorOutput.right(kLongestErrorOutput);
}

// The toolkit reaps it right after this. Qt 4 looks only once whether it has ended by then, and
// would otherwise leave it.
void ScriptProcess::waitForChild(QProcess::ProcessError error)
{
    if (error != FailedToStart)
        return;
    id_t const child = static_cast<id_t>(QtCompat::processId(*this));
    siginfo_t info;
    while (::waitid(P_PID, child, &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) { }
}
