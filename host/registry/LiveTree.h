// SPDX-License-Identifier: MIT

#pragma once

#include "registry/LiveChange.h"

#include <QHash>
#include <QStringList>

/// A place that something is stored at or under.
class LiveNode
{
public:
    LiveNode() { }

    /// Deletes the children.
    ~LiveNode();

    /// The child of that name, or null.
    LiveNode const* child(QString const& name) const { return mChildren.value(name); }

    /// The names of the session directories here, in no order.
    QStringList sessions() const;

    /// The same in the order of creation.
    QStringList sessionsByAge() const;

    bool isSession() const { return mOrdinal != 0; }
    bool hasValue() const { return mHasValue; }
    QString value() const { return mValue; }

private:
    friend class LiveTree;
    Q_DISABLE_COPY(LiveNode)

    /// Adds the changes that lead to this node, which stands at `key`, and to those under it.
    void describe(QString const& key, LiveChanges& changes) const;

    QHash<QString, LiveNode*> mChildren;
    QString mValue;
    bool mHasValue = false;
    // Place in the order of creation; 0 for what is no session directory.
    qint64 mOrdinal = 0;
};

/// The live values in memory: what the database holds, found by walking the components of a key, so
/// that a look-up takes the same time however many sessions there are.
class LiveTree
{
public:
    LiveTree() { }

    /// Takes over one step of a commit.
    void apply(LiveChange const& change);

    /// What is stored at and under `key`, as the changes that lead there.
    LiveChanges stored(QString const& key) const;

    LiveNode const& top() const { return mTop; }

private:
    Q_DISABLE_COPY(LiveTree)

    LiveNode* makeNode(QString const& key);
    void setValue(QString const& key, QString const& value);
    void remove(QString const& key);

    LiveNode mTop;
};
