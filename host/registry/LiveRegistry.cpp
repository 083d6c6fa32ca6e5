// SPDX-License-Identifier: MIT

#include "registry/LiveRegistry.h"

#include "registry/DefaultNode.h"
#include "registry/DefaultSettings.h"
#include "registry/LiveStore.h"
#include "registry/Place.h"
#include "registry/RegistryImport.h"
#include "registry/RegistryKey.h"
#include "registry/RegistryXmlWriter.h"
#include "registry/ValueType.h"

#include <utility>

namespace {

bool isCreation(PendingChange const* change)
{
    return change
        && (change->kind == PendingChange::CreateDirectory
            || change->kind == PendingChange::ReplaceDirectory);
}

void appendSteps(QString const& key, PendingChange const& change, LiveChanges& steps)
{
    LiveChange const create = {LiveChange::CreateDirectory, key, QString(), change.ordinal};
    LiveChange const remove = {LiveChange::RemoveDirectory, key, QString(), 0};
    LiveChange const setValue = {LiveChange::SetValue, key, change.value, 0};
    LiveChange const removeValue = {LiveChange::RemoveValue, key, QString(), 0};
    switch (change.kind) {
    case PendingChange::SetValue:
        steps << setValue;
        break;
    case PendingChange::RemoveValue:
        steps << removeValue;
        break;
    case PendingChange::CreateDirectory:
        steps << create;
        break;
    case PendingChange::ReplaceDirectory:
        steps << remove << create;
        break;
    case PendingChange::RemoveDirectory:
        steps << remove;
        break;
    }
}

_RegEntryChange changeKind(PendingChange::Kind kind)
{
    switch (kind) {
    case PendingChange::CreateDirectory:
        return REG_CHANGE_CREATED;
    case PendingChange::RemoveValue:
    case PendingChange::RemoveDirectory:
        return REG_CHANGE_DELETED;
    case PendingChange::SetValue:
    case PendingChange::ReplaceDirectory:
        break;
    }
    return REG_CHANGE_MODIFIED;
}

} // namespace

LiveRegistry::LiveRegistry(DefaultSettings const& defaults)
    : mDefaults(defaults)
{
}

LiveRegistry::~LiveRegistry()
{
}

bool LiveRegistry::open(QString const& databaseFile, QString& error)
{
    QScopedPointer<LiveStore> store(new LiveStore);
    LiveChanges contents;
    if (!store->open(databaseFile, contents, error))
        return false;
    for (LiveChange const& change : static_cast<LiveChanges const&>(contents)) {
        mLastOrdinal = qMax(mLastOrdinal, change.ordinal);
        if (find(change.key).declaration)
            mLive.apply(change);
    }
    mStore.swap(store);
    return true;
}

int LiveRegistry::set(QString const& key, QString const& value)
{
    Place const place = find(key);
    if (!isWritable(place) || !place.declaration->isValue() || !place.declaration->admits(value))
        return kRefused;
    PendingChange const change = {PendingChange::SetValue, value, 0};
    mPending.put(key, change);
    return kDone;
}

int LiveRegistry::get(QString const& key, QMap<QString, _RegNodeType>& result, _RegEntryParam param)
{
    Place const place = find(key);
    if (!place.declaration)
        return kRefused;
    if (param == REG_PARAM_VALUE)
        return getValue(key, place, result);
    return getParam(place, result, param);
}

int LiveRegistry::getParam(Place const& place, QMap<QString, _RegNodeType>& result,
                           _RegEntryParam param) const
{
    // What declares a key answers for a template and for a session that is still to be committed.
    if (!place.declaration->isValue() || !(place.isTemplate || isKnown(place)))
        return kRefused;
    if (param == REG_PARAM_TYPE)
        result.insert(typeWord(place.declaration->type()), REG_NODE_VALUE);
    else if (param == REG_PARAM_REGEXP)
        result.insert(place.declaration->regExp(), REG_NODE_VALUE);
    else
        return kRefused;
    return kDone;
}

int LiveRegistry::getValue(QString const& key, Place const& place,
                           QMap<QString, _RegNodeType>& result) const
{
    bool const isValue = place.declaration->isValue();
    if (!place.exists && !(place.isTemplate && isValue))
        return kRefused;
    if (!isValue)
        list(key, place, result);
    else if (place.live && place.live->hasValue())
        result.insert(place.live->value(), REG_NODE_VALUE);
    else
        result.insert(place.declaration->defaultValue(), REG_NODE_DEFAULT);
    return kDone;
}

int LiveRegistry::contains(QString const& key)
{
    return find(key).exists ? kDone : kRefused;
}

int LiveRegistry::commit(QString const& key)
{
    Place const place = find(key);
    if (!isKnown(place) || isBelowCreation(key, place))
        return kRefused;
    QStringList const keys = mPending.keysAtOrUnder(key);
    return write(stepsFor(keys), keys) ? kDone : kRefused;
}

bool LiveRegistry::isBelowCreation(QString const& key, Place const& place) const
{
    for (QString const& session : place.sessions) {
        if (session != key && isCreation(mPending.find(session)))
            return true;
    }
    return false;
}

LiveChanges LiveRegistry::stepsFor(QStringList const& keys) const
{
    LiveChanges steps;
    for (QString const& key : keys)
        appendSteps(key, *mPending.find(key), steps);
    return steps;
}

bool LiveRegistry::write(LiveChanges const& steps, QStringList const& settledKeys)
{
    if (!steps.isEmpty() && !store(steps))
        return false;
    for (LiveChange const& step : steps)
        apply(step);
    for (QString const& key : settledKeys)
        mPending.drop(key);
    return true;
}

bool LiveRegistry::store(LiveChanges const& steps)
{
    if (!mStore)
        return false;
    if (mOpenCommits == 0)
        return mStore->write(steps);
    mUnwritten += steps;
    return true;
}

void LiveRegistry::beginCommits()
{
    if (mOpenCommits++ == 0)
        mPendingBefore = mPending;
}

bool LiveRegistry::endCommits()
{
    if (--mOpenCommits > 0)
        return true;
    LiveChanges steps;
    steps.swap(mUnwritten);
    // Taken out: a copy that is kept would make each later change copy all of them.
    PendingChanges before;
    std::swap(before, mPendingBefore);
    QList<LiveChanges> undo;
    undo.swap(mUndo);
    if (steps.isEmpty() || mStore->write(steps))
        return true;
    mPending.restore(before);
    for (; !undo.isEmpty(); undo.removeLast()) {
        for (LiveChange const& step : static_cast<LiveChanges const&>(undo.last()))
            mLive.apply(step);
    }
    return false;
}

void LiveRegistry::apply(LiveChange const& step)
{
    if (mOpenCommits > 0) {
        LiveChange const removal = {LiveChange::RemoveDirectory, step.key, QString(), 0};
        mUndo.append(LiveChanges() << removal << mLive.stored(step.key));
    }
    mLive.apply(step);
}

int LiveRegistry::rollback(QString const& key)
{
    if (!isKnown(find(key)))
        return kRefused;
    mPending.dropAtOrUnder(key);
    return kDone;
}

int LiveRegistry::create(QString const& key)
{
    Place const place = find(key);
    if (!place.declaration || place.isTemplate || !place.isSession(key))
        return kRefused;
    QStringList parents = place.sessions;
    parents.removeLast();
    if (!willExist(parents) || willExist(place.sessions))
        return kRefused;
    // What does not exist yet but has a pending change is pending to be deleted.
    PendingChange::Kind const kind
        = mPending.find(key) ? PendingChange::ReplaceDirectory : PendingChange::CreateDirectory;
    PendingChange const change = {kind, QString(), ++mLastOrdinal};
    mPending.put(key, change);
    return kDone;
}

int LiveRegistry::del(QString const& key)
{
    Place const place = find(key);
    if (!isWritable(place))
        return kRefused;
    if (place.declaration->isValue())
        return delValue(key, place);
    return place.isSession(key) ? delSession(key) : kRefused;
}

int LiveRegistry::delValue(QString const& key, Place const& place)
{
    PendingChange const removal = {PendingChange::RemoveValue, QString(), 0};
    if (hasOwnValue(place))
        mPending.put(key, removal);
    else
        mPending.drop(key);
    return kDone;
}

int LiveRegistry::delSession(QString const& key)
{
    PendingChange const* const pending = mPending.find(key);
    bool const isNew = pending && pending->kind == PendingChange::CreateDirectory;
    PendingChange const removal = {PendingChange::RemoveDirectory, QString(), 0};
    mPending.dropAtOrUnder(key);
    if (!isNew)
        mPending.put(key, removal);
    return kDone;
}

void LiveRegistry::changes(QMap<QString, _RegEntryChange>& changes)
{
    QStringList const keys = mPending.keys();
    for (QString const& key : keys)
        changes.insert(key, changeKind(mPending.find(key)->kind));
}

int LiveRegistry::exportXml(QString const& key, QStringList const& foreign, QByteArray& data)
{
    if (!find(key).exists)
        return kRefused;
    data = RegistryXmlWriter(mDefaults.top(), mLive.top(), foreign).write(key);
    return kDone;
}

int LiveRegistry::importXml(QByteArray const& data, QStringList const& foreign)
{
    RegistryImport import(mDefaults.top(), mLive.top(), foreign, mLastOrdinal);
    QString reason;
    if (!readRegistryXml(data, import, reason)) {
        qWarning("import refused: %s", qPrintable(reason));
        return kRefused;
    }
    if (!write(import.steps(), import.listedKeys()))
        return kRefused;
    mLastOrdinal = import.lastOrdinal();
    return kDone;
}

Place LiveRegistry::find(QString const& key) const
{
    return findPlace(mDefaults.top(), mLive.top(), key);
}

bool LiveRegistry::isLiveSession(QString const& key) const
{
    LiveNode const* const node = findNode(mLive.top(), key);
    return node && node->isSession();
}

// Whether all of the directories exist once everything pending is committed.
bool LiveRegistry::willExist(QStringList const& sessions) const
{
    bool isNew = false;
    for (QString const& session : sessions) {
        PendingChange const* const change = mPending.find(session);
        if (isCreation(change))
            isNew = true;
        else if (change || isNew || !isLiveSession(session))
            return false;
    }
    return true;
}

bool LiveRegistry::isKnown(Place const& place) const
{
    return place.exists || isWritable(place);
}

bool LiveRegistry::isWritable(Place const& place) const
{
    return place.declaration && !place.isTemplate && willExist(place.sessions);
}

// True for a live value whose directories stay as they are.
bool LiveRegistry::hasOwnValue(Place const& place) const
{
    for (QString const& session : place.sessions) {
        if (mPending.find(session))
            return false;
    }
    return place.live && place.live->hasValue();
}

void LiveRegistry::list(QString const& key, Place const& place,
                        QMap<QString, _RegNodeType>& result) const
{
    QList<DefaultNode*> const children = place.declaration->children();
    for (DefaultNode const* child : children) {
        if (!isPlaceholder(child->name()))
            result.insert(childKey(key, child->name()),
                          child->isValue() ? REG_NODE_KEY : REG_NODE_DIR);
    }
    if (!place.live)
        return;
    QStringList const sessions = place.live->sessions();
    for (QString const& session : sessions)
        result.insert(childKey(key, session), REG_NODE_DIR);
}
