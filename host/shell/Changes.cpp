// SPDX-License-Identifier: MIT

#include "shell/Changes.h"

#include "registry/RegistryKey.h"
#include "shell/Printer.h"
#include "shell/TracedHost.h"

QString PendingOutcome::text() const
{
    if (!value.isNull())
        return onOneLine(value);
    switch (change) {
    case REG_CHANGE_CREATED:
        return QLatin1String("created");
    case REG_CHANGE_DELETED:
        return QLatin1String("deleted");
    default:
        return QLatin1String("replaced");
    }
}

QMap<QString, PendingOutcome> pendingOutcomes(TracedHost& host, QString const& key)
{
    QMap<QString, _RegEntryChange> changes;
    static_cast<void>(host.changes(changes)); // never fails
    QMap<QString, QString> const values = host.pending().under(key);
    // The plugins name none of theirs.
    for (QString const& pendingKey : values.keys()) {
        if (host.pending().isPlugins(pendingKey))
            changes.insert(pendingKey,
                           values.value(pendingKey).isNull() ? REG_CHANGE_CREATED
                                                             : REG_CHANGE_MODIFIED);
    }
    QMap<QString, PendingOutcome> outcomes;
    for (QString const& changed : changes.keys()) {
        PendingOutcome const outcome = {changes.value(changed), values.value(changed)};
        if (key.isEmpty() || isAtOrUnder(changed, key))
            outcomes.insert(changed, outcome);
    }
    return outcomes;
}
