// SPDX-License-Identifier: MIT

#include "plugin/ViewKeyMap.h"

#include "actions/ActionKit.h"
#include "actions/registry/AutostartActions.h"
#include "actions/registry/VexlinkCommitAction.h"
#include "display/DisplaySettingClass.h"
#include "wireless/WirelessSettingClass.h"

namespace {

enum RowKind {
    UuidDirectory, // the view's sessions are those of the registry directory
    RegistryKey,   // the kit's own actions on the registry key
    AutostartKey,  // an autostart pair of its own on the registry key
    VexlinkCommit, // the commit of a terminal session
    RegistryApply, // applied by the registry
    DisplayArea,   // served by the display setting class
    WirelessArea,  // served by the wireless setting class
};

struct ViewKeyRow
{
    RowKind kind;
    char const* viewKey;
    char const* registryKey;
};

// A session's "name" is the registry's "label", and its "address" the registry's, unless a comment
// says otherwise.
// clang-format off
ViewKeyRow const kViewKeys[] = {
    {RegistryKey,   "zelvo-view/auto_update/enable",
                    "root/auto-update/enableOnBootup"},

    // The browser is the registry's "iceweasel", its page the "address".
    {UuidDirectory, "zelvo-view/browser/sessions",
                    "root/ConnectionType/iceweasel/connections"},
    {RegistryKey,   "zelvo-view/browser/sessions/{uuid}/name",
                    "root/ConnectionType/iceweasel/connections/{UUID}/label"},
    {AutostartKey,  "zelvo-view/browser/sessions/{uuid}/autostart",
                    "root/ConnectionType/iceweasel/connections/{UUID}/autostart"},
    {RegistryKey,   "zelvo-view/browser/sessions/{uuid}/url",
                    "root/ConnectionType/iceweasel/connections/{UUID}/address"},

    // The five display keys have no registry key each: their meaning depends on the profile.
    {DisplayArea,   nullptr, nullptr},

    {UuidDirectory, "zelvo-view/ica/sessions",
                    "root/ConnectionType/ica/connections"},
    {RegistryKey,   "zelvo-view/ica/sessions/{uuid}/name",
                    "root/ConnectionType/ica/connections/{UUID}/label"},
    {AutostartKey,  "zelvo-view/ica/sessions/{uuid}/autostart",
                    "root/ConnectionType/ica/connections/{UUID}/autostart"},
    {RegistryKey,   "zelvo-view/ica/sessions/{uuid}/address",
                    "root/ConnectionType/ica/connections/{UUID}/address"},
    // The proxy is a branch of the view and two flat keys of the registry.
    {RegistryKey,   "zelvo-view/ica/sessions/{uuid}/proxy/address",
                    "root/ConnectionType/ica/connections/{UUID}/proxyAddress"},
    {RegistryKey,   "zelvo-view/ica/sessions/{uuid}/proxy/port",
                    "root/ConnectionType/ica/connections/{UUID}/proxyPort"},

    // RDP is the registry's "rdesktop".
    {UuidDirectory, "zelvo-view/rdp/sessions",
                    "root/ConnectionType/rdesktop/connections"},
    {RegistryKey,   "zelvo-view/rdp/sessions/{uuid}/name",
                    "root/ConnectionType/rdesktop/connections/{UUID}/label"},
    {AutostartKey,  "zelvo-view/rdp/sessions/{uuid}/autostart",
                    "root/ConnectionType/rdesktop/connections/{UUID}/autostart"},
    {RegistryKey,   "zelvo-view/rdp/sessions/{uuid}/address",
                    "root/ConnectionType/rdesktop/connections/{UUID}/address"},

    // Somebody who assists looks over the user's shoulder: the VNC server's shadowing.
    {RegistryKey,   "zelvo-view/remote_assistance/enable",
                    "root/vncserver/coreSettings/enableVncShadow"},

    // The other settings of a terminal session are left to scripts; its commit hands them all over.
    {UuidDirectory, "zelvo-view/vexlink/sessions",
                    "root/ConnectionType/vexlink/connections"},
    {RegistryKey,   "zelvo-view/vexlink/sessions/{uuid}/name",
                    "root/ConnectionType/vexlink/connections/{UUID}/label"},
    {AutostartKey,  "zelvo-view/vexlink/sessions/{uuid}/autostart",
                    "root/ConnectionType/vexlink/connections/{UUID}/autostart"},
    // In place of the commit that the directory's row above has registered.
    {VexlinkCommit, "zelvo-view/vexlink/sessions/{uuid}",
                    "root/ConnectionType/vexlink/connections/{UUID}"},

    {RegistryKey,   "zelvo-view/usb/enable",
                    "root/USB/root/mass-storage/allowed"},
    {RegistryKey,   "zelvo-view/usb/read_only",
                    "root/USB/root/mass-storage/read-only"},
    // For the area as a whole: its two keys take effect together.
    {RegistryApply, "zelvo-view/usb",
                    "root/USB/root/mass-storage"},

    // VMware is the registry's "view", its address the "server".
    {UuidDirectory, "zelvo-view/vmware/sessions",
                    "root/ConnectionType/view/connections"},
    {RegistryKey,   "zelvo-view/vmware/sessions/{uuid}/name",
                    "root/ConnectionType/view/connections/{UUID}/label"},
    {AutostartKey,  "zelvo-view/vmware/sessions/{uuid}/autostart",
                    "root/ConnectionType/view/connections/{UUID}/autostart"},
    {RegistryKey,   "zelvo-view/vmware/sessions/{uuid}/address",
                    "root/ConnectionType/view/connections/{UUID}/server"},

    // Kept in a connection file of NetworkManager, not in the registry.
    {WirelessArea,  nullptr, nullptr},

    // XenApp is the registry's "pnagent".
    {UuidDirectory, "zelvo-view/xenapp/sessions",
                    "root/ConnectionType/pnagent/connections"},
    {RegistryKey,   "zelvo-view/xenapp/sessions/{uuid}/name",
                    "root/ConnectionType/pnagent/connections/{UUID}/label"},
    {AutostartKey,  "zelvo-view/xenapp/sessions/{uuid}/autostart",
                    "root/ConnectionType/pnagent/connections/{UUID}/autostart"},
    {RegistryKey,   "zelvo-view/xenapp/sessions/{uuid}/address",
                    "root/ConnectionType/pnagent/connections/{UUID}/address"},
};
// clang-format on

void registerRow(ActionKit& kit, Vantora& backend, ViewKeyRow const& row)
{
    QString const viewKey = QLatin1String(row.viewKey);
    QString const registryKey = QLatin1String(row.registryKey);
    switch (row.kind) {
    case UuidDirectory:
        kit.setRegistryUuidDir(viewKey, registryKey);
        break;
    case RegistryKey:
        kit.matchRegistryKey(viewKey, registryKey, nullptr, nullptr);
        break;
    case AutostartKey:
        kit.matchRegistryKey(viewKey, registryKey, new AutostartValueAction(registryKey),
                             new AutostartSetValueAction(registryKey));
        break;
    case VexlinkCommit:
        kit.registerCommitAction(viewKey, new VexlinkCommitAction(registryKey));
        break;
    case RegistryApply:
        kit.registerApplyAction(viewKey, new RegistryApplyAction(registryKey));
        break;
    case DisplayArea:
        kit.registerSettingClass(new DisplaySettingClass(backend));
        break;
    case WirelessArea:
        kit.registerSettingClass(new WirelessSettingClass);
        break;
    }
}

} // namespace

void registerViewKeys(ActionKit& kit, Vantora& backend)
{
    for (ViewKeyRow const& row : kViewKeys)
        registerRow(kit, backend, row);
}
