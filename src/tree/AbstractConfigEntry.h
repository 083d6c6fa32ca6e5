// SPDX-License-Identifier: MIT

#pragma once

#include "tree/IConfigEntry.h"

#include <QString>

/// What keys and branches have in common: a name, a place below a parent, a state.
class AbstractConfigEntry : public IConfigEntry
{
public:
    /// Stores `parent` but does not link the entry into it: the classes derived from this one do,
    /// as the last step of their construction.
    AbstractConfigEntry(QString const& name, IConfigEntry* parent);

    IConfigEntry* parent() const override { return mParent; }
    void setParent(IConfigEntry* parent) override;
    QString path() const override;
    bool isVisible() const override;
    QString name() const override { return mName; }
    entry_state_t state() const override { return mState; }
    void setState(entry_state_t state) override { mState = state; }

    /// Renames the entry where it stands. The parent is not searched for another child of that
    /// name.
    void setName(QString const& name);

private:
    Q_DISABLE_COPY(AbstractConfigEntry)

    IConfigEntry* mParent;
    QString mName;
    entry_state_t mState = ENTRY_IDLE;
};
