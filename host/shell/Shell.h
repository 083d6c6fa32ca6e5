// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Command.h"
#include "shell/commands/Commands.h"

/// Carries out commands on the host.
class Shell
{
public:
    /// @param host     outlives this object, like `printer`.
    /// @param timeout  how many seconds an apply is waited for.
    Shell(TracedHost& host, Printer& printer, int timeoutSeconds);

    /// Says after each command, on standard error, what it answered and how long it took.
    void setVerbose(bool verbose) { mVerbose = verbose; }

    /// Shows on the terminal that a command takes long. Not together with a trace.
    void setProgressShown(bool isShown) { mShowsProgress = isShown; }

    /// Carries out and prints one command.
    ///
    /// @return its code: 0, a result code of the host, or one of ExitStatus.h.
    int execute(Command const& command);

    /// Prints that a line of input is no command.
    ///
    /// @return the code for that.
    int refuse(QString const& line, QString const& reason);

    /// Whether "quit" was among the commands.
    bool isFinished() const { return mState.isFinished; }

    /// Whether an apply was given up and may still be using the host.
    bool hasUnfinishedApply() const { return mState.hasUnfinishedApply; }

private:
    Q_DISABLE_COPY(Shell)

    Reply run(Command const& command);
    Reply runRow(CommandRow const& row, QStringList const& arguments);

    ShellState mState;
    bool mVerbose = false;
    bool mShowsProgress = false;
};
