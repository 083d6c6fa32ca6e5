#include "actions/default/LastCommandTask.h"

#include "actions/default/DefaultApplyAction.h"
#include "common/QtCompat.h"
#include "common/Text.h"

#include <vantora/vantora.h>

#include <QFile>
#include <QMutexLocker>
#include <QSystemSemaphore>
#include <QThreadPool>

namespace {

char const kHandOverFile[] = "/tmp/last-apply-command";

struct Program
{
    char const* word;
    char const* commandLine;
};

Program const kPrograms[] = {
    {"reboot", "wlox-reboot"},
    {"logout", "wlox-logoff"},
    {"restart-display", "wlox-restartX"},
    {"restart-desktop", "xfce4-panel --restart"},
};

/// The command line that a command stands for; any but the known words is one itself.
QString commandLineOf(QString const& command)
{
    for (Program const& program : kPrograms) {
        if (command == QLatin1String(program.word))
            return QLatin1String(program.commandLine);
    }
    return command;
}

/// The command that waits in the hand-over file: its first line up to the first ":".
QString readHandedOver(QFile& file)
{
    QString const line = latin1UpToNul(file.readLine().trimmed());
    return line.section(QLatin1Char(':'), 0, 0);
}

void handOver(QFile& file, QString const& command, QString const& commandLine)
{
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return;
    QString text = command;
    if (commandLine != command)
        text += QLatin1Char(':') + commandLine;
    file.write(text.toLocal8Bit());
}

} // namespace

LastCommandTask::LastCommandTask(Vantora* backend, QThreadPool* pool, QString const& key)
    : mBackend(backend)
    , mPool(pool)
    , mKey(key)
{
}

void LastCommandTask::run()
{
    executeCommand();
    if (!mKey.isEmpty())
        notify();
}

void LastCommandTask::executeCommand()
{
    mPool->waitForDone();

    // One section from reading to resetting: of two requests that end at once, one alone gets the
    // command, and neither reads the file while the other writes it.
    QMutexLocker const locker(&DefaultApplyAction::smLastApplyCommandMutex);
    QString& pending = DefaultApplyAction::smLastApplyCommand;
    QFile file(QString::fromLatin1(kHandOverFile));
    if (file.exists() && file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        pending = DefaultApplyAction::sHigherRanked(pending, readHandedOver(file).trimmed());
        file.close();
    }
    if (pending.isEmpty())
        return;

    QString const commandLine = commandLineOf(pending);
    if (file.exists())
        handOver(file, pending, commandLine);
    else
        QtCompat::startDetachedCommandLine(commandLine);
    pending = QString();
}

void LastCommandTask::notify()
{
    mBackend->set(mKey, QLatin1String("0"), REG_PARAM_VALUE);
    mBackend->commit(mKey);
    QSystemSemaphore(mKey, 0, QSystemSemaphore::Open).release();
}
