// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// One command with its arguments, as a person gave it.
struct Command
{
    QString name;
    QStringList arguments;
};

/// Reads a command from a line of input, without its newline.
///
/// Words are separated by blanks. The value of "set" is everything behind the one blank after the
/// key, as it stands. A word or value that begins with a double quote goes up to the closing one
/// and is read with the escapes of C (\n, \", \\, \x41, \101 and so on).
///
/// @return true, with an empty name and no arguments for a line that is empty or begins with "#";
///         false with a message in `error` when an escape or the text is malformed or the text is
///         no UTF-8.
bool readCommand(QByteArray const& line, Command& command, QString& error);

/// Splits program arguments at each argument that is ";". Each other argument is one word as it
/// stands.
QList<Command> commandsFromArguments(QStringList const& arguments);
