#include "shell/PendingValues.h"

#include "registry/RegistryKey.h"

namespace {

typedef std::lock_guard<std::mutex> Guard;

} // namespace

void PendingValues::addPluginRoot(QString const& root)
{
    mPluginRoots.append(root);
}

void PendingValues::add(QString const& key, QString const& value)
{
    Guard const guard(mMutex);
    mValues.insert(key, value);
}

void PendingValues::settled(QString const& key)
{
    QMap<QString, QString> const values = under(key);
    Guard const guard(mMutex);
    for (QString const& settledKey : values.keys())
        mValues.remove(settledKey);
}

void PendingValues::rolledBack(QString const& key)
{
    QMap<QString, QString> const dropped = under(key);
    Guard const guard(mMutex);
    for (QString const& droppedKey : dropped.keys()) {
        if (isPlugins(key) || !isPlugins(droppedKey))
            mValues.remove(droppedKey);
    }
}

QMap<QString, QString> PendingValues::under(QString const& key) const
{
    Guard const guard(mMutex);
    QMap<QString, QString> found;
    QMap<QString, QString>::const_iterator value = mValues.constBegin();
    for (; value != mValues.constEnd(); ++value) {
        if (key.isEmpty() || isAtOrUnder(value.key(), key))
            found.insert(value.key(), value.value());
    }
    return found;
}

bool PendingValues::isPlugins(QString const& key) const
{
    for (QString const& root : mPluginRoots) {
        if (isAtOrUnder(key, root))
            return true;
    }
    return false;
}
