// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

/// What a person sees standard output on, if it is a terminal.
class Terminal
{
public:
    enum Style { Directory, Note, Pending };

    static bool sShowsOutput();

    /// Whether messages go to a terminal on which a line can be written anew.
    static bool sShowsProgress();

    /// With colours if the terminal has any and NO_COLOR does not forbid them.
    static QString sStyled(QString const& text, Style style);

    /// The names side by side in columns that fit the width, sorted downwards as they come; a line
    /// end behind each row. Those that end in "/" are styled as directories.
    static QString sInColumns(QStringList const& names);
};

/// `names` in as many columns as fit into `width` characters; `styled` is called for each name.
QString columnsOf(QStringList const& names, int width, QString (*styled)(QString const& name));
