// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/types.h>

#include <QHash>
#include <QList>
#include <QRegExp>
#include <QString>

/// A declared place: a directory with its children in document order, or a value with its type, its
/// default and the expression it must match. Read-only once the defaults are loaded.
class DefaultNode
{
public:
    /// A directory.
    explicit DefaultNode(QString const& name);

    /// A value.
    ///
    /// @param regExp  matched against the whole value; null for none.
    DefaultNode(QString const& name, _RegEntryType type, QString const& defaultValue,
                QString const& regExp);

    /// Deletes the children.
    ~DefaultNode();

    QString name() const { return mName; }
    bool isValue() const { return mIsValue; }

    /// A deep copy, the caller's.
    DefaultNode* clone() const;

    // Of a directory.

    /// Takes ownership of `child`, whose name must be free here.
    void append(DefaultNode* child);

    /// In document order, the template directory included; they stay this node's.
    QList<DefaultNode*> children() const { return mChildren; }

    /// The child of that very name, or null.
    DefaultNode* child(QString const& name) const { return mChildByName.value(name); }

    /// The child named by a placeholder, after which session directories are made, or null.
    DefaultNode* templateDirectory() const { return mTemplateDirectory; }

    // Of a value.

    _RegEntryType type() const { return mType; }
    QString defaultValue() const { return mDefaultValue; }

    /// Null when there is none.
    QString regExp() const;

    /// True when `value` is the default, or fits the type and matches the regular expression. Calls
    /// for one node must not overlap: the expression keeps the state of its last match.
    bool admits(QString const& value) const;

private:
    Q_DISABLE_COPY(DefaultNode)

    QString mName;
    bool mIsValue;
    _RegEntryType mType = REG_TYPE_STRING;
    QString mDefaultValue;
    QRegExp mRegExp;
    QList<DefaultNode*> mChildren;
    QHash<QString, DefaultNode*> mChildByName;
    DefaultNode* mTemplateDirectory = nullptr;
};
