// SPDX-License-Identifier: MIT

#include "shell/Interrupt.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <atomic>
#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

namespace {

int const kForever = -1;
int const kLookMilliseconds = 50;

std::atomic<bool> sIsRunning(false);
std::atomic<int> sInterrupts(0);
int sPipe[2];

void noteInterrupt(int)
{
    int const before = errno;
    // A pipe that is full wakes the other end as well.
    ssize_t const written = ::write(sPipe[1], "", 1);
    static_cast<void>(written);
    errno = before;
}

/// The children of the main thread, which is the one that runs commands.
QList<QByteArray> childrenOfCommands()
{
    QFile file(QString::fromLatin1("/proc/self/task/%1/children").arg(getpid()));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ') : QList<QByteArray>();
}

/// A script is at the head of a process group; a program that was started to go on by itself has a
/// session of its own and is no script.
void endScripts(int signal, QList<QByteArray>& ended)
{
    QList<QByteArray> const children = childrenOfCommands();
    for (QByteArray const& child : children) {
        pid_t const id = child.toInt();
        if (id <= 0 || getpgid(id) != id || getsid(id) != getsid(0))
            continue;
        if (signal == SIGKILL || !ended.contains(child))
            static_cast<void>(kill(-id, signal));
        ended.append(child);
    }
}

void serveInterrupts()
{
    QList<QByteArray> ended;
    for (;;) {
        // As long as an interrupted command goes on it may start the next script.
        bool const isEnding = sIsRunning && isInterrupted();
        pollfd waiting = {sPipe[0], POLLIN, 0};
        if (poll(&waiting, 1, isEnding ? kLookMilliseconds : kForever) > 0) {
            char byte = 0;
            if (::read(sPipe[0], &byte, 1) == 1 && sIsRunning)
                ++sInterrupts;
        }
        if (!sIsRunning)
            ended.clear();
        else if (isInterrupted())
            endScripts(sInterrupts > 1 ? SIGKILL : SIGTERM, ended);
    }
}

} // namespace

void catchInterrupts()
{
    if (::pipe2(sPipe, O_CLOEXEC) != 0)
        return;
    std::thread(serveInterrupts).detach();
    struct sigaction action = {};
    action.sa_handler = noteInterrupt;
    action.sa_flags = SA_RESTART;
    static_cast<void>(sigaction(SIGINT, &action, nullptr)); // fails for a bad signal number only
}

bool isInterrupted()
{
    return sInterrupts > 0;
}

InterruptibleCommand::InterruptibleCommand()
{
    sInterrupts = 0;
    sIsRunning = true;
}

InterruptibleCommand::~InterruptibleCommand()
{
    sIsRunning = false;
}
