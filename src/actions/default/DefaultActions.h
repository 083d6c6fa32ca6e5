// SPDX-License-Identifier: MIT

#pragma once

#include "actions/IActionDescription.h"
#include "actions/IConfigAction.h"

#include <QStringList>

// The actions that leave a key to the wrapper scripts of its folder. Where the script is missing,
// all of them answer false and leave `data` alone. They keep no state: one instance serves many
// entries, from any thread once the plugin is loaded, and each call blocks for as long as its
// script runs (30 seconds at most).

/// "/isVisible.sh": `data` becomes whether its exit status is 0.
class DefaultIsVisibleAction : public IConfigAction, public DescribedAction
{
public:
    DefaultIsVisibleAction() { describeAs("DefaultIsVisibleAction"); }

    bool execute(IConfigEntry const& entry, QVariant& data) override;
};

/// "/get.sh": its whole output, a final newline included, becomes `data`. False when it fails.
class DefaultValueAction : public IConfigAction, public DescribedAction
{
public:
    DefaultValueAction() { describeAs("DefaultValueAction"); }

    bool execute(IConfigEntry const& entry, QVariant& data) override;

    /// The environment of the script, a line per variable: here the plugin's own.
    virtual QStringList processEnvironment(IConfigEntry const& entry);
};

/// "/set.sh": gets the value in a file and prints what it made of it, which becomes `data`: an
/// empty text when it prints nothing. False when it fails.
class DefaultSetValueAction : public IConfigAction, public DescribedAction
{
public:
    DefaultSetValueAction() { describeAs("DefaultSetValueAction"); }

    bool execute(IConfigEntry const& entry, QVariant& data) override;

    /// The environment of the script, a line per variable: here the plugin's own.
    virtual QStringList processEnvironment(IConfigEntry const& entry);
};

/// "/create.sh". False when it fails; `data` is not used.
class DefaultCreateAction : public IConfigAction, public DescribedAction
{
public:
    DefaultCreateAction() { describeAs("DefaultCreateAction"); }

    bool execute(IConfigEntry const& entry, QVariant& data) override;
};

/// "/del.sh". True whenever the script is there; `data` is not used.
class DefaultDelAction : public IConfigAction, public DescribedAction
{
public:
    DefaultDelAction() { describeAs("DefaultDelAction"); }

    bool execute(IConfigEntry const& entry, QVariant& data) override;
};

/// "/commit.sh": gets the value in a file. False when it fails.
class DefaultCommitAction : public IConfigAction, public DescribedAction
{
public:
    DefaultCommitAction() { describeAs("DefaultCommitAction"); }

    bool execute(IConfigEntry const& entry, QVariant& data) override;

    /// The environment of the script, a line per variable: here the plugin's own.
    virtual QStringList processEnvironment(IConfigEntry const& entry);
};
