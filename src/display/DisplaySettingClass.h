// SPDX-License-Identifier: MIT

#pragma once

#include "actions/ISettingClass.h"

#include <QMap>
#include <QString>

class ConfigActions;
class Vantora;

/// The display settings: the keys below "zelvo-view/display" can be read, set and committed, each
/// by one object. A wrapper script for one of these operations takes precedence, for that operation
/// alone: the class then leaves it to the others.
///
/// A getter tells the object that it answers which operation is meant, so the object is to be run
/// before the next getter is called. Host thread only.
class DisplaySettingClass : public ISettingClass
{
public:
    /// @param backend  must outlive the class and its actions.
    explicit DisplaySettingClass(Vantora& backend);

    /// Leaves the actions alone: they live for the process.
    ~DisplaySettingClass() override { }

    IConfigAction* isVisibleAction(QString const&) const override { return nullptr; }
    IConfigAction* valueAction(QString const& key) const override;
    IConfigAction* setValueAction(QString const& key) const override;
    IConfigAction* createAction(QString const&) const override { return nullptr; }
    IConfigAction* delAction(QString const&) const override { return nullptr; }
    IConfigAction* commitAction(QString const& key) const override;
    IConfigAction* applyAction(QString const&) const override { return nullptr; }

private:
    Q_DISABLE_COPY(DisplaySettingClass)

    /// The object of `key`, told to do `action`; null for any other key and where `script` exists.
    IConfigAction* builtInAction(QString const& key, char const* script, Action_t action) const;

    Vantora& mBackend;
    QMap<QString, ConfigActions*> mActions;
};
