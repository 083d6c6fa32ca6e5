// SPDX-License-Identifier: MIT

#include "actions/registry/EnvironmentFile.h"

#include "actions/default/RequestContext.h"
#include "actions/default/Wrapper.h"
#include "common/Files.h"
#include "common/Text.h"

char const kRegSet[] = "REG_SET";

bool EnvironmentDeclaration::isTarget() const
{
    return name == QLatin1String(kRegSet);
}

EnvironmentFileReader::EnvironmentFileReader(QString const& fileName)
    : mFile(fileName)
{
    // One that cannot be opened reads as one without lines.
    static_cast<void>(openRegularFile(mFile, QIODevice::ReadOnly));
}

bool EnvironmentFileReader::next()
{
    if (!mFile.isOpen())
        return false;
    char buffer[kLongestEnvironmentLine + 1];
    qint64 const length = mFile.readLine(buffer, sizeof buffer);
    if (length <= 0)
        return false;
    mBytes = QByteArray(buffer, static_cast<int>(length));
    mText = latin1UpToNul(mBytes).trimmed();
    mEquals = mText.indexOf(QLatin1Char('='));
    return true;
}

EnvironmentDeclaration EnvironmentFileReader::declaration() const
{
    return {mText.left(mEquals), mText.mid(mEquals + 1)};
}

QList<EnvironmentDeclaration> readEnvironmentFile(QString const& fileName)
{
    QList<EnvironmentDeclaration> declarations;
    EnvironmentFileReader reader(fileName);
    while (reader.next()) {
        if (reader.isDeclaration())
            declarations.append(reader.declaration());
    }
    return declarations;
}

QList<EnvironmentDeclaration> readEnvironmentFile(IConfigEntry const& entry, char const* fileName)
{
    if (RequestContext::sAreFoldersMissing(entry))
        return QList<EnvironmentDeclaration>();
    return readEnvironmentFile(Wrapper::path(entry, fileName));
}

QSet<QString> targetKeys(IConfigEntry const& entry)
{
    QSet<QString> targets;
    QList<EnvironmentDeclaration> const lines = readEnvironmentFile(entry, Wrapper::kSetEnv);
    for (EnvironmentDeclaration const& declaration : lines) {
        if (declaration.isTarget())
            targets.insert(declaration.registryKey);
    }
    return targets;
}
