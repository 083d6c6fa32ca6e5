// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>

/// How a wrapper was started, as the recorder saw it.
struct Record
{
    /// The script's name, without its folder.
    QByteArray script() const;

    /// The value of a variable; null when there is none of that name.
    QByteArray variable(QByteArray const& name) const;

    QList<QByteArray> arguments;
    QList<QByteArray> environment;
    QByteArray folder;
    /// Of the file that the second argument names.
    QByteArray value;
};

/// What the recorder wrote since the last call.
QList<Record> takeRecords();
