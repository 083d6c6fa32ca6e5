#pragma once

#include "shell/CommandSource.h"

class Vantora;

/// Commands from a person at a terminal, with a history and completion of commands, keys and files
/// to import. Ctrl-C drops the line that is being typed.
///
/// Serves the events of the thread while it waits for input. There is one at a time: the library
/// behind it knows no other way.
class Prompt : public CommandSource
{
public:
    /// @param host         whose keys are completed; outlives this object.
    /// @param historyFile  read now, and continued with each line; null for none.
    Prompt(Vantora& host, QString const& historyFile);
    ~Prompt() override;

    bool next(Input& input) override;

private:
    Q_DISABLE_COPY(Prompt)

    void remember(char const* line);

    QByteArray const mHistoryFile;
};
