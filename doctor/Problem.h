// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

/// A fault does not do what it seems to be there for. A note does, or can only be guessed at: it is
/// told, and nothing is wrong for it.
enum Severity { Fault, Note };

/// What is to be said of a file; the line counts from 1 and is 0 for the file as a whole.
struct Problem
{
    Severity severity;
    int line;
    QString message;
};
