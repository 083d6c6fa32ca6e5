// SPDX-License-Identifier: MIT

#include "shell/CommandSource.h"

#include "shell/Printer.h"

#include <cstdio>

#include <pthread.h>
#include <signal.h>

namespace {

/// Keeps the end of a child process from interrupting what this thread reads: the toolkit takes
/// that for the end of the input. Other threads, or this one afterwards, are told of it.
class WithoutChildSignals
{
public:
    WithoutChildSignals()
    {
        sigset_t childEnds;
        sigemptyset(&childEnds);
        sigaddset(&childEnds, SIGCHLD);
        pthread_sigmask(SIG_BLOCK, &childEnds, &mFormer);
    }

    ~WithoutChildSignals() { pthread_sigmask(SIG_SETMASK, &mFormer, nullptr); }

private:
    Q_DISABLE_COPY(WithoutChildSignals)

    sigset_t mFormer;
};

} // namespace

void CommandSource::readLine(QByteArray const& line, Input& input)
{
    input = Input();
    input.line = QString::fromUtf8(line.constData(), line.size());
    QString error;
    if (!readCommand(line, input.command, error))
        input.error = error;
}

ArgumentSource::ArgumentSource(QStringList const& arguments)
    : mCommands(commandsFromArguments(arguments))
{
}

bool ArgumentSource::next(Input& input)
{
    if (mCommands.isEmpty())
        return false;
    input = Input();
    input.command = mCommands.takeFirst();
    input.line = commandText(input.command);
    return true;
}

StreamSource::StreamSource()
{
    mFile.open(stdin, QIODevice::ReadOnly);
}

bool StreamSource::next(Input& input)
{
    WithoutChildSignals const guard;
    QByteArray line = mFile.readLine();
    if (line.isEmpty())
        return false;
    if (line.endsWith('\n'))
        line.chop(1);
    readLine(line, input);
    return true;
}
