#include "shell/LastCommands.h"

#include <QElapsedTimer>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

int const kLongestWaitMilliseconds = 2000;
useconds_t const kLookMicroseconds = 5000;

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

} // namespace

LastCommands::LastCommands()
{
    // A program that is started detached becomes a child of this process instead of one of init's,
    // so it can be told when it has ended.
    static_cast<void>(prctl(PR_SET_CHILD_SUBREAPER, 1));
}

void LastCommands::awaitStarted() const
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (hasRunningOrphans() && elapsed.elapsed() < kLongestWaitMilliseconds)
        usleep(kLookMicroseconds);
}
