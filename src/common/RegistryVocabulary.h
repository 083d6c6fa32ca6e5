// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

/// The words of the platform's registry. Each list is in the order of the host's enumeration of the
/// same name, where there is one.
namespace RegistryVocabulary {

/// "{uuid}": stands for a session's UUID in a view key.
QString const& viewPlaceholder();

/// "{UUID}": stands for a session's UUID in a registry key.
QString const& registryPlaceholder();

/// "root": the top of the registry's keys.
QString const& rootWord();

/// Node kinds, by _RegNodeType.
QStringList const& nodeKinds();

/// Entry parameters, by _RegEntryParam.
QStringList const& entryParams();

/// Value types, by _RegEntryType.
QStringList const& entryTypes();

/// Kinds of change, by _RegEntryChange.
QStringList const& changeKinds();

/// Words read as true.
QStringList const& trueWords();

/// Words read as false.
QStringList const& falseWords();

} // namespace RegistryVocabulary
