// SPDX-License-Identifier: MIT

#pragma once

#include "actions/default/ScriptProcess.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>

class IActivityObserver;
class IConfigEntry;

/// What came of one run of a script.
struct WrapperRun
{
    /// EnvironmentTooLong: it was not started, because a variable or all of them together are
    /// longer than the system takes. NotStarted: for any other reason.
    enum Ending { Exited, EndedBySignal, NotStarted, EnvironmentTooLong, TimedOut };

    /// The rule of all scripts: it counts as one that succeeded unless it ended by itself with
    /// another exit status than 0, or by a signal, or its environment was too long.
    bool isSuccess() const;

    QString script;
    Ending ending;

    /// Of a script that exited.
    int exitCode;

    int milliseconds;

    /// What it wrote to its standard output, where that is kept.
    qint64 outputBytes;

    /// The end of what it wrote to its standard error, which nobody else reads: 64 KiB at most.
    QByteArray errorOutput;
};

/// One run of a wrapper script.
///
/// A script runs in its own folder and gets 30 seconds. The exit status alone decides: 0 is
/// success, and so are a script that could not be started and one whose time ran out (it is then
/// killed, together with what it has started, and reaped). A script that a signal ended did not
/// succeed; one whose output is kept gets such a signal when it prints more than 128 MiB. Nor did
/// one that could not be started because its environment is longer than the system takes: it was to
/// do something with a long value.
class Wrapper
{
public:
    enum Output { DropOutput, KeepOutput };

    // The scripts of an entry's folder.
    static char const kIsVisible[];
    static char const kGet[];
    static char const kSet[];
    static char const kCreate[];
    static char const kDel[];
    static char const kCommit[];
    static char const kApply[];

    // The files that say which registry values a script gets as environment variables.
    static char const kGetEnv[];
    static char const kSetEnv[];
    static char const kCommitEnv[];

    /// Where a file of the entry lies: in the folder named like its key, below the wrappers
    /// directory. All sessions of a kind share the folder "{uuid}".
    static QString path(IConfigEntry const& entry, char const* fileName);

    /// The same for a key that has "{uuid}" in place of UUIDs already.
    static QString path(QString const& viewKey, char const* fileName);

    // The same if the file is there; null when it is not.
    static QString find(IConfigEntry const& entry, char const* fileName);
    static QString find(QString const& viewKey, char const* fileName);

    /// @param script  the full path.
    explicit Wrapper(QString const& script, Output output = DropOutput);

    /// Replaces the environment, which is otherwise inherited.
    ///
    /// @param lines  a variable's name, "=" and its value each.
    void setEnvironment(QStringList const& lines) { mProcess.setEnvironment(lines); }

    /// Runs the script without arguments. Its path is read as a command line: with a blank in it
    /// the script is not found.
    ///
    /// @return whether it succeeded, as described above.
    bool run();

    /// The same with the name of a temporary file that holds `value` as the one argument; the path
    /// is taken as it is. False, and nothing is run, when the file cannot be written.
    bool runWithValue(QString const& value);

    /// All that the script wrote to its standard output, where that is kept, as UTF-8; never null.
    QString output();

private:
    Q_DISABLE_COPY(Wrapper)

    typedef std::chrono::steady_clock Clock;

    void startClock();
    bool waitForSuccess();
    void dropUnreadChannels();
    WrapperRun::Ending waitForEnd();

    /// Completes `run` with what only an observer wants to know.
    void tellObserver(WrapperRun& run);

    QString mScript;
    Output mOutput;
    ScriptProcess mProcess;
    // Null when nobody was there at the start.
    IActivityObserver* mObserver = nullptr;
    Clock::time_point mStart;
};
