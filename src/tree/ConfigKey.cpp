// SPDX-License-Identifier: MIT

#include "tree/ConfigKey.h"

#include "actions/ActionKit.h"

#include <QVariant>

ConfigKey::ConfigKey(QString const& name, QString const& defaultValue, IConfigEntry* parent)
    : AbstractConfigEntry(name, parent)
    , mDefaultValue(defaultValue)
    , mType(REG_TYPE_STRING)
{
    if (parent)
        parent->addChild(this);
}

void ConfigKey::del()
{
    setState(ENTRY_DELETING);
    QVariant nothing;
    ActionKit::instance()->delAction(*this, nothing);
    setState(ENTRY_IDLE);
}

void ConfigKey::commit()
{
    setState(ENTRY_COMMITTING);
    QVariant value = mBufferValue;
    ActionKit::instance()->commitAction(*this, value);
    setState(ENTRY_IDLE);
}

void ConfigKey::apply()
{
    setState(ENTRY_APPLYING);
    QVariant nothing;
    ActionKit::instance()->applyAction(*this, nothing);
    setState(ENTRY_IDLE);
}

IConfigEntry* ConfigKey::clone()
{
    setState(ENTRY_CLONING);
    ConfigKey* const copy = new ConfigKey(name(), mDefaultValue, nullptr);
    copy->mType = mType;
    copy->mRegExp = mRegExp;
    copy->mBufferValue = mBufferValue;
    setState(ENTRY_IDLE);
    return copy;
}

QString ConfigKey::value() const
{
    QVariant value;
    return ActionKit::instance()->valueAction(*this, value) ? value.toString() : QString();
}

void ConfigKey::setValue(QString const& value)
{
    QVariant stored = value;
    bool const ran = ActionKit::instance()->setValueAction(*this, stored);
    mBufferValue = ran ? stored.toString() : value;
}
