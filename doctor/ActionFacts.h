#pragma once

#include <QString>
#include <QStringList>

class IConfigAction;

/// What people are told of an action.
struct ActionFacts
{
    enum BackEnd { NoBackEnd, RegistryBackEnd, DisplayBackEnd, WirelessBackEnd };

    ActionFacts();

    /// The class; null for an action that is not known here, and for none.
    QString name;

    /// What does the work where no script does.
    BackEnd backEnd;

    /// The registry keys behind it, "{UUID}" standing for a session or a display profile.
    QStringList registryKeys;

    /// Whether it looks for a script first.
    bool runsScript;

    /// Whether it gives the script the variables of the operation's environment file.
    bool readsEnvironmentFile;

    /// Whether "REG_SET" lines of "set.env" take the place of its registry key.
    bool readsTargets;
};

/// @param action  may be null.
ActionFacts factsOf(IConfigAction const* action);

/// What a key stands for whose back end has no registry keys.
char const* keylessBackEndWords(ActionFacts::BackEnd backEnd);

/// "registry", "display", "wireless" or, for none, "none".
char const* backEndWord(ActionFacts::BackEnd backEnd);
