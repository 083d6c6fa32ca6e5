// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Whether a component of a key path names a session: it parses as a UUID, and not as the nil one.
bool isUuidComponent(QString const& component);

/// The first UUID among the components of a key path; null when there is none.
QString firstUuidComponent(QString const& path);

/// A key path up to and including its first UUID component; the whole path when it has none.
QString pathToFirstUuid(QString const& path);

/// A key path with `replacement` in place of each UUID component.
QString replaceUuidComponents(QString const& path, QString const& replacement);

/// A key path in the form in which it is registered and declared: "{uuid}" in place of each UUID.
QString generalisedPath(QString const& path);
