// SPDX-License-Identifier: MIT

#pragma once

#include "registry/RegistryHost.h"

#include <QMap>
#include <QScopedPointer>
#include <QString>

class ZelvoView;

/// The host with the plugin loaded and a number of sessions in its registry: the real classes, with
/// a folder of wrapper scripts that starts empty. Everything a benchmark does outside its timed
/// loop.
///
/// The plugin's action kit is one for the process and serves the scene that was made, or `use`d,
/// last.
class Scene
{
public:
    /// @param directory  for the registry's file; says whether a commit reaches a disk.
    Scene(int sessions, QString const& directory);
    ~Scene();

    /// A scene on the memory file system, kept for the process and in use from now on.
    static Scene& sWith(int sessions);

    /// The same with its registry on the disk, in the current directory.
    static Scene& sOnDisk(int sessions);

    /// "/tmp", which is memory in the sandbox.
    static QString sMemory();

    // Of session number `i`.
    static QString sUuid(int i);
    static QString sName(int i);
    static QString sViewKey(int i);
    /// The registry key of the session's name.
    static QString sRegistryKey(int i);

    /// The directory of the sessions.
    static QString sViewDirectory();
    static QString sRegistryDirectory();

    /// Loads the plugin again, so that the action kit is this scene's.
    void use();

    /// Adds the XML files of another folder to the default settings.
    void addDefaults(QString const& directory);

    /// Writes an executable script with this body.
    QString addScript(QString const& viewKey, QString const& name, QByteArray const& body) const;

    /// What the host answers for a key; ends the program when the host does not know it.
    QMap<QString, _RegNodeType> get(QString const& key);

    QString wrappersDir() const;

    RegistryHost& host();
    ZelvoView& plugin();

private:
    Q_DISABLE_COPY(Scene)

    void addSessions(int sessions);

    QString mBaseDir;
    // The plugin goes first.
    QScopedPointer<RegistryHost> mHost;
    QScopedPointer<ZelvoView> mPlugin;
};

/// Ends the program when a request did not succeed: a benchmark of failures says nothing.
void need(int code, char const* what);
