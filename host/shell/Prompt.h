// SPDX-License-Identifier: MIT

#pragma once

#include "shell/CommandSource.h"
#include "shell/LineEditor.h"

class Vantora;

/// Commands from a person at a terminal, with a history and completion of commands, keys and files
/// to import.
class Prompt : public CommandSource
{
public:
    /// @param host         whose keys are completed; outlives this object.
    /// @param historyFile  see LineEditor.
    Prompt(Vantora& host, QString const& historyFile);

    bool next(Input& input) override;

private:
    LineEditor mEditor;
};
