// SPDX-License-Identifier: MIT

#pragma once

#include "plugin/ZelvoView.h"
#include "support/TestBackend.h"
#include "support/TestKit.h"
#include "support/TestRegistry.h"
#include "support/TestWrappers.h"

#include <QFileInfo>
#include <QMap>
#include <QScopedPointer>
#include <QStringList>
#include <QtTest>

/// The plugin under a root of the host's choice.
class RootedView : public ZelvoView
{
public:
    RootedView(QString const& root, QString const& tmpRoot)
        : mRoot(root)
        , mTmpRoot(tmpRoot)
    {
    }

    QString rootDir() const override { return mRoot; }
    QString tmpRootDir() const override { return mTmpRoot; }

private:
    QString mRoot;
    QString mTmpRoot;
};

/// A backend that has the plugin answer for its own keys, as the host does.
class HostBackend : public TestBackend
{
public:
    HostBackend()
        : mPlugin(nullptr)
    {
    }

    using Vantora::get;

    int get(QString const& key, QMap<QString, _RegNodeType>& result, _RegEntryParam const& param,
            QString const& extra) override
    {
        if (mPlugin && (key == mPlugin->rootDir() || key.startsWith(mPlugin->rootDir() + "/")))
            return mPlugin->get(key, result, param, extra);
        return TestBackend::get(key, result, param, extra);
    }

    void serve(ZelvoView* plugin) { mPlugin = plugin; }

private:
    ZelvoView* mPlugin;
};

/// A started plugin with all that it stands on. The view has an area that scripts serve ("radio":
/// its keys' order matters), USB, RDP and ICA sessions (none yet), and an empty directory.
class PluginScene
{
public:
    explicit PluginScene(QString const& rootDir)
        : root(rootDir)
        , plugin(new RootedView(rootDir, "tmp/zelvo-view"))
    {
        QStringList const keys = QStringList() << "usb/enable=true"
                                               << "usb/read_only=false"
                                               << "radio/ssid="
                                               << "radio/security=open"
                                               << "radio/passphrase="
                                               << "rdp/sessions/{uuid}/name=Session"
                                               << "rdp/sessions/{uuid}/autostart=false"
                                               << "rdp/sessions/{uuid}/address="
                                               << "ica/sessions/{uuid}/name=Session"
                                               << "ica/sessions/{uuid}/proxy/address="
                                               << "ica/sessions/{uuid}/proxy/port=8080"
                                               << "empty/";
        for (QString const& key : keys) {
            int const assignment = key.indexOf('=');
            if (assignment < 0)
                defaults.addDirectory(rootDir + "/" + key.left(key.size() - 1));
            else
                defaults.addValue(rootDir + "/" + key.left(assignment), key.mid(assignment + 1));
        }
        addSessions("rdesktop", QStringList());
        addSessions("ica", QStringList());
        backend.serve(plugin.data());
        load(defaults, baseDir());
    }

    /// Loads the plugin (once more).
    void load(Reg::Registry& registry, QString const& baseDirectory)
    {
        plugin->pluginIsLoaded(backend, registry, "the host's own", baseDirectory);
        keepInstanceKnown();
    }

    QString baseDir() const { return QFileInfo(wrappers.directory().path()).path(); }

    /// The full key of a key below the root.
    QString at(QString const& key) const { return root + "/" + key; }

    /// The sessions that the registry holds; the connection type is the registry's.
    void addSessions(QString const& type, QStringList const& uuids)
    {
        QStringList children;
        for (QString const& uuid : uuids)
            children << uuid + "/";
        backend.addDirectory("root/ConnectionType/" + type + "/connections", children);
    }

    /// Makes the commits of the area "radio" visible in `commits()`.
    void logRadioCommits() const
    {
        QStringList const names = QStringList() << "ssid"
                                                << "security"
                                                << "passphrase";
        for (QString const& name : names)
            wrappers.addScript("zelvo-view/radio/" + name, "commit.sh",
                               "echo \"" + name.toLatin1() + "=$(cat \"$1\")\" >> ../log");
    }

    /// The values of "radio" that were committed, "KEY=VALUE" each, in order.
    QStringList commits() const
    {
        QByteArray const log = wrappers.read("zelvo-view/radio", "log");
        QStringList lines = QString::fromUtf8(log.constData(), log.size()).split("\n");
        lines.removeAll(QString());
        return lines;
    }

    void hide(QString const& viewKey) const
    {
        wrappers.addScript("zelvo-view" + viewKey, "isVisible.sh", "exit 1");
    }

    int get(QString const& key, QStringList* answer = nullptr) const
    {
        QMap<QString, _RegNodeType> result;
        int const code = plugin->get(key, result, REG_PARAM_VALUE, "");
        if (answer)
            *answer = described(result);
        return code;
    }

    int set(QString const& key, QString const& value) const
    {
        return plugin->set(key, value, REG_PARAM_VALUE);
    }

    int create(QString const& key) const { return plugin->create(key, REG_TYPE_STRING); }
    int del(QString const& key) const { return plugin->del(key); }
    int commit(QString const& key) const { return plugin->commit(key); }
    int apply(QString const& key) const { return plugin->apply(key, ""); }
    int contains(QString const& key) const { return plugin->contains(key); }

    /// "KIND TEXT" for each answer, in the order of the texts.
    static QStringList described(QMap<QString, _RegNodeType> const& result)
    {
        char const* const kinds[] = {"dir", "key", "value", "default"};
        QStringList lines;
        QStringList const texts = result.keys();
        for (QString const& text : texts)
            lines << QString(kinds[result.value(text)]) + " " + text;
        return lines;
    }

    QString const root;
    HostBackend backend;
    TestRegistry defaults;
    TestWrappers wrappers;
    // The first to go.
    QScopedPointer<ZelvoView> plugin;

private:
    Q_DISABLE_COPY(PluginScene)
};

/// The texts that a host may choose for the plugin's root, as the rows of a global table "root".
inline void addRoots()
{
    QTest::addColumn<QString>("root");
    QTest::newRow("root/zelvo-view") << "root/zelvo-view";
    QTest::newRow("/zelvo-view") << "/zelvo-view";
    QTest::newRow("a/b/zelvo-view") << "a/b/zelvo-view";
}
