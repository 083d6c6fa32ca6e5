// SPDX-License-Identifier: MIT

#include "registry/TemporaryKeys.h"

#include "registry/RegistryKey.h"
#include "registry/ValueType.h"

namespace {

QChar const kSeparator = QLatin1Char('/');

// The character behind the separator: a key followed by it sorts behind all that lies under the
// key.
QChar const kBehindSeparator = QLatin1Char('0');

QString root()
{
    return QLatin1String("tmp");
}

bool isValueKey(QString const& key)
{
    return key != root() && !key.endsWith(kSeparator) && !key.contains(QLatin1String("//"));
}

} // namespace

bool TemporaryKeys::sOwns(QString const& key)
{
    return isAtOrUnder(key, root());
}

int TemporaryKeys::set(QString const& key, QString const& value)
{
    if (!isValueKey(key))
        return kRefused;
    PendingChange const change = {PendingChange::SetValue, value, 0};
    mPending.put(key, change);
    return kDone;
}

int TemporaryKeys::get(QString const& key, QMap<QString, _RegNodeType>& result,
                       _RegEntryParam param)
{
    Values::const_iterator const value = mValues.constFind(key);
    bool const isValue = value != mValues.constEnd();
    if (param == REG_PARAM_VALUE && isValue)
        result.insert(value.value(), REG_NODE_VALUE);
    else if (param == REG_PARAM_TYPE && isValue)
        result.insert(typeWord(REG_TYPE_STRING), REG_NODE_VALUE);
    else if (param == REG_PARAM_REGEXP && isValue)
        result.insert(QString::fromLatin1(""), REG_NODE_VALUE);
    else if (param == REG_PARAM_VALUE && contains(key) == kDone)
        list(key, result);
    else
        return kRefused;
    return kDone;
}

void TemporaryKeys::list(QString const& key, QMap<QString, _RegNodeType>& result) const
{
    QString const prefix = key + kSeparator;
    Values::const_iterator value = mValues.lowerBound(prefix);
    while (value != mValues.constEnd() && value.key().startsWith(prefix)) {
        int const end = value.key().indexOf(kSeparator, prefix.size());
        if (end < 0) {
            result.insert(value.key(), REG_NODE_KEY);
            ++value;
            continue;
        }
        QString const directory = value.key().left(end);
        if (!mValues.contains(directory))
            result.insert(directory, REG_NODE_DIR);
        value = mValues.lowerBound(directory + kBehindSeparator);
    }
}

int TemporaryKeys::contains(QString const& key)
{
    bool const exists = key == root() || mValues.contains(key) || hasValueUnder(key);
    return exists ? kDone : kRefused;
}

bool TemporaryKeys::hasValueUnder(QString const& key) const
{
    QString const prefix = key + kSeparator;
    Values::const_iterator const first = mValues.lowerBound(prefix);
    return first != mValues.constEnd() && first.key().startsWith(prefix);
}

int TemporaryKeys::commit(QString const& key)
{
    if (!isKnown(key))
        return kRefused;
    QStringList const keys = mPending.keysAtOrUnder(key);
    for (QString const& each : keys)
        commitOne(each);
    return kDone;
}

bool TemporaryKeys::isKnown(QString const& key) const
{
    return key == root() || mValues.contains(key) || hasValueUnder(key)
        || !mPending.keysAtOrUnder(key).isEmpty();
}

void TemporaryKeys::commitOne(QString const& key)
{
    PendingChange const* const change = mPending.find(key);
    if (change->kind == PendingChange::SetValue)
        mValues.insert(key, change->value);
    else
        mValues.remove(key);
    mPending.drop(key);
}

int TemporaryKeys::rollback(QString const& key)
{
    if (!isKnown(key))
        return kRefused;
    mPending.dropAtOrUnder(key);
    return kDone;
}

int TemporaryKeys::create(QString const& key)
{
    PendingChange const* const pending = mPending.find(key);
    bool const isTaken = pending ? pending->kind == PendingChange::SetValue : mValues.contains(key);
    return isTaken ? kRefused : set(key, QString::fromLatin1(""));
}

int TemporaryKeys::del(QString const& key)
{
    if (key == root() || !isKnown(key))
        return kRefused;
    mPending.dropAtOrUnder(key);
    PendingChange const removal = {PendingChange::RemoveValue, QString(), 0};
    if (mValues.contains(key))
        mPending.put(key, removal);
    QString const prefix = key + kSeparator;
    Values::const_iterator value = mValues.lowerBound(prefix);
    for (; value != mValues.constEnd() && value.key().startsWith(prefix); ++value)
        mPending.put(value.key(), removal);
    return kDone;
}

void TemporaryKeys::changes(QMap<QString, _RegEntryChange>& changes)
{
    QStringList const keys = mPending.keys();
    for (QString const& key : keys) {
        if (mPending.find(key)->kind == PendingChange::RemoveValue)
            changes.insert(key, REG_CHANGE_DELETED);
        else
            changes.insert(key, mValues.contains(key) ? REG_CHANGE_MODIFIED : REG_CHANGE_CREATED);
    }
}
