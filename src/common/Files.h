// SPDX-License-Identifier: MIT

#pragma once

#include <QIODevice>

class QByteArray;
class QFile;
class QString;

/// Opens a file, unless it is anything but a regular one (or a link to one): a pipe would wait for
/// its other end, and a device may never end.
bool openRegularFile(QFile& file, QIODevice::OpenMode mode);

/// Whether there is nothing of that name. False as well when nobody can tell.
bool isMissing(QString const& path);

/// Puts `content` in place of what a regular file (or the one that a link leads to) holds, or makes
/// the file. It belongs to its owner alone then. Whoever reads it meanwhile, or finds it after a
/// power cut, reads the old content or the new one, never a part.
///
/// A file that another one cannot take the place of (its directory may not be written to, or it is
/// a mount of its own) but that may be written itself is emptied and written. Then all this does
/// not hold: a power cut or a full disk can leave a part.
///
/// @return false: the file is as it was, and none was made. There is no room, say, or no right to
///         write, or the path is that of another kind of file.
bool replaceFile(QString const& path, QByteArray const& content);
