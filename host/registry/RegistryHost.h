// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/vantora.h>

#include <QScopedPointer>

class AbstractPlugin;

namespace Reg {
class Registry;
}

/// The backend of the stand-in host: default settings, live values and plugins as one key space.
///
/// Keys under the root of a plugin go to that plugin, all others to the registry. One recursive
/// lock guards every operation, so the backend may be called from any thread, and by a plugin from
/// inside a request.
class RegistryHost : public Vantora
{
public:
    RegistryHost();
    ~RegistryHost() override;

    /// Adds the default settings of all "*.xml" files of `directory`, in name order; the same
    /// directory key may be declared by several files.
    ///
    /// @return false with a message (file, line, reason) in `error`: nothing of the directory has
    ///         been added.
    bool loadDefaults(QString const& directory, QString& error);

    /// Opens the live values, creating the file if there is none. Call once, after the defaults.
    ///
    /// @param databaseFile  a path, or ":memory:".
    /// @return false with a message in `error`; an existing file is left as it was.
    bool open(QString const& databaseFile, QString& error);

    /// Routes the keys under the plugin's root to it. `plugin` stays the caller's and must outlive
    /// the requests; the caller calls its `pluginIsLoaded`.
    void addPlugin(AbstractPlugin& plugin);

    /// What a plugin's `pluginIsLoaded` is given; lives as long as this object.
    Reg::Registry& defaultSettings();

    int set(QString const& key, QString const& value, _RegEntryParam const& param) override;
    using Vantora::get;
    int get(QString const& key, QMap<QString, _RegNodeType>& result, _RegEntryParam const& param,
            QString const& extra) override;
    int contains(QString const& key) override;
    int commit(QString const& key) override;
    int apply(QString const& key, QString const& command) override;
    int clone(QString const& source, QString const& target) override;
    int rollback(QString const& key) override;
    int watch(QStringList const& keys, int id) override;
    int changes(QMap<QString, _RegEntryChange>& changes) override;
    int create(QString const& key, _RegEntryType const& type) override;
    int del(QString const& key) override;
    int importRegistry(QByteArray& data) override;
    int exportRegistry(QString const& key, QByteArray& data) override;

private:
    class Private;
    QScopedPointer<Private> d;
};
