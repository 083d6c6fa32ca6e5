// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Command.h"

#include <QFile>

/// Where commands come from.
class CommandSource
{
public:
    /// One piece of input.
    struct Input
    {
        /// The line as it was read, for echoing and for messages; null if there was no line.
        QString line;

        /// Without name and arguments for an empty line or a comment.
        Command command;

        /// Why the line is no command; null when it is one.
        QString error;
    };

    virtual ~CommandSource() { }

    /// @return false at the end of the input.
    virtual bool next(Input& input) = 0;

protected:
    /// Fills `input` from a line without its newline.
    static void readLine(QByteArray const& line, Input& input);
};

/// Commands from the arguments of the program.
class ArgumentSource : public CommandSource
{
public:
    explicit ArgumentSource(QStringList const& arguments);

    bool next(Input& input) override;

private:
    QList<Command> mCommands;
};

/// Commands from standard input, one a line.
class StreamSource : public CommandSource
{
public:
    StreamSource();

    bool next(Input& input) override;

private:
    QFile mFile;
};
