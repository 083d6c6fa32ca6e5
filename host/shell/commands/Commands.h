// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Reply.h"

#include <vector>

class Printer;
class TracedHost;

/// What the commands work on, and what one leaves for those after it.
struct ShellState
{
    TracedHost& host;

    /// For a command that answers more than once.
    Printer& printer;

    /// How many seconds an apply is waited for.
    int const timeoutSeconds;

    /// How many there were.
    int applies;

    /// Whether one was given up and may still be using the host.
    bool hasUnfinishedApply;

    /// Whether "quit" was among the commands.
    bool isFinished;
};

/// Carries out a command. There are as many arguments as its row allows.
typedef Reply CommandFunction(ShellState& shell, QStringList const& arguments);

namespace Commands {

CommandFunction get, list, set, create, del, contains; // ValueCommands.cpp
CommandFunction tree;                                  // TreeCommand.cpp
CommandFunction commit, rollback, diff, changes;       // PendingCommands.cpp
CommandFunction apply;                                 // Apply.cpp
CommandFunction watch;                                 // Watch.cpp
CommandFunction exportXml, importXml;                  // XmlCommands.cpp
CommandFunction help, quit;                            // ShellCommands.cpp

} // namespace Commands

/// What there is to know of a command; the list of them is in Commands.cpp.
struct CommandRow
{
    char const* name;
    CommandFunction* run;

    /// One word an argument, those that may be left out in brackets. The words have a meaning:
    /// "KEY" and "FILE" are completed as such, and a "VALUE" goes up to the end of the line.
    char const* arguments;

    char const* summary;

    /// Whether it is meant to go on, and writes while it runs.
    bool lasts;

    QString usage() const;

    /// Whether it can be called with so many arguments.
    bool takes(int count) const;

    /// The word for the argument at `index`; empty if there is none.
    QString argument(int index) const;
};

/// In the order in which "help" shows them.
std::vector<CommandRow> const& commandRows();

/// Null for a name that is no command's.
CommandRow const* findCommand(QString const& name);
