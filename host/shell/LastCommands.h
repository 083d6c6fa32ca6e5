#pragma once

#include <QByteArray>
#include <QStringList>

/// Tells what an apply led to: the commands of the system that it ran, as the sandboxed world wrote
/// them down, or what it handed over to somebody else. Outside such a world only a hand-over is
/// seen.
///
/// Takes a first look when it is made and compares when it is asked.
class LastCommands
{
public:
    LastCommands();

    /// One line for each command that was run or handed over since; waits a moment for commands
    /// that were started and have not come to write their line.
    QStringList since() const;

private:
    QByteArray mRecordBefore;
};
