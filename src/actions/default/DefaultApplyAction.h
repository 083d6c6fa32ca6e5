// SPDX-License-Identifier: MIT

#pragma once

#include "actions/IActionDescription.h"
#include "actions/IConfigAction.h"

#include <QMutex>
#include <QString>

class Vantora;

/// "/apply.sh", run in the background: `execute` queues it on the request's pool. The scripts of a
/// request may ask for one disruptive last command (a reboot, say); it is run when all are done.
class DefaultApplyAction : public IConfigAction, public DescribedAction
{
public:
    DefaultApplyAction() { describeAs("DefaultApplyAction"); }

    /// @return false when there is no script; true once it is queued. `data` is not used.
    bool execute(IConfigEntry const& entry, QVariant& data) override;

    /// Offers a last command: a word of the ranking, or a command line. White space around it is
    /// dropped. From any thread.
    static void sSetLastApplyCommand(QString const& command);

    /// Ends an apply request: takes its pool off the kit's stack and, on a thread of its own, waits
    /// for the pool and carries out the pending command. Returns at once. That thread belongs to an
    /// AutoThread, which is the pool's only child and goes when the thread has ended.
    ///
    /// @param backend  told of the end through `key`; must outlive the thread.
    /// @param key      may be empty: nobody is told.
    static void sExecuteLastApplyCommand(Vantora* backend, QString const& key);

    /// The pending last command of the process; null when there is none. Guarded by
    /// `smLastApplyCommandMutex`.
    static QString smLastApplyCommand;
    static QMutex smLastApplyCommandMutex;
};
