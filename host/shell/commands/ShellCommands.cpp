// SPDX-License-Identifier: MIT

#include "shell/commands/Commands.h"

namespace {

int const kColumnOfSummaries = 30;

} // namespace

Reply Commands::help(ShellState&, QStringList const&)
{
    Reply reply(0, Reply::Text);
    for (CommandRow const& row : commandRows())
        reply.text += row.usage().leftJustified(kColumnOfSummaries) + QLatin1String(row.summary)
            + QLatin1Char('\n');
    return reply;
}

Reply Commands::quit(ShellState& shell, QStringList const&)
{
    shell.isFinished = true;
    return Reply();
}
