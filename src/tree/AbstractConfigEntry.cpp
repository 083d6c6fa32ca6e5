#include "tree/AbstractConfigEntry.h"

#include "actions/ActionKit.h"
#include "tree/ConfigBranch.h"

#include <QVariant>

AbstractConfigEntry::AbstractConfigEntry(QString const& name, IConfigEntry* parent)
    : mParent(parent)
    , mName(name)
    , mState(ENTRY_IDLE)
{
}

IConfigEntry* AbstractConfigEntry::parent() const
{
    return mParent;
}

void AbstractConfigEntry::setParent(IConfigEntry* parent)
{
    if (parent == mParent)
        return;
    mParent = parent;
    if (parent)
        parent->addChild(this);
}

QString AbstractConfigEntry::path() const
{
    QString path = mName;
    for (IConfigEntry const* ancestor = mParent; ancestor; ancestor = ancestor->parent())
        path.prepend(ancestor->name() + QLatin1Char('/'));
    return path;
}

bool AbstractConfigEntry::isVisible() const
{
    QVariant visible;
    if (ActionKit::instance()->isVisibleAction(*this, visible) && !visible.toBool())
        return false;
    return !mParent || mParent->isVisible();
}

QString AbstractConfigEntry::name() const
{
    return mName;
}

void AbstractConfigEntry::setName(QString const& name)
{
    mName = name;
    if (ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(mParent))
        branch->childRenamed(*this);
}

IConfigEntry::entry_state_t AbstractConfigEntry::state() const
{
    return mState;
}

void AbstractConfigEntry::setState(entry_state_t state)
{
    mState = state;
}
