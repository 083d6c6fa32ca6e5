#include "actions/default/ScriptProcess.h"

#include "common/QtCompat.h"

#include <signal.h>
#include <unistd.h>

ScriptProcess::ScriptProcess()
{
    connect(this, SIGNAL(readyReadStandardOutput()), SLOT(limitOutput()));
}

void ScriptProcess::killGroup()
{
    pid_t const leader = static_cast<pid_t>(QtCompat::processId(*this));
    // One that still waits to become the script has no group yet.
    if (leader > 0 && ::kill(-leader, SIGKILL) != 0)
        kill();
}

void ScriptProcess::setupChildProcess()
{
    ::setpgid(0, 0);
}

void ScriptProcess::limitOutput()
{
    if (bytesAvailable() > kLongestScriptOutput)
        killGroup();
}
