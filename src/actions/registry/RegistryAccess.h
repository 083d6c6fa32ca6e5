// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/types.h>

#include <QString>

/// Reads one registry key through the kit's backend.
///
/// @return false when the key cannot be read: `out` then stays as it was.
bool readRegistry(QString const& key, _RegEntryParam param, QString& out);

/// Whether `text` is exactly one of the registry's words for false.
bool isFalseWord(QString const& text);

/// "false" for a false word, "true" for anything else.
QString boolWord(QString const& text);
