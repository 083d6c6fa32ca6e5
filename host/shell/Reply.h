#pragma once

#include "shell/Trace.h"

#include <QList>
#include <QString>
#include <QStringList>

/// One part of an answer: a key or a value with its kind.
struct ReplyNode
{
    QString key;

    /// A `_RegNodeType`, or a `_RegEntryChange` in the answers of "changes" and "diff".
    int type;

    /// The value of a key where the command asks for it; null elsewhere.
    QString value;
};

/// What a command answers, apart from how it is shown.
struct Reply
{
    Reply()
        : code(0)
    {
    }

    /// 0, a result code of the host, or one of ExitStatus.h.
    int code;

    QList<ReplyNode> nodes;

    /// The answer as text for a person; ends in a newline unless it is empty.
    QString text;

    /// The same as it is shown on a terminal; null: as it stands.
    QString terminalText;

    /// What else there is to tell: why it failed, or what came of it.
    QStringList messages;

    /// The scripts and the last command of an apply.
    QList<TraceEvent> events;
};
