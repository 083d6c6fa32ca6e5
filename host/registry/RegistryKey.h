// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

/// True when `key` is `root` or lies under it. The text decides: nothing is normalised. A plugin,
/// which sees nothing of the host, says it for itself.
bool isAtOrUnder(QString const& key, QString const& root);

/// The same for one of several roots.
bool isAtOrUnderOneOf(QString const& key, QStringList const& roots);

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

/// The node of a key in the tree under `top`; null when the tree does not go that far.
template <typename Node> Node const* findNode(Node const& top, QString const& key)
{
    Node const* node = &top;
    KeyPieces pieces(key);
    while (node && pieces.next())
        node = node->child(pieces.piece());
    return node;
}
