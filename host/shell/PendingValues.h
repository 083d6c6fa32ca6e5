// SPDX-License-Identifier: MIT

#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <mutex>

/// What was set and created and waits for its commit, key by key. The registry and the plugins do
/// not tell: the one names its pending keys only, the others say nothing. Any thread may call this.
class PendingValues
{
public:
    /// The keys at or under `root` are a plugin's. Call before the first request.
    void addPluginRoot(QString const& root) { mPluginRoots.append(root); }

    /// @param value  null for a key that is created.
    void add(QString const& key, QString const& value);

    /// What was set at or under `key` does not wait any more: it was committed or deleted.
    void settled(QString const& key);

    /// A plugin that is asked through a key above its root drops nothing.
    void rolledBack(QString const& key);

    /// What is pending at or under `key`; all if it is empty.
    QMap<QString, QString> under(QString const& key) const;

    bool isPlugins(QString const& key) const;

private:
    /// The caller has the lock.
    QStringList keysUnder(QString const& key) const;

    QStringList mPluginRoots;
    QMap<QString, QString> mValues;
    mutable std::mutex mMutex;
};
