// SPDX-License-Identifier: MIT

#include "actions/default/DefaultApplyAction.h"

#include "actions/ActionKit.h"
#include "actions/default/ApplyTask.h"
#include "actions/default/LastCommandTask.h"
#include "actions/default/LastCommands.h"
#include "actions/default/Wrapper.h"
#include "common/QtCompat.h"
#include "plugin/AutoThread.h"

#include <QFileInfo>
#include <QMutexLocker>
#include <QThreadPool>

QString DefaultApplyAction::smLastApplyCommand;
QMutex DefaultApplyAction::smLastApplyCommandMutex;

bool DefaultApplyAction::execute(IConfigEntry const& entry, QVariant&)
{
    QString const script = Wrapper::find(entry, Wrapper::kApply);
    if (script.isNull())
        return false;
    QRunnable* const task = new ApplyTask(QFileInfo(script));
    IActivityObserver* const observer = ActionKit::sObserver();
    ActionKit::instance()->topApplyTreadPool()->start(observer ? observer->scriptIsQueued(task)
                                                               : task);
    return true;
}

void DefaultApplyAction::sSetLastApplyCommand(QString const& command)
{
    QMutexLocker const locker(&smLastApplyCommandMutex);
    smLastApplyCommand = lastCommandAfterOffer(smLastApplyCommand, command.trimmed());
}

void DefaultApplyAction::sExecuteLastApplyCommand(Vantora* backend, QString const& key)
{
    QThreadPool* const pool = ActionKit::instance()->popApplyThreadPool();
    LastCommandTask* const task = new LastCommandTask(backend, pool, key);
    AutoThread* const keeper = new AutoThread(task);
    keeper->setParent(pool);
    QObject::connect(task, SIGNAL(finished()), keeper, SLOT(deleteThread()));
    QtCompat::connectThreadTerminated(task, keeper, SLOT(deleteThread()));
    task->start(QThread::InheritPriority);
}
