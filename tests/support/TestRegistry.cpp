// SPDX-License-Identifier: MIT

#include "support/TestRegistry.h"

TestRegistry::TestRegistry(QStringList const& keys)
{
    for (QString const& key : keys) {
        int const assignment = key.indexOf('=');
        if (assignment >= 0)
            addValue(key.left(assignment), key.mid(assignment + 1));
        else
            addDirectory(key.endsWith("/") ? key.left(key.size() - 1) : key);
    }
}

void TestRegistry::addValue(QString const& key, QString const& value, _RegEntryType type,
                            QString const& regExp)
{
    Value const entry = {value, type, regExp};
    mValues.insert(key, entry);
    link(key);
}

void TestRegistry::addDirectory(QString const& key)
{
    if (mChildren.contains(key))
        return;
    mChildren.insert(key, QStringList());
    link(key);
}

int TestRegistry::query(QString const& key, Reg::NodeSet& nodes, QString const&)
{
    mQueries.append(key);
    if (mValues.contains(key)) {
        nodes.append(makeNode(key));
        return 0;
    }
    if (!mChildren.contains(key))
        return 1;
    QStringList const children = mChildren.value(key);
    for (QString const& child : children)
        nodes.append(makeNode(child));
    return 0;
}

QStringList TestRegistry::queries() const
{
    return mQueries;
}

void TestRegistry::link(QString const& key)
{
    int const separator = key.lastIndexOf('/');
    if (separator < 0)
        return;
    QString const directory = key.left(separator);
    addDirectory(directory);
    QStringList& siblings = mChildren[directory];
    if (!siblings.contains(key))
        siblings.append(key);
}

Reg::Node* TestRegistry::makeNode(QString const& key) const
{
    if (!mValues.contains(key))
        return new Reg::Node(key);
    Value const value = mValues.value(key);
    return new Reg::Entry(key, value.text, value.type, value.regExp);
}
