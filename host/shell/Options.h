// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

/// What the program was called with.
struct Options
{
    QStringList plugins;
    QString baseDir;
    QString registryFile;
    QStringList defaults;
    int timeoutSeconds = 120;
    bool json = false;
    bool keepGoing = false;
    bool verbose = false;
    bool trace = false;
    bool echo = false;

    /// The commands and what else follows the options, as one list.
    QStringList words;
};

/// Reads the program's arguments, which are UTF-8.
///
/// @return true: `options` is filled and the program goes on; false: it ends with `exitStatus`, and
///         what is to be said (help, version, an error) has been said.
bool readOptions(int argc, char** argv, Options& options, int& exitStatus);
