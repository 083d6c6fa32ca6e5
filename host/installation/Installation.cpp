// SPDX-License-Identifier: MIT

#include "installation/Installation.h"

#include <QCoreApplication>

Installation::Installation()
    : mProgramDirectory(QCoreApplication::applicationDirPath())
{
}

bool Installation::exists() const
{
    return mProgramDirectory.exists(QLatin1String(INSTALLED_DATA_DIR));
}

QStringList Installation::plugins() const
{
    QDir const directory(place(INSTALLED_PLUGIN_DIR));
    QStringList const names
        = directory.entryList(QStringList(QLatin1String("*.so")), QDir::Files, QDir::Name);
    QStringList files;
    for (QString const& name : names)
        files.append(directory.filePath(name));
    return files;
}

QString Installation::baseDir() const
{
    return place(INSTALLED_BASE_DIR);
}

QString Installation::registryFile() const
{
    return place(INSTALLED_STATE_DIR "/registry.db");
}

QString Installation::place(char const* relativePath) const
{
    return QDir::cleanPath(mProgramDirectory.filePath(QLatin1String(relativePath)));
}
