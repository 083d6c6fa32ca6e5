// SPDX-License-Identifier: MIT

#include "registry/DefaultsDirectories.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

// Where the shipped default settings lie, seen from the program: installed, and in a build folder,
// which has a link to them.
char const* const kShippedPlaces[] = {"../share/zelvo-view/defaults", "../share/defaults"};

QStringList shippedDefaults()
{
    QDir const programDirectory(QCoreApplication::applicationDirPath());
    for (char const* const place : kShippedPlaces) {
        QString const directory = programDirectory.filePath(QLatin1String(place));
        if (QFileInfo(directory).isDir())
            return QStringList(QDir::cleanPath(directory));
    }
    return QStringList();
}

} // namespace

QStringList defaultsDirectories(QStringList const& given, QString const& baseDir)
{
    QStringList directories = given.isEmpty() ? shippedDefaults() : given;
    QString const own = QDir(baseDir).filePath(QLatin1String("defaults"));
    if (QFileInfo(own).isDir())
        directories.append(own);
    return directories;
}
