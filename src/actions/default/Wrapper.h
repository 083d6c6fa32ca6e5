#pragma once

#include "actions/default/ScriptProcess.h"

#include <QString>
#include <QStringList>

class IConfigEntry;

/// One run of a wrapper script.
///
/// A script runs in its own folder and gets 30 seconds. The exit code alone decides: 0 is success,
/// and so are a script that could not be started and one whose time ran out (it is then killed,
/// together with what it has started, and reaped). A script that a signal ended did not succeed; one
/// whose output is kept gets such a signal when it prints more than 128 MiB.
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

    /// @param script  the full path.
    explicit Wrapper(QString const& script, Output output = DropOutput);

    /// Replaces the environment, which is otherwise inherited.
    ///
    /// @param lines  a variable's name, "=" and its value each.
    void setEnvironment(QStringList const& lines);

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

    bool waitForSuccess();

    QString mScript;
    Output mOutput;
    ScriptProcess mProcess;
};
