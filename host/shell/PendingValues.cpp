// SPDX-License-Identifier: MIT

#include "shell/PendingValues.h"

#include "registry/RegistryKey.h"

namespace {

typedef std::lock_guard<std::mutex> Guard;

} // namespace

void PendingValues::add(QString const& key, QString const& value)
{
    Guard const guard(mMutex);
    mValues.insert(key, value);
}

void PendingValues::settled(QString const& key)
{
    Guard const guard(mMutex);
    for (QString const& settledKey : keysUnder(key))
        mValues.remove(settledKey);
}

void PendingValues::rolledBack(QString const& key)
{
    Guard const guard(mMutex);
    for (QString const& droppedKey : keysUnder(key)) {
        if (isPlugins(key) || !isPlugins(droppedKey))
            mValues.remove(droppedKey);
    }
}

QMap<QString, QString> PendingValues::under(QString const& key) const
{
    Guard const guard(mMutex);
    QMap<QString, QString> found;
    for (QString const& foundKey : keysUnder(key))
        found.insert(foundKey, mValues.value(foundKey));
    return found;
}

QStringList PendingValues::keysUnder(QString const& key) const
{
    QStringList keys;
    for (QString const& each : mValues.keys()) {
        if (key.isEmpty() || isAtOrUnder(each, key))
            keys.append(each);
    }
    return keys;
}

bool PendingValues::isPlugins(QString const& key) const
{
    return isAtOrUnderOneOf(key, mPluginRoots);
}
