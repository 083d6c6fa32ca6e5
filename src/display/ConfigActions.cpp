// SPDX-License-Identifier: MIT

#include "display/ConfigActions.h"

#include "common/RegistryVocabulary.h"
#include "common/Text.h"

#include <vantora/vantora.h>

#include <QLatin1String>
#include <QMap>
#include <QStringList>
#include <QUuid>

namespace {

QLatin1String const kDisplay("root/Display");
QLatin1String const kPrimaryProfile("root/Display/Configuration/primaryprofile");
QLatin1String const kProfiles("root/Display/Profiles");
QLatin1String const kLabel("/label");

// Of the profile that the view makes for itself.
QLatin1String const kOwnLabel("Zelvo");

} // namespace

ConfigActions::ConfigActions(Vantora& backend)
    : mBackend(backend)
    , mCurrentAction(ISettingClass::ACTION_IS_VISIBLE)
{
}

QString ConfigActions::primaryProfilePath()
{
    QString const labelInUse = label(kPrimaryProfile);
    QMap<QString, _RegNodeType> profiles;
    // What cannot be listed has no profile.
    static_cast<void>(mBackend.get(kProfiles, profiles, REG_PARAM_VALUE, emptyText()));

    QStringList const paths = profiles.keys();
    for (QString const& path : paths) {
        if (label(path + kLabel) == labelInUse)
            return path;
    }
    return QString();
}

QString ConfigActions::sProfilePathTemplate()
{
    return kProfiles + QLatin1Char('/') + RegistryVocabulary::registryPlaceholder();
}

bool ConfigActions::readPrimaryLabel(QString& label)
{
    return read(kPrimaryProfile, label);
}

QString ConfigActions::ensurePrimaryProfile()
{
    QString const path = primaryProfilePath();
    if (!path.isNull())
        return path;
    createPrimaryProfile();
    return primaryProfilePath();
}

bool ConfigActions::read(QString const& key, QString& out)
{
    return mBackend.get(key, out, REG_PARAM_VALUE, emptyText()) == 0;
}

bool ConfigActions::read(QString const& key, int& out)
{
    return mBackend.get(key, out, REG_PARAM_VALUE, emptyText()) == 0;
}

QString ConfigActions::label(QString const& key)
{
    QString text;
    return read(key, text) ? text : emptyText();
}

bool ConfigActions::write(QStringList const& keys, QStringList const& texts)
{
    for (int i = 0; i < keys.size(); ++i) {
        if (mBackend.set(keys.at(i), texts.at(i), REG_PARAM_VALUE) != 0)
            return false;
    }
    return true;
}

bool ConfigActions::commit(QStringList const& keys)
{
    bool isCommitted = true;
    for (QString const& key : keys)
        isCommitted = mBackend.commit(key) == 0 && isCommitted;
    return isCommitted;
}

void ConfigActions::createPrimaryProfile()
{
    QString const path = kProfiles + QLatin1Char('/') + QUuid::createUuid().toString();
    // Whether it worked shows when the profile is looked for again.
    static_cast<void>(mBackend.create(path, REG_TYPE_STRING));
    static_cast<void>(mBackend.set(path + kLabel, kOwnLabel, REG_PARAM_VALUE));
    static_cast<void>(mBackend.set(kPrimaryProfile, kOwnLabel, REG_PARAM_VALUE));
    static_cast<void>(mBackend.commit(kDisplay));
}
