// SPDX-License-Identifier: MIT

#include "support/TestBackend.h"

#include "tree/KeyPath.h"

#include <QMutexLocker>

namespace {

int const kDone = 0;
int const kFailed = 1;

/// The keys of `map` at or under `root`.
template <typename T> QStringList keysUnder(QMap<QString, T> const& map, QString const& root)
{
    QStringList found;
    QStringList const keys = map.keys();
    for (QString const& key : keys) {
        if (KeyPath(root).isRootOf(key))
            found.append(key);
    }
    return found;
}

template <typename T> void removeUnder(QMap<QString, T>& map, QString const& root)
{
    QStringList const keys = keysUnder(map, root);
    for (QString const& key : keys)
        map.remove(key);
}

} // namespace

TestBackend::TestBackend()
{
}

TestBackend::~TestBackend()
{
}

int TestBackend::set(QString const& key, QString const& value, _RegEntryParam const&)
{
    QMutexLocker const locker(&mMutex);
    if (record("set", key, value))
        return kFailed;
    mPendingValues.insert(key, value);
    if (!mChanges.contains(key))
        mChanges.insert(key, REG_CHANGE_MODIFIED);
    return kDone;
}

int TestBackend::get(QString const& key, QMap<QString, _RegNodeType>& result,
                     _RegEntryParam const& param, QString const&)
{
    QMutexLocker const locker(&mMutex);
    QString const words[] = {QString(), "type", "regexp"};
    if (record("get", key, words[param]))
        return kFailed;
    if (param != REG_PARAM_VALUE)
        return param == REG_PARAM_TYPE ? answer(mTypes, key, result) : kFailed;
    if (!mDirectories.contains(key))
        return answer(mValues, key, result);
    QMap<QString, _RegNodeType> const& children = mDirectories[key];
    QStringList const names = children.keys();
    for (QString const& name : names)
        result.insert(name, children.value(name));
    return kDone;
}

int TestBackend::contains(QString const& key)
{
    QMutexLocker const locker(&mMutex);
    if (record("contains", key))
        return kFailed;
    return mValues.contains(key) || mDirectories.contains(key) ? kDone : kFailed;
}

int TestBackend::commit(QString const& key)
{
    QMutexLocker const locker(&mMutex);
    if (record("commit", key))
        return kFailed;
    QStringList const pending = keysUnder(mPendingValues, key);
    for (QString const& pendingKey : pending)
        mValues.insert(pendingKey, mPendingValues.take(pendingKey));
    removeUnder(mChanges, key);
    return kDone;
}

int TestBackend::apply(QString const& key, QString const& command)
{
    QMutexLocker const locker(&mMutex);
    return record("apply", key, command) ? kFailed : kDone;
}

int TestBackend::clone(QString const& source, QString const& target)
{
    QMutexLocker const locker(&mMutex);
    return record("clone", source, target) ? kFailed : kDone;
}

int TestBackend::rollback(QString const& key)
{
    QMutexLocker const locker(&mMutex);
    if (record("rollback", key))
        return kFailed;
    removeUnder(mPendingValues, key);
    removeUnder(mChanges, key);
    return kDone;
}

int TestBackend::watch(QStringList const& keys, int)
{
    QMutexLocker const locker(&mMutex);
    return record("watch", keys.join(" ")) ? kFailed : kDone;
}

int TestBackend::changes(QMap<QString, _RegEntryChange>& changes)
{
    QMutexLocker const locker(&mMutex);
    if (record("changes", QString()))
        return kFailed;
    QStringList const keys = mChanges.keys();
    for (QString const& key : keys)
        changes.insert(key, mChanges.value(key));
    return kDone;
}

int TestBackend::create(QString const& key, _RegEntryType const&)
{
    QMutexLocker const locker(&mMutex);
    if (record("create", key))
        return kFailed;
    mChanges.insert(key, REG_CHANGE_CREATED);
    return kDone;
}

int TestBackend::del(QString const& key)
{
    QMutexLocker const locker(&mMutex);
    if (record("del", key))
        return kFailed;
    mChanges.insert(key, REG_CHANGE_DELETED);
    return kDone;
}

int TestBackend::importRegistry(QByteArray&)
{
    QMutexLocker const locker(&mMutex);
    return record("importRegistry", QString()) ? kFailed : kDone;
}

int TestBackend::exportRegistry(QString const& key, QByteArray&)
{
    QMutexLocker const locker(&mMutex);
    return record("exportRegistry", key) ? kFailed : kDone;
}

void TestBackend::addValue(QString const& key, QString const& value)
{
    QMutexLocker const locker(&mMutex);
    mValues.insert(key, value);
}

void TestBackend::addDefault(QString const& key, QString const& value)
{
    QMutexLocker const locker(&mMutex);
    mDefaults.insert(key, value);
}

void TestBackend::addType(QString const& key, QString const& word)
{
    QMutexLocker const locker(&mMutex);
    mTypes.insert(key, word);
}

void TestBackend::addDirectory(QString const& key, QStringList const& children)
{
    QMutexLocker const locker(&mMutex);
    QMap<QString, _RegNodeType>& nodes = mDirectories[key];
    for (QString const& child : children) {
        bool const isDirectory = child.endsWith("/");
        QString const name = isDirectory ? child.left(child.size() - 1) : child;
        nodes.insert(key + "/" + name, isDirectory ? REG_NODE_DIR : REG_NODE_KEY);
    }
}

void TestBackend::addChange(QString const& key, _RegEntryChange change)
{
    QMutexLocker const locker(&mMutex);
    mChanges.insert(key, change);
}

void TestBackend::fail(QString const& operation, int nth)
{
    QMutexLocker const locker(&mMutex);
    mCallsUntilFailure.insert(operation, nth);
}

void TestBackend::failOn(QString const& operation, QString const& key)
{
    QMutexLocker const locker(&mMutex);
    mFailingCalls.append(operation + " " + key);
}

QStringList TestBackend::calls() const
{
    QMutexLocker const locker(&mMutex);
    return mCalls;
}

QStringList TestBackend::calls(QString const& operation) const
{
    QStringList found;
    QStringList const all = calls();
    for (QString const& call : all) {
        if (call.section(' ', 0, 0) == operation)
            found.append(call);
    }
    return found;
}

void TestBackend::forgetCalls()
{
    QMutexLocker const locker(&mMutex);
    mCalls.clear();
}

QString TestBackend::value(QString const& key) const
{
    QMutexLocker const locker(&mMutex);
    return mValues.value(key);
}

QString TestBackend::pendingValue(QString const& key) const
{
    QMutexLocker const locker(&mMutex);
    return mPendingValues.value(key);
}

bool TestBackend::record(QString const& operation, QString const& key, QString const& rest)
{
    QString call = operation;
    if (!key.isNull())
        call += " " + key;
    bool const isFailingKey = mFailingCalls.contains(call);
    if (!rest.isNull())
        call += " " + rest;
    mCalls.append(call);
    if (isFailingKey)
        return true;
    if (!mCallsUntilFailure.contains(operation))
        return false;

    int& remaining = mCallsUntilFailure[operation];
    if (remaining == kEvery)
        return true;
    if (--remaining > 0)
        return false;
    mCallsUntilFailure.remove(operation);
    return true;
}

int TestBackend::answer(QMap<QString, QString> const& texts, QString const& key,
                        QMap<QString, _RegNodeType>& result) const
{
    if (texts.contains(key)) {
        result.insert(texts.value(key), REG_NODE_VALUE);
        return kDone;
    }
    if (&texts != &mValues || !mDefaults.contains(key))
        return kFailed;
    result.insert(mDefaults.value(key), REG_NODE_DEFAULT);
    return kDone;
}
