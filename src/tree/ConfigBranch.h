// SPDX-License-Identifier: MIT

#pragma once

#include "tree/AbstractConfigEntry.h"
#include "tree/ChildList.h"

class ActionKit;
class QVariant;

/// An inner node of the view tree. Owns its children.
class ConfigBranch : public AbstractConfigEntry
{
public:
    /// Links the branch into `parent`, which owns it from then on; without a parent it is the
    /// caller's.
    ConfigBranch(QString const& name, IConfigEntry* parent);

    /// Deletes the children, in order.
    ~ConfigBranch() override;

    bool addChild(IConfigEntry* child) override;
    IConfigEntry* child(QString const& name) const override { return mChildren.find(name); }
    void del() override;
    void commit() override;
    void apply() override;
    IConfigEntry* clone() override;

    /// The children in order; they stay the branch's.
    virtual QList<IConfigEntry*> const& children() const { return mChildren.entries(); }

    /// The first child branch of that name, made when there is none; a key of that name is then
    /// replaced, and deleted.
    virtual ConfigBranch* branch(QString const& name);

    /// Takes `child` out of this branch without deleting it.
    ///
    /// @param child  found by identity, not by name.
    /// @return true: `child` has left the list, has no parent, and now belongs to the caller;
    ///         false: it is no child of this branch, and nothing has changed.
    virtual bool detachChild(IConfigEntry& child);

    /// Called before the branch is copied into a tree as a template; a derived class may bring its
    /// descendants up to date here. Does nothing: the platform's slot, kept as it is.
    virtual void validateDescendants();

    bool hasChildren() const { return !mChildren.isEmpty(); }
    void deleteChildren();

private:
    friend class AbstractConfigEntry;

    typedef void (IConfigEntry::*Operation)();
    typedef bool (ActionKit::*Action)(IConfigEntry const&, QVariant&);

    /// Keeps look-ups by name true after `child` got another name.
    void childRenamed(IConfigEntry& child) { mChildren.renamed(&child); }

    /// `operation` on every child, then `action` on the branch itself.
    void run(entry_state_t state, Operation operation, Action action);

    ChildList mChildren;
};
