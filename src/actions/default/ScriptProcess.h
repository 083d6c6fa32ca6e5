// SPDX-License-Identifier: MIT

#pragma once

#include "common/ProgramTexts.h"

#include <QByteArray>
#include <QProcess>

/// So many bytes are read of what a script tells, however it tells it: they are held in memory, and
/// as text twice more.
qint64 const kLongestScriptOutput = Q_INT64_C(128) * 1024 * 1024;

/// So many bytes are kept of what a script writes to its standard error: the last ones.
int const kLongestErrorOutput = 64 * 1024;

/// The process of a wrapper script, at the head of a process group of its own.
class ScriptProcess : public QProcess
{
    Q_OBJECT

public:
    ScriptProcess();
    ~ScriptProcess() override;

    /// Starts a script; `error()` is FailedToStart when it cannot be started.
    ///
    /// One without "#!" is run by the shell if it inherits its environment, as the C library's
    /// execvp() does it, and cannot be started if it has an environment of its own.
    ///
    /// @param script  the full path, taken as it is.
    void startScript(QString const& script, QStringList const& arguments);

    /// Whether the script could not be started because a variable, or all of them together, are
    /// longer than the system takes.
    bool isEnvironmentTooLong() const;

    /// The end of what it has written to its standard error, if nobody has closed that.
    QByteArray errorOutput();

    /// Kills the script together with what it has started, unless that has left the group. It is
    /// still to be waited for.
    void killGroup();

protected:
    void setupChildProcess() override;

private slots:
    /// Kills a script whose output is longer than any value: it might have no end.
    void limitOutput();

    void limitErrorOutput();

    /// Waits for a child that could not become its script.
    void waitForChild(QProcess::ProcessError error);

private:
    Q_DISABLE_COPY(ScriptProcess)

    ProgramTexts mArguments;
    ProgramTexts mEnvironment;
    // Shared with the child: why it could not become the script. Null when there was no memory.
    int* mStartError = nullptr;
    QByteArray mErrorOutput;
};
