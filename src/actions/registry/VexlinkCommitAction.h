// SPDX-License-Identifier: MIT

#pragma once

#include "actions/registry/RegistryActions.h"

/// Commits a terminal session: "/commit.sh" gets its settings, and what is happening to it, in
/// environment variables.
class VexlinkCommitAction : public RegistryCommitAction
{
public:
    /// @param registryKey  the session's directory.
    explicit VexlinkCommitAction(QString const& registryKey);

    /// The plugin's own environment and the "VEXLINK_" variables; neither "/commit.env" nor
    /// "REG_SET" takes part.
    ///
    /// @param entry  the session; a child that it lacks gives an empty value.
    QStringList processEnvironment(IConfigEntry const& entry) override;
};
