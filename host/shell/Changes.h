// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/types.h>

#include <QMap>
#include <QString>

class TracedHost;

/// What a commit would do to one key.
struct PendingOutcome
{
    _RegEntryChange change;

    /// The value that was set; null for what is created, deleted or replaced by a new directory.
    QString value;

    /// The value, or what happens, on one line.
    QString text() const;
};

/// What a commit of `key`, or of all that is pending if it is empty, would do, key by key. A
/// plugin's pending values are those it was given; what its scripts make of them shows afterwards.
QMap<QString, PendingOutcome> pendingOutcomes(TracedHost& host, QString const& key);
