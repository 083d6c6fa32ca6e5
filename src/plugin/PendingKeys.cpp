// SPDX-License-Identifier: MIT

#include "plugin/PendingKeys.h"

#include "actions/ActionKit.h"
#include "actions/IActionDescription.h"
#include "actions/IConfigAction.h"
#include "common/RegistryVocabulary.h"
#include "common/UuidComponents.h"
#include "tree/IConfigEntry.h"
#include "tree/KeyPath.h"

#include <vantora/vantora.h>

using RegistryVocabulary::registryPlaceholder;
using RegistryVocabulary::viewPlaceholder;

namespace {

/// The key under `root` that was registered as `viewKey`, for the session of a registry key.
QString concreteKey(QString viewKey, QString const& root, QString const& registryKey)
{
    viewKey.replace(viewPlaceholder(), firstUuidComponent(registryKey));
    return root + viewKey.mid(KeyPath(root).basename().size());
}

/// The registry keys that the commit of `entry` writes.
QStringList keysToCommit(IConfigEntry const& entry)
{
    IConfigAction* const action = ActionKit::instance()->registeredCommitAction(entry);
    IActionDescription* const described = dynamic_cast<IActionDescription*>(action);
    return described ? described->keysToCommit(entry) : QStringList();
}

} // namespace

PendingKeys PendingKeys::sAsk()
{
    PendingKeys pending;
    Changes changes;
    if (ActionKit::instance()->vantoraBackend()->changes(changes) == 0)
        pending.mChanges = changes;
    return pending;
}

QMap<QString, _RegEntryChange> PendingKeys::atOrUnder(QString const& key, QString const& root) const
{
    Changes found;
    Changes::const_iterator change = mChanges.constBegin();
    for (; change != mChanges.constEnd(); ++change) {
        QStringList const viewKeys = ActionKit::instance()->viewKeysOf(
            replaceUuidComponents(change.key(), registryPlaceholder()));
        for (QString const& viewKey : viewKeys) {
            QString const concrete = concreteKey(viewKey, root, change.key());
            if (KeyPath(key).isRootOf(concrete))
                found.insert(concrete, change.value());
        }
    }
    return found;
}

bool PendingKeys::areBehind(IConfigEntry const& entry) const
{
    if (mChanges.isEmpty())
        return false;
    QStringList const keys = keysToCommit(entry);
    for (QString const& key : keys) {
        if (mChanges.contains(key))
            return true;
    }
    return false;
}
