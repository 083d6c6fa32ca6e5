// SPDX-License-Identifier: MIT

#include "common/Files.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>

#include <unistd.h>

bool openRegularFile(QFile& file, QIODevice::OpenMode mode)
{
    return QFileInfo(file).isFile() && file.open(mode);
}

namespace {

// Names with a dot in front are passed over by those who list the directory.
char const kTemporaryName[] = "/.zelvo-view-XXXXXX";

bool writeToDisk(QFile& file, QByteArray const& content)
{
    return file.write(content) == content.size() && file.flush() && ::fsync(file.handle()) == 0;
}

bool rename(QString const& from, QString const& to)
{
    return !from.isEmpty()
        && std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

enum Replacement { Replaced, NotReplaced, NotReplaceable };

/// Why a file could not be made beside the one to be replaced, or not be renamed over it. That one
/// may still be written itself when its directory may not be, or when it is a mount of its own.
Replacement replacementAfter(int error)
{
    bool const isForbidden = error == EACCES || error == EPERM || error == EROFS;
    return isForbidden || error == EBUSY || error == EXDEV ? NotReplaceable : NotReplaced;
}

Replacement replace(QString const& target, QByteArray const& content)
{
    QTemporaryFile file(QFileInfo(target).path() + QLatin1String(kTemporaryName));
    if (!file.open())
        return replacementAfter(errno);
    if (!writeToDisk(file, content))
        return NotReplaced;
    if (!rename(file.fileName(), target))
        return replacementAfter(errno);
    file.setAutoRemove(false);
    return Replaced;
}

bool rewrite(QString const& target, QByteArray const& content)
{
    QFile file(target);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    // Before the content is there. Of somebody else's file it is not ours to say who may read it.
    static_cast<void>(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
    return writeToDisk(file, content);
}

} // namespace

bool isMissing(QString const& path)
{
    return ::access(QFile::encodeName(path).constData(), F_OK) != 0
        && (errno == ENOENT || errno == ENOTDIR);
}

bool replaceFile(QString const& path, QByteArray const& content)
{
    QFileInfo const info(path);
    if (info.exists() && !(info.isFile() && info.isWritable()))
        return false;
    QString const target = info.exists() ? info.canonicalFilePath() : path;
    Replacement const replacement = replace(target, content);
    if (replacement == NotReplaceable && info.exists())
        return rewrite(target, content);
    return replacement == Replaced;
}
