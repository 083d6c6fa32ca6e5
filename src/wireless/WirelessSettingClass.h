// SPDX-License-Identifier: MIT

#pragma once

#include "actions/ISettingClass.h"

#include <QMap>
#include <QStringList>

/// The wireless settings: the keys below "zelvo-view/wireless" can be read and committed, and the
/// branch itself says whether they are shown. What is set reaches the class with the commit.
///
/// Lives for the process, and so do its actions: they are made when they are first asked for, one
/// for each operation, and never deleted. Host thread only.
class WirelessSettingClass : public ISettingClass
{
public:
    WirelessSettingClass();
    ~WirelessSettingClass() override { }

    IConfigAction* isVisibleAction(QString const& key) const override;
    IConfigAction* valueAction(QString const& key) const override;
    IConfigAction* setValueAction(QString const&) const override { return nullptr; }
    IConfigAction* createAction(QString const&) const override { return nullptr; }
    IConfigAction* delAction(QString const&) const override { return nullptr; }
    IConfigAction* commitAction(QString const& key) const override;
    IConfigAction* applyAction(QString const&) const override { return nullptr; }

private:
    Q_DISABLE_COPY(WirelessSettingClass)

    template <class Action> IConfigAction* cached(Action_t operation) const;

    QStringList mHandledKeys;
    mutable QMap<Action_t, IConfigAction*> mActions;
};
