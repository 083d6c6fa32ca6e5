// SPDX-License-Identifier: MIT

#pragma once

#include "actions/default/DefaultActions.h"
#include "actions/default/DefaultApplyAction.h"

#include <QSet>
#include <QString>

// The actions of view keys that stand for a registry key. Each lets the wrapper script of the entry
// do the work and turns to the registry when there is none or it fails.
//
// A registry key may hold "{UUID}", which is replaced by the UUID of the entry's path. A null one
// means that the view key stands for no registry key: there is then nothing behind the script.

/// Reads the registry key; a boolean reads as "true" or "false". "/get.env" gives the script
/// further registry values.
class RegistryValueAction : public DefaultValueAction
{
public:
    explicit RegistryValueAction(QString const& registryKey);

    bool execute(IConfigEntry const& entry, QVariant& data) override;

    /// The plugin's own environment and the variables of "/get.env" whose registry keys can be
    /// read.
    QStringList processEnvironment(IConfigEntry const& entry) override;

private:
    QString mRegistryKey;
};

/// Sets the registry key, or the keys that "REG_SET" lines of "/set.env" name in its place; the
/// first that fails ends the work. Commits nothing.
///
/// Without such lines a script that succeeds replaces the write. With them it runs once for each
/// key, told it in "REG_SET", and what it prints is what is written.
///
/// Keeps the state of a call in the instance: one call at a time.
class RegistrySetValueAction : public DefaultSetValueAction
{
public:
    explicit RegistrySetValueAction(QString const& registryKey);

    /// A null value is not written: true.
    bool execute(IConfigEntry const& entry, QVariant& data) override;

    /// The plugin's own environment, the variables of "/set.env" whose registry keys can be read,
    /// and "REG_SET", the key being written. Collects the targets anew.
    QStringList processEnvironment(IConfigEntry const& entry) override;

    /// Sets one key.
    ///
    /// @param force  write what a succeeding script printed; otherwise the script has done it all.
    bool execute(IConfigEntry const& entry, QVariant& data, QString const& key, bool force);

private:
    QSet<QString> mTargetKeys;
    QString mCurrentKey;
    QString mRegistryKey;
};

/// Creates the registry key.
class RegistryCreateAction : public DefaultCreateAction
{
public:
    explicit RegistryCreateAction(QString const& registryKey);

    bool execute(IConfigEntry const& entry, QVariant& data) override;

private:
    QString mRegistryKey;
};

/// Deletes the registry key, unless there is a delete script: that alone then counts.
class RegistryDelAction : public DefaultDelAction
{
public:
    explicit RegistryDelAction(QString const& registryKey);

    bool execute(IConfigEntry const& entry, QVariant& data) override;

private:
    QString mRegistryKey;
};

/// Commits the registry key, or the keys that were set in its place ("REG_SET" lines of
/// "/set.env"); the first that fails ends the work. The script runs once for each, told it in
/// "REG_SET".
///
/// Keeps the state of a call in the instance: one call at a time.
class RegistryCommitAction : public DefaultCommitAction
{
public:
    explicit RegistryCommitAction(QString const& registryKey);

    bool execute(IConfigEntry const& entry, QVariant& data) override;

    /// The plugin's own environment, the variables of "/commit.env" whose registry keys can be
    /// read, and "REG_SET", the key being committed.
    QStringList processEnvironment(IConfigEntry const& entry) override;

    /// As it was given.
    QString registryKey() const { return mRegistryKey; }

    /// The targets that "/set.env" names, as they stand there.
    QSet<QString> getRegSet(IConfigEntry const& entry) const;

    /// Commits one key.
    bool execute(IConfigEntry const& entry, QVariant& data, QString const& key);

private:
    QString mCurrentKey;
    QString mRegistryKey;
};

/// Applies the registry key in the backend when there is no apply script to queue.
class RegistryApplyAction : public DefaultApplyAction
{
public:
    explicit RegistryApplyAction(QString const& registryKey);

    bool execute(IConfigEntry const& entry, QVariant& data) override;

private:
    QString mRegistryKey;
};
