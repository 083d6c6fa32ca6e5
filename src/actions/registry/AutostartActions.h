// SPDX-License-Identifier: MIT

#pragma once

#include "actions/registry/RegistryActions.h"

/// Reads a session's autostart flag: "false" for any of the registry's false words, else "true".
class AutostartValueAction : public RegistryValueAction
{
public:
    explicit AutostartValueAction(QString const& registryKey);

    bool execute(IConfigEntry const& entry, QVariant& data) override;
};

/// Sets a session's autostart flag: 0 for exactly "false", else 1. The view writes two words only,
/// while a registry may hold any, so this is stricter than reading, on purpose. `data` becomes the
/// number even where setting it fails.
class AutostartSetValueAction : public RegistrySetValueAction
{
public:
    explicit AutostartSetValueAction(QString const& registryKey);

    using RegistrySetValueAction::execute;
    bool execute(IConfigEntry const& entry, QVariant& data) override;
};
