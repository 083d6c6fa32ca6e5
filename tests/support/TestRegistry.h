// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/registry.h>

#include <QHash>
#include <QStringList>

/// Default settings made of a list of keys, in that order.
class TestRegistry : public Reg::Registry
{
public:
    /// @param keys  "KEY=DEFAULT" for a value, "KEY/" for a directory; the directories above a key
    ///              are made on the way.
    explicit TestRegistry(QStringList const& keys = QStringList());

    void addValue(QString const& key, QString const& value, _RegEntryType type = REG_TYPE_STRING,
                  QString const& regExp = QString());
    void addDirectory(QString const& key);

    int query(QString const& key, Reg::NodeSet& nodes, QString const& extra) override;

    /// The keys that were asked for, in order.
    QStringList queries() const;

private:
    struct Value
    {
        QString text;
        _RegEntryType type;
        QString regExp;
    };

    /// Adds `key` to the children of the directory above it, and so on upwards.
    void link(QString const& key);
    Reg::Node* makeNode(QString const& key) const;

    QHash<QString, Value> mValues;
    // By directory: the full keys of its children.
    QHash<QString, QStringList> mChildren;
    QStringList mQueries;
};
