// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

class DefaultNode;
class LiveNode;

/// What a key stands for, found by one walk along its components.
struct Place
{
    /// True when `key` is the innermost session directory itself.
    bool isSession(QString const& key) const;

    /// What declares the key; null for an unknown key.
    DefaultNode const* declaration = nullptr;

    /// What is stored at or under the key, or null.
    LiveNode const* live = nullptr;

    /// The keys of the session directories on the way, the outermost first.
    QStringList sessions;

    /// A literal placeholder stands in the key: it names a template, not a place.
    bool isTemplate = false;

    /// The key is no template's, and all session directories on the way have been created.
    bool exists = false;
};

/// Finds `key` among the declarations and the live values. Components that are UUIDs stand for
/// the template directory declared at their level.
Place findPlace(DefaultNode const& declarations, LiveNode const& live, QString const& key);
