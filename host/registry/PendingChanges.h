// SPDX-License-Identifier: MIT

#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

/// One change that waits for its commit.
struct PendingChange
{
    enum Kind {
        SetValue,
        /// Back to the default.
        RemoveValue,
        CreateDirectory,
        /// Deleted and created again: nothing of the old directory stays.
        ReplaceDirectory,
        RemoveDirectory
    };

    Kind kind;

    /// Of SetValue.
    QString value;

    /// Of CreateDirectory and ReplaceDirectory: place in the order of creation.
    qint64 ordinal;
};

/// The changes that wait for their commit, at most one a key.
class PendingChanges
{
public:
    /// The change pending for `key`, or null; stays this object's, until the next change to it.
    PendingChange const* find(QString const& key) const;

    /// Puts the change in the place of an earlier one of the key.
    void put(QString const& key, PendingChange const& change);

    void drop(QString const& key) { mChanges.remove(key); }
    void dropAtOrUnder(QString const& key);

    /// Takes back what was dropped since `former` was copied from this object; later changes stay.
    void restore(PendingChanges const& former);

    /// The keys with a pending change, directories before what lies in them.
    QStringList keys() const { return mChanges.keys(); }
    QStringList keysAtOrUnder(QString const& key) const;

private:
    typedef QMap<QString, PendingChange> Changes;

    // Sorted: all keys under one key stand together.
    Changes mChanges;
};
