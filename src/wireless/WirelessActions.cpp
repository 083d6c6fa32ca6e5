// SPDX-License-Identifier: MIT

#include "wireless/WirelessActions.h"

#include "tree/IConfigEntry.h"
#include "wireless/NMConfFile.h"
#include "wireless/WirelessSystem.h"

#include <QDir>
#include <QFile>
#include <QLatin1String>
#include <QVariant>

namespace {

QLatin1String const kConnectionsDirectory("/etc/NetworkManager/system-connections");
// Made by the system while the wireless device is switched off and so cannot be seen.
QLatin1String const kDisabledMarker("/tmp/.wireless-disabled");

QLatin1String const kEnable("enable");
QLatin1String const kSsid("ssid");
QLatin1String const kSecurity("security");
QLatin1String const kPassphrase("passphrase");

BackEnd const kWireless = {"wireless", "NetworkManager: its devices, and a connection file",
                           "NetworkManager and its connection file"};

void describeWireless(ActionDescription& description, QString const& file)
{
    description.backEnd = &kWireless;
    description.files.append(file);
}

NMConfFile* newConnection()
{
    return wireless_defaultNmConfig(QDir(kConnectionsDirectory));
}

} // namespace

ValueAction::ValueAction()
    : RegistryValueAction(QString())
{
    describeWireless(describeAs("ValueAction"), kConnectionsDirectory);
}

ValueAction::~ValueAction()
{
}

bool ValueAction::execute(IConfigEntry const& entry, QVariant& data)
{
    if (RegistryValueAction::execute(entry, data))
        return true;

    mConnection.reset(newConnection());
    QString const setting = entry.name();
    if (setting == kEnable)
        data = wireless_isEnabled();
    else if (setting == kSsid)
        data = mConnection->ssid();
    else if (setting == kSecurity)
        data = mConnection->security();
    else if (setting == kPassphrase)
        data = mConnection->passphrase();
    else
        return false;
    return true;
}

CommitAction::CommitAction()
    : RegistryCommitAction(QString())
{
    describeWireless(describeAs("CommitAction"), kConnectionsDirectory);
}

CommitAction::~CommitAction()
{
}

bool CommitAction::execute(IConfigEntry const& entry, QVariant& data)
{
    if (RegistryCommitAction::execute(entry, data))
        return true;

    mConnection.reset(newConnection());
    return write(entry.name(), data.toString());
}

/// @param value  null: nothing is written.
bool CommitAction::write(QString const& setting, QString const& value)
{
    if (setting == kSsid)
        mConnection->setSsid(value);
    else if (setting == kSecurity)
        mConnection->setSecurity(value);
    else if (setting == kPassphrase && NMConfFile::sReadsBack(value))
        mConnection->setPassphrase(value);
    else
        return false;

    // A key that was not set since its last commit: what the file holds is to stay.
    if (!value.isNull())
        mConnection->sync();
    return true;
}

ActionDescription CommitAction::describe(IConfigEntry const& entry) const
{
    ActionDescription description = RegistryCommitAction::describe(entry);
    description.takesWaitingValue = entry.name() != kEnable;
    if (!description.takesWaitingValue) {
        description.backEnd = nullptr;
        description.files.clear();
    }
    return description;
}

SettingsVisibilityAction::SettingsVisibilityAction()
{
    describeWireless(describeAs("SettingsVisibilityAction"), kDisabledMarker);
}

bool SettingsVisibilityAction::execute(IConfigEntry const& entry, QVariant& data)
{
    if (DefaultIsVisibleAction::execute(entry, data))
        return true;

    data = !wireless_firstHalDevice().isNull() || QFile::exists(kDisabledMarker);
    return true;
}
