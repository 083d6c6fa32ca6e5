// SPDX-License-Identifier: MIT

#include "actions/IActionDescription.h"

#include "actions/ActionKit.h"
#include "actions/IConfigAction.h"
#include "actions/registry/EnvironmentFile.h"
#include "tree/IConfigEntry.h"

QStringList DescribedAction::keysToCommit(IConfigEntry const& entry)
{
    ActionDescription const description = describe(entry);
    QStringList keys;
    if (description.readsTargets)
        keys = targetKeys(entry).values();
    if (keys.isEmpty())
        keys = description.registryKeys;
    for (QString& key : keys)
        key = ActionKit::resolveUuid(entry.path(), key);
    return keys;
}

ActionDescription& DescribedAction::describeAs(char const* className)
{
    mDescription.className = className;
    return mDescription;
}

ActionDescription descriptionOf(IConfigAction const* action, IConfigEntry const& entry)
{
    IActionDescription const* const described = dynamic_cast<IActionDescription const*>(action);
    return described ? described->describe(entry) : ActionDescription();
}
