#include "actions/default/DefaultApplyAction.h"

#include "actions/ActionKit.h"
#include "actions/default/ApplyTask.h"
#include "actions/default/LastCommandTask.h"
#include "actions/default/Wrapper.h"
#include "common/QtCompat.h"
#include "plugin/AutoThread.h"

#include <QFileInfo>
#include <QMutexLocker>
#include <QThreadPool>

namespace {

// Highest first.
char const* const kRanking[] = {"reboot", "logout", "restart-display", "restart-desktop"};
int const kUnranked = sizeof(kRanking) / sizeof(kRanking[0]);

/// The place of a command in the ranking, counted from the top.
int rankOf(QString const& command)
{
    int rank = 0;
    while (rank < kUnranked && command != QLatin1String(kRanking[rank]))
        ++rank;
    return rank;
}

} // namespace

QString DefaultApplyAction::smLastApplyCommand;
QMutex DefaultApplyAction::smLastApplyCommandMutex;

bool DefaultApplyAction::execute(IConfigEntry const& entry, QVariant&)
{
    QFileInfo const script(Wrapper::path(entry, Wrapper::kApply));
    if (!script.exists())
        return false;
    ActionKit::instance()->topApplyTreadPool()->start(new ApplyTask(script));
    return true;
}

void DefaultApplyAction::sSetLastApplyCommand(QString const& command)
{
    QMutexLocker const locker(&smLastApplyCommandMutex);
    smLastApplyCommand = sHigherRanked(smLastApplyCommand, command.trimmed());
}

void DefaultApplyAction::sExecuteLastApplyCommand(Vantora* backend, QString const& key)
{
    QThreadPool* const pool = ActionKit::instance()->popApplyThreadPool();
    LastCommandTask* const task = new LastCommandTask(backend, pool, key);
    AutoThread* const keeper = new AutoThread(task);
    // The plugin object, the pool's owner, waits for the threads of its requests when it goes.
    keeper->setParent(pool->parent());
    QObject::connect(task, SIGNAL(finished()), keeper, SLOT(deleteThread()));
    QtCompat::connectThreadTerminated(task, keeper, SLOT(deleteThread()));
    task->start(QThread::InheritPriority);
}

QString DefaultApplyAction::sHigherRanked(QString const& pending, QString const& offer)
{
    int const pendingRank = rankOf(pending);
    bool const isReplaced = pendingRank == kUnranked || rankOf(offer) < pendingRank;
    return isReplaced ? offer : pending;
}
