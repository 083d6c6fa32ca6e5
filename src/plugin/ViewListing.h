// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/types.h>

#include <QMap>
#include <QString>

class ConfigBranch;
class Vantora;

/// Adds the visible children of `branch`, whose full key is `key`.
void listVisibleChildren(ConfigBranch const& branch, QString const& key,
                         QMap<QString, _RegNodeType>& result);

/// Whether the backend lists every session that `key` names.
///
/// @param root  that of the view.
bool sessionsAreListed(Vantora& backend, QString const& key, QString const& root);
