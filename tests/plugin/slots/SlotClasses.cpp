// SPDX-License-Identifier: MIT

// The classes whose slots are listed in slots.txt. The interfaces hide the names of their slots, so
// each that no class here implements whole gets one that does.

#include "actions/ActionKit.h"
#include "actions/default/ApplyTask.h"
#include "actions/default/DefaultActions.h"
#include "actions/default/DefaultApplyAction.h"
#include "actions/default/LastCommandTask.h"
#include "actions/registry/AutostartActions.h"
#include "actions/registry/RegistryActions.h"
#include "actions/registry/VexlinkCommitAction.h"
#include "plugin/AutoThread.h"
#include "plugin/ZelvoView.h"
#include "tree/ConfigKey.h"
#include "tree/ConfigTree.h"

class SettingClassProbe : public ISettingClass
{
public:
    IConfigAction* isVisibleAction(QString const& key) const override;
    IConfigAction* valueAction(QString const& key) const override;
    IConfigAction* setValueAction(QString const& key) const override;
    IConfigAction* createAction(QString const& key) const override;
    IConfigAction* delAction(QString const& key) const override;
    IConfigAction* commitAction(QString const& key) const override;
    IConfigAction* applyAction(QString const& key) const override;
};

// The compiler lays out what is used.
void useClasses(AbstractPlugin&, ActionKit&, ApplyTask&, AutoThread&, AutostartSetValueAction&,
                AutostartValueAction&, ConfigKey&, ConfigTree&, LastCommandTask&,
                RegistryApplyAction&, RegistryCommitAction&, RegistryCreateAction&,
                RegistryDelAction&, SettingClassProbe&, VexlinkCommitAction&, ZelvoView&);
