// SPDX-License-Identifier: MIT

#include "plugin/SetBuffer.h"

#include "actions/ActionKit.h"
#include "actions/default/RequestContext.h"
#include "plugin/PendingKeys.h"
#include "tree/ConfigTree.h"

#include <QVariant>

namespace {

void commitAlone(IConfigEntry& entry)
{
    if (ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(&entry))
        branch->deleteChildren();
    entry.commit();
}

} // namespace

SetBuffer::~SetBuffer()
{
    clear();
    deleteTakenOut();
}

ConfigTree* SetBuffer::tree(KeyPath const& root)
{
    if (!mTree)
        mTree = new ConfigTree(root);
    return mTree;
}

void SetBuffer::clear()
{
    delete mTree;
    mTree = nullptr;
    mCreated.clear();
    mRefused.clear();
}

IConfigEntry* SetBuffer::entry(QString const& key) const
{
    return mTree ? mTree->entry(key) : nullptr;
}

IConfigEntry* SetBuffer::add(ConfigTree const& found, QString const& key)
{
    ConfigTree::completeTree(found, *tree(found.rootDir()));
    IConfigEntry* const added = entry(key);
    mRefused.remove(added);
    return added;
}

void SetBuffer::undoCreation(QString const& key)
{
    IConfigEntry* const created = entry(key);
    if (mCreated.contains(created))
        takeOut(*created);
}

void SetBuffer::forgetBelow(QString const& key)
{
    ConfigBranch const* const branch = dynamic_cast<ConfigBranch*>(entry(key));
    if (!branch)
        return;
    QList<IConfigEntry*> const children = branch->children();
    for (IConfigEntry* const child : children)
        takeApart(*child, PendingKeys());
}

void SetBuffer::forgetWritten(PendingKeys const& pending)
{
    QList<IConfigEntry*> const refused = mRefused.values();
    for (IConfigEntry* const entry : refused) {
        if (!pending.areBehind(*entry))
            takeOut(*entry);
    }
}

void SetBuffer::takeOut(IConfigEntry& entry)
{
    takeOut(entry, PendingKeys());
}

void SetBuffer::commit(IConfigEntry& found, QString const& key, QString const& root,
                       Reg::Registry* defaults)
{
    if (dynamic_cast<ConfigBranch const*>(&found))
        commitPendingUnder(key, root, defaults);
    if (IConfigEntry* const waiting = entry(key))
        commitWaiting(*waiting, key, defaults);
    else
        commitAlone(found);
}

void SetBuffer::commitAll(QString const& root, Reg::Registry* defaults)
{
    commitPendingUnder(root, root, defaults);
    // The root takes part though nothing may be set.
    commitWaiting(*tree(root), root, defaults);
}

void SetBuffer::commitPendingUnder(QString const& key, QString const& root, Reg::Registry* defaults)
{
    PendingKeys const pending = PendingKeys::sAsk();
    forgetWritten(pending);
    QMap<QString, _RegEntryChange> const changes = pending.atOrUnder(key, root);
    QStringList unset;
    QString deleted;
    QStringList const keys = changes.keys();
    for (QString const& each : keys) {
        // A session that goes is committed alone: what was set or deleted in it goes with it.
        if (!deleted.isEmpty() && KeyPath(deleted).isRootOf(each))
            continue;
        if (changes.value(each) == REG_CHANGE_DELETED) {
            deleted = each;
            forgetBelow(each);
        }
        if (!entry(each))
            unset.append(each);
    }
    QStringList const ordered = ConfigTree::sInOrder(unset, root, defaults);
    for (QString const& each : ordered) {
        // `key` itself, say, is being served.
        RequestContext const request(RequestContext::Commit, each);
        ConfigTree look(root);
        IConfigEntry* const found = request.isRepeated() ? nullptr : look.find(each, defaults);
        if (found)
            commitAlone(*found);
    }
}

void SetBuffer::commitWaiting(IConfigEntry& committed, QString const& key, Reg::Registry* defaults)
{
    if (ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(&committed))
        mTree->sortLikeDefaultSettings(*branch, defaults, key);
    commitHeld(committed);
    if (holds(committed))
        takeOut(committed, PendingKeys::sAsk());
}

void SetBuffer::deleteTakenOut()
{
    qDeleteAll(mTakenOut);
    mTakenOut.clear();
}

// As the entry does it, but for what a nested commit has taken out: that is no key any more, and
// its path would name others.
void SetBuffer::commitHeld(IConfigEntry& entry)
{
    ConfigBranch const* const branch = dynamic_cast<ConfigBranch*>(&entry);
    if (!branch) {
        entry.commit();
        return;
    }
    entry.setState(IConfigEntry::ENTRY_COMMITTING);
    QList<IConfigEntry*> const children = branch->children();
    for (IConfigEntry* const child : children) {
        if (child->parent() == branch)
            commitHeld(*child);
    }
    QVariant nothing;
    if (holds(entry))
        ActionKit::instance()->commitAction(entry, nothing);
    entry.setState(IConfigEntry::ENTRY_IDLE);
}

// An entry that a nested commit has taken out is still there, but has no way up.
bool SetBuffer::holds(IConfigEntry const& entry) const
{
    IConfigEntry const* top = &entry;
    while (top->parent())
        top = top->parent();
    return top == mTree;
}

void SetBuffer::takeOut(IConfigEntry& entry, PendingKeys const& kept)
{
    ConfigBranch* const parent = dynamic_cast<ConfigBranch*>(entry.parent());
    takeApart(entry, kept);
    // An empty branch would be committed one day, though nothing in it was set: a terminal
    // session's script, say, would be told of empty settings.
    if (parent && parent != mTree && !parent->hasChildren() && !mCreated.contains(parent))
        takeOut(*parent, kept);
}

/// Takes out the entry and all below it but the keys behind which something of `kept` is pending.
void SetBuffer::takeApart(IConfigEntry& entry, PendingKeys const& kept)
{
    ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(&entry);
    if (branch) {
        QList<IConfigEntry*> const children = branch->children();
        for (IConfigEntry* const child : children)
            takeApart(*child, kept);
    }
    mCreated.remove(&entry);
    mRefused.remove(&entry);
    if (!branch && kept.areBehind(entry)) {
        mRefused.insert(&entry);
        return;
    }
    if (branch && branch->hasChildren())
        return;

    if (ConfigBranch* const parent = dynamic_cast<ConfigBranch*>(entry.parent()))
        parent->detachChild(entry);
    else
        mTree = nullptr;
    mTakenOut.append(&entry);
}
