// SPDX-License-Identifier: MIT

#include "shell/ReplyText.h"

#include "shell/Changes.h"
#include "shell/KeyNames.h"
#include "shell/Printer.h"
#include "shell/Terminal.h"

#include <QVector>

namespace {

// By _RegEntryChange.
char const* const kChangeWords[] = {"modified", "created", "deleted", "nothing"};

char const* const kBranch = "├── ";
char const* const kLastBranch = "└── ";
char const* const kLine = "│   ";
char const* const kNoLine = "    ";

int const kMostErrorLines = 10;

QString inLines(QStringList const& lines)
{
    return lines.isEmpty() ? QString() : lines.join(QLatin1String("\n")) + QLatin1Char('\n');
}

QString listing(Reply const& reply)
{
    QStringList names;
    for (ReplyNode const& node : reply.nodes)
        names.append(shownName(node.key, _RegNodeType(node.type)));
    return reply.hasValue() || !Terminal::sShowsOutput() ? inLines(names)
                                                         : Terminal::sInColumns(names);
}

QString changes(QList<ReplyNode> const& nodes)
{
    QStringList lines;
    for (ReplyNode const& node : nodes)
        lines.append(
            QString::fromLatin1("%1 %2").arg(QLatin1String(kChangeWords[node.type]), node.key));
    return inLines(lines);
}

QString differences(QList<ReplyNode> const& nodes)
{
    QStringList lines;
    for (ReplyNode const& node : nodes) {
        PendingOutcome const outcome = {_RegEntryChange(node.type), node.value};
        QString line = node.key + QLatin1String(": ");
        if (!node.value.isNull())
            line += (node.formerValue.isNull() ? QString::fromLatin1("(none)")
                                               : onOneLine(node.formerValue))
                + QLatin1String(" -> ");
        lines.append(line + outcome.text());
    }
    return inLines(lines);
}

QString keyChange(Reply const& reply)
{
    if (reply.hasValue())
        return inLines(QStringList(onOneLine(reply.nodes.first().key)));
    QStringList lines;
    for (QString const& name : reply.gone)
        lines.append(QLatin1String("- ") + name);
    for (QString const& name : reply.come)
        lines.append(QLatin1String("+ ") + name);
    return inLines(lines.isEmpty() ? QStringList(QLatin1String("(none)")) : lines);
}

/// What a person is told of a key beside its value.
QString marks(ReplyNode const& node)
{
    QString text;
    if (!node.source.isEmpty())
        text = Terminal::sStyled(QString::fromLatin1("  (%1)").arg(node.source), Terminal::Note);
    if (!node.pending.isNull())
        text += Terminal::sStyled(QString::fromLatin1("  (pending: %1)").arg(node.pending),
                                  Terminal::Pending);
    return text;
}

/// A node on its line of the drawing, without what leads to it.
QString drawnNode(ReplyNode const& node, QString const& name)
{
    if (node.type == REG_NODE_DIR)
        return Terminal::sStyled(name + QLatin1Char('/'), Terminal::Directory) + marks(node);
    QString value = node.value;
    value = onOneLine(value.replace(QLatin1Char('\\'), QLatin1String("\\\\")));
    return name + QLatin1String(" = ") + value + marks(node);
}

QString tree(Reply const& reply)
{
    if (reply.code != 0)
        return QString();
    if (reply.nodes.size() == 1 && reply.nodes.first().depth == 0)
        return inLines(QStringList(drawnNode(reply.nodes.first(), reply.key)));
    // By depth, from 1 on, whether a sibling follows what lies there. From the last line up.
    QVector<bool> isFollowed;
    QStringList lines;
    for (int index = reply.nodes.size() - 1; index >= 0; --index) {
        ReplyNode const& node = reply.nodes.at(index);
        // What lies deeper further down has another parent.
        isFollowed.resize(node.depth);
        QString lead;
        for (int depth = 1; depth < node.depth; ++depth)
            lead += QString::fromUtf8(isFollowed.at(depth - 1) ? kLine : kNoLine);
        lead += QString::fromUtf8(isFollowed.last() ? kBranch : kLastBranch);
        isFollowed.last() = true;
        lines.prepend(lead + drawnNode(node, ownName(node.key)));
    }
    lines.prepend(reply.key + QLatin1Char('/'));
    return inLines(lines);
}

bool isClean(TraceEvent const& script)
{
    return script.ending == QLatin1String("exited") && script.code == 0;
}

QStringList scriptLines(TraceEvent const& script)
{
    QStringList lines(QLatin1String("script ") + onOneLine(script.subject) + QLatin1String(": ")
                      + traceOutcome(script));
    QByteArray const output = script.errorOutput.trimmed();
    if (output.isEmpty())
        return lines;
    QList<QByteArray> const written = output.split('\n');
    QList<QByteArray> const last = written.mid(qMax(0, written.size() - kMostErrorLines));
    for (QByteArray const& line : last)
        lines.append(QLatin1String("  ")
                     + shownText(QString::fromUtf8(line.constData(), line.size())));
    return lines;
}

QString lastCommandLine(TraceEvent const& command)
{
    QString const what = shownText(command.subject);
    if (command.ending == QLatin1String("started"))
        return QLatin1String("run: ") + what;
    QString const line = command.ending + QLatin1String(": ") + what;
    return command.ending == QLatin1String("not handed over")
        ? line + QLatin1String(": cannot use ") + command.file
        : line;
}

/// What a person is told of the scripts and the last command of an apply: of each script that was
/// not done with exit status 0, with the end of what it wrote to its standard error, and what was
/// run or handed over.
QStringList applyReport(QList<TraceEvent> const& events)
{
    QStringList lines;
    for (TraceEvent const& event : events) {
        if (event.kind == TraceEvent::LastCommand)
            lines.append(lastCommandLine(event));
        else if (!isClean(event))
            lines += scriptLines(event);
    }
    return lines;
}

} // namespace

QString replyText(Reply const& reply)
{
    switch (reply.kind) {
    case Reply::Listing:
        return listing(reply);
    case Reply::Tree:
        return tree(reply);
    case Reply::Changes:
        return changes(reply.nodes);
    case Reply::Differences:
        return differences(reply.nodes);
    case Reply::KeyChange:
        return keyChange(reply);
    case Reply::Existence:
        return QLatin1String(reply.exists ? "yes\n" : "no\n");
    default:
        return reply.text;
    }
}

QStringList replyMessages(Reply const& reply)
{
    QStringList messages = applyReport(reply.events);
    if (!reply.error.isNull())
        messages.prepend(reply.error);
    return messages;
}
