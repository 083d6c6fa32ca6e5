// SPDX-License-Identifier: MIT

#include "actions/registry/VexlinkCommitAction.h"

#include "actions/ActionKit.h"
#include "actions/registry/RegistryAccess.h"
#include "tree/ConfigKey.h"

#include <vantora/vantora.h>

#include <QMap>

namespace {

struct SettingVariable
{
    char const* prefix;
    char const* child;
};

SettingVariable const kSettingVariables[] = {
    {"VEXLINK_NAME=", "name"},           {"VEXLINK_EMULATION=", "emulation"},
    {"VEXLINK_TRANSPORT=", "transport"}, {"VEXLINK_LOCAL_PORT=", "local_port"},
    {"VEXLINK_ADDRESS=", "address"},     {"VEXLINK_PORT=", "port"},
};

char const* actionWord(_RegEntryChange change)
{
    switch (change) {
    case REG_CHANGE_MODIFIED:
        return "EDIT";
    case REG_CHANGE_CREATED:
        return "CREATE";
    case REG_CHANGE_DELETED:
        return "DELETE";
    case REG_CHANGE_NOTHING:
        break;
    }
    return "";
}

/// What is pending for a session; one that the backend does not mention counts as modified.
_RegEntryChange changeOf(QString const& sessionKey)
{
    QMap<QString, _RegEntryChange> changes;
    // A backend that cannot tell mentions no session.
    static_cast<void>(ActionKit::instance()->vantoraBackend()->changes(changes));
    return changes.value(sessionKey, REG_CHANGE_MODIFIED);
}

QString bufferedValue(IConfigEntry const& session, char const* childName)
{
    IConfigEntry const* const child = session.child(QLatin1String(childName));
    ConfigKey const* const key = dynamic_cast<ConfigKey const*>(child);
    return key ? key->bufferValue() : QString();
}

} // namespace

VexlinkCommitAction::VexlinkCommitAction(QString const& registryKey)
    : RegistryCommitAction(registryKey)
{
    describeAs("VexlinkCommitAction").readsEnvironmentFile = false;
}

QStringList VexlinkCommitAction::processEnvironment(IConfigEntry const& entry)
{
    // Not the environment that a registry key's commit has: this key stands for a whole session.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QStringList environment = DefaultCommitAction::processEnvironment(entry);
    QString const sessionKey = ActionKit::resolveUuid(entry.path(), registryKey());

    environment.append(QLatin1String("VEXLINK_ACTION=")
                       + QLatin1String(actionWord(changeOf(sessionKey))));
    for (SettingVariable const& variable : kSettingVariables)
        environment.append(QLatin1String(variable.prefix) + bufferedValue(entry, variable.child));

    QString ttsName;
    static_cast<void>(
        readRegistry(sessionKey + QLatin1String("/ttsName"), REG_PARAM_VALUE, ttsName));
    environment.append(QLatin1String("VEXLINK_TTSNAME=") + ttsName);
    return environment;
}
