#pragma once

#include "shell/Command.h"

#include <QString>
#include <QStringList>

class ApplyWait;
class Printer;
class TracedHost;
struct Reply;

/// Carries out commands on the host.
class Shell
{
public:
    /// @param host     outlives this object, like `printer`.
    /// @param timeout  how many seconds an apply is waited for.
    Shell(TracedHost& host, Printer& printer, int timeoutSeconds);

    /// Says after each command, on standard error, what it answered and how long it took.
    void setVerbose(bool verbose);

    /// Shows on the terminal that a command takes long. Not together with a trace.
    void setProgressShown(bool isShown);

    /// Carries out and prints one command.
    ///
    /// @return its code: 0, a result code of the host, or one of ExitStatus.h.
    int execute(Command const& command);

    /// Prints that a line of input is no command.
    ///
    /// @return the code for that.
    int refuse(QString const& line, QString const& reason);

    /// Whether "quit" was among the commands.
    bool isFinished() const;

    /// Whether an apply was given up and may still be using the host.
    bool hasUnfinishedApply() const;

    /// The names of all commands.
    static QStringList commandNames();

private:
    Q_DISABLE_COPY(Shell)

    struct Row;
    static Row const kRows[];

    static Row const* findRow(QString const& name);
    static void refuseArguments(Row const& row, Reply& reply);

    void run(Command const& command, Reply& reply);
    void runRow(Row const& row, QStringList const& arguments, Reply& reply);

    void get(QStringList const& arguments, Reply& reply);
    void list(QStringList const& arguments, Reply& reply);
    void tree(QStringList const& arguments, Reply& reply);
    void set(QStringList const& arguments, Reply& reply);
    void create(QStringList const& arguments, Reply& reply);
    void del(QStringList const& arguments, Reply& reply);
    void commit(QStringList const& arguments, Reply& reply);
    void rollback(QStringList const& arguments, Reply& reply);
    void apply(QStringList const& arguments, Reply& reply);
    void contains(QStringList const& arguments, Reply& reply);
    void changes(QStringList const& arguments, Reply& reply);
    void diff(QStringList const& arguments, Reply& reply);
    void watch(QStringList const& arguments, Reply& reply);
    void exportXml(QStringList const& arguments, Reply& reply);
    void importXml(QStringList const& arguments, Reply& reply);
    void help(QStringList const& arguments, Reply& reply);
    void quit(QStringList const& arguments, Reply& reply);

    void listKey(QString const& key, int param, Reply& reply);
    QString announceApply();
    void complainOfWait(QString const& key, ApplyWait const& end, Reply& reply);
    bool isOver(QString const& command);
    void forgetApply(QString const& command);

    TracedHost& mHost;
    Printer& mPrinter;
    int const mTimeoutSeconds;
    int mApplies;
    bool mVerbose;
    bool mShowsProgress;
    bool mFinished;
    bool mHasUnfinishedApply;
};
