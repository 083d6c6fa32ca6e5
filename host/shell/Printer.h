// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Command.h"

struct Reply;

/// Shows the answers of commands: values on standard output, all else on standard error.
class Printer
{
public:
    virtual ~Printer() { }

    virtual void print(Command const& command, Reply const& reply) = 0;
};

/// For people and for shell scripts.
class TextPrinter : public Printer
{
public:
    void print(Command const& command, Reply const& reply) override;
};

/// For programs: one JSON object a command, each on a line of its own.
class JsonPrinter : public Printer
{
public:
    void print(Command const& command, Reply const& reply) override;
};

/// The words of a command with single blanks between them.
QString commandText(Command const& command);

/// What a command is about, for messages: its name and its first argument. A value is no part of
/// it, as it may be a secret.
QString subject(Command const& command);

/// A text as it can stand in a message: not too long, and on one line.
QString shownText(QString const& text);

/// A text with its control characters as the escapes of C, so that none of them reaches a terminal.
QString onOneLine(QString const& text);

/// Writes to standard output, where values go.
void writeOutput(QString const& text);

/// Writes a line to standard error, where everything else goes.
void writeMessage(QString const& line);
