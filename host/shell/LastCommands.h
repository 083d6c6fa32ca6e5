#pragma once

#include <QByteArray>
#include <QStringList>

#include <time.h>

/// Tells what an apply led to: the commands of the system that it ran, as the sandboxed world wrote
/// them down, or what it handed over to somebody else. Outside such a world only a hand-over is
/// seen.
///
/// Takes a first look when it is made and compares when it is asked.
class LastCommands
{
public:
    LastCommands();

    /// Waits a moment for commands that were started and have not come to write their line. Not to
    /// be called while an apply is running: its wrappers are children as well, and would be cleared
    /// away under it.
    void awaitStarted() const;

    /// One line for each command that was run or handed over since.
    QStringList since() const;

private:
    QByteArray mRecordBefore;
    timespec mHandOverTimeBefore;
};
