// SPDX-License-Identifier: MIT

// Keys and values that nobody should send: each operation answers a code, and that is all.

#include "plugin/PluginScene.h"
#include "support/TestProgram.h"

#include <QElapsedTimer>
#include <QtTest>

namespace {

int const kMebi = 1024 * 1024;
// Far more than any of them takes; far less than anything that is not linear would.
int const kLimitMs = 5000;

char const kUuid[] = "{c0ffee00-1234-4321-abcd-0123456789ab}";

QStringList operations()
{
    return QStringList() << "get"
                         << "type"
                         << "set"
                         << "create"
                         << "del"
                         << "commit"
                         << "apply"
                         << "contains";
}

int run(PluginScene const& scene, QString const& operation, QString const& key)
{
    if (operation == "get")
        return scene.get(key);
    if (operation == "set")
        return scene.set(key, "x");
    if (operation == "create")
        return scene.create(key);
    if (operation == "del")
        return scene.del(key);
    if (operation == "commit")
        return scene.commit(key);
    if (operation == "apply")
        return scene.apply(key);
    if (operation == "contains")
        return scene.contains(key);
    QMap<QString, _RegNodeType> result;
    return scene.plugin->get(key, result, REG_PARAM_TYPE, "");
}

} // namespace

class BadInputTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addRoots(); }

    void badKeyIsNotHandled_data();
    void badKeyIsNotHandled();
    void typedPlaceholderCrashesNothing_data();
    void typedPlaceholderCrashesNothing();
    void sessionNamesThatStillParseAreSessions_data();
    void sessionNamesThatStillParseAreSessions();
    void emptyValueAndWildValuesReachTheirScriptWhole_data();
    void emptyValueAndWildValuesReachTheirScriptWhole();
    void badCommandOfAnApplyIsOnlyAName_data();
    void badCommandOfAnApplyIsOnlyAName();
    void environmentFileOfRandomBytesDoesNoHarm();
};

void BadInputTest::badKeyIsNotHandled_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("an empty key") << "";
    QTest::newRow("a slash") << "/";
    QTest::newRow("slashes") << "////";
    QTest::newRow("the root and a slash") << "ROOT/";
    QTest::newRow("a slash before the root") << "//ROOT/usb/enable";
    QTest::newRow("a doubled slash") << "ROOT/usb//enable";
    QTest::newRow("a doubled slash behind the root") << "ROOT//usb/enable";
    QTest::newRow("a trailing slash behind a key") << "ROOT/usb/enable/";
    QTest::newRow("a trailing slash behind a branch") << "ROOT/usb/";
    QTest::newRow("a way up and down again") << "ROOT/usb/../usb/enable";
    QTest::newRow("a way out of the wrappers directory") << "ROOT/../../evil";
    QTest::newRow("a dot") << "ROOT/./usb/enable";
    QTest::newRow("a NUL behind the key") << QString("ROOT/usb/enable") + QChar(0);
    QTest::newRow("a NUL before the key") << QString("ROOT/") + QChar(0) + "usb/enable";
    QTest::newRow("control characters") << "ROOT/usb\n/\x01\x1b[31m/enable";
    QTest::newRow("a lone surrogate") << QString("ROOT/usb/") + QChar(0xd800);
    QTest::newRow("blanks around it") << " ROOT/usb/enable ";
    QTest::newRow("another case") << "ROOT/USB/enable";
    QTest::newRow("a component of a megabyte") << "ROOT/usb/" + QString("x").repeated(kMebi);
    QTest::newRow("a first component of a megabyte") << QString("x").repeated(kMebi);
    QTest::newRow("half a million components") << "ROOT" + QString("/a").repeated(500000);
    QTest::newRow("half a million empty components") << "ROOT" + QString("/").repeated(500000);
    QTest::newRow("a thousand ways up") << "ROOT" + QString("/..").repeated(1000);
    QTest::newRow("twenty thousand sessions in one key")
        << "ROOT" + (QString("/") + kUuid).repeated(20000);
    QTest::newRow("the nil UUID") << "ROOT/rdp/sessions/{00000000-0000-0000-0000-000000000000}";
    QTest::newRow("a key below the nil UUID")
        << "ROOT/rdp/sessions/{00000000-0000-0000-0000-000000000000}/name";
    QTest::newRow("a UUID that lacks a digit")
        << "ROOT/rdp/sessions/{c0ffee00-1234-4321-abcd-0123456789a}";
    QTest::newRow("the registry's placeholder") << "ROOT/rdp/sessions/{UUID}/name";
}

void BadInputTest::badKeyIsNotHandled()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, key);

    PluginScene scene(root);
    scene.logRadioCommits();
    QStringList const scripts = QStringList() << "isVisible.sh"
                                              << "get.sh"
                                              << "set.sh"
                                              << "create.sh"
                                              << "del.sh"
                                              << "commit.sh"
                                              << "apply.sh";
    for (QString const& script : scripts)
        scene.wrappers.addScript("../evil", script, "echo $0 >> seen");
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    scene.backend.forgetCalls();

    key.replace("ROOT", root);
    QStringList const all = operations();
    for (QString const& operation : all) {
        QElapsedTimer timer;
        timer.start();
        QVERIFY2(run(scene, operation, key) == 1, qPrintable(operation));
        QVERIFY2(timer.elapsed() < kLimitMs, qPrintable(operation));
    }

    QVERIFY(!scene.wrappers.exists("../evil", "seen"));
    QCOMPARE(scene.backend.calls("set") + scene.backend.calls("create") + scene.backend.calls("del")
                 + scene.backend.calls("commit") + scene.backend.calls("apply"),
             QStringList());
    // What was pending still is, unless an ancestor was committed.
    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
}

void BadInputTest::typedPlaceholderCrashesNothing_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("key");

    QStringList const all = operations();
    for (QString const& operation : all) {
        QTest::newRow(qPrintable(operation + " of a placeholder"))
            << operation << "rdp/sessions/{uuid}";
        QTest::newRow(qPrintable(operation + " of a key below one"))
            << operation << "rdp/sessions/{uuid}/name";
        QTest::newRow(qPrintable(operation + " of a placeholder and a slash"))
            << operation << "rdp/sessions/{uuid}/";
    }
}

void BadInputTest::typedPlaceholderCrashesNothing()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, operation);
    QFETCH(QString, key);

    PluginScene scene(root);
    scene.logRadioCommits();
    scene.addSessions("rdesktop", QStringList() << kUuid);
    // As the host does it: a literal placeholder is no key to write to.
    scene.backend.failOn("create", "root/ConnectionType/rdesktop/connections/{UUID}");
    scene.backend.failOn("commit", "root/ConnectionType/rdesktop/connections/{UUID}");
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    for (int i = 0; i < 2; ++i) {
        int const code = run(scene, operation, scene.at(key));
        // The default settings, which the base asks, do know it.
        bool const isKnown = operation == "contains" && !key.endsWith("/");
        QCOMPARE(code, isKnown ? 0 : 1);
    }

    QString const name = scene.at(QString("rdp/sessions/") + kUuid + "/name");
    QCOMPARE(scene.set(name, "Desk"), 0);
    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
    QCOMPARE(scene.backend.value(QString("root/ConnectionType/rdesktop/connections/") + kUuid
                                 + "/label"),
             QString("Desk"));
}

void BadInputTest::sessionNamesThatStillParseAreSessions_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("without braces") << "c0ffee00-1234-4321-abcd-0123456789ab";
    QTest::newRow("in capitals") << "{C0FFEE00-1234-4321-ABCD-0123456789AB}";
    QTest::newRow("with text behind it") << "{c0ffee00-1234-4321-abcd-0123456789ab}x";
    QTest::newRow("with a megabyte behind it") << kUuid + QString("x").repeated(kMebi);
}

void BadInputTest::sessionNamesThatStillParseAreSessions()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, name);

    PluginScene scene(root);
    QString const session = scene.at("rdp/sessions/" + name);
    QCOMPARE(scene.create(session), 0);
    QCOMPARE(scene.set(session + "/name", "Desk"), 0);
    QCOMPARE(scene.get(session), 0);
    QCOMPARE(scene.commit(session), 0);
    QCOMPARE(scene.del(session), 0);
    QString const registrySession = "root/ConnectionType/rdesktop/connections/" + name;
    QCOMPARE(scene.backend.calls("create"), QStringList() << "create " + registrySession);
    QCOMPARE(scene.backend.value(registrySession + "/label"), QString("Desk"));
}

void BadInputTest::emptyValueAndWildValuesReachTheirScriptWhole_data()
{
    QTest::addColumn<QString>("value");

    QTest::newRow("empty") << "";
    QTest::newRow("a newline") << "\n";
    QTest::newRow("shell characters") << "$(touch /tmp/owned); `id` \"' \\ > x";
    QTest::newRow("a NUL within") << QString("a") + QChar(0) + "b";
    QTest::newRow("control characters") << "\x01\x1b[31m\x7f";
    QTest::newRow("beyond Latin-1") << QString::fromUtf8("\xe2\x82\xac \xf0\x9f\x90\xa7");
    QTest::newRow("eight megabytes") << QString("01234567").repeated(kMebi);
}

void BadInputTest::emptyValueAndWildValuesReachTheirScriptWhole()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, value);

    PluginScene scene(root);
    scene.wrappers.addScript("zelvo-view/radio/ssid", "commit.sh", "cat \"$1\" > seen");
    QCOMPARE(scene.set(scene.at("radio/ssid"), value), 0);
    QCOMPARE(scene.commit(scene.at("radio")), 0);
    QVERIFY(scene.wrappers.exists("zelvo-view/radio/ssid", "seen"));
    QVERIFY(scene.wrappers.read("zelvo-view/radio/ssid", "seen") == value.toUtf8());
}

void BadInputTest::badCommandOfAnApplyIsOnlyAName_data()
{
    QTest::addColumn<QString>("command");

    QTest::newRow("a way out") << "tmp/../../x";
    QTest::newRow("a NUL within") << QString("tmp/a") + QChar(0) + "b";
    QTest::newRow("control characters") << "tmp/\n\x01";
    QTest::newRow("a megabyte") << "tmp/" + QString("x").repeated(kMebi);
}

void BadInputTest::badCommandOfAnApplyIsOnlyAName()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, command);

    PluginScene scene(root);
    QCOMPARE(scene.plugin->apply(scene.at("radio"), command), 0);
    scene.plugin.reset();
    QCOMPARE(scene.backend.value(command), QString("0"));
}

void BadInputTest::environmentFileOfRandomBytesDoesNoHarm()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QByteArray bytes;
    for (int i = 0; i < kMebi; ++i)
        bytes.append(static_cast<char>((i * 7919LL) >> 3));
    QStringList const files = QStringList() << "get.env"
                                            << "set.env"
                                            << "commit.env";
    for (QString const& file : files)
        scene.wrappers.addFile("zelvo-view/usb/enable", file, bytes);
    scene.wrappers.addScript("zelvo-view/usb/enable", "get.sh", "printf done");
    scene.wrappers.addScript("zelvo-view/usb/enable", "set.sh", "printf done");
    scene.wrappers.addScript("zelvo-view/usb/enable", "commit.sh", "exit 0");
    QStringList answer;
    QCOMPARE(scene.get(scene.at("usb/enable"), &answer), 0);
    QCOMPARE(answer, QStringList() << "value done");
    QCOMPARE(scene.set(scene.at("usb/enable"), "x"), 0);
    QCOMPARE(scene.commit(scene.at("usb/enable")), 0);
    QCOMPARE(scene.backend.calls("set") + scene.backend.calls("commit"), QStringList());
}

ZELVO_TEST(BadInputTest)
#include "BadInputTest.moc"
