// SPDX-License-Identifier: MIT

#include "registry/LiveTree.h"

#include "registry/RegistryKey.h"

#include <QMap>

LiveNode::~LiveNode()
{
    qDeleteAll(mChildren);
}

QStringList LiveNode::sessions() const
{
    QStringList names;
    QHash<QString, LiveNode*>::const_iterator child = mChildren.constBegin();
    for (; child != mChildren.constEnd(); ++child) {
        if (child.value()->isSession())
            names.append(child.key());
    }
    return names;
}

QStringList LiveNode::sessionsByAge() const
{
    QMap<qint64, QString> byOrdinal;
    QStringList const names = sessions();
    for (QString const& name : names)
        byOrdinal.insert(child(name)->mOrdinal, name);
    return byOrdinal.values();
}

void LiveNode::describe(QString const& key, LiveChanges& changes) const
{
    LiveChange const creation = {LiveChange::CreateDirectory, key, QString(), mOrdinal};
    LiveChange const setting = {LiveChange::SetValue, key, mValue, 0};
    if (isSession())
        changes.append(creation);
    if (mHasValue)
        changes.append(setting);
    QHash<QString, LiveNode*>::const_iterator child = mChildren.constBegin();
    for (; child != mChildren.constEnd(); ++child)
        child.value()->describe(childKey(key, child.key()), changes);
}

void LiveTree::apply(LiveChange const& change)
{
    switch (change.kind) {
    case LiveChange::CreateDirectory:
        makeNode(change.key)->mOrdinal = change.ordinal;
        break;
    case LiveChange::SetValue:
        setValue(change.key, change.value);
        break;
    case LiveChange::RemoveDirectory:
    case LiveChange::RemoveValue:
        remove(change.key);
        break;
    }
}

LiveChanges LiveTree::stored(QString const& key) const
{
    LiveChanges changes;
    if (LiveNode const* const node = findNode(mTop, key))
        node->describe(key, changes);
    return changes;
}

LiveNode* LiveTree::makeNode(QString const& key)
{
    LiveNode* node = &mTop;
    KeyPieces pieces(key);
    while (pieces.next()) {
        LiveNode*& child = node->mChildren[pieces.piece()];
        if (!child)
            child = new LiveNode;
        node = child;
    }
    return node;
}

void LiveTree::setValue(QString const& key, QString const& value)
{
    LiveNode* const node = makeNode(key);
    node->mHasValue = true;
    node->mValue = value;
}

void LiveTree::remove(QString const& key)
{
    LiveNode* parent = &mTop;
    KeyPieces pieces(key);
    while (pieces.next() && !pieces.isLast()) {
        parent = parent->mChildren.value(pieces.piece());
        if (!parent)
            return;
    }
    delete parent->mChildren.take(pieces.piece());
}
