// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/types.h>

#include <QMap>
#include <QString>
#include <QStringList>

class IConfigEntry;

/// What the backend holds pending, as it was when the object was made, seen from the keys of the
/// view; nothing when it was made without asking. Host thread only.
class PendingKeys
{
public:
    /// Asks the kit's backend; one that cannot tell has nothing pending.
    static PendingKeys sAsk();

    /// The keys under `key`, and `key` itself, whose registered registry key is pending, with what
    /// is to happen to it.
    ///
    /// @param root  the root of the view; `key` is it or lies under it.
    QMap<QString, _RegEntryChange> atOrUnder(QString const& key, QString const& root) const;

    /// Whether a registry key is pending that the commit of `entry` is to write.
    bool areBehind(IConfigEntry const& entry) const;

private:
    typedef QMap<QString, _RegEntryChange> Changes;

    // By registry key.
    Changes mChanges;
};
