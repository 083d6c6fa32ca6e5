// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

class AbstractPlugin;
class QObject;

/// Loads plugins from their modules, after checking that they were built for this host.
///
/// Owns the plugin objects. Modules are never unloaded: a thread of a plugin may outlive its
/// object.
class PluginLoader
{
public:
    PluginLoader() { }

    /// Deletes the plugin objects, the last one loaded first. What they were given in
    /// `pluginIsLoaded` must still be there.
    ~PluginLoader();

    /// Loads a module and takes its plugin object; `pluginIsLoaded` is left to the caller.
    ///
    /// @return the plugin, which stays this object's; null with a message in `error` when there is
    ///         no such file, it is no module, it lacks an entry point, was built for another host,
    ///         gives no plugin, or is loaded already.
    AbstractPlugin* load(QString const& file, QString& error);

private:
    Q_DISABLE_COPY(PluginLoader)

    QList<QObject*> mInstances;
};
