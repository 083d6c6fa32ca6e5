// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Trace.h"

#include <vantora/types.h>

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

/// One part of an answer: a key or a value with its kind.
struct ReplyNode
{
    QString key;

    /// A `_RegNodeType`, or a `_RegEntryChange` in the answers of "changes" and "diff".
    int type;

    /// The value of a key where the command asks for it, the one to come in "diff"; null elsewhere.
    QString value;

    /// In "diff" what the value is before the commit; null for none.
    QString formerValue;

    /// In "tree" how many levels it lies below the key that was asked for.
    int depth;

    /// In "tree" for a terminal where the value comes from and what is pending; else null.
    QString source;
    QString pending;
};

/// What a command answers. How that is shown is for a Printer to say.
struct Reply
{
    /// What else than the code there is, and in which members.
    enum Kind {
        Nothing,
        BadArguments,
        Listing,     ///< nodes: a value, or the children of a key
        Tree,        ///< key, and nodes under it in the order of their listings
        Changes,     ///< nodes: what is pending
        Differences, ///< nodes: what a commit changes
        KeyChange,   ///< nodes: what is there now; gone, come: the children that went and came
        Existence,   ///< exists
        Text         ///< text
    };

    explicit Reply(int initialCode = 0, Kind initialKind = Nothing)
        : kind(initialKind)
        , code(initialCode)
        , exists(false)
    {
    }

    Reply(int initialCode, QString const& initialError)
        : kind(Nothing)
        , code(initialCode)
        , error(initialError)
        , exists(false)
    {
    }

    void addNode(QString const& nodeKey, int type, QString const& value = QString())
    {
        nodes.append({nodeKey, type, value, QString(), 0, QString(), QString()});
    }

    /// @param types  by key.
    template <typename Type> void addNodes(QMap<QString, Type> const& types)
    {
        typename QMap<QString, Type>::const_iterator node = types.constBegin();
        for (; node != types.constEnd(); ++node)
            addNode(node.key(), node.value());
    }

    /// Whether a listing is a value, or the default that stands in for one.
    bool hasValue() const
    {
        return nodes.size() == 1
            && (nodes.first().type == REG_NODE_VALUE || nodes.first().type == REG_NODE_DEFAULT);
    }

    Kind kind;

    /// 0, a result code of the host, or one of ExitStatus.h.
    int code;

    /// Why it failed, where the code does not say it all; else null.
    QString error;

    QString key;
    QList<ReplyNode> nodes;
    QStringList gone;
    QStringList come;
    bool exists;

    /// Ends in a newline unless it is empty.
    QString text;

    /// The scripts and the last command of an apply.
    QList<TraceEvent> events;
};
