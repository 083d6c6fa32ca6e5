// SPDX-License-Identifier: MIT

#include "actions/registry/AutostartActions.h"

#include "actions/registry/RegistryAccess.h"

#include <QVariant>

AutostartValueAction::AutostartValueAction(QString const& registryKey)
    : RegistryValueAction(registryKey)
{
    describeAs("AutostartValueAction");
}

bool AutostartValueAction::execute(IConfigEntry const& entry, QVariant& data)
{
    if (!RegistryValueAction::execute(entry, data))
        return false;
    data = boolWord(data.toString());
    return true;
}

AutostartSetValueAction::AutostartSetValueAction(QString const& registryKey)
    : RegistrySetValueAction(registryKey)
{
    describeAs("AutostartSetValueAction");
}

bool AutostartSetValueAction::execute(IConfigEntry const& entry, QVariant& data)
{
    data = data.toString() == QLatin1String("false") ? 0 : 1;
    return RegistrySetValueAction::execute(entry, data);
}
