// SPDX-License-Identifier: MIT

#include "actions/registry/VexlinkCommitAction.h"

#include "actions/registry/ActionScene.h"
#include "support/TestProgram.h"

#include <QVariant>
#include <QtTest>

namespace {

char const kSession[] = "zelvo-view/vexlink/sessions/{c0ffee00-1234-4321-abcd-0123456789ab}";
char const kFolder[] = "zelvo-view/vexlink/sessions/{uuid}";
char const kTemplate[] = "root/ConnectionType/vexlink/connections/{UUID}";
char const kKey[]
    = "root/ConnectionType/vexlink/connections/{c0ffee00-1234-4321-abcd-0123456789ab}";

/// Makes the six settings of the session; each has its own name in capitals for a buffered value.
void fillSession(ActionScene& scene)
{
    QStringList const names = QStringList() << "port"
                                            << "address"
                                            << "local_port"
                                            << "transport"
                                            << "emulation"
                                            << "name";
    for (QString const& name : names)
        scene.key(QString(kSession) + "/" + name).setBufferValue(name.toUpper());
}

QStringList linesOfTheSession(QString const& action, QString const& ttsName)
{
    return QStringList() << "VEXLINK_ACTION=" + action << "VEXLINK_NAME=NAME"
                         << "VEXLINK_EMULATION=EMULATION"
                         << "VEXLINK_TRANSPORT=TRANSPORT"
                         << "VEXLINK_LOCAL_PORT=LOCAL_PORT"
                         << "VEXLINK_ADDRESS=ADDRESS"
                         << "VEXLINK_PORT=PORT"
                         << "VEXLINK_TTSNAME=" + ttsName;
}

} // namespace

class VexlinkCommitActionTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void actionLine_data();
    void actionLine();
    void actionIsAnEditWhenTheBackendCannotTell();
    void environmentHasItsLinesInOrder();
    void sessionWithoutTtsNameGivesAnEmptyLine();
    void childrenThatLackGiveEmptyValues();
    void childThatIsABranchGivesAnEmptyValue();
    void valuesAreTheBufferedOnes();
    void environmentFilesTakeNoPart();
    void scriptSeesTheSession();
    void scriptReplacesTheCommit();
    void sessionIsCommittedByTheBackend_data();
    void sessionIsCommittedByTheBackend();
    void targetsOfSettingAreCommittedOneByOne();
    void sessionThatCannotBeCommittedFails();
};

void VexlinkCommitActionTest::initTestCase()
{
    simplifyEnvironment();
}

void VexlinkCommitActionTest::actionLine_data()
{
    QTest::addColumn<QString>("changedKey");
    QTest::addColumn<int>("change");
    QTest::addColumn<QString>("expected");

    QTest::newRow("modified") << kKey << int(REG_CHANGE_MODIFIED) << "EDIT";
    QTest::newRow("created: its first commit") << kKey << int(REG_CHANGE_CREATED) << "CREATE";
    QTest::newRow("deleted: it is removed") << kKey << int(REG_CHANGE_DELETED) << "DELETE";
    QTest::newRow("nothing") << kKey << int(REG_CHANGE_NOTHING) << "";
    QTest::newRow("no change reported") << QString() << 0 << "EDIT";
    QTest::newRow("another session's change")
        << "root/ConnectionType/vexlink/connections/{deadbeef-1234-4321-abcd-0123456789ab}"
        << int(REG_CHANGE_CREATED) << "EDIT";
    QTest::newRow("a change of one of its keys")
        << QString(kKey) + "/label" << int(REG_CHANGE_CREATED) << "EDIT";
    QTest::newRow("a change under the placeholder")
        << kTemplate << int(REG_CHANGE_DELETED) << "EDIT";
}

void VexlinkCommitActionTest::actionLine()
{
    QFETCH(QString, changedKey);
    QFETCH(int, change);
    QFETCH(QString, expected);

    ActionScene scene;
    if (!changedKey.isEmpty())
        scene.backend.addChange(changedKey, static_cast<_RegEntryChange>(change));
    VexlinkCommitAction action(kTemplate);
    QStringList const lines
        = action.processEnvironment(scene.branch(kSession)).filter("VEXLINK_ACTION");
    QCOMPARE(lines, QStringList() << "VEXLINK_ACTION=" + expected);
}

void VexlinkCommitActionTest::actionIsAnEditWhenTheBackendCannotTell()
{
    ActionScene scene;
    fillSession(scene);
    scene.backend.addChange(kKey, REG_CHANGE_CREATED);
    scene.backend.fail("changes");
    QCOMPARE(VexlinkCommitAction(kTemplate).processEnvironment(scene.branch(kSession)),
             QProcess::systemEnvironment() + linesOfTheSession("EDIT", QString()));
}

void VexlinkCommitActionTest::environmentHasItsLinesInOrder()
{
    ActionScene scene;
    fillSession(scene);
    scene.backend.addChange(kKey, REG_CHANGE_CREATED);
    scene.backend.addValue(QString(kKey) + "/ttsName", "tty7");
    QCOMPARE(VexlinkCommitAction(kTemplate).processEnvironment(scene.branch(kSession)),
             QProcess::systemEnvironment() + linesOfTheSession("CREATE", "tty7"));
}

void VexlinkCommitActionTest::sessionWithoutTtsNameGivesAnEmptyLine()
{
    ActionScene scene;
    scene.backend.addValue(QString(kTemplate) + "/ttsName", "the template's");
    QStringList const lines
        = VexlinkCommitAction(kTemplate).processEnvironment(scene.branch(kSession));
    QCOMPARE(lines.last(), QString("VEXLINK_TTSNAME="));
}

void VexlinkCommitActionTest::childrenThatLackGiveEmptyValues()
{
    ActionScene scene;
    scene.key(QString(kSession) + "/emulation").setBufferValue("vt100");
    QCOMPARE(VexlinkCommitAction(kTemplate).processEnvironment(scene.branch(kSession)),
             QProcess::systemEnvironment()
                 + (QStringList() << "VEXLINK_ACTION=EDIT"
                                  << "VEXLINK_NAME="
                                  << "VEXLINK_EMULATION=vt100"
                                  << "VEXLINK_TRANSPORT="
                                  << "VEXLINK_LOCAL_PORT="
                                  << "VEXLINK_ADDRESS="
                                  << "VEXLINK_PORT="
                                  << "VEXLINK_TTSNAME="));
}

void VexlinkCommitActionTest::childThatIsABranchGivesAnEmptyValue()
{
    ActionScene scene;
    scene.key(QString(kSession) + "/address/host").setBufferValue("lost");
    QStringList const lines
        = VexlinkCommitAction(kTemplate).processEnvironment(scene.branch(kSession));
    QVERIFY(lines.contains("VEXLINK_ADDRESS="));
    QCOMPARE(lines.filter("VEXLINK_").size(), 8);
}

void VexlinkCommitActionTest::valuesAreTheBufferedOnes()
{
    ActionScene scene;
    scene.backend.addValue(QString(kKey) + "/label", "the registry's");
    ActionKit::instance()->matchRegistryKey("zelvo-view/vexlink/sessions/{uuid}/name",
                                            QString(kTemplate) + "/label", nullptr, nullptr);
    // Its default is "the default".
    ConfigKey& name = scene.key(QString(kSession) + "/name");
    QCOMPARE(name.value(), QString("the registry's"));
    VexlinkCommitAction action(kTemplate);
    QVERIFY(action.processEnvironment(scene.branch(kSession)).contains("VEXLINK_NAME="));

    name.setBufferValue(QString::fromUtf8("B\xc3\xbcro 2 = oben"));
    QVERIFY(action.processEnvironment(scene.branch(kSession))
                .contains(QString::fromUtf8("VEXLINK_NAME=B\xc3\xbcro 2 = oben")));
}

void VexlinkCommitActionTest::environmentFilesTakeNoPart()
{
    ActionScene scene;
    fillSession(scene);
    scene.wrappers.addFile(kFolder, "commit.env", "A=root/a\n");
    scene.wrappers.addFile(kFolder, "set.env", "B=root/a\nREG_SET=root/a\n");
    scene.backend.addValue("root/a", "1");
    QCOMPARE(VexlinkCommitAction(kTemplate).processEnvironment(scene.branch(kSession)),
             QProcess::systemEnvironment() + linesOfTheSession("EDIT", QString()));
}

void VexlinkCommitActionTest::scriptSeesTheSession()
{
    ActionScene scene;
    fillSession(scene);
    scene.wrappers.addFile(kFolder, "commit.env", "A=root/a\n");
    scene.backend.addValue("root/a", "1");
    scene.wrappers.addScript(kFolder, "commit.sh", captureEnvironment());
    scene.backend.addChange(kKey, REG_CHANGE_CREATED);
    scene.backend.addValue(QString(kKey) + "/ttsName", "tty7");
    QVariant data;
    QVERIFY(VexlinkCommitAction(kTemplate).execute(scene.branch(kSession), data));
    QCOMPARE(seenEnvironment(scene.wrappers, kFolder),
             environmentWith(linesOfTheSession("CREATE", "tty7")));
    QVERIFY(!scene.wrappers.exists(kFolder, "seen-1"));
}

void VexlinkCommitActionTest::scriptReplacesTheCommit()
{
    ActionScene scene;
    scene.wrappers.addScript(kFolder, "commit.sh", "exit 0");
    QVariant data;
    QVERIFY(VexlinkCommitAction(kTemplate).execute(scene.branch(kSession), data));
    QCOMPARE(scene.backend.calls("commit"), QStringList());
}

void VexlinkCommitActionTest::sessionIsCommittedByTheBackend_data()
{
    QTest::addColumn<QByteArray>("script");

    QTest::newRow("no script") << QByteArray();
    QTest::newRow("a script that fails") << QByteArray("exit 1");
}

void VexlinkCommitActionTest::sessionIsCommittedByTheBackend()
{
    QFETCH(QByteArray, script);

    ActionScene scene;
    if (!script.isEmpty())
        scene.wrappers.addScript(kFolder, "commit.sh", script);
    QVariant data;
    QVERIFY(VexlinkCommitAction(kTemplate).execute(scene.branch(kSession), data));
    QCOMPARE(scene.backend.calls("commit"), QStringList() << QString("commit %1").arg(kKey));
}

void VexlinkCommitActionTest::targetsOfSettingAreCommittedOneByOne()
{
    ActionScene scene;
    fillSession(scene);
    scene.wrappers.addFile(kFolder, "set.env", "REG_SET=root/a\nREG_SET=root/b\n");
    scene.wrappers.addScript(kFolder, "commit.sh", captureEnvironment() + "; exit 1");
    QVariant data;
    QVERIFY(VexlinkCommitAction(kTemplate).execute(scene.branch(kSession), data));
    QStringList calls = scene.backend.calls("commit");
    calls.sort();
    QCOMPARE(calls,
             QStringList() << "commit root/a"
                           << "commit root/b");

    QStringList const expected = environmentWith(linesOfTheSession("EDIT", QString()));
    QCOMPARE(seenEnvironment(scene.wrappers, kFolder, 0), expected);
    QCOMPARE(seenEnvironment(scene.wrappers, kFolder, 1), expected);
}

void VexlinkCommitActionTest::sessionThatCannotBeCommittedFails()
{
    ActionScene scene;
    scene.backend.fail("commit");
    QVariant data;
    QVERIFY(!VexlinkCommitAction(kTemplate).execute(scene.branch(kSession), data));
}

ZELVO_TEST(VexlinkCommitActionTest)
#include "VexlinkCommitActionTest.moc"
