#include "doctor/ActionFacts.h"

#include "actions/registry/AutostartActions.h"
#include "actions/registry/RegistryActions.h"
#include "actions/registry/VexlinkCommitAction.h"
#include "display/DisplayModeActions.h"
#include "wireless/WirelessActions.h"

namespace {

enum Reading {
    NoScript,
    ScriptAlone,
    ScriptWithTargets,
    ScriptWithEnvironment,
    ScriptWithBoth,
};

struct ActionRow
{
    bool (*matches)(IConfigAction const& action);
    char const* name;
    ActionFacts::BackEnd backEnd;
    Reading reading;
    QStringList (*registryKeys)(IConfigAction const& action);
};

template <class Action> bool isA(IConfigAction const& action)
{
    return dynamic_cast<Action const*>(&action);
}

template <class Action> QStringList keyOf(IConfigAction const& action)
{
    QString const key = static_cast<Action const&>(action).registryKey();
    return key.isNull() ? QStringList() : QStringList(key);
}

QStringList displayKeysOf(IConfigAction const& action)
{
    return static_cast<DisplayModeActions const&>(action).registryKeyTemplates();
}

// A derived class stands before its base.
// clang-format off
#define ACTION(class) isA<class>, #class
ActionRow const kActions[] = {
    {ACTION(AutostartValueAction), ActionFacts::RegistryBackEnd, ScriptWithEnvironment,
        keyOf<AutostartValueAction>},
    {ACTION(AutostartSetValueAction), ActionFacts::RegistryBackEnd, ScriptWithBoth,
        keyOf<AutostartSetValueAction>},
    {ACTION(VexlinkCommitAction), ActionFacts::RegistryBackEnd, ScriptWithTargets,
        keyOf<VexlinkCommitAction>},

    {ACTION(SettingsVisibilityAction), ActionFacts::WirelessBackEnd, ScriptAlone, nullptr},
    {ACTION(ValueAction), ActionFacts::WirelessBackEnd, ScriptWithEnvironment, nullptr},
    {ACTION(CommitAction), ActionFacts::WirelessBackEnd, ScriptWithBoth, nullptr},

    {ACTION(ColorDepthActions), ActionFacts::DisplayBackEnd, NoScript, displayKeysOf},
    {ACTION(MultiMonitorModeActions), ActionFacts::DisplayBackEnd, NoScript, displayKeysOf},
    {ACTION(RefreshRateActions), ActionFacts::DisplayBackEnd, NoScript, displayKeysOf},
    {ACTION(ResolutionActions), ActionFacts::DisplayBackEnd, NoScript, displayKeysOf},
    {ACTION(PrimaryMonitorActions), ActionFacts::DisplayBackEnd, NoScript, displayKeysOf},

    {ACTION(RegistryValueAction), ActionFacts::RegistryBackEnd, ScriptWithEnvironment,
        keyOf<RegistryValueAction>},
    {ACTION(RegistrySetValueAction), ActionFacts::RegistryBackEnd, ScriptWithBoth,
        keyOf<RegistrySetValueAction>},
    {ACTION(RegistryCreateAction), ActionFacts::RegistryBackEnd, ScriptAlone,
        keyOf<RegistryCreateAction>},
    {ACTION(RegistryDelAction), ActionFacts::RegistryBackEnd, ScriptAlone,
        keyOf<RegistryDelAction>},
    {ACTION(RegistryCommitAction), ActionFacts::RegistryBackEnd, ScriptWithBoth,
        keyOf<RegistryCommitAction>},
    {ACTION(RegistryApplyAction), ActionFacts::RegistryBackEnd, ScriptAlone,
        keyOf<RegistryApplyAction>},

    {ACTION(DefaultIsVisibleAction), ActionFacts::NoBackEnd, ScriptAlone, nullptr},
    {ACTION(DefaultValueAction), ActionFacts::NoBackEnd, ScriptAlone, nullptr},
    {ACTION(DefaultSetValueAction), ActionFacts::NoBackEnd, ScriptAlone, nullptr},
    {ACTION(DefaultCreateAction), ActionFacts::NoBackEnd, ScriptAlone, nullptr},
    {ACTION(DefaultDelAction), ActionFacts::NoBackEnd, ScriptAlone, nullptr},
    {ACTION(DefaultCommitAction), ActionFacts::NoBackEnd, ScriptAlone, nullptr},
    {ACTION(DefaultApplyAction), ActionFacts::NoBackEnd, ScriptAlone, nullptr},
};
#undef ACTION
// clang-format on

ActionFacts factsOf(IConfigAction const& action, ActionRow const& row)
{
    ActionFacts facts;
    facts.name = QLatin1String(row.name);
    facts.backEnd = row.backEnd;
    if (row.registryKeys)
        facts.registryKeys = row.registryKeys(action);
    // The registry's actions serve keys that stand for none, too.
    if (row.backEnd == ActionFacts::RegistryBackEnd && facts.registryKeys.isEmpty())
        facts.backEnd = ActionFacts::NoBackEnd;
    facts.runsScript = row.reading != NoScript;
    facts.readsEnvironmentFile
        = row.reading == ScriptWithEnvironment || row.reading == ScriptWithBoth;
    facts.readsTargets = row.reading == ScriptWithTargets || row.reading == ScriptWithBoth;
    return facts;
}

} // namespace

ActionFacts::ActionFacts()
    : backEnd(NoBackEnd)
    , runsScript(false)
    , readsEnvironmentFile(false)
    , readsTargets(false)
{
}

ActionFacts factsOf(IConfigAction const* action)
{
    if (!action)
        return ActionFacts();
    for (ActionRow const& row : kActions) {
        if (row.matches(*action))
            return factsOf(*action, row);
    }
    return ActionFacts();
}

char const* keylessBackEndWords(ActionFacts::BackEnd backEnd)
{
    return backEnd == ActionFacts::WirelessBackEnd
        ? "NetworkManager: its devices, and a connection file"
        : "scripts";
}

char const* backEndWord(ActionFacts::BackEnd backEnd)
{
    switch (backEnd) {
    case ActionFacts::RegistryBackEnd:
        return "registry";
    case ActionFacts::DisplayBackEnd:
        return "display";
    case ActionFacts::WirelessBackEnd:
        return "wireless";
    case ActionFacts::NoBackEnd:
        break;
    }
    return "none";
}
