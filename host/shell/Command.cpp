// SPDX-License-Identifier: MIT

#include "shell/Command.h"

#include "shell/commands/Commands.h"

#include <QTextCodec>

namespace {

struct Escape
{
    char letter;
    char meaning;
};

Escape const kEscapes[] = {
    {'n', '\n'}, {'t', '\t'}, {'r', '\r'},  {'a', '\a'},  {'b', '\b'}, {'f', '\f'},
    {'v', '\v'}, {'"', '"'},  {'\'', '\''}, {'\\', '\\'}, {'?', '?'},
};

int const kLongestOctalEscape = 3;
int const kLongestHexEscape = 2;

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

int digitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return 16;
}

bool decode(QByteArray const& bytes, QString& text, QString& error)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    text = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars == 0 && state.remainingChars == 0)
        return true;
    error = QLatin1String("this is no UTF-8");
    return false;
}

/// Walks over one line of input.
class LineReader
{
public:
    LineReader(QByteArray const& line, QString& error)
        : mLine(line)
        , mError(error)
    {
    }

    bool atEnd() const { return mPosition >= mLine.size(); }

    void skipBlanks()
    {
        while (!atEnd() && isBlank(mLine.at(mPosition)))
            ++mPosition;
    }

    void skipOneBlank() { ++mPosition; }

    /// Reads up to the next blank, or a quoted text.
    bool readWord(QString& word)
    {
        if (atQuote())
            return readQuoted(word);
        int const start = mPosition;
        while (!atEnd() && !isBlank(mLine.at(mPosition)))
            ++mPosition;
        return decode(mLine.mid(start, mPosition - start), word, mError);
    }

    /// Reads all that is left, or a quoted text with nothing but blanks behind it.
    bool readValue(QString& value)
    {
        if (!atQuote()) {
            QByteArray const rest = mLine.mid(mPosition);
            mPosition = mLine.size();
            return decode(rest, value, mError);
        }
        if (!readQuoted(value))
            return false;
        skipBlanks();
        return atEnd() || fail("there is text behind the closing quote");
    }

private:
    bool fail(char const* message)
    {
        mError = QLatin1String(message);
        return false;
    }

    bool atQuote() const { return !atEnd() && mLine.at(mPosition) == '"'; }

    bool readQuoted(QString& text)
    {
        QByteArray bytes;
        ++mPosition;
        while (!atQuote()) {
            if (atEnd())
                return fail("the closing quote is missing");
            char c = mLine.at(mPosition++);
            if (c == '\\' && !readEscape(c))
                return false;
            bytes.append(c);
        }
        ++mPosition;
        if (!atEnd() && !isBlank(mLine.at(mPosition)))
            return fail("there is text behind the closing quote");
        return decode(bytes, text, mError);
    }

    /// Reads what follows a backslash.
    bool readEscape(char& meaning)
    {
        if (atEnd())
            return fail("the closing quote is missing");
        char const letter = mLine.at(mPosition);
        for (Escape const& escape : kEscapes) {
            if (escape.letter == letter) {
                meaning = escape.meaning;
                ++mPosition;
                return true;
            }
        }
        if (letter != 'x')
            return readNumber(8, kLongestOctalEscape, meaning);
        ++mPosition;
        return readNumber(16, kLongestHexEscape, meaning);
    }

    bool readNumber(int base, int longest, char& meaning)
    {
        int value = 0;
        int digits = 0;
        while (digits < longest && !atEnd() && digitValue(mLine.at(mPosition)) < base) {
            value = value * base + digitValue(mLine.at(mPosition++));
            ++digits;
        }
        if (digits == 0 || value > 0xff)
            return fail("there is an unknown escape behind a backslash");
        meaning = char(value);
        return true;
    }

    QByteArray const mLine;
    QString& mError;
    int mPosition = 0;
};

/// Reads what is behind the name of a command.
bool readArguments(LineReader& reader, CommandRow const* row, QStringList& arguments)
{
    reader.skipBlanks();
    while (!reader.atEnd()) {
        QString word;
        if (!reader.readWord(word))
            return false;
        arguments.append(word);
        if (reader.atEnd() || !row || row->argument(arguments.size()) != QLatin1String("VALUE")) {
            reader.skipBlanks();
            continue;
        }
        reader.skipOneBlank();
        QString value;
        if (!reader.readValue(value))
            return false;
        arguments.append(value);
    }
    return true;
}

} // namespace

bool readCommand(QByteArray const& line, Command& command, QString& error)
{
    command = Command();
    LineReader reader(line, error);
    reader.skipBlanks();
    if (reader.atEnd() || line.startsWith('#'))
        return true;
    if (!reader.readWord(command.name))
        return false;
    return readArguments(reader, findCommand(command.name), command.arguments);
}

QList<Command> commandsFromArguments(QStringList const& arguments)
{
    QList<Command> commands;
    Command command;
    for (QString const& argument : arguments) {
        if (argument == QLatin1String(";")) {
            commands.append(command);
            command = Command();
        } else if (command.name.isNull()) {
            command.name = argument;
        } else {
            command.arguments.append(argument);
        }
    }
    commands.append(command);
    return commands;
}
