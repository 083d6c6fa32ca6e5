// SPDX-License-Identifier: MIT

#include "shell/KeyNames.h"
#include "shell/TracedHost.h"
#include "shell/commands/Commands.h"

namespace {

// By _RegEntryParam.
char const* const kParamWords = "value type regexp";

Reply listing(ShellState& shell, QString const& key, int param)
{
    Reply reply(0, Reply::Listing);
    Listing result;
    reply.code = shell.host.get(key, result, _RegEntryParam(param), QString::fromLatin1(""));
    reply.addNodes(result);
    return reply;
}

} // namespace

Reply Commands::get(ShellState& shell, QStringList const& arguments)
{
    QStringList const words = QString::fromLatin1(kParamWords).split(QLatin1Char(' '));
    int const param = words.indexOf(arguments.value(1, words.first()));
    if (param < 0)
        return Reply(0, Reply::BadArguments);
    return listing(shell, fullKey(arguments.at(0)), param);
}

Reply Commands::list(ShellState& shell, QStringList const& arguments)
{
    return listing(shell, fullKey(arguments.at(0)), REG_PARAM_VALUE);
}

Reply Commands::set(ShellState& shell, QStringList const& arguments)
{
    return Reply(shell.host.set(fullKey(arguments.at(0)), arguments.at(1), REG_PARAM_VALUE));
}

Reply Commands::create(ShellState& shell, QStringList const& arguments)
{
    return Reply(shell.host.create(fullKey(arguments.at(0)), REG_TYPE_STRING));
}

Reply Commands::del(ShellState& shell, QStringList const& arguments)
{
    return Reply(shell.host.del(fullKey(arguments.at(0))));
}

Reply Commands::contains(ShellState& shell, QStringList const& arguments)
{
    Reply reply(shell.host.contains(fullKey(arguments.at(0))), Reply::Existence);
    reply.exists = reply.code == 0;
    return reply;
}
