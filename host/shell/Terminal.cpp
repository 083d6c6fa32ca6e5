// SPDX-License-Identifier: MIT

#include "shell/Terminal.h"

#include <cstdlib>
#include <cstring>

#include <sys/ioctl.h>
#include <unistd.h>

namespace {

int const kUsualWidth = 80;
int const kGap = 2;

// By Terminal::Style; each ends with the sequence that follows.
char const* const kSequences[] = {"\033[1;34m", "\033[2m", "\033[33m"};
char const* const kEndOfStyle = "\033[0m";

/// Whether the terminal does more than add text.
bool isCapable()
{
    char const* const type = std::getenv("TERM");
    return type && *type && std::strcmp(type, "dumb") != 0;
}

bool hasColours()
{
    char const* const forbidden = std::getenv("NO_COLOR");
    return Terminal::sShowsOutput() && isCapable() && !(forbidden && *forbidden);
}

int width()
{
    winsize size = winsize();
    bool const isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : kUsualWidth;
}

QString styledName(QString const& name)
{
    return name.endsWith(QLatin1Char('/')) ? Terminal::sStyled(name, Terminal::Directory) : name;
}

/// The widths of the columns when `names` stand in `rows` rows.
QList<int> columnWidths(QStringList const& names, int rows)
{
    QList<int> widths;
    for (int index = 0; index < names.size(); ++index) {
        if (index % rows == 0)
            widths.append(0);
        widths.last() = qMax(widths.last(), names.at(index).size());
    }
    return widths;
}

int totalWidth(QList<int> const& widths)
{
    int total = kGap * (widths.size() - 1);
    for (int const columnWidth : widths)
        total += columnWidth;
    return total;
}

} // namespace

bool Terminal::sShowsOutput()
{
    return isatty(STDOUT_FILENO) != 0;
}

bool Terminal::sShowsProgress()
{
    return isatty(STDERR_FILENO) != 0 && isCapable();
}

QString Terminal::sStyled(QString const& text, Style style)
{
    if (!hasColours())
        return text;
    return QLatin1String(kSequences[style]) + text + QLatin1String(kEndOfStyle);
}

QString Terminal::sInColumns(QStringList const& names)
{
    return columnsOf(names, width(), styledName);
}

QString columnsOf(QStringList const& names, int width, QString (*styled)(QString const& name))
{
    int rows = 1;
    while (rows < names.size() && totalWidth(columnWidths(names, rows)) > width)
        ++rows;
    QList<int> const widths = columnWidths(names, rows);
    QString text;
    for (int row = 0; row < qMin(rows, names.size()); ++row) {
        for (int index = row; index < names.size(); index += rows) {
            text += styled(names.at(index));
            int const padding = widths.at(index / rows) + kGap - names.at(index).size();
            if (index + rows < names.size())
                text += QString(padding, QLatin1Char(' '));
        }
        text += QLatin1Char('\n');
    }
    return text;
}
