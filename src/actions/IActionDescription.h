// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

class IConfigAction;
class IConfigEntry;

/// What does the work of actions where no script does, in words for programs and for people.
struct BackEnd
{
    /// "registry", "display": one word.
    char const* word;

    /// What it is, to be told before its registry keys or alone; null where these say it.
    char const* title;

    /// Where a value is from that it has answered: "the registry".
    char const* source;
};

/// What an action is; at first that of no action, where nothing does any work.
struct ActionDescription
{
    /// Empty for an action that does not describe itself.
    char const* className = "";

    /// Null where nothing works behind the scripts; in particular where nothing can be written.
    BackEnd const* backEnd = nullptr;

    /// The registry keys behind it, "{UUID}" standing for a session or a display profile.
    QStringList registryKeys;

    /// The files and directories that it reads or writes itself.
    QStringList files;

    /// Whether it looks for a script first.
    bool runsScript = false;

    /// Whether it gives the script the variables of the operation's environment file.
    bool readsEnvironmentFile = false;

    /// Whether "REG_SET" lines of "set.env" take the place of its registry keys.
    bool readsTargets = false;

    /// Whether its back end is given the value that was set, which waits in the plugin, at the
    /// commit. The registry has got it by then.
    bool takesWaitingValue = false;
};

/// An action that tells what it is. It stands beside IConfigAction, whose slots are the platform's,
/// and is found by a cast from there.
class IActionDescription
{
public:
    /// @param entry  of those that the action serves. Nothing is run or read for it.
    virtual ActionDescription describe(IConfigEntry const& entry) const = 0;

    /// Of an action that commits: the registry keys that it would write for `entry` just now.
    virtual QStringList keysToCommit(IConfigEntry const& entry) = 0;

protected:
    ~IActionDescription() { }
};

/// An action whose description is the same for each entry: what its constructors have said, at
/// first that it runs a script and has nothing behind it. It commits the targets of "set.env" if it
/// reads some there, else its registry keys, of each that of the entry's session.
class DescribedAction : public IActionDescription
{
public:
    ActionDescription describe(IConfigEntry const&) const override { return mDescription; }
    QStringList keysToCommit(IConfigEntry const& entry) override;

protected:
    DescribedAction() { mDescription.runsScript = true; }
    ~DescribedAction() { }

    /// To be called by each class on the way from the base to its own constructor.
    ///
    /// @param className  must stay valid.
    /// @return the description, to be completed.
    ActionDescription& describeAs(char const* className);

private:
    ActionDescription mDescription;
};

/// @param action  may be null.
ActionDescription descriptionOf(IConfigAction const* action, IConfigEntry const& entry);
