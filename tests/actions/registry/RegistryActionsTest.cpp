// SPDX-License-Identifier: MIT

#include "actions/registry/RegistryActions.h"

#include "actions/registry/ActionScene.h"
#include "support/TestProgram.h"

#include <QThreadPool>
#include <QVariant>
#include <QtTest>

namespace {

// A key of a session, its folder of wrappers, and what it stands for.
char const kViewKey[] = "zelvo-view/rdp/sessions/{c0ffee00-1234-4321-abcd-0123456789ab}/address";
char const kOtherViewKey[]
    = "zelvo-view/rdp/sessions/{deadbeef-1234-4321-abcd-0123456789ab}/address";
char const kFolder[] = "zelvo-view/rdp/sessions/{uuid}/address";
char const kTemplate[] = "root/sessions/{UUID}/address";
char const kKey[] = "root/sessions/{c0ffee00-1234-4321-abcd-0123456789ab}/address";
char const kOtherKey[] = "root/sessions/{deadbeef-1234-4321-abcd-0123456789ab}/address";

char const kThreeTargets[] = "REG_SET=root/a\nREG_SET=root/b\nREG_SET=root/c\n";

QString const kUntouched = "as it was";

/// Targets are worked on in any order.
QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

bool isEmptyNotNull(QVariant const& value)
{
    QString const text = value.toString();
    return value.type() == QVariant::String && text.isEmpty() && !text.isNull();
}

/// Stores the type with which a key is created.
class TypeBackend : public TestBackend
{
public:
    int create(QString const& key, _RegEntryType const& type) override
    {
        types << type;
        return TestBackend::create(key, type);
    }

    QList<int> types;
};

} // namespace

class RegistryActionsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void valueRead_data();
    void valueRead();
    void valueTakesTheDefaultOfTheRegistry();
    void valueAsksTheTypeOfTheTemplateAndTheValueOfTheSession();
    void valueThatCannotBeReadLeavesTheDataAlone();
    void valueWithoutRegistryKeyAsksNobody();
    void valueReplacesWhatTheDataHeld();
    void valueOfTheScriptIsTakenAsItIs_data();
    void valueOfTheScriptIsTakenAsItIs();
    void valueOfAFailingScriptIsTheRegistrys_data();
    void valueOfAFailingScriptIsTheRegistrys();
    void getEnvironment_data();
    void getEnvironment();
    void getScriptSeesTheDeclaredVariables();

    void setWrites_data();
    void setWrites();
    void setAsksTheTypeOfTheTemplateAndWritesToTheSession();
    void setOfNullWritesNothing_data();
    void setOfNullWritesNothing();
    void setOfEmptyTextWritesIt();
    void setWithoutRegistryKeyFails();
    void setFollowsTheBackendsCode();
    void setCommitsNothing();
    void setScriptReplacesTheWrite();
    void setScriptThatFailsLeavesTheWriteToTheRegistry();
    void setWritesAllTargets();
    void setResolvesTheTargets();
    void setWritesATargetNamedTwiceOnce();
    void setEndsWithTheFirstTargetThatFails_data();
    void setEndsWithTheFirstTargetThatFails();
    void setStoresInEachTargetWhatTheScriptPrintedForIt();
    void setStoresTheValueInATargetForWhichTheScriptFails();
    void setWritesEachBooleanTargetAsDigit();
    void targetsOfOneKeyAreNotThoseOfAnother();
    void setWithTargetsLeavesTheCallersValueAlone();
    void setEnvironment_data();
    void setEnvironment();
    void setScriptSeesTheKeyBeingWritten_data();
    void setScriptSeesTheKeyBeingWritten();
    void setScriptGetsTheValueInAFile();
    void secondSetForgetsTheTargetsOfTheFirst();
    void secondSetForAnotherSessionWritesThatAlone();
    void secondSetAfterAFailureStartsClean();

    void createFollowsTheBackendsCode();
    void createScriptReplacesTheBackend();
    void createScriptThatFailsLeavesItToTheBackend();
    void createWithoutRegistryKeyIsTheBackendsToRefuse();

    void delFollowsTheBackendsCode();
    void delScriptAlwaysCounts_data();
    void delScriptAlwaysCounts();
    void delWithoutRegistryKeyIsTheBackendsToRefuse();

    void commitFollowsTheBackendsCode();
    void commitWithoutRegistryKeyFails();
    void commitScriptReplacesTheBackend();
    void commitScriptThatFailsLeavesItToTheBackend();
    void commitScriptGetsTheValueInAFile_data();
    void commitScriptGetsTheValueInAFile();
    void commitCommitsTheTargetsOfSetting();
    void commitEndsWithTheFirstTargetThatFails();
    void commitReadsNoTargetsFromItsOwnFile();
    void commitKnowsItsRegistryKeyAndTargetsAsTheyAreWritten();
    void commitEnvironment_data();
    void commitEnvironment();
    void commitScriptRunsForEachTarget();
    void commitScriptSeesTheRegistryKeyWithItsPlaceholder();
    void secondCommitForgetsTheTargetsOfTheFirst();

    void keyWithoutUuidKeepsThePlaceholderForTheBackendToRefuse();

    void applyAsksTheBackend();
    void applyWithoutRegistryKeyAndScriptFails();
    void applyScriptIsQueuedAndTheBackendNotAsked();
};

void RegistryActionsTest::initTestCase()
{
    simplifyEnvironment();
}

void RegistryActionsTest::valueRead_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("expected");

    QTest::newRow("bool, off") << "bool"
                               << "off"
                               << "false";
    QTest::newRow("bool, no") << "bool"
                              << "no"
                              << "false";
    QTest::newRow("bool, false") << "bool"
                                 << "false"
                                 << "false";
    QTest::newRow("bool, 0") << "bool"
                             << "0"
                             << "false";
    QTest::newRow("bool, ko") << "bool"
                              << "ko"
                              << "false";
    QTest::newRow("bool, on") << "bool"
                              << "on"
                              << "true";
    QTest::newRow("bool, yes") << "bool"
                               << "yes"
                               << "true";
    QTest::newRow("bool, true") << "bool"
                                << "true"
                                << "true";
    QTest::newRow("bool, 1") << "bool"
                             << "1"
                             << "true";
    QTest::newRow("bool, ok") << "bool"
                              << "ok"
                              << "true";
    QTest::newRow("bool, any other word") << "bool"
                                          << "maybe"
                                          << "true";
    QTest::newRow("bool, empty") << "bool"
                                 << ""
                                 << "true";
    QTest::newRow("bool, a false word in capitals") << "bool"
                                                    << "OFF"
                                                    << "true";
    QTest::newRow("bool, a false word with a blank") << "bool"
                                                     << "off "
                                                     << "true";
    QTest::newRow("bool, 00") << "bool"
                              << "00"
                              << "true";
    QTest::newRow("string, a false word: as stored") << "string"
                                                     << "off"
                                                     << "off";
    QTest::newRow("number, 0: as stored") << "number"
                                          << "0"
                                          << "0";
    QTest::newRow("another case of bool is no boolean") << "Bool"
                                                        << "off"
                                                        << "off";
    QTest::newRow("a type that cannot be read is no boolean") << ""
                                                              << "off"
                                                              << "off";
    QTest::newRow("string, blanks and a newline stay") << "string"
                                                       << " a b \n"
                                                       << " a b \n";
}

void RegistryActionsTest::valueRead()
{
    QFETCH(QString, type);
    QFETCH(QString, stored);
    QFETCH(QString, expected);

    ActionScene scene;
    if (!type.isEmpty())
        scene.backend.addType(kTemplate, type);
    scene.backend.addValue(kKey, stored);
    QVariant data;
    QVERIFY(RegistryValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(expected));
}

void RegistryActionsTest::valueTakesTheDefaultOfTheRegistry()
{
    ActionScene scene;
    scene.backend.addDefault(kKey, "10.0.0.1");
    QVariant data;
    QVERIFY(RegistryValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(QString("10.0.0.1")));
}

void RegistryActionsTest::valueAsksTheTypeOfTheTemplateAndTheValueOfTheSession()
{
    ActionScene scene;
    scene.backend.addValue(kKey, "10.0.0.1");
    // Never to be read.
    scene.backend.addType(kKey, "bool");
    QVariant data;
    QVERIFY(RegistryValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(QString("10.0.0.1")));
    QCOMPARE(scene.backend.calls(),
             QStringList() << QString("get %1 type").arg(kTemplate) << QString("get %1").arg(kKey));
}

void RegistryActionsTest::valueThatCannotBeReadLeavesTheDataAlone()
{
    ActionScene scene;
    scene.backend.addType(kTemplate, "bool");
    QVariant data = kUntouched;
    QVERIFY(!RegistryValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(kUntouched));
}

void RegistryActionsTest::valueWithoutRegistryKeyAsksNobody()
{
    ActionScene scene;
    QVariant data = kUntouched;
    QVERIFY(!RegistryValueAction(QString()).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(kUntouched));
    QCOMPARE(scene.backend.calls(), QStringList());
}

void RegistryActionsTest::valueReplacesWhatTheDataHeld()
{
    ActionScene scene;
    scene.backend.addValue(kKey, "10.0.0.1");
    RegistryValueAction action(kTemplate);
    QVariant text = QString("10.0.0.99");
    QVERIFY(action.execute(scene.key(kViewKey), text));
    QCOMPARE(text, QVariant(QString("10.0.0.1")));

    QVariant number = 7;
    QVERIFY(action.execute(scene.key(kViewKey), number));
    QCOMPARE(number, QVariant(QString("10.0.0.1")));
}

void RegistryActionsTest::valueOfTheScriptIsTakenAsItIs_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("expected");

    QTest::newRow("text") << QByteArray("printf 'from the script'") << "from the script";
    QTest::newRow("the final newline stays") << QByteArray("echo a") << "a\n";
    QTest::newRow("a false word of a boolean stays") << QByteArray("printf off") << "off";
    QTest::newRow("UTF-8") << QByteArray("printf '\\303\\251'") << QString::fromUtf8("\xc3\xa9");
    QTest::newRow("nothing: an empty text") << QByteArray(":") << "";
}

void RegistryActionsTest::valueOfTheScriptIsTakenAsItIs()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, expected);

    ActionScene scene;
    scene.wrappers.addScript(kFolder, "get.sh", script);
    scene.backend.addType(kTemplate, "bool");
    scene.backend.addValue(kKey, "10.0.0.1");
    QVariant data;
    QVERIFY(RegistryValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(expected));
    QVERIFY(!data.toString().isNull());
    QCOMPARE(scene.backend.calls(), QStringList());
}

void RegistryActionsTest::valueOfAFailingScriptIsTheRegistrys_data()
{
    QTest::addColumn<QByteArray>("script");

    QTest::newRow("exits with 1") << QByteArray("echo x; exit 1");
    QTest::newRow("exits with 255") << QByteArray("echo x; exit 255");
    QTest::newRow("is killed") << QByteArray("echo x; kill -9 $$");
}

void RegistryActionsTest::valueOfAFailingScriptIsTheRegistrys()
{
    QFETCH(QByteArray, script);

    ActionScene scene;
    scene.wrappers.addScript(kFolder, "get.sh", script);
    scene.backend.addType(kTemplate, "bool");
    scene.backend.addValue(kKey, "off");
    QVariant data;
    QVERIFY(RegistryValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(QString("false")));
}

void RegistryActionsTest::getEnvironment_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("added");

    QTest::newRow("no file: nothing is added") << QByteArray() << QStringList();
    QTest::newRow("values of the registry, in order")
        << QByteArray("ADDRESS=root/net/address\nPORT=root/net/port\n")
        << (QStringList() << "ADDRESS=10.0.0.1"
                          << "PORT=80");
    QTest::newRow("the placeholder is the entry's UUID")
        << QByteArray("NAME=root/sessions/{UUID}/name\n") << (QStringList() << "NAME=Office");
    QTest::newRow("a key that cannot be read adds nothing")
        << QByteArray("LOST=root/lost\nPORT=root/net/port\n") << (QStringList() << "PORT=80");
    QTest::newRow("a line without =, and one with = first, add nothing")
        << QByteArray("root/net/port\n=root/net/port\nPORT=root/net/port\n")
        << (QStringList() << "PORT=80");
    QTest::newRow("an empty value is a value")
        << QByteArray("EMPTY=root/empty\n") << (QStringList() << "EMPTY=");
    QTest::newRow("REG_SET is a variable like others")
        << QByteArray("REG_SET=root/net/port\n") << (QStringList() << "REG_SET=80");
}

void RegistryActionsTest::getEnvironment()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, added);

    ActionScene scene;
    if (!file.isEmpty())
        scene.wrappers.addFile(kFolder, "get.env", file);
    scene.backend.addValue("root/net/address", "10.0.0.1");
    scene.backend.addValue("root/net/port", "80");
    scene.backend.addValue("root/empty", "");
    scene.backend.addValue("root/sessions/{c0ffee00-1234-4321-abcd-0123456789ab}/name", "Office");
    RegistryValueAction action(kTemplate);
    QCOMPARE(action.processEnvironment(scene.key(kViewKey)), QProcess::systemEnvironment() + added);
}

void RegistryActionsTest::getScriptSeesTheDeclaredVariables()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "get.env", "A=root/a\nLOST=root/lost\nN=root/{UUID}/n\n");
    scene.wrappers.addScript(kFolder, "get.sh", captureEnvironment());
    scene.backend.addValue("root/a", "two\nlines = one value");
    scene.backend.addValue("root/{c0ffee00-1234-4321-abcd-0123456789ab}/n", "3");
    QVariant data;
    QVERIFY(RegistryValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(seenEnvironment(scene.wrappers, kFolder),
             environmentWith(QStringList() << "A=two\nlines = one value"
                                           << "N=3"));
}

void RegistryActionsTest::setWrites_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");

    QTest::newRow("bool, false") << "bool"
                                 << "false"
                                 << "0";
    QTest::newRow("bool, 0") << "bool"
                             << "0"
                             << "0";
    QTest::newRow("bool, ko") << "bool"
                              << "ko"
                              << "0";
    QTest::newRow("bool, no") << "bool"
                              << "no"
                              << "0";
    QTest::newRow("bool, off") << "bool"
                               << "off"
                               << "0";
    QTest::newRow("bool, FALSE") << "bool"
                                 << "FALSE"
                                 << "1";
    QTest::newRow("bool, KO") << "bool"
                              << "KO"
                              << "1";
    QTest::newRow("bool, Off") << "bool"
                               << "Off"
                               << "1";
    QTest::newRow("bool, true") << "bool"
                                << "true"
                                << "1";
    QTest::newRow("bool, any other word") << "bool"
                                          << "maybe"
                                          << "1";
    QTest::newRow("bool, empty") << "bool"
                                 << ""
                                 << "1";
    QTest::newRow("string, a false word: as it is") << "string"
                                                    << "off"
                                                    << "off";
    QTest::newRow("string, blanks and a newline stay") << "string"
                                                       << " a b \n"
                                                       << " a b \n";
    QTest::newRow("a type that cannot be read is no boolean") << ""
                                                              << "false"
                                                              << "false";
}

void RegistryActionsTest::setWrites()
{
    QFETCH(QString, type);
    QFETCH(QString, value);
    QFETCH(QString, expected);

    ActionScene scene;
    if (!type.isEmpty())
        scene.backend.addType(kTemplate, type);
    QVariant data = value;
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.pendingValue(kKey), expected);
    QCOMPARE(data, QVariant(value));
}

void RegistryActionsTest::setAsksTheTypeOfTheTemplateAndWritesToTheSession()
{
    ActionScene scene;
    QVariant data = QString("x");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls(),
             QStringList() << QString("get %1 type").arg(kTemplate)
                           << QString("set %1 x").arg(kKey));
}

void RegistryActionsTest::setOfNullWritesNothing_data()
{
    QTest::addColumn<QByteArray>("script");
    // One element: Qt 4 has no columns of plain variants.
    QTest::addColumn<QVariantList>("value");

    QTest::newRow("no value") << QByteArray() << (QVariantList() << QVariant());
    QTest::newRow("a null text") << QByteArray() << (QVariantList() << QVariant(QString()));
    QTest::newRow("even when the script fails")
        << QByteArray("exit 1") << (QVariantList() << QVariant(QString()));
}

void RegistryActionsTest::setOfNullWritesNothing()
{
    QFETCH(QByteArray, script);
    QFETCH(QVariantList, value);

    ActionScene scene;
    if (!script.isEmpty())
        scene.wrappers.addScript(kFolder, "set.sh", script);
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), value.first()));
    QVERIFY(RegistrySetValueAction(QString()).execute(scene.key(kViewKey), value.first()));
    QCOMPARE(scene.backend.calls(), QStringList());
}

void RegistryActionsTest::setOfEmptyTextWritesIt()
{
    ActionScene scene;
    QVariant data = QString("");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls("set"), QStringList() << QString("set %1 ").arg(kKey));
}

void RegistryActionsTest::setWithoutRegistryKeyFails()
{
    ActionScene scene;
    QVariant data = QString("x");
    QVERIFY(!RegistrySetValueAction(QString()).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(QString("x")));
    QCOMPARE(scene.backend.calls(), QStringList());
}

void RegistryActionsTest::setFollowsTheBackendsCode()
{
    ActionScene scene;
    scene.backend.fail("set");
    QVariant data = QString("x");
    QVERIFY(!RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
}

void RegistryActionsTest::setCommitsNothing()
{
    ActionScene scene;
    QVariant data = QString("x");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls("commit"), QStringList());
    QVERIFY(scene.backend.value(kKey).isNull());
}

void RegistryActionsTest::setScriptReplacesTheWrite()
{
    ActionScene scene;
    scene.wrappers.addScript(kFolder, "set.sh", "tr a-z A-Z < \"$1\"");
    QVariant data = QString("shout");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(QString("SHOUT")));
    QCOMPARE(scene.backend.calls(), QStringList());

    scene.wrappers.addScript(kFolder, "set.sh", ":");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QVERIFY(isEmptyNotNull(data));
}

void RegistryActionsTest::setScriptThatFailsLeavesTheWriteToTheRegistry()
{
    ActionScene scene;
    scene.wrappers.addScript(kFolder, "set.sh", "echo ignored; exit 1");
    QVariant data = QString("x");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(QString("x")));
    QCOMPARE(scene.backend.pendingValue(kKey), QString("x"));
}

void RegistryActionsTest::setWritesAllTargets()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env", "REG_SET=root/a\nREG_SET=root/b\n");
    QVariant data = QString("x");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(sorted(scene.backend.calls("set")),
             QStringList() << "set root/a x"
                           << "set root/b x");
}

void RegistryActionsTest::setResolvesTheTargets()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env", "REG_SET=root/sessions/{UUID}/address\n");
    QVariant data = QString("x");
    QVERIFY(RegistrySetValueAction("root/own").execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls("set"), QStringList() << QString("set %1 x").arg(kKey));
}

void RegistryActionsTest::setWritesATargetNamedTwiceOnce()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env", "REG_SET=root/a\nREG_SET=root/a\n");
    QVariant data = QString("x");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls("set"), QStringList() << "set root/a x");
}

void RegistryActionsTest::setEndsWithTheFirstTargetThatFails_data()
{
    QTest::addColumn<int>("failing");

    QTest::newRow("the first of three") << 1;
    QTest::newRow("the second of three") << 2;
    QTest::newRow("the last of three") << 3;
}

void RegistryActionsTest::setEndsWithTheFirstTargetThatFails()
{
    QFETCH(int, failing);

    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env", kThreeTargets);
    scene.backend.fail("set", failing);
    QVariant data = QString("x");
    QVERIFY(!RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls("set").size(), failing);
    QCOMPARE(data, QVariant(QString("x")));
}

void RegistryActionsTest::setStoresInEachTargetWhatTheScriptPrintedForIt()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env", kThreeTargets);
    scene.wrappers.addScript(kFolder, "set.sh", "printf '%s of ' \"${REG_SET##*/}\"; cat \"$1\"");
    QVariant data = QString("x");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(sorted(scene.backend.calls("set")),
             QStringList() << "set root/a a of x"
                           << "set root/b b of x"
                           << "set root/c c of x");
}

void RegistryActionsTest::setStoresTheValueInATargetForWhichTheScriptFails()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env", kThreeTargets);
    scene.wrappers.addScript(kFolder, "set.sh", "[ $REG_SET != root/b ] && printf y");
    QVariant data = QString("x");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(sorted(scene.backend.calls("set")),
             QStringList() << "set root/a y"
                           << "set root/b x"
                           << "set root/c y");
}

void RegistryActionsTest::targetsOfOneKeyAreNotThoseOfAnother()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env", kThreeTargets);
    // Of no registry key: the one that serves all keys without an action of their own.
    RegistrySetValueAction action((QString()));
    QVariant data = QString("x");
    QVERIFY(action.execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls("set").size(), 3);
    scene.backend.forgetCalls();

    QVERIFY(!action.execute(scene.key("zelvo-view/other"), data));
    QCOMPARE(scene.backend.calls("set"), QStringList());
}

void RegistryActionsTest::setWritesEachBooleanTargetAsDigit()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env", kThreeTargets);
    scene.backend.addType("root/a", "bool");
    scene.backend.addType("root/b", "string");
    QVariant data = QString("off");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(sorted(scene.backend.calls("set")),
             QStringList() << "set root/a 0"
                           << "set root/b off"
                           << "set root/c off");
}

void RegistryActionsTest::setWithTargetsLeavesTheCallersValueAlone()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env", "REG_SET=root/a\n");
    scene.wrappers.addScript(kFolder, "set.sh", "printf y");
    QVariant data = QString("x");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(QString("x")));
    QCOMPARE(scene.backend.pendingValue("root/a"), QString("y"));
}

void RegistryActionsTest::setEnvironment_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("added");

    QTest::newRow("no file: the current key, none yet")
        << QByteArray() << (QStringList() << "REG_SET=");
    QTest::newRow("variables, then the current key")
        << QByteArray("A=root/a\nLOST=root/lost\nB=root/{UUID}/b\n")
        << (QStringList() << "A=1"
                          << "B=2"
                          << "REG_SET=");
    QTest::newRow("a target is no variable")
        << QByteArray("REG_SET=root/a\n") << (QStringList() << "REG_SET=");
    QTest::newRow("in another case it is no target")
        << QByteArray("reg_set=root/a\nREG_SET =root/a\n")
        << (QStringList() << "reg_set=1"
                          << "REG_SET =1"
                          << "REG_SET=");
}

void RegistryActionsTest::setEnvironment()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, added);

    ActionScene scene;
    if (!file.isEmpty())
        scene.wrappers.addFile(kFolder, "set.env", file);
    scene.backend.addValue("root/a", "1");
    scene.backend.addValue("root/{c0ffee00-1234-4321-abcd-0123456789ab}/b", "2");
    RegistrySetValueAction action(kTemplate);
    QCOMPARE(action.processEnvironment(scene.key(kViewKey)), QProcess::systemEnvironment() + added);
}

void RegistryActionsTest::setScriptSeesTheKeyBeingWritten_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("expected");

    QTest::newRow("the action's key, with its placeholder") << QByteArray() << kTemplate;
    QTest::newRow("a target, with the UUID")
        << QByteArray("REG_SET=root/sessions/{UUID}/address\n") << kKey;
}

void RegistryActionsTest::setScriptSeesTheKeyBeingWritten()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, expected);

    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env", file + "A=root/a\n");
    scene.wrappers.addScript(kFolder, "set.sh", captureEnvironment());
    scene.backend.addValue("root/a", "1");
    QVariant data = QString("x");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(seenEnvironment(scene.wrappers, kFolder),
             environmentWith(QStringList() << "A=1"
                                           << "REG_SET=" + expected));
    QVERIFY(!scene.wrappers.exists(kFolder, "seen-1"));
}

void RegistryActionsTest::setScriptGetsTheValueInAFile()
{
    ActionScene scene;
    scene.wrappers.addScript(kFolder, "set.sh", "[ $# = 1 ] && cat \"$1\" > seen-value");
    QVariant data = QString::fromUtf8("  \xc3\xa9\n b ");
    QVERIFY(RegistrySetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.wrappers.read(kFolder, "seen-value"), QByteArray("  \xc3\xa9\n b "));
}

void RegistryActionsTest::secondSetForgetsTheTargetsOfTheFirst()
{
    ActionScene scene;
    RegistrySetValueAction action(kTemplate);
    QVariant data = QString("x");
    scene.wrappers.addFile(kFolder, "set.env", "REG_SET=root/a\nREG_SET=root/b\n");
    QVERIFY(action.execute(scene.key(kViewKey), data));
    scene.backend.forgetCalls();

    scene.wrappers.addFile(kFolder, "set.env", "REG_SET=root/c\n");
    QVERIFY(action.execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls("set"), QStringList() << "set root/c x");
    scene.backend.forgetCalls();

    scene.wrappers.addFile(kFolder, "set.env", "");
    scene.wrappers.addScript(kFolder, "set.sh", captureEnvironment() + "; exit 1");
    QVERIFY(action.execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls("set"), QStringList() << QString("set %1 x").arg(kKey));
    QCOMPARE(seenEnvironment(scene.wrappers, kFolder),
             environmentWith(QStringList() << QString("REG_SET=") + kTemplate));
}

void RegistryActionsTest::secondSetForAnotherSessionWritesThatAlone()
{
    ActionScene scene;
    RegistrySetValueAction action("root/own");
    scene.wrappers.addFile(kFolder, "set.env", "REG_SET=root/sessions/{UUID}/address\n");
    QVariant first = QString("1");
    QVERIFY(action.execute(scene.key(kViewKey), first));
    scene.backend.forgetCalls();

    QVariant second = QString("2");
    QVERIFY(action.execute(scene.key(kOtherViewKey), second));
    QCOMPARE(scene.backend.calls("set"), QStringList() << QString("set %1 2").arg(kOtherKey));
}

void RegistryActionsTest::secondSetAfterAFailureStartsClean()
{
    ActionScene scene;
    RegistrySetValueAction action(kTemplate);
    scene.wrappers.addFile(kFolder, "set.env", kThreeTargets);
    scene.backend.fail("set", 2);
    QVariant data = QString("x");
    QVERIFY(!action.execute(scene.key(kViewKey), data));
    scene.backend.forgetCalls();

    QVERIFY(action.execute(scene.key(kViewKey), data));
    QCOMPARE(sorted(scene.backend.calls("set")),
             QStringList() << "set root/a x"
                           << "set root/b x"
                           << "set root/c x");
}

void RegistryActionsTest::createFollowsTheBackendsCode()
{
    TypeBackend backend;
    TestWrappers const wrappers;
    freshKit(backend, wrappers.directory());
    ConfigKey session("{c0ffee00-1234-4321-abcd-0123456789ab}", QString(), nullptr);
    RegistryCreateAction action("root/sessions/{UUID}");
    QVariant data = kUntouched;
    QVERIFY(action.execute(session, data));
    QCOMPARE(backend.calls(),
             QStringList() << "create root/sessions/{c0ffee00-1234-4321-abcd-0123456789ab}");
    QCOMPARE(backend.types, QList<int>() << REG_TYPE_STRING);
    QCOMPARE(data, QVariant(kUntouched));

    backend.fail("create");
    QVERIFY(!action.execute(session, data));
}

void RegistryActionsTest::createScriptReplacesTheBackend()
{
    ActionScene scene;
    scene.wrappers.addScript(kFolder, "create.sh", "exit 0");
    QVariant data;
    QVERIFY(RegistryCreateAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls(), QStringList());
}

void RegistryActionsTest::createScriptThatFailsLeavesItToTheBackend()
{
    ActionScene scene;
    scene.wrappers.addScript(kFolder, "create.sh", "exit 1");
    QVariant data;
    QVERIFY(RegistryCreateAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls(), QStringList() << QString("create %1").arg(kKey));
}

void RegistryActionsTest::createWithoutRegistryKeyIsTheBackendsToRefuse()
{
    ActionScene scene;
    scene.backend.fail("create");
    QVariant data;
    QVERIFY(!RegistryCreateAction(QString()).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls("create").size(), 1);
}

void RegistryActionsTest::delFollowsTheBackendsCode()
{
    ActionScene scene;
    QVariant data = kUntouched;
    QVERIFY(RegistryDelAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls(), QStringList() << QString("del %1").arg(kKey));
    QCOMPARE(data, QVariant(kUntouched));

    scene.backend.fail("del");
    QVERIFY(!RegistryDelAction(kTemplate).execute(scene.key(kViewKey), data));
}

void RegistryActionsTest::delScriptAlwaysCounts_data()
{
    QTest::addColumn<QByteArray>("script");

    QTest::newRow("one that deletes") << QByteArray("exit 0");
    QTest::newRow("one that fails") << QByteArray("exit 1");
    QTest::newRow("one that is killed") << QByteArray("kill -9 $$");
}

void RegistryActionsTest::delScriptAlwaysCounts()
{
    QFETCH(QByteArray, script);

    ActionScene scene;
    scene.wrappers.addScript(kFolder, "del.sh", script);
    QVariant data;
    QVERIFY(RegistryDelAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls(), QStringList());
}

void RegistryActionsTest::delWithoutRegistryKeyIsTheBackendsToRefuse()
{
    ActionScene scene;
    scene.backend.fail("del");
    QVariant data;
    QVERIFY(!RegistryDelAction(QString()).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls("del").size(), 1);
}

void RegistryActionsTest::commitFollowsTheBackendsCode()
{
    ActionScene scene;
    QVariant data = QString("x");
    QVERIFY(RegistryCommitAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls(), QStringList() << QString("commit %1").arg(kKey));
    QCOMPARE(data, QVariant(QString("x")));

    scene.backend.fail("commit");
    QVERIFY(!RegistryCommitAction(kTemplate).execute(scene.key(kViewKey), data));
}

void RegistryActionsTest::commitWithoutRegistryKeyFails()
{
    ActionScene scene;
    QVariant data = QString("x");
    QVERIFY(!RegistryCommitAction(QString()).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls(), QStringList());
}

void RegistryActionsTest::commitScriptReplacesTheBackend()
{
    ActionScene scene;
    scene.wrappers.addScript(kFolder, "commit.sh", "exit 0");
    QVariant data = QString("x");
    QVERIFY(RegistryCommitAction(kTemplate).execute(scene.key(kViewKey), data));
    QVERIFY(RegistryCommitAction(QString()).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls(), QStringList());
}

void RegistryActionsTest::commitScriptThatFailsLeavesItToTheBackend()
{
    ActionScene scene;
    scene.wrappers.addScript(kFolder, "commit.sh", "exit 1");
    QVariant data = QString("x");
    QVERIFY(RegistryCommitAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls(), QStringList() << QString("commit %1").arg(kKey));
    QVERIFY(!RegistryCommitAction(QString()).execute(scene.key(kViewKey), data));
}

void RegistryActionsTest::commitScriptGetsTheValueInAFile_data()
{
    // One element: Qt 4 has no columns of plain variants.
    QTest::addColumn<QVariantList>("value");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("text") << (QVariantList() << QVariant(QString::fromUtf8(" \xc3\xa9\n")))
                          << QByteArray(" \xc3\xa9\n");
    QTest::newRow("no value: an empty file") << (QVariantList() << QVariant()) << QByteArray();
}

void RegistryActionsTest::commitScriptGetsTheValueInAFile()
{
    QFETCH(QVariantList, value);
    QFETCH(QByteArray, expected);

    ActionScene scene;
    scene.wrappers.addScript(kFolder, "commit.sh",
                             "[ $# = 1 ] && [ -f \"$1\" ] && cat \"$1\" > seen-value");
    QVERIFY(RegistryCommitAction(kTemplate).execute(scene.key(kViewKey), value.first()));
    QVERIFY(scene.wrappers.exists(kFolder, "seen-value"));
    QCOMPARE(scene.wrappers.read(kFolder, "seen-value"), expected);
}

void RegistryActionsTest::commitCommitsTheTargetsOfSetting()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env",
                           "A=root/v\nREG_SET=root/a\nREG_SET=root/sessions/{UUID}/address\n");
    QVariant data = QString("x");
    QVERIFY(RegistryCommitAction("root/own").execute(scene.key(kViewKey), data));
    QCOMPARE(sorted(scene.backend.calls()),
             QStringList() << "commit root/a" << QString("commit %1").arg(kKey));
}

void RegistryActionsTest::commitEndsWithTheFirstTargetThatFails()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env", kThreeTargets);
    scene.backend.fail("commit", 2);
    RegistryCommitAction action(kTemplate);
    QVariant data = QString("x");
    QVERIFY(!action.execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls("commit").size(), 2);
    scene.backend.forgetCalls();

    QVERIFY(action.execute(scene.key(kViewKey), data));
    QCOMPARE(sorted(scene.backend.calls()),
             QStringList() << "commit root/a"
                           << "commit root/b"
                           << "commit root/c");
}

void RegistryActionsTest::commitReadsNoTargetsFromItsOwnFile()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "commit.env", kThreeTargets);
    QVariant data = QString("x");
    QVERIFY(RegistryCommitAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls("commit"), QStringList() << QString("commit %1").arg(kKey));
}

void RegistryActionsTest::commitKnowsItsRegistryKeyAndTargetsAsTheyAreWritten()
{
    ActionScene scene;
    RegistryCommitAction const action(kTemplate);
    QCOMPARE(action.registryKey(), QString(kTemplate));
    QVERIFY(RegistryCommitAction(QString()).registryKey().isNull());
    QCOMPARE(action.getRegSet(scene.key(kViewKey)), QSet<QString>());

    scene.wrappers.addFile(kFolder, "set.env",
                           "REG_SET=root/{UUID}/a\nREG_SET=root/b\nreg_set=root/c\nA=root/d\n");
    QSet<QString> expected;
    expected << "root/{UUID}/a"
             << "root/b";
    QCOMPARE(action.getRegSet(scene.key(kViewKey)), expected);
}

void RegistryActionsTest::commitEnvironment_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("added");

    QTest::newRow("no file: the current key, none yet")
        << QByteArray() << (QStringList() << "REG_SET=");
    QTest::newRow("variables, then the current key")
        << QByteArray("A=root/a\nLOST=root/lost\nB=root/{UUID}/b\n")
        << (QStringList() << "A=1"
                          << "B=2"
                          << "REG_SET=");
    QTest::newRow("REG_SET is a variable like others, and the current key follows")
        << QByteArray("REG_SET=root/a\n")
        << (QStringList() << "REG_SET=1"
                          << "REG_SET=");
}

void RegistryActionsTest::commitEnvironment()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, added);

    ActionScene scene;
    if (!file.isEmpty())
        scene.wrappers.addFile(kFolder, "commit.env", file);
    // The variables of setting are none of committing.
    scene.wrappers.addFile(kFolder, "set.env", "C=root/a\n");
    scene.backend.addValue("root/a", "1");
    scene.backend.addValue("root/{c0ffee00-1234-4321-abcd-0123456789ab}/b", "2");
    RegistryCommitAction action(kTemplate);
    QCOMPARE(action.processEnvironment(scene.key(kViewKey)), QProcess::systemEnvironment() + added);
}

void RegistryActionsTest::commitScriptRunsForEachTarget()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env", "REG_SET=root/{UUID}/a\nREG_SET=root/b\n");
    scene.wrappers.addFile(kFolder, "commit.env", "A=root/a\nREG_SET=root/a\n");
    scene.wrappers.addScript(kFolder, "commit.sh", captureEnvironment());
    scene.backend.addValue("root/a", "1");
    QVariant data = QString("x");
    QVERIFY(RegistryCommitAction(kTemplate).execute(scene.key(kViewKey), data));
    QStringList const first = seenEnvironment(scene.wrappers, kFolder, 0);
    QStringList const second = seenEnvironment(scene.wrappers, kFolder, 1);
    QStringList const ofA = environmentWith(QStringList() << "A=1"
                                                          << "REG_SET=root/{UUID}/a");
    QStringList const ofB = environmentWith(QStringList() << "A=1"
                                                          << "REG_SET=root/b");
    QVERIFY2((first == ofA && second == ofB) || (first == ofB && second == ofA),
             qPrintable((first + second).join("\n")));
    QVERIFY(!scene.wrappers.exists(kFolder, "seen-2"));
    QCOMPARE(scene.backend.calls("commit"), QStringList());
}

void RegistryActionsTest::commitScriptSeesTheRegistryKeyWithItsPlaceholder()
{
    ActionScene scene;
    scene.wrappers.addScript(kFolder, "commit.sh", captureEnvironment());
    QVariant data = QString("x");
    QVERIFY(RegistryCommitAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(seenEnvironment(scene.wrappers, kFolder),
             environmentWith(QStringList() << QString("REG_SET=") + kTemplate));
}

void RegistryActionsTest::secondCommitForgetsTheTargetsOfTheFirst()
{
    ActionScene scene;
    RegistryCommitAction action(kTemplate);
    QVariant data = QString("x");
    scene.wrappers.addFile(kFolder, "set.env", kThreeTargets);
    QVERIFY(action.execute(scene.key(kViewKey), data));
    scene.backend.forgetCalls();

    scene.wrappers.addFile(kFolder, "set.env", "");
    scene.wrappers.addScript(kFolder, "commit.sh", captureEnvironment() + "; exit 1");
    QVERIFY(action.execute(scene.key(kOtherViewKey), data));
    QCOMPARE(scene.backend.calls("commit"), QStringList() << QString("commit %1").arg(kOtherKey));
    QCOMPARE(seenEnvironment(scene.wrappers, kFolder),
             environmentWith(QStringList() << QString("REG_SET=") + kTemplate));
}

void RegistryActionsTest::keyWithoutUuidKeepsThePlaceholderForTheBackendToRefuse()
{
    ActionScene scene;
    QStringList const operations = QStringList() << "set"
                                                 << "create"
                                                 << "del"
                                                 << "commit";
    for (QString const& operation : operations)
        scene.backend.failOn(operation, kTemplate);
    ConfigKey const& entry = scene.key("zelvo-view/rdp/sessions/{uuid}/address");
    QVariant data = QString("x");
    QVERIFY(!RegistryValueAction(kTemplate).execute(entry, data));
    QVERIFY(!RegistrySetValueAction(kTemplate).execute(entry, data));
    QVERIFY(!RegistryCreateAction(kTemplate).execute(entry, data));
    QVERIFY(!RegistryDelAction(kTemplate).execute(entry, data));
    QVERIFY(!RegistryCommitAction(kTemplate).execute(entry, data));
    for (QString const& operation : operations)
        QCOMPARE(scene.backend.calls(operation).size(), 1);
}

void RegistryActionsTest::applyAsksTheBackend()
{
    ActionScene scene;
    QVariant data = kUntouched;
    QVERIFY(RegistryApplyAction(kTemplate).execute(scene.key(kViewKey), data));
    // The command is an empty text.
    QCOMPARE(scene.backend.calls(), QStringList() << QString("apply %1 ").arg(kKey));
    QCOMPARE(data, QVariant(kUntouched));

    scene.backend.fail("apply");
    QVERIFY(!RegistryApplyAction(kTemplate).execute(scene.key(kViewKey), data));
}

void RegistryActionsTest::applyWithoutRegistryKeyAndScriptFails()
{
    ActionScene scene;
    QVariant data;
    QVERIFY(!RegistryApplyAction(QString()).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.backend.calls(), QStringList());
}

void RegistryActionsTest::applyScriptIsQueuedAndTheBackendNotAsked()
{
    ActionScene scene;
    scene.wrappers.addScript(kFolder, "apply.sh", "echo applied > seen; exit 1");
    QThreadPool pool;
    ActionKit::instance()->pushApplyThreadPool(&pool);
    QVariant data;
    QVERIFY(RegistryApplyAction(kTemplate).execute(scene.key(kViewKey), data));
    pool.waitForDone();
    ActionKit::instance()->popApplyThreadPool();
    QCOMPARE(scene.wrappers.read(kFolder, "seen"), QByteArray("applied\n"));
    QCOMPARE(scene.backend.calls(), QStringList());
}

ZELVO_TEST(RegistryActionsTest)
#include "RegistryActionsTest.moc"
