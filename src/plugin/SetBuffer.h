// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QSet>

class ConfigBranch;
class ConfigTree;
class IConfigEntry;
class KeyPath;
class PendingKeys;
class QString;
class QStringList;

namespace Reg {
class Registry;
} // namespace Reg

/// What was set or created and is not committed: a tree that lives from request to request and
/// holds this, the branches that lead to it, and nothing else. Host thread only.
///
/// One commit may lead to another, which takes entries out that the first one walks over. So what
/// is taken out is taken apart, which the walk notices, and deleted when no request is served.
class SetBuffer
{
public:
    SetBuffer() { }
    ~SetBuffer();

    /// The tree, made on first use; it stays the buffer's.
    ConfigTree* tree(KeyPath const& root);

    void clear();

    /// The entry of a full key; null when the buffer has none.
    IConfigEntry* entry(QString const& key) const;

    /// Adds what the buffer lacks of `found`, and returns its entry of `key`, which is about to be
    /// set or created; null when something else stands there.
    IConfigEntry* add(ConfigTree const& found, QString const& key);

    /// The entry has been created: it waits for its commit though nothing may be set in it.
    void markAsCreated(IConfigEntry const& entry) { mCreated.insert(&entry); }

    /// Forgets a creation that was not committed, with all that was set in it. Others stay.
    void undoCreation(QString const& key);

    /// Takes `entry` out, with the branches that did nothing but lead to it.
    void takeOut(IConfigEntry& entry);

    /// Commits what waits at or under `key`, and before that by name the keys there that nobody has
    /// set since their last commit and behind which the backend holds something pending all the
    /// same. What the backend refuses stays.
    ///
    /// @param found  the entry of `key`, in a tree of its own: it takes part though it was not set.
    /// @param root   that of the view.
    void commit(IConfigEntry& found, QString const& key, QString const& root,
                Reg::Registry* defaults);
    void commitAll(QString const& root, Reg::Registry* defaults);

    /// To be called when no request is served any more.
    void deleteTakenOut();

private:
    Q_DISABLE_COPY(SetBuffer)

    void commitPendingUnder(QString const& key, QString const& root, Reg::Registry* defaults);

    /// An entry of the buffer, in the order of the default settings.
    void commitWaiting(IConfigEntry& committed, QString const& key, Reg::Registry* defaults);

    /// Forgets what was set below `key`.
    void forgetBelow(QString const& key);

    /// Forgets what the backend has refused and written after all, by a commit that went past the
    /// plugin.
    void forgetWritten(PendingKeys const& pending);

    bool holds(IConfigEntry const& entry) const;
    void commitHeld(IConfigEntry& entry);
    void takeOut(IConfigEntry& entry, PendingKeys const& kept);
    void takeApart(IConfigEntry& entry, PendingKeys const& kept);

    ConfigTree* mTree = nullptr;
    QSet<IConfigEntry const*> mCreated;
    QSet<IConfigEntry*> mRefused;
    QList<IConfigEntry*> mTakenOut;
};
