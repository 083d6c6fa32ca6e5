// SPDX-License-Identifier: MIT

#include "shell/Printer.h"

#include "shell/Json.h"
#include "shell/ReplyText.h"

#include <cstdio>

namespace {

// A message names a key or a line of input; one of a megabyte is named by its beginning.
int const kLongestShownText = 200;

struct CodeMeaning
{
    int code;
    char const* meaning;
};

CodeMeaning const kCodeMeanings[] = {
    {1, "not handled, or failed"},
    {6, "neither a directory nor a value"},
};

QString inWords(int code)
{
    for (CodeMeaning const& row : kCodeMeanings) {
        if (row.code == code)
            return QString::fromLatin1("%1 (%2)").arg(QLatin1String(row.meaning)).arg(code);
    }
    return QString::fromLatin1("failed (%1)").arg(code);
}

void write(FILE* stream, QString const& text)
{
    QByteArray const bytes = text.toUtf8();
    // A reader that has gone away is not this program's failure.
    static_cast<void>(std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream));
    static_cast<void>(std::fflush(stream));
}

Json nodeObject(ReplyNode const& node)
{
    Json object;
    object["key"] = utf8(node.key);
    object["type"] = node.type;
    if (!node.value.isNull())
        object["value"] = utf8(node.value);
    return object;
}

} // namespace

void TextPrinter::print(Command const& command, Reply const& reply)
{
    QString const text = replyText(reply);
    if (!text.isEmpty())
        writeOutput(text);
    QStringList const messages = replyMessages(reply);
    for (QString const& message : messages)
        writeMessage(message);
    // An answer such as "no" says it already.
    if (reply.code != 0 && messages.isEmpty() && text.isEmpty())
        writeMessage(subject(command) + QLatin1String(": ") + inWords(reply.code));
}

void JsonPrinter::print(Command const& command, Reply const& reply)
{
    Json object;
    object["command"] = utf8(commandText(command));
    object["code"] = reply.code;
    object["nodes"] = Json::array();
    for (ReplyNode const& node : reply.nodes)
        object["nodes"].push_back(nodeObject(node));
    // The text of an answer with nodes says the same as they do.
    QString const text = reply.nodes.isEmpty() ? replyText(reply) : QString();
    if (!text.isEmpty())
        object["text"] = utf8(text);
    for (QString const& message : replyMessages(reply))
        object["messages"].push_back(utf8(message));
    for (TraceEvent const& event : reply.events)
        object["events"].push_back(traceObject(event));
    writeOutput(jsonText(object) + QLatin1Char('\n'));
}

QString subject(Command const& command)
{
    return shownText(
        (QStringList(command.name) + command.arguments.mid(0, 1)).join(QLatin1String(" ")));
}

QString shownText(QString const& text)
{
    QString const shown = onOneLine(text.left(kLongestShownText));
    return text.size() > kLongestShownText ? shown + QLatin1String("...") : shown;
}

QString onOneLine(QString const& text)
{
    QString line;
    for (QChar const c : text) {
        if (c == QLatin1Char('\n'))
            line.append(QLatin1String("\\n"));
        else if (c.category() == QChar::Other_Control)
            line.append(QString::fromLatin1("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0')));
        else
            line.append(c);
    }
    return line;
}

QString commandText(Command const& command)
{
    return (QStringList(command.name) + command.arguments).join(QLatin1String(" "));
}

void writeOutput(QString const& text)
{
    write(stdout, text);
}

void writeMessage(QString const& line)
{
    write(stderr, line + QLatin1Char('\n'));
}
