// SPDX-License-Identifier: MIT

#include "registry/PendingChanges.h"

PendingChange const* PendingChanges::find(QString const& key) const
{
    Changes::const_iterator const found = mChanges.constFind(key);
    return found == mChanges.constEnd() ? nullptr : &found.value();
}

void PendingChanges::put(QString const& key, PendingChange const& change)
{
    mChanges.insert(key, change);
}

void PendingChanges::dropAtOrUnder(QString const& key)
{
    QStringList const keys = keysAtOrUnder(key);
    for (QString const& each : keys)
        drop(each);
}

void PendingChanges::restore(PendingChanges const& former)
{
    Changes::const_iterator change = former.mChanges.constBegin();
    for (; change != former.mChanges.constEnd(); ++change) {
        if (!mChanges.contains(change.key()))
            put(change.key(), change.value());
    }
}

QStringList PendingChanges::keysAtOrUnder(QString const& key) const
{
    QString const prefix = key + QLatin1Char('/');
    QStringList keys;
    if (mChanges.contains(key))
        keys.append(key);
    Changes::const_iterator change = mChanges.lowerBound(prefix);
    for (; change != mChanges.constEnd() && change.key().startsWith(prefix); ++change)
        keys.append(change.key());
    return keys;
}
