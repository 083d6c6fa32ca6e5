// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QSet>
#include <QString>

class IConfigEntry;

/// One line of an environment file: a variable's name, "=", a registry key.
struct EnvironmentDeclaration
{
    /// Whether it declares a target of setting instead of a variable: in "set.env" alone.
    bool isTarget() const;

    QString name;
    QString registryKey;
};

/// The name of a target.
extern char const kRegSet[];

/// A longer line is read in pieces, each of which counts as a line.
int const kLongestEnvironmentLine = 1023;

/// Goes through the lines of an environment file.
///
/// A line is read up to its first NUL. It is trimmed, and declares something when it has a name
/// before its first "=".
class EnvironmentFileReader
{
public:
    /// A file that is missing or unreadable has no lines.
    explicit EnvironmentFileReader(QString const& fileName);

    /// Goes to the next line, at first to the first one. False behind the last.
    bool next();

    /// The current line as it stands in the file, its end included.
    QByteArray bytes() const { return mBytes; }

    bool isDeclaration() const { return mEquals > 0; }

    /// Of a line that is one.
    EnvironmentDeclaration declaration() const;

private:
    Q_DISABLE_COPY(EnvironmentFileReader)

    QFile mFile;
    QByteArray mBytes;
    QString mText;
    int mEquals = -1;
};

/// The declarations of an environment file, in order.
QList<EnvironmentDeclaration> readEnvironmentFile(QString const& fileName);

/// Those of a file in the folder of an entry.
QList<EnvironmentDeclaration> readEnvironmentFile(IConfigEntry const& entry, char const* fileName);

/// The targets that the "set.env" of an entry declares, as they stand there.
QSet<QString> targetKeys(IConfigEntry const& entry);
