// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// True when `key` is `root` or lies under it. The text decides: nothing is normalised. A plugin,
/// which sees nothing of the host, says it for itself.
bool isAtOrUnder(QString const& key, QString const& root);

/// The key of the child `name` of `directory`.
QString childKey(QString const& directory, QString const& name);

/// True for "{UUID}" and "{uuid}", the names of template directories.
bool isPlaceholder(QString const& name);

/// True for a name that a session directory may bear: the toolkit reads a UUID other than the nil
/// one at its front, and all of it can stand in XML.
bool isSessionName(QString const& name);

/// True when every character of `text` can be written in XML as it is, and comes back as it was.
bool isXmlText(QString const& text);

/// Walks the components of a key, empty ones included, one after another.
class KeyPieces
{
public:
    explicit KeyPieces(QString const& key);

    /// Goes to the next component, at first to the first one. False behind the last.
    bool next();

    QString piece() const { return mKey.mid(mBegin, mEnd - mBegin); }

    /// The key from its beginning to the end of the current component.
    QString upToHere() const { return mKey.left(mEnd); }

    /// True when the current component is the last.
    bool isLast() const { return mEnd == mKey.size(); }

private:
    QString const mKey;
    int mBegin = 0;
    int mEnd = -1;
};
