// SPDX-License-Identifier: MIT

#include "registry/RegistryImport.h"

#include "registry/DefaultNode.h"
#include "registry/LiveTree.h"
#include "registry/Place.h"
#include "registry/RegistryKey.h"

RegistryImport::RegistryImport(DefaultNode const& declarations, LiveNode const& live,
                               QStringList const& foreign, qint64 lastOrdinal)
    : mDeclarations(declarations)
    , mLive(live)
    , mForeign(foreign)
    , mLastOrdinal(lastOrdinal)
{
}

bool RegistryImport::enterDirectory(QString const& name, QString& error)
{
    QString const key = keyFor(name);
    Place place;
    if (!findPlaceFor(key, name, place, error))
        return false;
    if (place.declaration->isValue())
        return refuse(error, "\"%1\" is a value", key);
    // The directories around it are open, so they exist by now.
    if (place.isSession(key) && !place.exists)
        createSession(key);
    mDirectories.append(key);
    mListedKeys.append(key);
    return true;
}

bool RegistryImport::addKey(RegistryXmlKey const& key, QString& error)
{
    QString const fullKey = keyFor(key.name);
    Place place;
    if (!findPlaceFor(fullKey, key.name, place, error))
        return false;
    if (!place.declaration->isValue())
        return refuse(error, "\"%1\" is a directory", fullKey);
    if (!key.value.isNull() && !place.declaration->admits(key.value))
        return refuse(error, "\"%1\" does not admit its value", fullKey);
    LiveChange::Kind const kind
        = key.value.isNull() ? LiveChange::RemoveValue : LiveChange::SetValue;
    LiveChange const step = {kind, fullKey, key.value, 0};
    mSteps.append(step);
    mListedKeys.append(fullKey);
    return true;
}

QString RegistryImport::keyFor(QString const& name) const
{
    return mDirectories.isEmpty() ? name : childKey(mDirectories.last(), name);
}

bool RegistryImport::findPlaceFor(QString const& key, QString const& name, Place& place,
                                  QString& error) const
{
    place = findPlace(mDeclarations, mLive, key);
    bool const isKnown = place.declaration && !place.isTemplate && !isAtOrUnderOneOf(key, mForeign);
    if (!isKnown || name.contains(QLatin1Char('/')))
        return refuse(error, "\"%1\" is unknown", key);
    return true;
}

void RegistryImport::createSession(QString const& key)
{
    if (mCreated.contains(key))
        return;
    mCreated.insert(key);
    LiveChange const step = {LiveChange::CreateDirectory, key, QString(), ++mLastOrdinal};
    mSteps.append(step);
}
