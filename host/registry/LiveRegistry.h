// SPDX-License-Identifier: MIT

#pragma once

#include "registry/KeySpace.h"
#include "registry/LiveChange.h"
#include "registry/LiveTree.h"
#include "registry/PendingChanges.h"

#include <QByteArray>
#include <QScopedPointer>
#include <QStringList>

class DefaultSettings;
class LiveStore;
struct Place;

/// The registry proper: the keys that the default settings declare, with the live values over them.
///
/// A session directory is a child named by a UUID of a directory that declares a template. It is
/// created and deleted; values are set, and deleted back to their default. A key with a literal
/// placeholder is refused but for reading a type, a regular expression or a default.
class LiveRegistry : public KeySpace
{
public:
    /// @param defaults  must outlive the registry.
    explicit LiveRegistry(DefaultSettings const& defaults);
    ~LiveRegistry() override;

    /// Opens the database; until then nothing can be committed. See `LiveStore::open`. What it
    /// holds for keys that are not declared stays there, out of sight.
    bool open(QString const& databaseFile, QString& error);

    /// Refused for an unknown key, a directory, and a value that its declaration does not admit.
    int set(QString const& key, QString const& value) override;
    int get(QString const& key, QMap<QString, _RegNodeType>& result, _RegEntryParam param) override;
    int contains(QString const& key) override;

    /// Writes what is pending at or under `key` in one transaction. 0 with nothing pending for a
    /// known key. Refused below a directory whose creation is pending: the key is written with it.
    int commit(QString const& key) override;
    int rollback(QString const& key) override;

    // What is committed between the two can be read at once, and is written in one transaction at
    // the end. They nest; the outermost pair counts.
    void beginCommits();

    /// @return false: it could not be written; nothing of it is committed, and all of it pending.
    bool endCommits();

    /// Makes a session directory; refused for one that exists and for anything else. One that is
    /// pending to be deleted is replaced: its values are at their defaults again.
    int create(QString const& key) override;

    /// Deletes a session directory, or lets a value fall back to its default; refused for other
    /// directories. What is pending under a deleted directory is dropped.
    int del(QString const& key) override;

    void changes(QMap<QString, _RegEntryChange>& changes) override;

    // Both leave out and refuse the keys at or under the `foreign` roots, which others serve.

    /// Writes `key` and all under it to `data`, in place of what it held.
    int exportXml(QString const& key, QStringList const& foreign, QByteArray& data);

    /// Takes over a whole document or, on 1, nothing of it. Values and sessions that it lists are
    /// then as it says, whatever was pending for them; a listed key without a value is at its
    /// default. Others stay.
    int importXml(QByteArray const& data, QStringList const& foreign);

private:
    Q_DISABLE_COPY(LiveRegistry)

    Place find(QString const& key) const;
    bool isLiveSession(QString const& key) const;
    bool willExist(QStringList const& sessions) const;
    bool isKnown(Place const& place) const;
    bool isWritable(Place const& place) const;
    bool hasOwnValue(Place const& place) const;
    int getParam(Place const& place, QMap<QString, _RegNodeType>& result,
                 _RegEntryParam param) const;
    int getValue(QString const& key, Place const& place, QMap<QString, _RegNodeType>& result) const;
    void list(QString const& key, Place const& place, QMap<QString, _RegNodeType>& result) const;
    int delValue(QString const& key, Place const& place);
    int delSession(QString const& key);
    bool isBelowCreation(QString const& key, Place const& place) const;
    LiveChanges stepsFor(QStringList const& keys) const;
    bool store(LiveChanges const& steps);
    void apply(LiveChange const& step);
    bool write(LiveChanges const& steps, QStringList const& settledKeys);

    DefaultSettings const& mDefaults;
    LiveTree mLive;
    PendingChanges mPending;
    QScopedPointer<LiveStore> mStore;
    // Of the directories created so far, pending ones included.
    qint64 mLastOrdinal = 0;

    int mOpenCommits = 0;
    LiveChanges mUnwritten;
    // What takes the unwritten steps back, by step.
    QList<LiveChanges> mUndo;
    PendingChanges mPendingBefore;
};
