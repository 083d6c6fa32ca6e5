// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/types.h>

#include <QList>
#include <QString>

namespace Reg {

/// A named place in the registry; a node that is no `Entry` is a directory.
class Node
{
public:
    explicit Node(QString const& absoluteName);
    virtual ~Node();

    /// The node's own name, the last component of its key.
    QString name() const;

    /// The full key.
    QString absoluteName() const;

private:
    QString mAbsoluteName;
};

/// A value of the registry.
class Entry : public Node
{
public:
    Entry(QString const& absoluteName, QString const& value, _RegEntryType type = REG_TYPE_STRING,
          QString const& regExp = QString());

    QString value() const;
    _RegEntryType type() const;

    /// The regular expression that a value must match; null when there is none.
    QString regExp() const;

private:
    QString mValue;
    _RegEntryType mType;
    QString mRegExp;
};

/// The answer of a query, in order. Owns its nodes.
class NodeSet
{
public:
    NodeSet();
    ~NodeSet();

    /// Takes ownership of `node`.
    void append(Node* node);

    int size() const;

    /// The node at `index`, which must lie in [0, size()); it stays the set's.
    Node* at(int index) const;

    /// All nodes, in order; they stay the set's.
    QList<Node*> list() const;

private:
    Q_DISABLE_COPY(NodeSet)

    QList<Node*> mNodes;
};

/// Something that knows keys and answers for them.
class Registry
{
public:
    virtual ~Registry();

    /// Appends to `nodes` the direct children of the directory `key`, in document order, or the
    /// value `key` itself. A directory's own node is never among the answers.
    ///
    /// @param extra  passed on by callers, without a meaning here.
    /// @return 0, or non-zero when `key` is unknown (`nodes` is then left alone).
    virtual int query(QString const& key, NodeSet& nodes, QString const& extra) = 0;
};

} // namespace Reg
