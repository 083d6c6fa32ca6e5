// SPDX-License-Identifier: MIT

#include "tree/ConfigTree.h"

#include "actions/ActionKit.h"
#include "common/RegistryVocabulary.h"
#include "common/Text.h"
#include "common/UuidComponents.h"
#include "tree/ConfigKey.h"

#include <vantora/registry.h>
#include <vantora/vantora.h>

#include <QSet>

using RegistryVocabulary::viewPlaceholder;

namespace {

/// Asks the default settings for a key, in its generalised form: they know no sessions.
bool queryGeneralised(Reg::Registry* registry, QString const& path, Reg::NodeSet& nodes)
{
    return registry && registry->query(generalisedPath(path), nodes, emptyText()) == 0;
}

/// Makes the key of a value in `branch`. What an old key of that name has buffered is carried over:
/// a value that was set stays pending until its commit, whatever is looked up in between.
void makeKey(ConfigBranch& branch, Reg::Entry const& value, QString const& name)
{
    ConfigKey const* const former = dynamic_cast<ConfigKey const*>(branch.child(name));
    QString const buffered = former ? former->bufferValue() : QString();
    ConfigKey* const key = new ConfigKey(name, value.value(), &branch);
    key->setBufferValue(buffered);
}

ConfigBranch& makeBranches(ConfigBranch& top, QStringList const& names)
{
    ConfigBranch* branch = &top;
    for (QString const& name : names)
        branch = branch->branch(name);
    return *branch;
}

void addClonesOfChildren(ConfigBranch const& source, ConfigBranch& target)
{
    for (IConfigEntry* const child : source.children())
        target.addChild(child->clone());
}

void removeChild(ConfigBranch& branch, IConfigEntry* child)
{
    if (child && branch.detachChild(*child))
        delete child;
}

/// Gives the placeholder the UUID that was asked for. A session that the branch has already keeps
/// what it holds and gets the rest.
void becomeSession(ConfigBranch& branch, ConfigBranch& placeholder, QString const& uuid)
{
    IConfigEntry* const session = branch.child(uuid);
    if (!session) {
        placeholder.setName(uuid);
        return;
    }
    if (ConfigBranch* const sessionBranch = dynamic_cast<ConfigBranch*>(session))
        ConfigTree::completeTree(placeholder, *sessionBranch);
    removeChild(branch, &placeholder);
}

/// Adds a copy of the placeholder for each session of the registry directory that `branch` lacks.
bool addSessions(ConfigBranch& branch, ConfigBranch const& placeholder, QString const& registryDir)
{
    QMap<QString, _RegNodeType> listing;
    Vantora* const backend = ActionKit::instance()->vantoraBackend();
    if (backend->get(registryDir, listing, REG_PARAM_VALUE, emptyText()) != 0)
        return false;

    QMap<QString, _RegNodeType>::const_iterator node = listing.constBegin();
    for (; node != listing.constEnd(); ++node) {
        QString const uuid = KeyPath(node.key()).basename();
        if (node.value() == REG_NODE_DIR && !branch.child(uuid))
            addClonesOfChildren(placeholder, *new ConfigBranch(uuid, &branch));
    }
    return true;
}

/// Replaces the placeholder by the sessions of the registry and by what is registered as the
/// template of `branch`.
bool becomeAllSessions(ConfigBranch& branch, ConfigBranch const& placeholder)
{
    ActionKit const* const kit = ActionKit::instance();
    QString const registryDir = kit->getRegistryUuidDir(placeholder.path());
    if (!registryDir.isEmpty() && !addSessions(branch, placeholder, registryDir))
        return false;
    if (ConfigBranch* const registered = kit->registeredConfigBranch(branch.path())) {
        registered->validateDescendants();
        addClonesOfChildren(*registered, branch);
    }
    // By name: a template that has a placeholder itself has replaced this one.
    removeChild(branch, branch.child(viewPlaceholder()));
    return true;
}

/// Appends those of `keys` that the branch `path` holds or is.
void appendHeld(ConfigBranch const& branch, QString const& path, QSet<QString> const& keys,
                QStringList& ordered)
{
    for (IConfigEntry const* const child : branch.children())
        appendHeld(static_cast<ConfigBranch const&>(*child),
                   path + QLatin1Char('/') + child->name(), keys, ordered);
    if (keys.contains(path))
        ordered.append(path);
}

} // namespace

ConfigTree::ConfigTree(KeyPath const& root)
    : ConfigBranch(root.basename(), nullptr)
    , mRoot(root)
{
}

IConfigEntry* ConfigTree::entry(QString const& key) const
{
    if (!mRoot.isRootOf(key))
        return nullptr;
    IConfigEntry* entry = const_cast<ConfigTree*>(this);
    QStringList const names = namesBelowRoot(key);
    for (QString const& name : names) {
        entry = entry->child(name);
        if (!entry)
            return nullptr;
    }
    return entry;
}

IConfigEntry* ConfigTree::handlesKey(QString const& key, Reg::Registry* registry)
{
    Reg::NodeSet nodes;
    if (!registry || !mRoot.isRootOf(key) || registry->query(key, nodes, emptyText()) != 0)
        return nullptr;
    IConfigEntry* const entry = constructEntries(key, nodes);
    return entry && entry->isVisible() ? entry : nullptr;
}

IConfigEntry* ConfigTree::constructEntries(QString const& key, Reg::NodeSet const& nodes)
{
    QList<Reg::Node*> const list = nodes.list();
    for (Reg::Node const* const node : list) {
        QStringList names = namesBelowRoot(node->absoluteName());
        if (names.isEmpty())
            continue;
        QString const name = names.takeLast();
        ConfigBranch& directory = makeBranches(*this, names);
        if (Reg::Entry const* const value = dynamic_cast<Reg::Entry const*>(node))
            makeKey(directory, *value, name);
        else
            directory.branch(name);
    }
    return entry(key);
}

void ConfigTree::populateEntryWithAllDescendants(ConfigBranch& branch, Reg::Registry* registry,
                                                 QString const& path)
{
    Reg::NodeSet nodes;
    if (!queryGeneralised(registry, path, nodes))
        return;
    QList<Reg::Node*> const list = nodes.list();
    for (Reg::Node const* const node : list) {
        if (Reg::Entry const* const value = dynamic_cast<Reg::Entry const*>(node))
            makeKey(branch, *value, node->name());
        else
            // A set holds no null node. NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage)
            populateEntryWithAllDescendants(*branch.branch(node->name()), registry,
                                            node->absoluteName());
    }
}

void ConfigTree::sortLikeDefaultSettings(ConfigBranch& branch, Reg::Registry* registry,
                                         QString const& path)
{
    Reg::NodeSet nodes;
    if (!queryGeneralised(registry, path, nodes))
        return;
    QList<Reg::Node*> const list = nodes.list();
    for (Reg::Node const* const node : list) {
        IConfigEntry* const child = branch.child(node->name());
        if (child && branch.detachChild(*child))
            branch.addChild(child);
    }

    for (IConfigEntry* const child : branch.children()) {
        if (ConfigBranch* const childBranch = dynamic_cast<ConfigBranch*>(child))
            sortLikeDefaultSettings(*childBranch, registry,
                                    path + QLatin1Char('/') + child->name());
    }
}

QStringList ConfigTree::sInOrder(QStringList const& keys, KeyPath const& root,
                                 Reg::Registry* registry)
{
    if (keys.size() < 2)
        return keys;
    ConfigTree tree(root);
    QSet<QString> held;
    for (QString const& key : keys) {
        makeBranches(tree, tree.namesBelowRoot(key));
        held.insert(key);
    }
    tree.sortLikeDefaultSettings(tree, registry, tree.rootDir());
    QStringList ordered;
    appendHeld(tree, tree.rootDir(), held, ordered);
    return ordered;
}

IConfigEntry* ConfigTree::resolveUuids(QString const& key)
{
    QString path = key;
    if (mRoot.isRootOf(key))
        path.replace(0, rootDir().size(), name());
    return resolveUuids(*this, pathToFirstUuid(path)) ? entry(key) : nullptr;
}

IConfigEntry* ConfigTree::find(QString const& key, Reg::Registry* registry)
{
    return handlesKey(generalisedPath(key), registry) ? resolveUuids(key) : nullptr;
}

bool ConfigTree::resolveUuids(ConfigBranch& branch, QString const& path)
{
    QList<IConfigEntry*> const children = branch.children();
    for (IConfigEntry* const child : children) {
        ConfigBranch* const childBranch = dynamic_cast<ConfigBranch*>(child);
        bool const isPlaceholder = child->name() == viewPlaceholder();
        if (childBranch && !isPlaceholder && !resolveUuids(*childBranch, path))
            return false;
    }

    while (IConfigEntry* const child = branch.child(viewPlaceholder())) {
        ConfigBranch* const placeholder = dynamic_cast<ConfigBranch*>(child);
        if (!placeholder)
            return false;
        if (placeholder->path() == generalisedPath(path))
            becomeSession(branch, *placeholder, KeyPath(path).basename());
        else if (!becomeAllSessions(branch, *placeholder))
            return false;
    }
    return true;
}

void ConfigTree::completeTree(ConfigBranch const& source, ConfigBranch& target)
{
    for (IConfigEntry* const child : source.children()) {
        IConfigEntry* const counterpart = target.child(child->name());
        if (!counterpart) {
            target.addChild(child->clone());
            continue;
        }
        ConfigBranch const* const sourceBranch = dynamic_cast<ConfigBranch const*>(child);
        ConfigBranch* const targetBranch = dynamic_cast<ConfigBranch*>(counterpart);
        if (sourceBranch && targetBranch)
            completeTree(*sourceBranch, *targetBranch);
    }
}

QStringList ConfigTree::namesBelowRoot(QString const& key) const
{
    KeyPath relative(key);
    return relative.removeRoot(rootDir()).splitEntryNames();
}
