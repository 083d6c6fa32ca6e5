#pragma once

#include <QString>

/// Something that does not do what it seems to be there for.
struct Finding
{
    /// The full path.
    QString file;

    /// From 1; 0 for the file as a whole.
    int line;

    /// The view key in whose folder it lies; empty where there is none.
    QString key;

    QString message;
};
