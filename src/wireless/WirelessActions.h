// SPDX-License-Identifier: MIT

#pragma once

#include "actions/default/DefaultActions.h"
#include "actions/registry/RegistryActions.h"

#include <QScopedPointer>

class NMConfFile;

// The actions of the wireless keys. Each lets the wrapper script of the entry do the work and turns
// to the connection file or to NetworkManager when there is none or it fails; which setting is
// meant is told by the entry's name. Host thread only.
//
// "ValueAction", "CommitAction" and "SettingsVisibilityAction" are the platform's names, kept as
// they are. The actions of another area bear that area's name: a second class "ValueAction" in the
// program would be taken for this one.

/// Reads "enable" (a bool), "ssid", "security" or "passphrase" (texts, never null). False for any
/// other name. Writes no file.
class ValueAction : public RegistryValueAction
{
public:
    ValueAction();
    ~ValueAction() override;

    bool execute(IConfigEntry const& entry, QVariant& data) override;

private:
    // Of the last call; kept until the next one, so that there is never more than one.
    QScopedPointer<NMConfFile> mConnection;
};

/// Writes "ssid", "security" or "passphrase" to the connection file, at once. A null value is
/// nothing to write: true. False for any other name ("enable" is nothing that can be written) and
/// for a passphrase that would not read back from the file. Whether it was written is not told.
///
/// A change of type takes the passphrase in the file along, and an open network has none: a new
/// type is to be committed before the passphrase that goes with it.
class CommitAction : public RegistryCommitAction
{
public:
    CommitAction();
    ~CommitAction() override;

    bool execute(IConfigEntry const& entry, QVariant& data) override;
    ActionDescription describe(IConfigEntry const& entry) const override;

private:
    bool write(QString const& setting, QString const& value);

    // Of the last call; kept until the next one, so that there is never more than one.
    QScopedPointer<NMConfFile> mConnection;
};

/// The wireless settings are shown where there is a wireless device, or where it is only switched
/// off, which a marker file tells.
class SettingsVisibilityAction : public DefaultIsVisibleAction
{
public:
    SettingsVisibilityAction();

    bool execute(IConfigEntry const& entry, QVariant& data) override;
};
