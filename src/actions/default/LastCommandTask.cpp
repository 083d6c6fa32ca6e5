// SPDX-License-Identifier: MIT

#include "actions/default/LastCommandTask.h"

#include "actions/ActionKit.h"
#include "actions/default/DefaultApplyAction.h"
#include "actions/default/HandOverFile.h"
#include "actions/default/LastCommands.h"
#include "common/QtCompat.h"

#include <vantora/vantora.h>

#include <QMutexLocker>
#include <QSystemSemaphore>
#include <QThreadPool>

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
    Settlement const settlement = sSettlePending();
    IActivityObserver* const observer = ActionKit::sObserver();
    if (observer && !settlement.command.isNull())
        observer->lastCommandIsSettled(mKey, settlement.command, settlement.outcome);
}

LastCommandTask::Settlement LastCommandTask::sSettlePending()
{
    // One section from reading to resetting: of two requests that end at once, one alone gets the
    // command, and neither reads the file while the other writes it.
    QMutexLocker const locker(&DefaultApplyAction::smLastApplyCommandMutex);
    QString& pending = DefaultApplyAction::smLastApplyCommand;
    HandOverFile file;
    QString waiting;
    if (file.read(waiting))
        pending = lastCommandAfterOffer(pending, waiting);
    Settlement settlement = {QString(), IActivityObserver::NotStarted};
    if (pending.isEmpty())
        return settlement;
    settlement = sCarryOut(pending, file);
    pending = QString();
    return settlement;
}

LastCommandTask::Settlement LastCommandTask::sCarryOut(QString const& pending, HandOverFile& file)
{
    QString const commandLine = lastCommandLine(pending);
    if (!file.exists()) {
        bool const isStarted = QtCompat::startDetachedCommandLine(commandLine);
        return {commandLine,
                isStarted ? IActivityObserver::Started : IActivityObserver::NotStarted};
    }
    QString text = pending;
    if (commandLine != pending)
        text += QLatin1Char(':') + commandLine;
    bool const isWritten = file.replace(text);
    return {text, isWritten ? IActivityObserver::HandedOver : IActivityObserver::NotHandedOver};
}

void LastCommandTask::notify()
{
    // Whether anybody listens is the host's business.
    static_cast<void>(mBackend->set(mKey, QLatin1String("0"), REG_PARAM_VALUE));
    static_cast<void>(mBackend->commit(mKey));
    static_cast<void>(QSystemSemaphore(mKey, 0, QSystemSemaphore::Open).release());
}
