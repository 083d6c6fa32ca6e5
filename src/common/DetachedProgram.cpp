// SPDX-License-Identifier: MIT

#include "common/DetachedProgram.h"

#include "common/ProgramTexts.h"

#include <QFile>

#include <cerrno>
#include <cstdlib>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Becomes the program's parent for a moment. It runs beside locks that other threads held when it
/// was forked and that nobody will release here, so it calls nothing that allocates or locks.
[[noreturn]] void startAndEnd(char* const* arguments)
{
    // Qt has it ignored, and a program inherits that.
    ::signal(SIGPIPE, SIG_DFL);
    ::setsid();
    pid_t const program = ::fork();
    if (program == 0) {
        ::execvp(arguments[0], arguments);
        ::_exit(EXIT_FAILURE);
    }
    ::_exit(program < 0 ? EXIT_FAILURE : EXIT_SUCCESS);
}

bool succeeds(pid_t process)
{
    int status = 0;
    pid_t ended = -1;
    do
        ended = ::waitpid(process, &status, 0);
    while (ended < 0 && errno == EINTR);
    return ended == process && status == EXIT_SUCCESS;
}

} // namespace

bool startDetachedProgram(QStringList const& words)
{
    if (words.isEmpty())
        return false;
    ProgramTexts arguments;
    for (QString const& word : words)
        arguments.append(QFile::encodeName(word));

    pid_t const parent = ::fork();
    if (parent == 0)
        startAndEnd(arguments.pointers());
    return parent > 0 && succeeds(parent);
}
