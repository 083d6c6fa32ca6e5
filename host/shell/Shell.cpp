// SPDX-License-Identifier: MIT

#include "shell/Shell.h"

#include "options/ExitStatus.h"
#include "shell/Interrupt.h"
#include "shell/Printer.h"
#include "shell/Progress.h"
#include "shell/TracedHost.h"

#include <QElapsedTimer>
#include <QScopedPointer>

namespace {

double const kNanosecondsPerMillisecond = 1e6;

Reply badArguments(CommandRow const& row)
{
    return Reply(kUsageError, QLatin1String("usage: ") + row.usage());
}

} // namespace

Shell::Shell(TracedHost& host, Printer& printer, int timeoutSeconds)
    : mState {host, printer, timeoutSeconds, 0, false, false}
{
}

int Shell::execute(Command const& command)
{
    QElapsedTimer elapsed;
    elapsed.start();
    Reply const reply = run(command);
    double const milliseconds = double(elapsed.nsecsElapsed()) / kNanosecondsPerMillisecond;
    mState.printer.print(command, reply);
    if (mVerbose)
        writeMessage(QString::fromLatin1("%1: %2 in %3 ms")
                         .arg(subject(command))
                         .arg(reply.code)
                         .arg(milliseconds, 0, 'f', 3));
    return reply.code;
}

int Shell::refuse(QString const& line, QString const& reason)
{
    Command const command = {line, QStringList()};
    mState.printer.print(command,
                         Reply(kUsageError, shownText(line) + QLatin1String(": ") + reason));
    return kUsageError;
}

Reply Shell::run(Command const& command)
{
    CommandRow const* const row = findCommand(command.name);
    if (!row)
        return Reply(kUsageError,
                     shownText(command.name) + QLatin1String(": unknown command (see help)"));
    if (!row->takes(command.arguments.size()))
        return badArguments(*row);
    TracedCall call(mState.host.trace(), TraceEvent::CommandRun, row->name,
                    shownText(command.arguments.value(0)));
    Reply const reply = runRow(*row, command.arguments);
    call.end(reply.code);
    return isInterrupted() ? Reply(kInterrupted, subject(command) + QLatin1String(": interrupted"))
                           : reply;
}

Reply Shell::runRow(CommandRow const& row, QStringList const& arguments)
{
    InterruptibleCommand const interruptible;
    QScopedPointer<Progress> progress;
    if (mShowsProgress && !row.lasts)
        progress.reset(new Progress(QLatin1String(row.name) + QLatin1Char(' ')
                                    + shownText(arguments.value(0))));
    Reply const reply = row.run(mState, arguments);
    return reply.kind == Reply::BadArguments ? badArguments(row) : reply;
}
