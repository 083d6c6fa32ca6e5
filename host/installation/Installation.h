// SPDX-License-Identifier: MIT

#pragma once

#include <QDir>
#include <QString>
#include <QStringList>

/// Where an installed program of the host finds what an administrator need not name.
///
/// All places are relative to the program: an installation works wherever it is put, as a whole.
class Installation
{
public:
    /// The one that the running program belongs to. The application object exists.
    Installation();

    /// Whether the program is installed; one in a build folder is not, and no place below counts.
    bool exists() const;

    /// The files of the installed plugins, in the order of their names.
    QStringList plugins() const;

    /// The plugins' base directory, which need not exist.
    QString baseDir() const;

    /// The database of the live values. It need not exist, nor its directory.
    QString registryFile() const;

private:
    QString place(char const* relativePath) const;

    QDir mProgramDirectory;
};
