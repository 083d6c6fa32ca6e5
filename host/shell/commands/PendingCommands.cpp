// SPDX-License-Identifier: MIT

#include "shell/Changes.h"
#include "shell/KeyNames.h"
#include "shell/TracedHost.h"
#include "shell/commands/Commands.h"

#include <QMap>

namespace {

/// Null when there is none.
QString currentValue(Vantora& host, QString const& key)
{
    QString value;
    int const code = host.get(key, value, REG_PARAM_VALUE, QString::fromLatin1(""));
    return code == 0 ? QString::fromLatin1("") + value : QString();
}

} // namespace

Reply Commands::commit(ShellState& shell, QStringList const& arguments)
{
    return Reply(shell.host.commit(fullKey(arguments.at(0))));
}

Reply Commands::rollback(ShellState& shell, QStringList const& arguments)
{
    return Reply(shell.host.rollback(fullKey(arguments.at(0))));
}

Reply Commands::diff(ShellState& shell, QStringList const& arguments)
{
    // Without a key: all that is pending.
    QString const key = arguments.isEmpty() ? QString() : fullKey(arguments.first());
    QMap<QString, PendingOutcome> const outcomes = pendingOutcomes(shell.host, key);
    Reply reply(0, Reply::Differences);
    for (QString const& pendingKey : outcomes.keys()) {
        PendingOutcome const outcome = outcomes.value(pendingKey);
        reply.addNode(pendingKey, outcome.change, outcome.value);
        if (!outcome.value.isNull())
            reply.nodes.last().formerValue = currentValue(shell.host, pendingKey);
    }
    return reply;
}

Reply Commands::changes(ShellState& shell, QStringList const&)
{
    Reply reply(0, Reply::Changes);
    QMap<QString, _RegEntryChange> changes;
    reply.code = shell.host.changes(changes);
    reply.addNodes(changes);
    return reply;
}
