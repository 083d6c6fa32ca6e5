// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// An entry of the view tree: a branch with children, or a key with a value.
class IConfigEntry
{
public:
    /// The operation in progress; actions may ask for it to learn why they are called. (The
    /// platform's name, kept as it is.)
    enum entry_state_t {
        ENTRY_IDLE = 0,
        ENTRY_DELETING,
        ENTRY_COMMITTING,
        ENTRY_APPLYING,
        ENTRY_CLONING
    };

    virtual ~IConfigEntry() { }

    /// The entry above; null at the top of a tree.
    virtual IConfigEntry* parent() const = 0;

    /// Makes `parent` (or null) the entry above and, where it is not null, adds the entry to its
    /// children. The former parent is not told: to move an entry, detach it there first.
    virtual void setParent(IConfigEntry* parent) = 0;

    /// Adds `child` behind the other children and takes it over. A child of the same name is
    /// replaced, and deleted.
    ///
    /// @return false when `child` is null or this entry takes no children: it stays the caller's.
    virtual bool addChild(IConfigEntry* child) = 0;

    /// The first child of that name; null when there is none.
    virtual IConfigEntry* child(QString const& name) const = 0;

    /// The names from the top of the tree down to this entry, joined by "/".
    virtual QString path() const = 0;

    /// Whether the entry is shown: neither it nor an ancestor is hidden by its visibility action.
    virtual bool isVisible() const = 0;

    /// The entry's own name, one component of its path.
    virtual QString name() const = 0;

    virtual entry_state_t state() const = 0;

    /// Runs the delete action; a branch deletes its children first.
    virtual void del() = 0;

    /// Runs the commit action with what was set; a branch commits its children first.
    virtual void commit() = 0;

    /// Runs the apply action; a branch applies its children first.
    virtual void apply() = 0;

    /// A deep copy without a parent; it belongs to the caller.
    virtual IConfigEntry* clone() = 0;

    virtual void setState(entry_state_t state) = 0;
};
