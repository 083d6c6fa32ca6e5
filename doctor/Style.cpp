// SPDX-License-Identifier: MIT

#include "doctor/Style.h"

#include <QByteArray>

#include <unistd.h>

Style::Style(bool hasColours)
    : mHasColours(hasColours)
{
}

Style Style::sOfOutput()
{
    return Style(isatty(STDOUT_FILENO) != 0 && qgetenv("NO_COLOR").isEmpty()
                 && qgetenv("TERM") != "dumb");
}

QString Style::title(QString const& text) const
{
    return wrapped("1", text);
}

QString Style::aside(QString const& text) const
{
    return wrapped("2", text);
}

QString Style::alarm(QString const& text) const
{
    return wrapped("31", text);
}

QString Style::wrapped(char const* code, QString const& text) const
{
    if (!mHasColours)
        return text;
    return QString::fromLatin1("\033[%1m%2\033[0m").arg(QLatin1String(code), text);
}

QString quoted(QString const& value)
{
    QString text;
    for (QChar const c : value) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            text.append(QLatin1Char('\\')).append(c);
        else if (c == QLatin1Char('\n'))
            text.append(QLatin1String("\\n"));
        else if (c.category() == QChar::Other_Control)
            text.append(QString::fromLatin1("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0')));
        else
            text.append(c);
    }
    return QLatin1Char('"') + text + QLatin1Char('"');
}
