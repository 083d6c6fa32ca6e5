// SPDX-License-Identifier: MIT

#include "plugin/ViewKeyMap.h"

#include "actions/registry/ActionScene.h"
#include "actions/registry/AutostartActions.h"
#include "support/TestProgram.h"

#include <QSet>
#include <QVariant>
#include <QtTest>

#include <typeinfo>

namespace {

char const kUuid[] = "{c0ffee00-1234-4321-abcd-0123456789ab}";

struct LeafRow
{
    char const* viewKey;
    char const* registryKey;
    bool isAutostart;
};

// clang-format off
LeafRow const kLeaves[] = {
    {"zelvo-view/auto_update/enable",                 "root/auto-update/enableOnBootup",                             false},
    {"zelvo-view/browser/sessions/{uuid}/name",       "root/ConnectionType/iceweasel/connections/{UUID}/label",      false},
    {"zelvo-view/browser/sessions/{uuid}/autostart",  "root/ConnectionType/iceweasel/connections/{UUID}/autostart",  true},
    {"zelvo-view/browser/sessions/{uuid}/url",        "root/ConnectionType/iceweasel/connections/{UUID}/address",    false},
    {"zelvo-view/ica/sessions/{uuid}/name",           "root/ConnectionType/ica/connections/{UUID}/label",            false},
    {"zelvo-view/ica/sessions/{uuid}/autostart",      "root/ConnectionType/ica/connections/{UUID}/autostart",        true},
    {"zelvo-view/ica/sessions/{uuid}/address",        "root/ConnectionType/ica/connections/{UUID}/address",          false},
    {"zelvo-view/ica/sessions/{uuid}/proxy/address",  "root/ConnectionType/ica/connections/{UUID}/proxyAddress",     false},
    {"zelvo-view/ica/sessions/{uuid}/proxy/port",     "root/ConnectionType/ica/connections/{UUID}/proxyPort",        false},
    {"zelvo-view/rdp/sessions/{uuid}/name",           "root/ConnectionType/rdesktop/connections/{UUID}/label",       false},
    {"zelvo-view/rdp/sessions/{uuid}/autostart",      "root/ConnectionType/rdesktop/connections/{UUID}/autostart",   true},
    {"zelvo-view/rdp/sessions/{uuid}/address",        "root/ConnectionType/rdesktop/connections/{UUID}/address",     false},
    {"zelvo-view/remote_assistance/enable",           "root/vncserver/coreSettings/enableVncShadow",                 false},
    {"zelvo-view/vexlink/sessions/{uuid}/name",       "root/ConnectionType/vexlink/connections/{UUID}/label",        false},
    {"zelvo-view/vexlink/sessions/{uuid}/autostart",  "root/ConnectionType/vexlink/connections/{UUID}/autostart",    true},
    {"zelvo-view/usb/enable",                         "root/USB/root/mass-storage/allowed",                          false},
    {"zelvo-view/usb/read_only",                      "root/USB/root/mass-storage/read-only",                        false},
    {"zelvo-view/vmware/sessions/{uuid}/name",        "root/ConnectionType/view/connections/{UUID}/label",           false},
    {"zelvo-view/vmware/sessions/{uuid}/autostart",   "root/ConnectionType/view/connections/{UUID}/autostart",       true},
    {"zelvo-view/vmware/sessions/{uuid}/address",     "root/ConnectionType/view/connections/{UUID}/server",          false},
    {"zelvo-view/xenapp/sessions/{uuid}/name",        "root/ConnectionType/pnagent/connections/{UUID}/label",        false},
    {"zelvo-view/xenapp/sessions/{uuid}/autostart",   "root/ConnectionType/pnagent/connections/{UUID}/autostart",    true},
    {"zelvo-view/xenapp/sessions/{uuid}/address",     "root/ConnectionType/pnagent/connections/{UUID}/address",      false},
};

struct DirectoryRow
{
    char const* viewDirectory;
    char const* registryDirectory;
};

DirectoryRow const kDirectories[] = {
    {"zelvo-view/browser/sessions", "root/ConnectionType/iceweasel/connections"},
    {"zelvo-view/ica/sessions",     "root/ConnectionType/ica/connections"},
    {"zelvo-view/rdp/sessions",     "root/ConnectionType/rdesktop/connections"},
    {"zelvo-view/vexlink/sessions", "root/ConnectionType/vexlink/connections"},
    {"zelvo-view/vmware/sessions",  "root/ConnectionType/view/connections"},
    {"zelvo-view/xenapp/sessions",  "root/ConnectionType/pnagent/connections"},
};
// clang-format on

typedef IConfigAction* (ActionKit::*Registered)(IConfigEntry const&) const;

/// A kit with the whole map.
class MapScene : public ActionScene
{
public:
    MapScene() { registerViewKeys(kit(), backend); }

    ActionKit& kit() { return *ActionKit::instance(); }

    /// The key of a session that is named here, for a key with a placeholder.
    ConfigKey& keyOf(QString viewKey) { return key(viewKey.replace("{uuid}", kUuid)); }

    /// The actions of all operations but visibility.
    QList<IConfigAction*> actionsOf(IConfigEntry const& entry)
    {
        Registered const getters[]
            = {&ActionKit::registeredValueAction,  &ActionKit::registeredSetValueAction,
               &ActionKit::registeredCreateAction, &ActionKit::registeredDelAction,
               &ActionKit::registeredCommitAction, &ActionKit::registeredApplyAction};
        QList<IConfigAction*> actions;
        for (Registered const getter : getters)
            actions << (kit().*getter)(entry);
        return actions;
    }
};

QString concrete(QString registryKey)
{
    return registryKey.replace("{UUID}", kUuid);
}

void addLeafColumns()
{
    QTest::addColumn<QString>("viewKey");
    QTest::addColumn<QString>("registryKey");
    QTest::addColumn<bool>("isAutostart");
    for (LeafRow const& row : kLeaves)
        QTest::newRow(row.viewKey) << row.viewKey << row.registryKey << row.isAutostart;
}

void addDirectoryColumns()
{
    QTest::addColumn<QString>("viewDirectory");
    QTest::addColumn<QString>("registryDirectory");
    for (DirectoryRow const& row : kDirectories)
        QTest::newRow(row.viewDirectory) << row.viewDirectory << row.registryDirectory;
}

} // namespace

class ViewKeyMapTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void leafReads_data() { addLeafColumns(); }
    void leafReads();
    void leafReadsBooleans_data() { addLeafColumns(); }
    void leafReadsBooleans();
    void leafSets_data() { addLeafColumns(); }
    void leafSets();
    void leafCommitsAndDeletes_data() { addLeafColumns(); }
    void leafCommitsAndDeletes();
    void leafIsNeitherCreatedNorApplied_data() { addLeafColumns(); }
    void leafIsNeitherCreatedNorApplied();
    void leafActionsAreOfTheirKind_data() { addLeafColumns(); }
    void leafActionsAreOfTheirKind();
    void noActionServesTwoRows();

    void sessionsAreThoseOfTheRegistryDirectory_data() { addDirectoryColumns(); }
    void sessionsAreThoseOfTheRegistryDirectory();
    void sessionIsCreatedDeletedAndCommitted_data() { addDirectoryColumns(); }
    void sessionIsCreatedDeletedAndCommitted();
    void commitOfATerminalSessionAloneHandsOverItsSettings_data() { addDirectoryColumns(); }
    void commitOfATerminalSessionAloneHandsOverItsSettings();

    void usbAreaIsAppliedByTheRegistry();
    void hasNoRegistration_data();
    void hasNoRegistration();
};

void ViewKeyMapTest::initTestCase()
{
    simplifyEnvironment();
}

void ViewKeyMapTest::leafReads()
{
    QFETCH(QString, viewKey);
    QFETCH(QString, registryKey);
    QFETCH(bool, isAutostart);

    MapScene scene;
    scene.backend.addValue(concrete(registryKey), "off");
    QVariant data;
    QVERIFY(scene.kit().valueAction(scene.keyOf(viewKey), data));
    QCOMPARE(data, QVariant(QString(isAutostart ? "false" : "off")));
    QCOMPARE(scene.backend.calls(),
             QStringList() << "get " + registryKey + " type"
                           << "get " + concrete(registryKey));
}

void ViewKeyMapTest::leafReadsBooleans()
{
    QFETCH(QString, viewKey);
    QFETCH(QString, registryKey);

    MapScene scene;
    scene.backend.addType(registryKey, "bool");
    scene.backend.addValue(concrete(registryKey), "on");
    QVariant data;
    QVERIFY(scene.kit().valueAction(scene.keyOf(viewKey), data));
    QCOMPARE(data, QVariant(QString("true")));
}

void ViewKeyMapTest::leafSets()
{
    QFETCH(QString, viewKey);
    QFETCH(QString, registryKey);
    QFETCH(bool, isAutostart);

    MapScene scene;
    QVariant data = QString("no");
    QVERIFY(scene.kit().setValueAction(scene.keyOf(viewKey), data));
    QCOMPARE(scene.backend.calls("set"),
             QStringList() << "set " + concrete(registryKey) + (isAutostart ? " 1" : " no"));
}

void ViewKeyMapTest::leafCommitsAndDeletes()
{
    QFETCH(QString, viewKey);
    QFETCH(QString, registryKey);

    MapScene scene;
    QVariant data = QString("x");
    QVERIFY(scene.kit().commitAction(scene.keyOf(viewKey), data));
    QVERIFY(scene.kit().delAction(scene.keyOf(viewKey), data));
    QCOMPARE(scene.backend.calls(),
             QStringList() << "commit " + concrete(registryKey) << "del " + concrete(registryKey));
}

void ViewKeyMapTest::leafIsNeitherCreatedNorApplied()
{
    QFETCH(QString, viewKey);

    MapScene scene;
    QVariant data;
    QVERIFY(!scene.kit().createAction(scene.keyOf(viewKey), data));
    QVERIFY(!scene.kit().applyAction(scene.keyOf(viewKey), data));
    QCOMPARE(scene.backend.calls(), QStringList());
}

void ViewKeyMapTest::leafActionsAreOfTheirKind()
{
    QFETCH(QString, viewKey);
    QFETCH(bool, isAutostart);

    MapScene scene;
    ConfigKey const& key = scene.keyOf(viewKey);
    IConfigAction const& value = *scene.kit().registeredValueAction(key);
    IConfigAction const& setValue = *scene.kit().registeredSetValueAction(key);
    QVERIFY(typeid(value)
            == (isAutostart ? typeid(AutostartValueAction) : typeid(RegistryValueAction)));
    QVERIFY(typeid(setValue)
            == (isAutostart ? typeid(AutostartSetValueAction) : typeid(RegistrySetValueAction)));
}

void ViewKeyMapTest::noActionServesTwoRows()
{
    MapScene scene;
    QSet<IConfigAction*> actions;
    int registered = 0;
    for (LeafRow const& row : kLeaves) {
        ConfigKey const& key = scene.keyOf(row.viewKey);
        actions << scene.kit().registeredValueAction(key)
                << scene.kit().registeredSetValueAction(key) << scene.kit().registeredDelAction(key)
                << scene.kit().registeredCommitAction(key);
        registered += 4;
    }
    for (DirectoryRow const& row : kDirectories) {
        ConfigKey const& session = scene.keyOf(QString(row.viewDirectory) + "/{uuid}");
        actions << scene.kit().registeredCreateAction(session)
                << scene.kit().registeredDelAction(session)
                << scene.kit().registeredCommitAction(session);
        registered += 3;
    }
    QCOMPARE(actions.size(), registered);
    QVERIFY(!actions.contains(nullptr));
}

void ViewKeyMapTest::sessionsAreThoseOfTheRegistryDirectory()
{
    QFETCH(QString, viewDirectory);
    QFETCH(QString, registryDirectory);

    MapScene scene;
    QCOMPARE(scene.kit().getRegistryUuidDir(viewDirectory + "/{uuid}"), registryDirectory);
    QVERIFY(scene.kit().getRegistryUuidDir(viewDirectory).isEmpty());
}

void ViewKeyMapTest::sessionIsCreatedDeletedAndCommitted()
{
    QFETCH(QString, viewDirectory);
    QFETCH(QString, registryDirectory);

    MapScene scene;
    IConfigEntry const& session = scene.branch(viewDirectory + "/" + kUuid);
    QVariant data;
    QVERIFY(scene.kit().createAction(session, data));
    QVERIFY(scene.kit().commitAction(session, data));
    QVERIFY(scene.kit().delAction(session, data));
    QString const registryKey = registryDirectory + "/" + kUuid;
    QCOMPARE(scene.backend.calls(),
             QStringList() << "create " + registryKey << "commit " + registryKey
                           << "del " + registryKey);
}

void ViewKeyMapTest::commitOfATerminalSessionAloneHandsOverItsSettings()
{
    QFETCH(QString, viewDirectory);
    QFETCH(QString, registryDirectory);

    MapScene scene;
    QString const folder = viewDirectory + "/{uuid}";
    scene.wrappers.addScript(folder, "commit.sh", captureEnvironment());
    QString const registryKey = registryDirectory + "/" + kUuid;
    scene.backend.addChange(registryKey, REG_CHANGE_CREATED);
    scene.backend.addValue(registryKey + "/ttsName", "tty7");
    QVariant data;
    QVERIFY(scene.kit().commitAction(scene.branch(viewDirectory + "/" + kUuid), data));

    QStringList const handedOver = seenEnvironment(scene.wrappers, folder).filter("VEXLINK_");
    if (viewDirectory == "zelvo-view/vexlink/sessions") {
        QCOMPARE(handedOver.size(), 8);
        QVERIFY(handedOver.contains("VEXLINK_ACTION=CREATE"));
        QVERIFY(handedOver.contains("VEXLINK_TTSNAME=tty7"));
    } else {
        QCOMPARE(handedOver, QStringList());
    }
}

void ViewKeyMapTest::usbAreaIsAppliedByTheRegistry()
{
    MapScene scene;
    QVariant data;
    QVERIFY(scene.kit().applyAction(scene.branch("zelvo-view/usb"), data));
    QCOMPARE(scene.backend.calls(), QStringList() << "apply root/USB/root/mass-storage ");
}

void ViewKeyMapTest::hasNoRegistration_data()
{
    QTest::addColumn<QString>("viewKey");

    QTest::newRow("a terminal session's address") << "zelvo-view/vexlink/sessions/{uuid}/address";
    QTest::newRow("its port") << "zelvo-view/vexlink/sessions/{uuid}/port";
    QTest::newRow("its local port") << "zelvo-view/vexlink/sessions/{uuid}/local_port";
    QTest::newRow("its emulation") << "zelvo-view/vexlink/sessions/{uuid}/emulation";
    QTest::newRow("its transport") << "zelvo-view/vexlink/sessions/{uuid}/transport";
    QTest::newRow("the branch of the proxy keys") << "zelvo-view/ica/sessions/{uuid}/proxy";
    QTest::newRow("a proxy key under its registry name")
        << "zelvo-view/ica/sessions/{uuid}/proxyAddress";
    QTest::newRow("a browser address, which is its url")
        << "zelvo-view/browser/sessions/{uuid}/address";
    QTest::newRow("a registry label, which is the name") << "zelvo-view/rdp/sessions/{uuid}/label";
    QTest::newRow("a session by its registry kind")
        << "zelvo-view/rdesktop/sessions/{uuid}/address";
    QTest::newRow("a VMware server, which is its address")
        << "zelvo-view/vmware/sessions/{uuid}/server";
    QTest::newRow("the sessions as a whole") << "zelvo-view/rdp/sessions";
    QTest::newRow("the root") << "zelvo-view";
}

void ViewKeyMapTest::hasNoRegistration()
{
    QFETCH(QString, viewKey);

    MapScene scene;
    QList<IConfigAction*> const defaults
        = scene.actionsOf(scene.keyOf("zelvo-view/nothing/is/registered/here"));
    QVERIFY(!defaults.contains(nullptr));
    IConfigEntry const& entry
        = viewKey == "zelvo-view" ? *scene.branch("zelvo-view/x").parent() : scene.keyOf(viewKey);
    QCOMPARE(entry.path(), QString(viewKey).replace("{uuid}", kUuid));
    QVERIFY(scene.actionsOf(entry) == defaults);
}

ZELVO_TEST(ViewKeyMapTest)
#include "ViewKeyMapTest.moc"
