// SPDX-License-Identifier: MIT

#pragma once

#include "tree/ConfigBranch.h"
#include "tree/KeyPath.h"

namespace Reg {
class NodeSet;
class Registry;
} // namespace Reg

/// The root of a view tree. It grows on demand: from the default settings, which know every key
/// with "{uuid}" in place of a session's UUID, and from the sessions that the registry holds.
///
/// A tree serves one request, or collects what several have set; its name is the last component of
/// its root. Host thread only.
class ConfigTree : public ConfigBranch
{
public:
    explicit ConfigTree(KeyPath const& root);
    ~ConfigTree() override { }

    /// The root path, as given.
    QString rootDir() const { return mRoot.toString(); }

    /// The entry of a full key; the tree itself for its root, null for a key that the tree does not
    /// hold. It stays the tree's.
    IConfigEntry* entry(QString const& key) const;

    /// The entry that handles `key`, built from the default settings on the way; null when the key
    /// lies outside the root, is unknown, or is hidden.
    ///
    /// @param key       with "{uuid}" in place of UUIDs.
    /// @param registry  the default settings; null: no key is handled.
    IConfigEntry* handlesKey(QString const& key, Reg::Registry* registry);

    /// Makes the entries of `nodes`, the answer of a query for `key`, and returns that of `key`. A
    /// key that the tree has already is made anew, at the end of its branch, with what was buffered
    /// in the old one.
    IConfigEntry* constructEntries(QString const& key, Reg::NodeSet const& nodes);

    /// Fills `branch` with all that the default settings know below `path`, whose UUIDs are
    /// generalised for the queries.
    void populateEntryWithAllDescendants(ConfigBranch& branch, Reg::Registry* registry,
                                         QString const& path);

    /// Brings the children of `branch`, and theirs, into the order of the default settings below
    /// `path`. Children that these do not know by name (sessions) come first, as they stood.
    void sortLikeDefaultSettings(ConfigBranch& branch, Reg::Registry* registry,
                                 QString const& path);

    /// `keys` at or under `root` in the order of the default settings, what lies under a key before
    /// the key itself.
    static QStringList sInOrder(QStringList const& keys, KeyPath const& root,
                                Reg::Registry* registry);

    /// Turns the "{uuid}" branches of the tree into concrete ones and returns the entry of `key`.
    ///
    /// @return null when the tree has no such entry, or the sessions of a registry directory could
    ///         not be listed.
    IConfigEntry* resolveUuids(QString const& key);

    /// The entry of `key`, built and resolved as by the two above; null when the key is not
    /// handled.
    IConfigEntry* find(QString const& key, Reg::Registry* registry);

    /// As `resolveUuids`, for the "{uuid}" branches below `branch`: the one that `path` points at
    /// takes its UUID, any other is replaced by a branch for each session that the registry holds.
    ///
    /// @param path  begins with the tree's name, and ends with the UUID if it has one.
    bool resolveUuids(ConfigBranch& branch, QString const& path);

    /// Copies into `target` all of `source` that `target` lacks. What `target` has stays as it is.
    static void completeTree(ConfigBranch const& source, ConfigBranch& target);

private:
    QStringList namesBelowRoot(QString const& key) const;

    KeyPath mRoot;
};
