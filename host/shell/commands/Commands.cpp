// SPDX-License-Identifier: MIT

#include "shell/commands/Commands.h"

namespace {

// clang-format off
std::vector<CommandRow> const kRows = {
    {"get",      Commands::get,       "KEY [type|regexp]", "a value, or the children of a key", false},
    {"list",     Commands::list,      "KEY", "the children of a directory", false},
    {"tree",     Commands::tree,      "[KEY]", "all that is under a key, with values; on a terminal, where from", false},
    {"set",      Commands::set,       "KEY VALUE", "sets a value, pending until its commit", false},
    {"create",   Commands::create,    "KEY", "creates a key, pending until its commit", false},
    {"del",      Commands::del,       "KEY", "deletes a key, pending until its commit", false},
    {"commit",   Commands::commit,    "KEY", "writes what is pending at or under a key", false},
    {"rollback", Commands::rollback,  "KEY", "drops what is pending at or under a key", false},
    {"diff",     Commands::diff,      "[KEY]", "what a commit of a key would change", false},
    {"apply",    Commands::apply,     "KEY", "makes what is committed effective", false},
    {"contains", Commands::contains,  "KEY", "whether a key exists", false},
    {"changes",  Commands::changes,   "", "what is pending", false},
    {"watch",    Commands::watch,     "KEY [COUNT [SECONDS]]", "each change of a key, until Ctrl-C", true},
    {"export",   Commands::exportXml, "[KEY]", "a subtree as XML", false},
    {"import",   Commands::importXml, "FILE", "reads such XML, all or nothing", false},
    {"help",     Commands::help,      "", "this list", false},
    {"quit",     Commands::quit,      "", "ends the program", false},
};
// clang-format on

QStringList words(char const* arguments)
{
    QStringList words = QString::fromLatin1(arguments).split(QLatin1Char(' '));
    words.removeAll(QString());
    return words;
}

} // namespace

QString CommandRow::usage() const
{
    return (QStringList(QLatin1String(name)) + words(arguments)).join(QLatin1String(" "));
}

bool CommandRow::takes(int count) const
{
    QStringList const all = words(arguments);
    return count <= all.size()
        && (count == all.size() || all.at(count).startsWith(QLatin1Char('[')));
}

QString CommandRow::argument(int index) const
{
    return words(arguments).value(index).remove(QLatin1Char('[')).remove(QLatin1Char(']'));
}

std::vector<CommandRow> const& commandRows()
{
    return kRows;
}

CommandRow const* findCommand(QString const& name)
{
    for (CommandRow const& row : kRows) {
        if (name == QLatin1String(row.name))
            return &row;
    }
    return nullptr;
}
