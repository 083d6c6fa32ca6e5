#pragma once

#include <QList>
#include <QString>

/// One line of an environment file: a variable's name, "=", a registry key.
struct EnvironmentDeclaration
{
    QString name;
    QString registryKey;
};

/// The name with which a line declares a target of setting instead of a variable.
extern char const kRegSet[];

/// The declarations of an environment file, in order; none when the file is missing or unreadable.
///
/// Lines are trimmed; those without a name before their first "=" are passed over. A line is read
/// in pieces of at most 1023 bytes, each of which counts as a line, and up to its first NUL.
QList<EnvironmentDeclaration> readEnvironmentFile(QString const& fileName);
