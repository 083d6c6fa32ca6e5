// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class IConfigAction;

/// The actions of one settings area. Each getter takes a key with "{uuid}" in place of UUIDs and
/// answers the action that serves it, or null where the class leaves the key to others. The actions
/// stay the class's.
class ISettingClass
{
public:
    /// The operations, as numbered for the whole plugin.
    enum Action_t {
        ACTION_IS_VISIBLE = 1,
        ACTION_VALUE,
        ACTION_SET_VALUE,
        ACTION_CREATE,
        ACTION_DEL,
        ACTION_COMMIT,
        ACTION_APPLY
    };

    virtual ~ISettingClass() { }

    virtual IConfigAction* isVisibleAction(QString const& key) const = 0;
    virtual IConfigAction* valueAction(QString const& key) const = 0;
    virtual IConfigAction* setValueAction(QString const& key) const = 0;
    virtual IConfigAction* createAction(QString const& key) const = 0;
    virtual IConfigAction* delAction(QString const& key) const = 0;
    virtual IConfigAction* commitAction(QString const& key) const = 0;
    virtual IConfigAction* applyAction(QString const& key) const = 0;
};
