// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// How words of a report stand out: by colours on a terminal, unless the environment variable
/// NO_COLOR or a terminal that knows none says otherwise; elsewhere not at all.
class Style
{
public:
    explicit Style(bool hasColours);

    /// That of standard output.
    static Style sOfOutput();

    QString title(QString const& text) const;
    QString aside(QString const& text) const;
    QString alarm(QString const& text) const;

private:
    QString wrapped(char const* code, QString const& text) const;

    bool mHasColours;
};

/// A value as a person is shown it: between quotes, on one line, without control characters.
QString quoted(QString const& value);
