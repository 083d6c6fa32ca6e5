#include "shell/Changes.h"

#include "registry/RegistryKey.h"
#include "shell/Printer.h"
#include "shell/Reply.h"
#include "shell/TracedHost.h"

namespace {

typedef QMap<QString, PendingOutcome> Outcomes;

QString oldValue(Vantora& host, QString const& key)
{
    QString value;
    return host.get(key, value, REG_PARAM_VALUE, QString::fromLatin1("")) == 0
        ? onOneLine(value)
        : QString::fromLatin1("(none)");
}

QString line(TracedHost& host, QString const& key, PendingOutcome const& outcome)
{
    QString const lead = key + QLatin1String(": ");
    if (outcome.value.isNull())
        return lead + outcome.text();
    return lead + oldValue(host, key) + QLatin1String(" -> ") + outcome.text();
}

} // namespace

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

Outcomes pendingOutcomes(TracedHost& host, QString const& key)
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
    Outcomes outcomes;
    QMap<QString, _RegEntryChange>::const_iterator change = changes.constBegin();
    for (; change != changes.constEnd(); ++change) {
        PendingOutcome const outcome = {change.value(), values.value(change.key())};
        if (key.isEmpty() || isAtOrUnder(change.key(), key))
            outcomes.insert(change.key(), outcome);
    }
    return outcomes;
}

void describeCommit(TracedHost& host, QString const& key, Reply& reply)
{
    Outcomes const outcomes = pendingOutcomes(host, key);
    Outcomes::const_iterator outcome = outcomes.constBegin();
    for (; outcome != outcomes.constEnd(); ++outcome) {
        ReplyNode const node = {outcome.key(), outcome.value().change, outcome.value().value};
        reply.nodes.append(node);
        reply.text += line(host, outcome.key(), outcome.value()) + QLatin1Char('\n');
    }
}
