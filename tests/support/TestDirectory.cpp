// SPDX-License-Identifier: MIT

#include "support/TestDirectory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <stdlib.h>

namespace {

void removeTree(QString const& path)
{
    QDir::Filters const all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    QFileInfoList const entries = QDir(path).entryInfoList(all);
    for (QFileInfo const& entry : entries) {
        if (entry.isDir() && !entry.isSymLink())
            removeTree(entry.absoluteFilePath());
        else
            QFile::remove(entry.absoluteFilePath());
    }
    QDir().rmdir(path);
}

} // namespace

TestDirectory::TestDirectory()
{
    QByteArray name = QFile::encodeName(QDir::tempPath()) + "/zelvo-test-XXXXXX";
    if (!::mkdtemp(name.data()))
        qFatal("cannot make %s", name.constData());
    mPath = QFile::decodeName(name);
}

TestDirectory::~TestDirectory()
{
    removeTree(mPath);
}

QString TestDirectory::path() const
{
    return mPath;
}

QString TestDirectory::file(QString const& name) const
{
    return mPath + "/" + name;
}

QString TestDirectory::write(QString const& name, QByteArray const& content) const
{
    QFile file(this->file(name));
    QDir().mkpath(QFileInfo(file).absolutePath());
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
    return file.fileName();
}

QByteArray TestDirectory::read(QString const& name) const
{
    QFile file(this->file(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
