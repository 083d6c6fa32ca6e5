// SPDX-License-Identifier: MIT

#include "registry/DefaultNode.h"

#include "registry/RegistryKey.h"
#include "registry/ValueType.h"

DefaultNode::DefaultNode(QString const& name)
    : mName(name)
    , mIsValue(false)
{
}

DefaultNode::DefaultNode(QString const& name, _RegEntryType type, QString const& defaultValue,
                         QString const& regExp)
    : mName(name)
    , mIsValue(true)
    , mType(type)
    , mDefaultValue(defaultValue)
    , mRegExp(regExp)
{
}

DefaultNode::~DefaultNode()
{
    qDeleteAll(mChildren);
}

DefaultNode* DefaultNode::clone() const
{
    if (mIsValue)
        return new DefaultNode(mName, mType, mDefaultValue, regExp());
    DefaultNode* const copy = new DefaultNode(mName);
    for (DefaultNode const* child : mChildren)
        copy->append(child->clone());
    return copy;
}

void DefaultNode::append(DefaultNode* child)
{
    mChildren.append(child);
    mChildByName.insert(child->name(), child);
    if (isPlaceholder(child->name()))
        mTemplateDirectory = child;
}

QString DefaultNode::regExp() const
{
    return mRegExp.pattern().isEmpty() ? QString() : mRegExp.pattern();
}

bool DefaultNode::admits(QString const& value) const
{
    if (value == mDefaultValue)
        return true;
    if (!typeAdmits(mType, value))
        return false;
    return mRegExp.pattern().isEmpty() || mRegExp.exactMatch(value);
}
