#include "common/Files.h"

#include <QFile>
#include <QFileInfo>

bool openRegularFile(QFile& file, QIODevice::OpenMode mode)
{
    return QFileInfo(file).isFile() && file.open(mode);
}
