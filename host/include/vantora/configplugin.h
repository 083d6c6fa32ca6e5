// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/types.h>

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

class Vantora;

namespace Reg {
class Registry;
}

/// What the host asks of a plugin. The order of the operations is part of the binary interface.
///
/// Every operation answers 0 for success (`contains`: the key exists) and non-zero for a failure or
/// a key that the plugin does not handle. The host never calls two of them at once.
class ConfigPlugin
{
public:
    virtual ~ConfigPlugin();

    /// Sets a value, pending until `commit`.
    virtual int set(QString const& key, QString const& value, _RegEntryParam const& param) = 0;

    /// Adds the answer for `key` to `result`: the children of a directory, or one value. What
    /// `result` already holds is overwritten by key, never removed.
    virtual int get(QString const& key, QMap<QString, _RegNodeType>& result,
                    _RegEntryParam const& param, QString const& extra)
        = 0;

    virtual int contains(QString const& key) = 0;

    /// Writes out all that is pending at or under `key`.
    virtual int commit(QString const& key) = 0;

    /// Makes what is configured at or under `key` effective. Returns before the work is done; its
    /// end is told through the key `command`, unless that is empty.
    virtual int apply(QString const& key, QString const& command) = 0;

    virtual int clone(QString const& source, QString const& target) = 0;

    /// Drops all that is pending at or under `key`.
    virtual int rollback(QString const& key) = 0;

    virtual int watch(QStringList const& keys, int id) = 0;

    /// Adds the pending changes to `changes`, by registry key.
    virtual int changes(QMap<QString, _RegEntryChange>& changes) = 0;

    /// Creates a key, pending until `commit`.
    virtual int create(QString const& key, _RegEntryType const& type) = 0;

    /// Deletes a key, pending until `commit`.
    virtual int del(QString const& key) = 0;

    virtual int importRegistry(QByteArray& data) = 0;
    virtual int exportRegistry(QString const& key, QByteArray& data) = 0;

    /// Called once, before any request.
    ///
    /// @param backend   the whole key space; outlives the plugin.
    /// @param registry  the default settings; outlives the plugin.
    /// @param text      the host's own.
    /// @param baseDir   the plugin's base directory.
    virtual void pluginIsLoaded(Vantora& backend, Reg::Registry& registry, QString const& text,
                                QString const& baseDir)
        = 0;

    virtual int trySet(QString const& key, QString const& value) = 0;

    /// The key under which the plugin's tree lies; its last component is the plugin's name.
    virtual QString rootDir() const = 0;

    /// The same in the temporary key space.
    virtual QString tmpRootDir() const = 0;
};
