// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

/// What the program was called with.
struct Options
{
    enum Command { Explain, Check, Map };

    Options();

    Command command;
    QString baseDir;
    QStringList defaults;
    QString registryFile;
    bool json;

    /// Of "explain".
    QStringList keys;
    bool run;

    /// Of "map".
    bool markdown;
};

/// Reads the program's arguments, which are UTF-8.
///
/// @return true: `options` is filled and the program goes on; false: it ends with `exitStatus`, and
///         what is to be said (help, version, an error) has been said.
bool readOptions(int argc, char** argv, Options& options, int& exitStatus);
