// SPDX-License-Identifier: MIT

#include "actions/registry/AutostartActions.h"

#include "actions/registry/ActionScene.h"
#include "support/TestProgram.h"

#include <QVariant>
#include <QtTest>

namespace {

char const kViewKey[] = "zelvo-view/ica/sessions/{c0ffee00-1234-4321-abcd-0123456789ab}/autostart";
char const kFolder[] = "zelvo-view/ica/sessions/{uuid}/autostart";
char const kTemplate[] = "root/sessions/{UUID}/autostart";
char const kKey[] = "root/sessions/{c0ffee00-1234-4321-abcd-0123456789ab}/autostart";

} // namespace

class AutostartActionsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void reading_data();
    void reading();
    void readingTakesTheWordOfTheScript_data();
    void readingTakesTheWordOfTheScript();
    void readingWhatCannotBeReadLeavesTheDataAlone();
    void readingFeedsTheScriptFromItsFile();
    void writing_data();
    void writing();
    void writingFailsWithTheRegistry();
    void writingGivesTheScriptTheDigit();
    void writingReachesAllTargets();
};

void AutostartActionsTest::initTestCase()
{
    simplifyEnvironment();
}

void AutostartActionsTest::reading_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("expected");

    QTest::newRow("off") << "off"
                         << "false";
    QTest::newRow("no") << "no"
                        << "false";
    QTest::newRow("false") << "false"
                           << "false";
    QTest::newRow("0") << "0"
                       << "false";
    QTest::newRow("ko") << "ko"
                        << "false";
    QTest::newRow("on") << "on"
                        << "true";
    QTest::newRow("yes") << "yes"
                         << "true";
    QTest::newRow("1") << "1"
                       << "true";
    QTest::newRow("empty") << ""
                           << "true";
    QTest::newRow("any other word") << "sometimes"
                                    << "true";
    QTest::newRow("a false word in capitals") << "OFF"
                                              << "true";
    QTest::newRow("a false word with a newline") << "off\n"
                                                 << "true";
}

void AutostartActionsTest::reading()
{
    QFETCH(QString, stored);
    QFETCH(QString, expected);

    QStringList const types = QStringList() << "string"
                                            << "number"
                                            << "bool";
    for (QString const& type : types) {
        ActionScene scene;
        scene.backend.addType(kTemplate, type);
        scene.backend.addValue(kKey, stored);
        QVariant data;
        QVERIFY(AutostartValueAction(kTemplate).execute(scene.key(kViewKey), data));
        QCOMPARE(data, QVariant(expected));
    }
}

void AutostartActionsTest::readingTakesTheWordOfTheScript_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("expected");

    QTest::newRow("a false word") << QByteArray("printf ko") << "false";
    QTest::newRow("another word") << QByteArray("printf always") << "true";
    QTest::newRow("a newline behind the false word counts") << QByteArray("echo ko") << "true";
    QTest::newRow("nothing") << QByteArray(":") << "true";
    QTest::newRow("it fails: the registry's") << QByteArray("printf on; exit 1") << "false";
}

void AutostartActionsTest::readingTakesTheWordOfTheScript()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, expected);

    ActionScene scene;
    scene.wrappers.addScript(kFolder, "get.sh", script);
    scene.backend.addValue(kKey, "off");
    QVariant data;
    QVERIFY(AutostartValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(expected));
}

void AutostartActionsTest::readingWhatCannotBeReadLeavesTheDataAlone()
{
    ActionScene scene;
    QVariant data = QString("as it was");
    QVERIFY(!AutostartValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(QString("as it was")));
    QVERIFY(!AutostartValueAction(QString()).execute(scene.key(kViewKey), data));
    QCOMPARE(data, QVariant(QString("as it was")));
}

void AutostartActionsTest::readingFeedsTheScriptFromItsFile()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "get.env", "FLAG=root/sessions/{UUID}/autostart\n");
    scene.wrappers.addScript(kFolder, "get.sh", captureEnvironment());
    scene.backend.addValue(kKey, "off");
    QVariant data;
    QVERIFY(AutostartValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(seenEnvironment(scene.wrappers, kFolder),
             environmentWith(QStringList() << "FLAG=off"));
}

void AutostartActionsTest::writing_data()
{
    // One element: Qt 4 has no columns of plain variants.
    QTest::addColumn<QVariantList>("value");
    QTest::addColumn<QString>("stored");

    // One word for false here, and five in reading: the view itself writes two words only.
    QTest::newRow("false") << (QVariantList() << QVariant(QString("false"))) << "0";
    QTest::newRow("true") << (QVariantList() << QVariant(QString("true"))) << "1";
    QTest::newRow("0") << (QVariantList() << QVariant(QString("0"))) << "1";
    QTest::newRow("no") << (QVariantList() << QVariant(QString("no"))) << "1";
    QTest::newRow("off") << (QVariantList() << QVariant(QString("off"))) << "1";
    QTest::newRow("ko") << (QVariantList() << QVariant(QString("ko"))) << "1";
    QTest::newRow("False") << (QVariantList() << QVariant(QString("False"))) << "1";
    QTest::newRow("false with a blank") << (QVariantList() << QVariant(QString("false "))) << "1";
    QTest::newRow("empty") << (QVariantList() << QVariant(QString(""))) << "1";
    QTest::newRow("no value") << (QVariantList() << QVariant()) << "1";
}

void AutostartActionsTest::writing()
{
    QFETCH(QVariantList, value);
    QFETCH(QString, stored);

    QStringList const types = QStringList() << "string"
                                            << "number"
                                            << "bool";
    for (QString const& type : types) {
        ActionScene scene;
        scene.backend.addType(kTemplate, type);
        QVariant data = value.first();
        QVERIFY(AutostartSetValueAction(kTemplate).execute(scene.key(kViewKey), data));
        QCOMPARE(scene.backend.calls("set"),
                 QStringList() << QString("set %1 %2").arg(kKey, stored));
        QCOMPARE(data, QVariant(stored.toInt()));
    }
}

void AutostartActionsTest::writingFailsWithTheRegistry()
{
    ActionScene scene;
    scene.backend.fail("set");
    QVariant data = QString("true");
    QVERIFY(!AutostartSetValueAction(kTemplate).execute(scene.key(kViewKey), data));
}

void AutostartActionsTest::writingGivesTheScriptTheDigit()
{
    ActionScene scene;
    scene.wrappers.addScript(kFolder, "set.sh", "cat \"$1\" > seen-value; exit 1");
    QVariant data = QString("false");
    QVERIFY(AutostartSetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QCOMPARE(scene.wrappers.read(kFolder, "seen-value"), QByteArray("0"));
}

void AutostartActionsTest::writingReachesAllTargets()
{
    ActionScene scene;
    scene.wrappers.addFile(kFolder, "set.env", "REG_SET=root/a\nREG_SET=root/{UUID}/b\n");
    QVariant data = QString("off");
    QVERIFY(AutostartSetValueAction(kTemplate).execute(scene.key(kViewKey), data));
    QStringList calls = scene.backend.calls("set");
    calls.sort();
    QCOMPARE(calls,
             QStringList() << "set root/a 1"
                           << "set root/{c0ffee00-1234-4321-abcd-0123456789ab}/b 1");
}

ZELVO_TEST(AutostartActionsTest)
#include "AutostartActionsTest.moc"
