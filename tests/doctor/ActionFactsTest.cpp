#include "doctor/ActionFacts.h"

#include "TestView.h"
#include "doctor/Explanation.h"
#include "doctor/ViewMap.h"
#include "support/TestProgram.h"

#include <QtTest>

namespace {

/// "OPERATION: REASON, ACTION, BACK END, REGISTRY KEY..." for each operation that the key has.
QStringList described(ExaminedEntry const& entry)
{
    static char const* const kReasons[] = {"registered", "setting class", "default"};
    QStringList lines;
    for (Operation const& operation : operations()) {
        if (!operation.isFor(entry.kind()))
            continue;
        ActionFacts const facts = entry.facts(operation);
        QStringList const words = QStringList()
            << kReasons[entry.servingAction(operation).reason] << facts.name
            << backEndWord(facts.backEnd) << facts.registryKeys;
        lines.append(QString(operation.name) + ": " + words.join(", "));
    }
    return lines;
}

} // namespace

class ActionFactsTest : public QObject
{
    Q_OBJECT

private slots:
    void factsOfAKey_data();
    void factsOfAKey();
    void everyActionOfTheViewIsKnown();
    void uuidIsPutIntoTheRegistryKey();
    void scriptTakesTheDisplaySettingsPlace();
    void noActionHasNoFacts();
    void keyThatTheViewDoesNotHave_data();
    void keyThatTheViewDoesNotHave();
};

void ActionFactsTest::factsOfAKey_data()
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

void ActionFactsTest::factsOfAKey()
{
    QFETCH(QString, key);
    QFETCH(QStringList, expected);

    TestView scene;
    ExaminedEntry const entry(scene.view, "root/" + key);
    QVERIFY(entry.isKnown());
    QCOMPARE(described(entry), expected);
}

void ActionFactsTest::everyActionOfTheViewIsKnown()
{
    TestView scene;
    QList<MapRow> const rows = viewMap(scene.view);
    QVERIFY(rows.size() > 40);
    for (MapRow const& row : rows) {
        ExaminedEntry const entry(scene.view, "root/" + row.viewKey);
        for (Operation const& operation : operations())
            QVERIFY2(!entry.facts(operation).name.isEmpty(), qPrintable(row.viewKey));
    }
}

void ActionFactsTest::uuidIsPutIntoTheRegistryKey()
{
    TestView scene;
    QString const uuid("{01234567-89ab-cdef-0123-456789abcdef}");
    ExaminedEntry const entry(scene.view, "root/zelvo-view/ica/sessions/" + uuid + "/proxy/port");
    QVERIFY(entry.isKnown());
    QCOMPARE(entry.viewKey(), QString("zelvo-view/ica/sessions/{uuid}/proxy/port"));
    Explanation const explanation = explain(scene.view, entry);
    QCOMPARE(explanation.operations.at(1).registryKeys,
             QStringList("root/ConnectionType/ica/connections/" + uuid + "/proxyPort"));
    QCOMPARE(explanation.folder,
             scene.wrappers.folder("zelvo-view/ica/sessions/{uuid}/proxy/port"));
}

void ActionFactsTest::scriptTakesTheDisplaySettingsPlace()
{
    TestView scene;
    scene.wrappers.addScript("zelvo-view/display/resolution", "get.sh", "exit 0");
    ExaminedEntry const entry(scene.view, "root/zelvo-view/display/resolution");
    QCOMPARE(described(entry).at(1), QString("get: default, RegistryValueAction, none"));
}

void ActionFactsTest::noActionHasNoFacts()
{
    ActionFacts const facts = factsOf(nullptr);
    QVERIFY(facts.name.isNull());
    QCOMPARE(facts.backEnd, ActionFacts::NoBackEnd);
    QVERIFY(!facts.runsScript);
}

void ActionFactsTest::keyThatTheViewDoesNotHave_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("unknown") << "root/zelvo-view/nothing";
    QTest::newRow("above the view") << "root";
    QTest::newRow("beside the view") << "root/USB/root/mass-storage/allowed";
    QTest::newRow("a name that only begins like the view") << "root/zelvo-viewer";
    QTest::newRow("below a value") << "root/zelvo-view/usb/enable/x";
    QTest::newRow("the registry's placeholder") << "root/zelvo-view/rdp/sessions/{UUID}/name";
    QTest::newRow("no UUID") << "root/zelvo-view/rdp/sessions/x/name";
    QTest::newRow("empty") << "";
}

void ActionFactsTest::keyThatTheViewDoesNotHave()
{
    QFETCH(QString, key);

    TestView scene;
    QVERIFY(!ExaminedEntry(scene.view, key).isKnown());
}

ZELVO_TEST(ActionFactsTest)
#include "ActionFactsTest.moc"
