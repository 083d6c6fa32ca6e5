// SPDX-License-Identifier: MIT

#pragma once

#include "actions/default/DefaultApplyAction.h"

#include <QByteArray>
#include <QFile>
#include <QMutexLocker>
#include <QString>
#include <QStringList>

// The last commands of apply requests, as a test sees them in the sandbox.

/// Those that were started, in order: the sandbox writes them down.
inline QStringList startedCommands()
{
    QFile record(QString::fromLocal8Bit(qgetenv("VANTORA_SANDBOX_RECORD")));
    if (!record.open(QIODevice::ReadOnly))
        return QStringList();
    QStringList lines = QString::fromLocal8Bit(record.readAll()).split('\n');
    lines.removeAll(QString());
    return lines;
}

/// From now on none was started.
inline void forgetStartedCommands()
{
    QFile::remove(QString::fromLocal8Bit(qgetenv("VANTORA_SANDBOX_RECORD")));
}

inline QString pendingCommand()
{
    QMutexLocker const locker(&DefaultApplyAction::smLastApplyCommandMutex);
    return DefaultApplyAction::smLastApplyCommand;
}

inline void setPendingCommand(QString const& command)
{
    QMutexLocker const locker(&DefaultApplyAction::smLastApplyCommandMutex);
    DefaultApplyAction::smLastApplyCommand = command;
}

/// The body of an apply script that asks for a last command.
inline QByteArray asksFor(QByteArray const& command)
{
    return "echo '" + command + "' >>\"$LAST_APPLY_COMMAND\"";
}
