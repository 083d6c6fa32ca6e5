// SPDX-License-Identifier: MIT

#include "plugin/ApplyRequests.h"

#include "actions/ActionKit.h"
#include "actions/default/DefaultApplyAction.h"
#include "plugin/AutoThread.h"
#include "tree/IConfigEntry.h"

#include <QThread>
#include <QThreadPool>

ApplyRequests::ApplyRequests(QObject& plugin)
    : mPlugin(plugin)
{
}

ApplyRequests::~ApplyRequests()
{
    for (QThreadPool* const pool : mPools) {
        if (!pool)
            continue;
        // First the thread, which waits for the pool.
        delete pool->findChild<AutoThread*>();
        delete pool;
    }
}

void ApplyRequests::start(IConfigEntry& entry, Vantora* backend, QString const& key)
{
    // A parent and its children live in one thread.
    bool const isCalledElsewhere = mPlugin.thread() != QThread::currentThread();
    QThreadPool* const pool = new QThreadPool(isCalledElsewhere ? nullptr : &mPlugin);
    mPools.removeAll(QPointer<QThreadPool>());
    mPools.append(pool);
    ActionKit::instance()->pushApplyThreadPool(pool);
    entry.apply();
    DefaultApplyAction::sExecuteLastApplyCommand(backend, key);
    // The keeper of the thread that waits for the pool goes when that thread has ended: nobody uses
    // the pool any more.
    QObject::connect(pool->findChild<AutoThread*>(), SIGNAL(destroyed()), pool,
                     SLOT(deleteLater()));
    if (isCalledElsewhere)
        pool->moveToThread(mPlugin.thread());
}
