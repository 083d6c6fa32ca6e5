// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

/// Keeps the warnings that are issued while it lives, instead of having them written. One at a
/// time.
class WarningRecorder
{
public:
    WarningRecorder()
    {
        recorded().clear();
#if QT_VERSION >= 0x050000
        mOldHandler = qInstallMessageHandler(&WarningRecorder::take);
#else
        mOldHandler = qInstallMsgHandler(&WarningRecorder::take);
#endif
    }

    ~WarningRecorder()
    {
#if QT_VERSION >= 0x050000
        qInstallMessageHandler(mOldHandler);
#else
        qInstallMsgHandler(mOldHandler);
#endif
    }

    QStringList warnings() const
    {
        return recorded();
    }

private:
    Q_DISABLE_COPY(WarningRecorder)

    static QStringList& recorded()
    {
        static QStringList messages;
        return messages;
    }

#if QT_VERSION >= 0x050000
    static void take(QtMsgType, QMessageLogContext const&, QString const& message)
    {
        recorded().append(message);
    }

    QtMessageHandler mOldHandler;
#else
    static void take(QtMsgType, char const* message)
    {
        recorded().append(QString::fromLocal8Bit(message));
    }

    QtMsgHandler mOldHandler;
#endif
};
