#include "actions/default/LastCommandTask.h"

#include "actions/default/DefaultApplyAction.h"
#include "actions/default/LastCommands.h"
#include "common/Files.h"
#include "common/QtCompat.h"
#include "common/Text.h"

#include <vantora/vantora.h>

#include <QFile>
#include <QMutexLocker>
#include <QSystemSemaphore>
#include <QThreadPool>

namespace {

char const kHandOverFile[] = "/tmp/last-apply-command";

/// The command that waits in the hand-over file: its first line up to the first ":".
QString readHandedOver(QFile& file)
{
    QString const line = latin1UpToNul(file.readLine().trimmed());
    return line.section(QLatin1Char(':'), 0, 0);
}

void handOver(QFile& file, QString const& command, QString const& commandLine)
{
    if (!openRegularFile(file, QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
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
    if (openRegularFile(file, QIODevice::ReadOnly | QIODevice::Text)) {
        pending = lastCommandAfterOffer(pending, readHandedOver(file).trimmed());
        file.close();
    }
    if (pending.isEmpty())
        return;

    QString const commandLine = lastCommandLine(pending);
    if (isMissing(file.fileName()))
        static_cast<void>(QtCompat::startDetachedCommandLine(commandLine));
    else
        handOver(file, pending, commandLine);
    pending = QString();
}

void LastCommandTask::notify()
{
    // Whether anybody listens is the host's business.
    static_cast<void>(mBackend->set(mKey, QLatin1String("0"), REG_PARAM_VALUE));
    static_cast<void>(mBackend->commit(mKey));
    static_cast<void>(QSystemSemaphore(mKey, 0, QSystemSemaphore::Open).release());
}
