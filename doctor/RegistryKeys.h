// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class ExaminedEntry;
class ExaminedView;

/// What the default settings know of a registry key.
enum KeyKnowledge { UnknownKey, DirectoryKey, DeclaredValue, TemporaryKey };

/// @param key  may hold a UUID or a placeholder where the default settings have either placeholder.
KeyKnowledge knowledgeOf(ExaminedView& view, QString const& key);

/// The key that somebody may have meant by an unknown one; null when there is none.
QString likelyKey(ExaminedView& view, QString const& key);
