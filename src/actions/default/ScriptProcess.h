#pragma once

#include <QProcess>

/// So many bytes are read of what a script tells, however it tells it: they are held in memory, and as
/// text twice more.
qint64 const kLongestScriptOutput = Q_INT64_C(128) * 1024 * 1024;

/// The process of a wrapper script, at the head of a process group of its own.
class ScriptProcess : public QProcess
{
    Q_OBJECT

public:
    ScriptProcess();

    /// Kills the script together with what it has started, unless that has left the group. It is
    /// still to be waited for.
    void killGroup();

protected:
    void setupChildProcess() override;

private slots:
    /// Kills a script whose output is longer than any value: it might have no end.
    void limitOutput();

private:
    Q_DISABLE_COPY(ScriptProcess)
};
