// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/types.h>

#include <QMap>
#include <QString>

class Vantora;

/// What a key answers: a value, or the full keys of its children.
typedef QMap<QString, _RegNodeType> Listing;

/// Asks for the value or the children of a full key.
///
/// @return the result code.
int lookUp(Vantora& host, QString const& key, Listing& answer);

/// The full key: with "root/" in front unless it lies in one of the two key spaces already.
QString fullKey(QString const& typed);

/// The last component of a key.
QString ownName(QString const& key);

/// A node of a listing as a person sees it: its own name, that of a directory with a "/" behind it.
/// A value is its own text.
QString shownName(QString const& key, _RegNodeType type);

/// Whether an answer is a value, or the default that stands in for one.
bool isOneValue(Listing const& answer);
