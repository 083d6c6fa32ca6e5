#pragma once

#include <QList>
#include <QString>

/// What is wrong with a file; the line counts from 1 and is 0 for the file as a whole.
struct Problem
{
    int line;
    QString message;
};

/// Why a script would not start, or would not do what it says, as far as this can be told without
/// running it. A file that is not there has no problem.
QList<Problem> problemsOfScript(QString const& path);

/// Whether the words of a command line would not give the path back.
bool isSplitByCommandLine(QString const& path);
