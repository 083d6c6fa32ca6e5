// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/types.h>

#include <QMap>
#include <QString>

class TracedHost;

/// Asks the host for a key, and learns where a value that it answers comes from: what the plugin of
/// the key tells of it ("script", or the word of what stands behind the key), "registry" where
/// there is no plugin, or "default" where nobody had a value. Empty where the plugin tells nothing,
/// and without a value.
///
/// @return the result code.
int getWithSource(TracedHost& host, QString const& key, QMap<QString, _RegNodeType>& answer,
                  QString& source);
