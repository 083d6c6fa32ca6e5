// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

/// One step of what a commit changes; the steps of a commit are taken in their order.
struct LiveChange
{
    enum Kind {
        /// Makes the session directory `key`, number `ordinal` in the order of creation.
        CreateDirectory,
        /// Removes the session directory `key` and all under it.
        RemoveDirectory,
        /// Gives the key a value of its own.
        SetValue,
        /// Lets the key fall back to its default.
        RemoveValue
    };

    Kind kind;
    QString key;
    QString value;
    qint64 ordinal;
};

typedef QList<LiveChange> LiveChanges;
