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
    QTemporaryFile file(QFileInfo(target).path() + QLatin1String(kTemporaryName));
    if (!file.open() || !writeToDisk(file, content) || !rename(file.fileName(), target))
        return false;
    file.setAutoRemove(false);
    return true;
}
