// SPDX-License-Identifier: MIT

#include "wireless/WirelessSettingClass.h"

#include "wireless/WirelessActions.h"

#include <QLatin1String>

namespace {

QLatin1String const kBranch("zelvo-view/wireless");

} // namespace

WirelessSettingClass::WirelessSettingClass()
{
    mHandledKeys << QLatin1String("zelvo-view/wireless/enable")
                 << QLatin1String("zelvo-view/wireless/ssid")
                 << QLatin1String("zelvo-view/wireless/security")
                 << QLatin1String("zelvo-view/wireless/passphrase");
}

IConfigAction* WirelessSettingClass::isVisibleAction(QString const& key) const
{
    if (key != kBranch)
        return nullptr;
    return cached<SettingsVisibilityAction>(ACTION_IS_VISIBLE);
}

IConfigAction* WirelessSettingClass::valueAction(QString const& key) const
{
    if (!mHandledKeys.contains(key))
        return nullptr;
    return cached<ValueAction>(ACTION_VALUE);
}

IConfigAction* WirelessSettingClass::commitAction(QString const& key) const
{
    if (!mHandledKeys.contains(key))
        return nullptr;
    return cached<CommitAction>(ACTION_COMMIT);
}

template <class Action> IConfigAction* WirelessSettingClass::cached(Action_t operation) const
{
    IConfigAction*& action = mActions[operation];
    if (!action)
        action = new Action;
    return action;
}
