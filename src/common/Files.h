#pragma once

#include <QIODevice>

class QFile;

/// Opens a file, unless it is anything but a regular one (or a link to one): a pipe would wait for
/// its other end, and a device may never end.
bool openRegularFile(QFile& file, QIODevice::OpenMode mode);
