// SPDX-License-Identifier: MIT

#include "shell/ApplyReport.h"

#include "shell/Printer.h"

namespace {

int const kMostErrorLines = 10;

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

} // namespace

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
