// SPDX-License-Identifier: MIT

#include "tree/ConfigBranch.h"

#include "actions/ActionKit.h"

#include <QVariant>

ConfigBranch::ConfigBranch(QString const& name, IConfigEntry* parent)
    : AbstractConfigEntry(name, parent)
{
    if (parent)
        parent->addChild(this);
}

ConfigBranch::~ConfigBranch()
{
    QList<IConfigEntry*> const children = mChildren.entries();
    qDeleteAll(children);
}

bool ConfigBranch::addChild(IConfigEntry* child)
{
    if (!child)
        return false;
    IConfigEntry* const former = mChildren.find(child->name());
    if (former == child)
        return true;
    if (former) {
        mChildren.remove(former);
        delete former;
        // Renaming can have given `child` a namesake in the list that it is in itself.
        mChildren.remove(child);
    }
    mChildren.append(child);
    child->setParent(this);
    return true;
}

void ConfigBranch::del()
{
    run(ENTRY_DELETING, &IConfigEntry::del, &ActionKit::delAction);
}

void ConfigBranch::commit()
{
    run(ENTRY_COMMITTING, &IConfigEntry::commit, &ActionKit::commitAction);
}

void ConfigBranch::apply()
{
    run(ENTRY_APPLYING, &IConfigEntry::apply, &ActionKit::applyAction);
}

IConfigEntry* ConfigBranch::clone()
{
    setState(ENTRY_CLONING);
    ConfigBranch* const copy = new ConfigBranch(name(), nullptr);
    for (IConfigEntry* const child : children())
        copy->addChild(child->clone());
    setState(ENTRY_IDLE);
    return copy;
}

ConfigBranch* ConfigBranch::branch(QString const& name)
{
    IConfigEntry* const first = mChildren.find(name);
    if (!first)
        return new ConfigBranch(name, this);
    if (ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(first))
        return branch;
    // Renaming can leave a branch behind a key of the same name.
    for (IConfigEntry* const child : children()) {
        ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(child);
        if (branch && branch->name() == name)
            return branch;
    }
    return new ConfigBranch(name, this);
}

bool ConfigBranch::detachChild(IConfigEntry& child)
{
    if (!mChildren.remove(&child))
        return false;
    child.setParent(nullptr);
    return true;
}

void ConfigBranch::deleteChildren()
{
    QList<IConfigEntry*> const children = mChildren.entries();
    for (IConfigEntry* const child : children) {
        mChildren.remove(child);
        delete child;
    }
}

void ConfigBranch::validateDescendants()
{
}

void ConfigBranch::run(entry_state_t state, Operation operation, Action action)
{
    setState(state);
    // A copy: an action may add or remove children.
    QList<IConfigEntry*> const children = this->children();
    for (IConfigEntry* const child : children)
        (child->*operation)();
    QVariant nothing;
    (ActionKit::instance()->*action)(*this, nothing);
    setState(ENTRY_IDLE);
}
