// SPDX-License-Identifier: MIT

#pragma once

#include "doctor/Problem.h"

#include <QList>
#include <QString>

/// What is to be said of a file of the wrappers tree.
struct Finding
{
    Severity severity;

    /// The full path.
    QString file;

    /// From 1; 0 for the file as a whole.
    int line;

    /// The view key in whose folder it lies; empty where there is none.
    QString key;

    QString message;
};

Finding makeFinding(QString const& file, QString const& key, Problem const& problem);

/// Whether one of them is more than a note.
bool hasFault(QList<Finding> const& findings);
