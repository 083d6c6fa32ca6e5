// SPDX-License-Identifier: MIT

#pragma once

#include "common/DetachedProgram.h"

#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QtGlobal>

/// The few places where Qt 4 and Qt 5 want different words for one thing.
namespace QtCompat {

/// Whether a D-Bus connection that is made in the main thread delivers nothing before that thread
/// has run its event loop.
bool const kNewBusWaitsForEventLoop = QT_VERSION >= 0x050600;

/// Starts `commandLine`, split at blanks with double quotes grouping, in `process`.
inline void startCommandLine(QProcess& process, QString const& commandLine)
{
#if QT_VERSION >= 0x050f00
    QStringList words = QProcess::splitCommand(commandLine);
    QString const program = words.isEmpty() ? QString() : words.takeFirst();
    process.start(program, words);
#else
    process.start(commandLine);
#endif
}

/// Starts `commandLine`, split as above, as a process of its own that is not waited for.
inline bool startDetachedCommandLine(QString const& commandLine)
{
#if QT_VERSION >= 0x050f00
    // Qt 5 itself looks for the program between fork and exec, under a lock that another thread may
    // have held when the process was forked: nobody then releases it, and the caller never returns.
    return startDetachedProgram(QProcess::splitCommand(commandLine));
#else
    return QProcess::startDetached(commandLine);
#endif
}

/// The process id of a running process; 0 when it does not run.
inline qint64 processId(QProcess const& process)
{
#if QT_VERSION >= 0x050300
    return process.processId();
#else
    return process.pid();
#endif
}

/// Connects a thread's terminated() signal, which only Qt 4 has.
inline void connectThreadTerminated(QObject const* thread, QObject const* receiver,
                                    char const* slot)
{
#if QT_VERSION < 0x050000
    QObject::connect(thread, SIGNAL(terminated()), receiver, slot);
#else
    Q_UNUSED(thread);
    Q_UNUSED(receiver);
    Q_UNUSED(slot);
#endif
}

} // namespace QtCompat
