#include "actions/registry/EnvironmentFile.h"

#include "common/Files.h"
#include "common/Text.h"

#include <QFile>

namespace {

int const kBufferSize = 1024;

} // namespace

char const kRegSet[] = "REG_SET";

QList<EnvironmentDeclaration> readEnvironmentFile(QString const& fileName)
{
    QList<EnvironmentDeclaration> declarations;
    QFile file(fileName);
    if (!openRegularFile(file, QIODevice::ReadOnly))
        return declarations;

    char buffer[kBufferSize];
    for (;;) {
        qint64 const length = file.readLine(buffer, kBufferSize);
        if (length <= 0)
            return declarations;
        QString const line = latin1UpToNul(QByteArray(buffer, static_cast<int>(length))).trimmed();
        int const equals = line.indexOf(QLatin1Char('='));
        if (equals > 0) {
            EnvironmentDeclaration const declaration = {line.left(equals), line.mid(equals + 1)};
            declarations.append(declaration);
        }
    }
}
