// SPDX-License-Identifier: MIT

#pragma once

#include "registry/KeySpace.h"
#include "registry/PendingChanges.h"

/// The keys under "tmp/": in memory only, of any name, without type. A directory exists while a
/// value lies under it; a value at the key of a directory hides the directory in `get`.
class TemporaryKeys : public KeySpace
{
public:
    /// True for a key that belongs here.
    static bool sOwns(QString const& key);

    int set(QString const& key, QString const& value) override;
    int get(QString const& key, QMap<QString, _RegNodeType>& result, _RegEntryParam param) override;
    int contains(QString const& key) override;
    int commit(QString const& key) override;
    int rollback(QString const& key) override;

    /// Makes an empty value.
    int create(QString const& key) override;

    /// Deletes a value, and a directory with all values under it.
    int del(QString const& key) override;

    void changes(QMap<QString, _RegEntryChange>& changes) override;

private:
    typedef QMap<QString, QString> Values;

    bool isKnown(QString const& key) const;
    bool hasValueUnder(QString const& key) const;
    void list(QString const& key, QMap<QString, _RegNodeType>& result) const;
    void commitOne(QString const& key);

    // Sorted: all values under one key stand together.
    Values mValues;
    PendingChanges mPending;
};
