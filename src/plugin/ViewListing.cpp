// SPDX-License-Identifier: MIT

#include "plugin/ViewListing.h"

#include "actions/ActionKit.h"
#include "actions/default/DefaultActions.h"
#include "common/Text.h"
#include "common/UuidComponents.h"
#include "tree/ConfigBranch.h"
#include "tree/KeyPath.h"

#include <vantora/vantora.h>

namespace {

QChar const kSeparator = QLatin1Char('/');

/// Tells which children of one branch are visible. A script that says so is one for all sessions
/// and does not learn for which of them it is run: it is asked once.
class ChildVisibility
{
public:
    bool isVisible(IConfigEntry const& child)
    {
        if (!isUuidComponent(child.name()))
            return child.isVisible();
        if (!mScriptWasAsked) {
            mSessionsAreVisible = child.isVisible();
            mScriptWasAsked = dynamic_cast<DefaultIsVisibleAction const*>(
                ActionKit::instance()->registeredIsVisibleAction(child));
        }
        return mSessionsAreVisible;
    }

private:
    bool mScriptWasAsked = false;
    bool mSessionsAreVisible = false;
};

bool isListed(Vantora& backend, QString const& key)
{
    QMap<QString, _RegNodeType> siblings;
    // A directory that cannot be listed lists nothing.
    static_cast<void>(
        backend.get(KeyPath(key).dirname().toString(), siblings, REG_PARAM_VALUE, emptyText()));
    return siblings.contains(key);
}

} // namespace

void listVisibleChildren(ConfigBranch const& branch, QString const& key,
                         QMap<QString, _RegNodeType>& result)
{
    ChildVisibility visibility;
    for (IConfigEntry const* const child : branch.children()) {
        if (!visibility.isVisible(*child))
            continue;
        bool const isBranch = dynamic_cast<ConfigBranch const*>(child);
        result.insert(key + kSeparator + child->name(), isBranch ? REG_NODE_DIR : REG_NODE_KEY);
    }
}

bool sessionsAreListed(Vantora& backend, QString const& key, QString const& root)
{
    int const top = key.startsWith(root) ? root.size() : 0;
    int end = key.size();
    while (end > 0 && end != top) {
        int const separator = key.lastIndexOf(kSeparator, end - 1);
        bool const isSession = isUuidComponent(key.mid(separator + 1, end - separator - 1));
        if (isSession && !isListed(backend, key.left(end)))
            return false;
        end = separator;
    }
    return true;
}
