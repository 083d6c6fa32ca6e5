// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/vantora.h>

#include <QHash>
#include <QMap>
#include <QMutex>
#include <QString>
#include <QStringList>

/// A backend in memory that takes any key, writes down every call, and fails where a test wants it
/// to. What is set, created or deleted is pending until its commit. May be called from any thread.
class TestBackend : public Vantora
{
public:
    /// For `fail`: not one call but all of them.
    enum { kEvery = 0 };

    TestBackend();
    ~TestBackend() override;

    using Vantora::get;

    int set(QString const& key, QString const& value, _RegEntryParam const& param) override;
    int get(QString const& key, QMap<QString, _RegNodeType>& result, _RegEntryParam const& param,
            QString const& extra) override;
    int contains(QString const& key) override;
    int commit(QString const& key) override;
    int apply(QString const& key, QString const& command) override;
    int clone(QString const& source, QString const& target) override;
    int rollback(QString const& key) override;
    int watch(QStringList const& keys, int id) override;
    int changes(QMap<QString, _RegEntryChange>& changes) override;
    int create(QString const& key, _RegEntryType const& type) override;
    int del(QString const& key) override;
    int importRegistry(QByteArray& data) override;
    int exportRegistry(QString const& key, QByteArray& data) override;

    /// A committed value.
    void addValue(QString const& key, QString const& value);

    /// A key without a value of its own: reading it answers its default.
    void addDefault(QString const& key, QString const& value);

    /// The type word of a key; a key without one fails to answer it.
    void addType(QString const& key, QString const& word);

    /// A directory and the names of its children: those that end in "/" are directories.
    void addDirectory(QString const& key, QStringList const& children);

    /// A pending change that nobody made.
    void addChange(QString const& key, _RegEntryChange change);

    /// Lets the `nth` call of `operation` from now on ("set", "commit", …) fail with code 1.
    void fail(QString const& operation, int nth = kEvery);

    /// Lets every call of `operation` on `key` fail.
    void failOn(QString const& operation, QString const& key);

    /// The calls in order: the operation, its key, and what else was passed, with blanks between:
    /// "set KEY VALUE", "get KEY", "get KEY type", "apply KEY COMMAND".
    QStringList calls() const;

    /// The same of one operation alone.
    QStringList calls(QString const& operation) const;

    void forgetCalls();

    /// The committed value of a key; null when it has none.
    QString value(QString const& key) const;

    /// What was set and not committed; null when there is none.
    QString pendingValue(QString const& key) const;

private:
    /// Writes the call down.
    ///
    /// @return whether it is to fail.
    bool record(QString const& operation, QString const& key, QString const& rest = QString());

    int answer(QMap<QString, QString> const& texts, QString const& key,
               QMap<QString, _RegNodeType>& result) const;

    // Guards all that follows.
    mutable QMutex mMutex;
    QMap<QString, QString> mValues;
    QMap<QString, QString> mDefaults;
    QMap<QString, QString> mTypes;
    QMap<QString, QMap<QString, _RegNodeType>> mDirectories;
    QMap<QString, QString> mPendingValues;
    QMap<QString, _RegEntryChange> mChanges;
    QStringList mCalls;
    QHash<QString, int> mCallsUntilFailure;
    QStringList mFailingCalls;
};
