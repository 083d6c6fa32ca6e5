#pragma once

#include <vantora/types.h>

#include <QMap>
#include <QString>

class TracedHost;

/// Asks the host for a key, and sees where a value that it answers comes from: "script", "display",
/// "wireless", "registry", or "default" where nobody had a value.
///
/// Nobody tells; it is read off what the request leads to. A successful get.sh is a script's value.
/// Otherwise it comes from what the plugin asked next: a value under the registry's display keys, or
/// any other value of the registry; else from the bus, if that was asked at any time. A plugin that
/// asked nobody answers for itself: `source` is then empty, and so it is without a value.
///
/// @return the result code.
int getWithSource(TracedHost& host, QString const& key, QMap<QString, _RegNodeType>& answer,
                  QString& source);
