// SPDX-License-Identifier: MIT

#include "tree/AbstractConfigEntry.h"

#include "actions/ActionKit.h"
#include "tree/ConfigBranch.h"

#include <QVariant>

namespace {

// Of the path of a session's key: a path up to this length is made in one piece.
int const kUsualLength = 96;

} // namespace

AbstractConfigEntry::AbstractConfigEntry(QString const& name, IConfigEntry* parent)
    : mParent(parent)
    , mName(name)
{
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
    QString path;
    if (mParent) {
        path = mParent->path();
        path += QLatin1Char('/');
    } else {
        path.reserve(kUsualLength);
    }
    path += mName;
    return path;
}

bool AbstractConfigEntry::isVisible() const
{
    QVariant visible;
    if (ActionKit::instance()->isVisibleAction(*this, visible) && !visible.toBool())
        return false;
    return !mParent || mParent->isVisible();
}

void AbstractConfigEntry::setName(QString const& name)
{
    mName = name;
    if (ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(mParent))
        branch->childRenamed(*this);
}
