#include "shell/Shell.h"

#include "shell/ApplyReport.h"
#include "shell/ApplyWait.h"
#include "shell/Changes.h"
#include "shell/Events.h"
#include "shell/ExitStatus.h"
#include "shell/Interrupt.h"
#include "shell/KeyNames.h"
#include "shell/KeyTree.h"
#include "shell/KeyWatch.h"
#include "shell/LastCommands.h"
#include "shell/Printer.h"
#include "shell/Progress.h"
#include "shell/Reply.h"
#include "shell/Terminal.h"
#include "shell/Trace.h"
#include "shell/TracedHost.h"

#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <QScopedPointer>

#include <unistd.h>

namespace {

// By _RegEntryParam and by _RegEntryChange.
char const* const kParamWords[] = {"value", "type", "regexp"};
char const* const kChangeWords[] = {"modified", "created", "deleted", "nothing"};

char const* const kApplyKeys = "tmp/apply/";
char const* const kApplyRunning = "1";
char const* const kApplyOver = "0";

double const kNanosecondsPerMillisecond = 1e6;

int const kColumnOfSummaries = 30;

// Between two looks of a watch, which is interrupted sooner.
int const kWatchMs = 500;
int const kNapMs = 50;
useconds_t const kMicrosecondsPerMillisecond = 1000;
int const kMillisecondsPerSecond = 1000;

/// The `_RegEntryParam` of a word; -1 for any other word.
int paramOf(QString const& word)
{
    for (int param = REG_PARAM_VALUE; param <= REG_PARAM_REGEXP; ++param) {
        if (word == QLatin1String(kParamWords[param]))
            return param;
    }
    return -1;
}

void complain(Reply& reply, int code, QString const& message)
{
    reply.code = code;
    reply.messages.append(message);
}

/// @return false when an interrupt has ended it.
bool nap(int milliseconds)
{
    for (int slept = 0; slept < milliseconds && !isInterrupted(); slept += kNapMs) {
        serveEvents();
        usleep(kNapMs * kMicrosecondsPerMillisecond);
    }
    return !isInterrupted();
}

} // namespace

/// What there is to know of a command.
struct Shell::Row
{
    char const* name;
    int fewestArguments;
    int mostArguments;
    void (Shell::*run)(QStringList const& arguments, Reply& reply);
    char const* arguments;
    char const* summary;

    QString usage() const
    {
        QString const shown = QLatin1String(name);
        return *arguments ? shown + QLatin1Char(' ') + QLatin1String(arguments) : shown;
    }
};

// clang-format off
Shell::Row const Shell::kRows[] = {
    {"get",      1, 2, &Shell::get,       "KEY [type|regexp]", "a value, or the children of a key"},
    {"list",     1, 1, &Shell::list,      "KEY", "the children of a directory"},
    {"tree",     0, 1, &Shell::tree,      "[KEY]", "all that is under a key, with values; on a terminal, where from"},
    {"set",      2, 2, &Shell::set,       "KEY VALUE", "sets a value, pending until its commit"},
    {"create",   1, 1, &Shell::create,    "KEY", "creates a key, pending until its commit"},
    {"del",      1, 1, &Shell::del,       "KEY", "deletes a key, pending until its commit"},
    {"commit",   1, 1, &Shell::commit,    "KEY", "writes what is pending at or under a key"},
    {"rollback", 1, 1, &Shell::rollback,  "KEY", "drops what is pending at or under a key"},
    {"diff",     0, 1, &Shell::diff,      "[KEY]", "what a commit of a key would change"},
    {"apply",    1, 1, &Shell::apply,     "KEY", "makes what is committed effective"},
    {"contains", 1, 1, &Shell::contains,  "KEY", "whether a key exists"},
    {"changes",  0, 0, &Shell::changes,   "", "what is pending"},
    {"watch",    1, 3, &Shell::watch,     "KEY [COUNT [SECONDS]]", "each change of a key, until Ctrl-C"},
    {"export",   0, 1, &Shell::exportXml, "[KEY]", "a subtree as XML"},
    {"import",   1, 1, &Shell::importXml, "FILE", "reads such XML, all or nothing"},
    {"help",     0, 0, &Shell::help,      "", "this list"},
    {"quit",     0, 0, &Shell::quit,      "", "ends the program"},
};
// clang-format on

Shell::Shell(TracedHost& host, Printer& printer, int timeoutSeconds)
    : mHost(host)
    , mPrinter(printer)
    , mTimeoutSeconds(timeoutSeconds)
    , mApplies(0)
    , mVerbose(false)
    , mShowsProgress(false)
    , mFinished(false)
    , mHasUnfinishedApply(false)
{
}

void Shell::setVerbose(bool verbose)
{
    mVerbose = verbose;
}

void Shell::setProgressShown(bool isShown)
{
    mShowsProgress = isShown;
}

int Shell::execute(Command const& command)
{
    Reply reply;
    QElapsedTimer elapsed;
    elapsed.start();
    run(command, reply);
    double const milliseconds = double(elapsed.nsecsElapsed()) / kNanosecondsPerMillisecond;
    mPrinter.print(command, reply);
    if (mVerbose)
        writeMessage(QString::fromLatin1("%1: %2 in %3 ms")
                         .arg(subject(command))
                         .arg(reply.code)
                         .arg(milliseconds, 0, 'f', 3));
    return reply.code;
}

int Shell::refuse(QString const& line, QString const& reason)
{
    Command command;
    command.name = line;
    Reply reply;
    complain(reply, kUsageError, shownText(line) + QLatin1String(": ") + reason);
    mPrinter.print(command, reply);
    return reply.code;
}

bool Shell::isFinished() const
{
    return mFinished;
}

bool Shell::hasUnfinishedApply() const
{
    return mHasUnfinishedApply;
}

QStringList Shell::commandNames()
{
    QStringList names;
    for (Row const& row : kRows)
        names.append(QLatin1String(row.name));
    return names;
}

Shell::Row const* Shell::findRow(QString const& name)
{
    for (Row const& row : kRows) {
        if (name == QLatin1String(row.name))
            return &row;
    }
    return nullptr;
}

void Shell::run(Command const& command, Reply& reply)
{
    Row const* const row = findRow(command.name);
    if (!row)
        return complain(reply, kUsageError,
                        shownText(command.name) + QLatin1String(": unknown command (see help)"));
    int const count = command.arguments.size();
    if (count < row->fewestArguments || count > row->mostArguments)
        return refuseArguments(*row, reply);
    {
        TracedCall call(mHost.trace(), TraceEvent::CommandRun, row->name,
                        shownText(command.arguments.value(0)));
        runRow(*row, command.arguments, reply);
        call.end(reply.code);
    }
    if (isInterrupted()) {
        reply = Reply();
        complain(reply, kInterrupted, subject(command) + QLatin1String(": interrupted"));
    }
}

void Shell::runRow(Row const& row, QStringList const& arguments, Reply& reply)
{
    InterruptibleCommand const interruptible;
    QScopedPointer<Progress> progress;
    // A watch writes while it runs, and is meant to go on.
    if (mShowsProgress && row.run != &Shell::watch)
        progress.reset(new Progress(QLatin1String(row.name) + QLatin1Char(' ')
                                    + shownText(arguments.value(0))));
    (this->*row.run)(arguments, reply);
}

void Shell::refuseArguments(Row const& row, Reply& reply)
{
    complain(reply, kUsageError, QLatin1String("usage: ") + row.usage());
}

void Shell::get(QStringList const& arguments, Reply& reply)
{
    int const param = arguments.size() > 1 ? paramOf(arguments.at(1)) : int(REG_PARAM_VALUE);
    if (param < 0)
        return refuseArguments(*findRow(QLatin1String("get")), reply);
    listKey(fullKey(arguments.at(0)), param, reply);
}

void Shell::list(QStringList const& arguments, Reply& reply)
{
    listKey(fullKey(arguments.at(0)), REG_PARAM_VALUE, reply);
}

void Shell::listKey(QString const& key, int param, Reply& reply)
{
    QMap<QString, _RegNodeType> result;
    reply.code = mHost.get(key, result, _RegEntryParam(param), QString::fromLatin1(""));
    QMap<QString, _RegNodeType>::const_iterator node = result.constBegin();
    for (; node != result.constEnd(); ++node) {
        ReplyNode const replyNode = {node.key(), node.value(), QString()};
        reply.nodes.append(replyNode);
        reply.text += shownName(node.key(), node.value()) + QLatin1Char('\n');
    }
    if (!isOneValue(result) && Terminal::sShowsOutput())
        reply.terminalText
            = Terminal::sInColumns(reply.text.split(QLatin1Char('\n')).mid(0, result.size()));
}

void Shell::tree(QStringList const& arguments, Reply& reply)
{
    readKeyTree(mHost, fullKey(arguments.value(0, QLatin1String("root"))), reply);
}

void Shell::set(QStringList const& arguments, Reply& reply)
{
    reply.code = mHost.set(fullKey(arguments.at(0)), arguments.at(1), REG_PARAM_VALUE);
}

void Shell::create(QStringList const& arguments, Reply& reply)
{
    reply.code = mHost.create(fullKey(arguments.at(0)), REG_TYPE_STRING);
}

void Shell::del(QStringList const& arguments, Reply& reply)
{
    reply.code = mHost.del(fullKey(arguments.at(0)));
}

void Shell::commit(QStringList const& arguments, Reply& reply)
{
    reply.code = mHost.commit(fullKey(arguments.at(0)));
}

void Shell::rollback(QStringList const& arguments, Reply& reply)
{
    reply.code = mHost.rollback(fullKey(arguments.at(0)));
}

void Shell::apply(QStringList const& arguments, Reply& reply)
{
    QString const key = fullKey(arguments.at(0));
    QString const command = announceApply();
    ApplyWait end(command, arguments.at(0));
    QString error;
    if (!end.isReady(error))
        return complain(reply, kNoSemaphore, error);

    LastCommands const commands;
    reply.code = mHost.apply(key, command);
    bool const isInTime = reply.code != 0 || end.wait(mTimeoutSeconds);
    bool const isFinished = isInTime || isOver(command);
    if (!isFinished)
        complainOfWait(arguments.at(0), end, reply);
    else if (!isInTime)
        complain(reply, kNoSemaphore,
                 arguments.at(0) + QLatin1String(": finished, but released no semaphore"));
    reply.events = mHost.trace().takeApplied();
    reply.messages += applyReport(reply.events);
    if (!isFinished) {
        mHasUnfinishedApply = true;
        return;
    }
    forgetApply(command);
    // One that was given up earlier may still be running.
    if (!mHasUnfinishedApply)
        commands.awaitStarted();
}

void Shell::complainOfWait(QString const& key, ApplyWait const& end, Reply& reply)
{
    if (end.failure().isEmpty())
        return complain(reply, kTimedOut,
                        QString::fromLatin1("%1: not finished after %2 s, no longer waiting")
                            .arg(key)
                            .arg(mTimeoutSeconds));
    complain(reply, kNoSemaphore,
             QString::fromLatin1("%1: cannot wait for its end: %2").arg(key, end.failure()));
}

/// Whether the state of an apply tells of its end.
bool Shell::isOver(QString const& command)
{
    QString state;
    return mHost.get(command, state, REG_PARAM_VALUE, QString::fromLatin1("")) == 0
        && state == QLatin1String(kApplyOver);
}

/// Makes a key that tells the state of an apply, for the plugins to reset.
QString Shell::announceApply()
{
    QString const command = QString::fromLatin1("%1%2-%3")
                                .arg(QLatin1String(kApplyKeys))
                                .arg(getpid())
                                .arg(++mApplies);
    static_cast<void>(mHost.set(command, QLatin1String(kApplyRunning), REG_PARAM_VALUE));
    static_cast<void>(mHost.commit(command)); // the semaphore alone is waited for
    return command;
}

void Shell::forgetApply(QString const& command)
{
    static_cast<void>(mHost.del(command));
    static_cast<void>(mHost.commit(command)); // it is gone with the process at the latest
}

void Shell::contains(QStringList const& arguments, Reply& reply)
{
    reply.code = mHost.contains(fullKey(arguments.at(0)));
    reply.text = QLatin1String(reply.code == 0 ? "yes\n" : "no\n");
}

void Shell::changes(QStringList const&, Reply& reply)
{
    QMap<QString, _RegEntryChange> changes;
    reply.code = mHost.changes(changes);
    QMap<QString, _RegEntryChange>::const_iterator change = changes.constBegin();
    for (; change != changes.constEnd(); ++change) {
        ReplyNode const node = {change.key(), change.value(), QString()};
        reply.nodes.append(node);
        reply.text += QString::fromLatin1("%1 %2\n").arg(
            QLatin1String(kChangeWords[change.value()]), change.key());
    }
}

void Shell::diff(QStringList const& arguments, Reply& reply)
{
    // Without a key: all that is pending.
    QString const key = arguments.isEmpty() ? QString() : fullKey(arguments.first());
    describeCommit(mHost, key, reply);
}

void Shell::watch(QStringList const& arguments, Reply& reply)
{
    bool isCount = true;
    bool isSeconds = true;
    // 0: no limit.
    int const count = arguments.value(1, QLatin1String("0")).toInt(&isCount);
    int const seconds = arguments.value(2, QLatin1String("0")).toInt(&isSeconds);
    if (!isCount || !isSeconds || count < 0 || seconds < 0)
        return refuseArguments(*findRow(QLatin1String("watch")), reply);

    KeyWatch key(mHost, fullKey(arguments.at(0)));
    reply.code = key.code();
    QElapsedTimer elapsed;
    elapsed.start();
    for (int changes = 0; reply.code == 0 && (count == 0 || changes < count);) {
        if (seconds > 0 && elapsed.hasExpired(qint64(seconds) * kMillisecondsPerSecond))
            return complain(reply, kTimedOut,
                            QString::fromLatin1("%1: no change in %2 s, no longer watching")
                                .arg(arguments.at(0))
                                .arg(seconds));
        if (!nap(kWatchMs))
            return;
        Reply change;
        if (!key.hasChanged(change))
            continue;
        ++changes;
        Command command;
        command.name = QLatin1String("watch");
        command.arguments = arguments;
        mPrinter.print(command, change);
    }
}

void Shell::exportXml(QStringList const& arguments, Reply& reply)
{
    QByteArray xml;
    reply.code = mHost.exportRegistry(fullKey(arguments.value(0, QLatin1String("root"))), xml);
    reply.text = QString::fromUtf8(xml.constData(), xml.size());
}

void Shell::importXml(QStringList const& arguments, Reply& reply)
{
    QFile file(arguments.at(0));
    if (!file.open(QIODevice::ReadOnly))
        return complain(
            reply, kNoInput,
            QString::fromLatin1("cannot read %1: %2").arg(file.fileName(), file.errorString()));
    QByteArray xml = file.readAll();
    reply.code = mHost.importRegistry(xml);
}

void Shell::help(QStringList const&, Reply& reply)
{
    for (Row const& row : kRows)
        reply.text += row.usage().leftJustified(kColumnOfSummaries) + QLatin1String(row.summary)
            + QLatin1Char('\n');
}

void Shell::quit(QStringList const&, Reply&)
{
    mFinished = true;
}
