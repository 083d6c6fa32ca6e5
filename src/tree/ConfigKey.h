// SPDX-License-Identifier: MIT

#pragma once

#include "tree/AbstractConfigEntry.h"

#include <vantora/types.h>

/// A leaf of the view tree. It stores what was set until the commit; the value itself is read and
/// written by the actions of the key.
class ConfigKey : public AbstractConfigEntry
{
public:
    /// Links the key into `parent`, which owns it from then on; without a parent it is the
    /// caller's.
    ConfigKey(QString const& name, QString const& defaultValue, IConfigEntry* parent);

    bool addChild(IConfigEntry*) override { return false; }
    IConfigEntry* child(QString const&) const override { return nullptr; }
    void del() override;
    void commit() override;
    void apply() override;
    IConfigEntry* clone() override;

    QString defaultValue() const { return mDefaultValue; }

    /// The type and the regular expression are carried for the host; no value is checked against
    /// them here.
    _RegEntryType type() const { return mType; }
    void setType(_RegEntryType type) { mType = type; }
    QString regExp() const { return mRegExp; }
    void setRegExp(QString const& regExp) { mRegExp = regExp; }

    /// What was set and not committed yet; null when nothing was.
    QString bufferValue() const { return mBufferValue; }
    void setBufferValue(QString const& value) { mBufferValue = value; }

    /// The current value, from the key's value action; null when there is no such action or it
    /// failed. Neither the default nor the buffered value stands in for it.
    QString value() const;

    /// Hands `value` to the key's set-value action and buffers what the action made of it; `value`
    /// itself when there is no action or it failed.
    void setValue(QString const& value);

private:
    QString mDefaultValue;
    _RegEntryType mType;
    QString mRegExp;
    QString mBufferValue;
};
