// SPDX-License-Identifier: MIT

#include "actions/IActionDescription.h"
#include "actions/default/DefaultActions.h"
#include "doctor/ExaminedView.h"
#include "doctor/TestView.h"
#include "support/RecordingAction.h"
#include "support/TestProgram.h"

#include <QtTest>

#include <typeinfo>

namespace {

/// "OPERATION: REASON, ACTION, BACK END, REGISTRY KEY..." for each operation that the key has.
QStringList described(ExaminedEntry const& entry)
{
    static char const* const kReasons[] = {"registered", "setting class", "default"};
    QStringList lines;
    for (Operation const& operation : operations()) {
        if (!operation.isFor(entry.kind()))
            continue;
        ActionDescription const action = entry.description(operation);
        QStringList const words = QStringList()
            << kReasons[entry.servingAction(operation).reason] << action.className
            << (action.backEnd ? action.backEnd->word : "none") << action.registryKeys;
        lines.append(QString(operation.name) + ": " + words.join(", "));
    }
    return lines;
}

/// All keys of the view at or below `key`, directories included.
QStringList keysFrom(ExaminedView& view, QString const& key)
{
    QStringList keys(key);
    for (QString const& name : view.namesBelow(key))
        keys += keysFrom(view, key + '/' + name);
    return keys;
}

/// Whether the action's description was made for its class, and not for a base alone.
bool describesItself(IConfigAction const* action, IConfigEntry const& entry)
{
    if (!action)
        return false;
    IConfigAction const& itself = *action;
    QByteArray const name = descriptionOf(action, entry).className;
    return typeid(itself).name() == QByteArray::number(name.size()) + name;
}

} // namespace

class ActionDescriptionTest : public QObject
{
    Q_OBJECT

private slots:
    void descriptionsForAKey_data();
    void descriptionsForAKey();
    void everyActionOfTheViewDescribesItself();
    void everyActionOfASettingClassDescribesItself();
    void filesAreTold_data();
    void filesAreTold();
    void scriptTakesTheDisplaySettingsPlace();
    void actionThatDoesNotDescribeItselfHasNothingBehindIt();
    void classThatInheritsItsDescriptionIsFound();
};

void ActionDescriptionTest::descriptionsForAKey_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("expected");

    QString const rdp("root/ConnectionType/rdesktop/connections/{UUID}");
    QTest::newRow("a value of the registry")
        << "zelvo-view/usb/enable"
        << (QStringList()
            << "isVisible: default, DefaultIsVisibleAction, none"
            << "get: registered, RegistryValueAction, registry, root/USB/root/mass-storage/allowed"
            << "set: registered, RegistrySetValueAction, registry, "
               "root/USB/root/mass-storage/allowed"
            << "del: registered, RegistryDelAction, registry, root/USB/root/mass-storage/allowed"
            << "commit: registered, RegistryCommitAction, registry, "
               "root/USB/root/mass-storage/allowed"
            << "apply: default, DefaultApplyAction, none");
    QTest::newRow("an area with an apply of its own")
        << "zelvo-view/usb"
        << (QStringList()
            << "isVisible: default, DefaultIsVisibleAction, none"
            << "del: default, DefaultDelAction, none"
            << "commit: default, RegistryCommitAction, none"
            << "apply: registered, RegistryApplyAction, registry, root/USB/root/mass-storage");
    QTest::newRow("a session") << "zelvo-view/rdp/sessions/{uuid}"
                               << (QStringList()
                                   << "isVisible: default, DefaultIsVisibleAction, none"
                                   << "create: registered, RegistryCreateAction, registry, " + rdp
                                   << "del: registered, RegistryDelAction, registry, " + rdp
                                   << "commit: registered, RegistryCommitAction, registry, " + rdp
                                   << "apply: default, DefaultApplyAction, none");
    QTest::newRow("an autostart flag")
        << "zelvo-view/rdp/sessions/{uuid}/autostart"
        << (QStringList()
            << "isVisible: default, DefaultIsVisibleAction, none"
            << "get: registered, AutostartValueAction, registry, " + rdp + "/autostart"
            << "set: registered, AutostartSetValueAction, registry, " + rdp + "/autostart"
            << "del: registered, RegistryDelAction, registry, " + rdp + "/autostart"
            << "commit: registered, RegistryCommitAction, registry, " + rdp + "/autostart"
            << "apply: default, DefaultApplyAction, none");
    QTest::newRow("a key of the display profile")
        << "zelvo-view/display/resolution"
        << (QStringList()
            << "isVisible: default, DefaultIsVisibleAction, none"
            << "get: setting class, ResolutionActions, display, "
               "root/Display/Profiles/{UUID}/width, root/Display/Profiles/{UUID}/height"
            << "set: setting class, ResolutionActions, display, "
               "root/Display/Profiles/{UUID}/width, root/Display/Profiles/{UUID}/height"
            << "del: default, DefaultDelAction, none"
            << "commit: setting class, ResolutionActions, display, "
               "root/Display/Profiles/{UUID}/width, root/Display/Profiles/{UUID}/height"
            << "apply: default, DefaultApplyAction, none");
    QTest::newRow("a wireless key")
        << "zelvo-view/wireless/ssid"
        << (QStringList() << "isVisible: default, DefaultIsVisibleAction, none"
                          << "get: setting class, ValueAction, wireless"
                          << "set: default, RegistrySetValueAction, none"
                          << "del: default, DefaultDelAction, none"
                          << "commit: setting class, CommitAction, wireless"
                          << "apply: default, DefaultApplyAction, none");
    QTest::newRow("the switch of the wireless device, which nothing can write")
        << "zelvo-view/wireless/enable"
        << (QStringList() << "isVisible: default, DefaultIsVisibleAction, none"
                          << "get: setting class, ValueAction, wireless"
                          << "set: default, RegistrySetValueAction, none"
                          << "del: default, DefaultDelAction, none"
                          << "commit: setting class, CommitAction, none"
                          << "apply: default, DefaultApplyAction, none");
    QTest::newRow("the wireless area")
        << "zelvo-view/wireless"
        << (QStringList() << "isVisible: setting class, SettingsVisibilityAction, wireless"
                          << "del: default, DefaultDelAction, none"
                          << "commit: default, RegistryCommitAction, none"
                          << "apply: default, DefaultApplyAction, none");
    QTest::newRow("the commit of a terminal session")
        << "zelvo-view/vexlink/sessions/{01234567-89ab-cdef-0123-456789abcdef}"
        << (QStringList() << "isVisible: default, DefaultIsVisibleAction, none"
                          << "create: registered, RegistryCreateAction, registry, "
                             "root/ConnectionType/vexlink/connections/{UUID}"
                          << "del: registered, RegistryDelAction, registry, "
                             "root/ConnectionType/vexlink/connections/{UUID}"
                          << "commit: registered, VexlinkCommitAction, registry, "
                             "root/ConnectionType/vexlink/connections/{UUID}"
                          << "apply: default, DefaultApplyAction, none");
}

void ActionDescriptionTest::descriptionsForAKey()
{
    QFETCH(QString, key);
    QFETCH(QStringList, expected);

    TestView scene;
    ExaminedEntry const entry(scene.view, "root/" + key);
    QVERIFY(entry.isKnown());
    QCOMPARE(described(entry), expected);
}

void ActionDescriptionTest::everyActionOfTheViewDescribesItself()
{
    TestView scene;
    QStringList const keys = keysFrom(scene.view, scene.view.rootKey());
    QVERIFY(keys.size() > 60);
    for (QString const& key : keys) {
        ExaminedEntry const entry(scene.view, key);
        QVERIFY2(entry.isKnown(), qPrintable(key));
        for (Operation const& operation : operations()) {
            IConfigAction const* const action = entry.servingAction(operation).action;
            QVERIFY2(describesItself(action, entry.entry()),
                     qPrintable(key + ": " + operation.name));
        }
    }
}

void ActionDescriptionTest::everyActionOfASettingClassDescribesItself()
{
    TestView scene;
    int count = 0;
    for (QString const& key : keysFrom(scene.view, scene.view.rootKey())) {
        ExaminedEntry const entry(scene.view, key);
        for (Operation const& operation : operations()) {
            IConfigAction const* const action = scene.view.kit().registeredActionFromSettingClasses(
                entry.viewKey(), operation.action);
            if (!action)
                continue;
            ++count;
            QVERIFY2(describesItself(action, entry.entry()),
                     qPrintable(key + ": " + operation.name));
        }
    }
    // Reading, setting and committing the display's five, reading and committing the wireless four,
    // and whether those are shown; and what other areas have.
    QVERIFY(count >= 5 * 3 + 4 * 2 + 1);
}

void ActionDescriptionTest::filesAreTold_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("operation");
    QTest::addColumn<QStringList>("expected");

    QStringList const connections("/etc/NetworkManager/system-connections");
    QStringList const preferences("/etc/wlox-display-prefs/prefs.conf");
    int const get = ISettingClass::ACTION_VALUE;
    int const set = ISettingClass::ACTION_SET_VALUE;
    int const commit = ISettingClass::ACTION_COMMIT;
    QTest::newRow("a registry key") << "usb/enable" << get << QStringList();
    QTest::newRow("reading the connection") << "wireless/ssid" << get << connections;
    QTest::newRow("writing the connection") << "wireless/ssid" << commit << connections;
    QTest::newRow("what is not written") << "wireless/enable" << commit << QStringList();
    QTest::newRow("whether there is a device")
        << "wireless" << int(ISettingClass::ACTION_IS_VISIBLE)
        << QStringList("/tmp/.wireless-disabled");
    QTest::newRow("the rates on offer") << "display/refresh_rate" << set << preferences;
    QTest::newRow("the driver") << "display/multi_monitor_mode" << set << preferences;
    QTest::newRow("another display key") << "display/resolution" << set << QStringList();
}

void ActionDescriptionTest::filesAreTold()
{
    QFETCH(QString, key);
    QFETCH(int, operation);
    QFETCH(QStringList, expected);

    TestView scene;
    ExaminedEntry const entry(scene.view, "root/zelvo-view/" + key);
    Operation const& examined = ::operation(static_cast<ISettingClass::Action_t>(operation));
    QCOMPARE(entry.description(examined).files, expected);
}

void ActionDescriptionTest::scriptTakesTheDisplaySettingsPlace()
{
    TestView scene;
    scene.wrappers.addScript("zelvo-view/display/resolution", "get.sh", "exit 0");
    ExaminedEntry const entry(scene.view, "root/zelvo-view/display/resolution");
    QCOMPARE(described(entry).at(1), QString("get: default, RegistryValueAction, none"));
}

void ActionDescriptionTest::actionThatDoesNotDescribeItselfHasNothingBehindIt()
{
    TestView scene;
    ExaminedEntry const entry(scene.view, "root/zelvo-view/usb");
    RecordingAction silent;
    IConfigAction* const actions[] = {nullptr, &silent};
    for (IConfigAction const* const action : actions) {
        ActionDescription const description = descriptionOf(action, entry.entry());
        QCOMPARE(QByteArray(description.className), QByteArray(""));
        QVERIFY(!description.backEnd);
        QVERIFY(!description.runsScript);
    }
}

void ActionDescriptionTest::classThatInheritsItsDescriptionIsFound()
{
    class Heir : public DefaultValueAction
    {
    } heir;
    DefaultValueAction base;
    TestView scene;
    ExaminedEntry const entry(scene.view, "root/zelvo-view/usb/enable");
    QVERIFY(!describesItself(&heir, entry.entry()));
    QVERIFY(describesItself(&base, entry.entry()));
}

ZELVO_TEST(ActionDescriptionTest)
#include "ActionDescriptionTest.moc"
