// SPDX-License-Identifier: MIT

#include <vantora/registry.h>

namespace Reg {

Node::Node(QString const& absoluteName)
    : mAbsoluteName(absoluteName)
{
}

Node::~Node()
{
}

QString Node::name() const
{
    return mAbsoluteName.mid(mAbsoluteName.lastIndexOf(QLatin1Char('/')) + 1);
}

QString Node::absoluteName() const
{
    return mAbsoluteName;
}

Entry::Entry(QString const& absoluteName, QString const& value, _RegEntryType type,
             QString const& regExp)
    : Node(absoluteName)
    , mValue(value)
    , mType(type)
    , mRegExp(regExp)
{
}

QString Entry::value() const
{
    return mValue;
}

_RegEntryType Entry::type() const
{
    return mType;
}

QString Entry::regExp() const
{
    return mRegExp;
}

NodeSet::NodeSet()
{
}

NodeSet::~NodeSet()
{
    qDeleteAll(mNodes);
}

void NodeSet::append(Node* node)
{
    mNodes.append(node);
}

int NodeSet::size() const
{
    return mNodes.size();
}

Node* NodeSet::at(int index) const
{
    return mNodes.at(index);
}

QList<Node*> NodeSet::list() const
{
    return mNodes;
}

Registry::~Registry()
{
}

} // namespace Reg
