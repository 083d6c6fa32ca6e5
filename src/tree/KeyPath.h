// SPDX-License-Identifier: MIT

#pragma once

#include <QLatin1String>
#include <QString>
#include <QStringList>

/// A key: entry names joined by "/". A value type; the text is kept exactly as given, and all
/// comparisons are case-sensitive. A null path and an empty one behave alike.
class KeyPath
{
public:
    KeyPath() { }
    virtual ~KeyPath() { }

    // Not explicit, on purpose: wherever a path is wanted, its text will do.
    // NOLINTBEGIN(google-explicit-constructor)
    KeyPath(QString const& path);
    KeyPath(QLatin1String const& path);
    /// `path` is Latin-1, up to its NUL.
    KeyPath(char const* path);
    // NOLINTEND(google-explicit-constructor)

    /// The text, as given.
    QString toString() const { return mPath; }

    /// The text behind the last "/"; the whole path when it holds none.
    QString basename() const;

    /// The path before the last "/"; an empty path when there is none.
    KeyPath dirname() const;

    /// The names between the separators, empty ones dropped.
    QStringList splitEntryNames() const;

    /// Whether `other` is this path or lies below it.
    bool isRootOf(QString const& other) const;

    /// Takes `root` off the front when it is a root of this path, else changes nothing. The "/"
    /// that followed the root stays: "x/a" without "x" is "/a".
    KeyPath& removeRoot(QString const& root);

private:
    QString mPath;
};
