// SPDX-License-Identifier: MIT

#include "doctor/FolderCheck.h"

#include "TestView.h"
#include "doctor/TreeCheck.h"
#include "support/TestProgram.h"

#include <QtTest>

#include <initializer_list>

namespace {

char const kUsb[] = "zelvo-view/usb/enable";
char const kDepth[] = "zelvo-view/display/color_depth";
char const kSsid[] = "zelvo-view/wireless/ssid";
char const kAddress[] = "zelvo-view/vexlink/sessions/{uuid}/address";
char const kName[] = "zelvo-view/rdp/sessions/{uuid}/name";
char const kSession[] = "zelvo-view/vexlink/sessions/{uuid}";
char const kRdpSession[] = "zelvo-view/rdp/sessions/{uuid}";
char const kUuid[] = "{01234567-89ab-cdef-0123-456789abcdef}";
char const kArea[] = "zelvo-view/usb";

} // namespace

class FolderCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void findings_data();
    void findings();
    void keyItselfIsNotAskedFor_data();
    void keyItselfIsNotAskedFor();
    void findingNamesFileLineAndKey();
    void foldersThatNoKeyHas_data();
    void foldersThatNoKeyHas();
    void fileOfNoKeyIsFound_data();
    void fileOfNoKeyIsFound();
    void scriptWithoutAnInterpreter_data();
    void scriptWithoutAnInterpreter();
    void emptyValueIsNoted_data();
    void emptyValueIsNoted();
    void linkedFolderIsLookedInto();
    void environmentFileThatIsNoneIsIgnored();
    void blankInThePathIsToldOnce();
    void everyKeyMayHaveItsScripts();
};

void FolderCheckTest::findings_data()
{
    QTest::addColumn<QString>("key");
    // "NAME" for a ready script, "NAME=CONTENT" for any other file.
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("expected");

    QStringList const none;
    QString const known("root/USB/root/mass-storage/allowed");
    QTest::newRow("a script") << kUsb << QStringList("get.sh") << none;
    QTest::newRow("helpers and comments") << kUsb
                                          << (QStringList() << "get.sh"
                                                            << "functions.sh"
                                                            << "README=x")
                                          << none;

    QTest::newRow("a variable for a script") << kUsb
                                             << (QStringList() << "get.sh"
                                                               << "get.env=A=" + known)
                                             << none;
    QTest::newRow("get.env alone")
        << kUsb << QStringList("get.env=A=" + known)
        << QStringList("get.env:1: A is not read: there is no get.sh beside it");
    QTest::newRow("commit.env alone")
        << kUsb << QStringList("commit.env=\nA=" + known)
        << QStringList("commit.env:2: A is not read: there is no commit.sh beside it");
    QTest::newRow("a variable of set.env alone")
        << kUsb << QStringList("set.env=A=" + known)
        << QStringList("set.env:1: A is not read: there is no set.sh beside it");
    QTest::newRow("a target of set.env alone")
        << kUsb << QStringList("set.env=REG_SET=" + known) << none;
    QTest::newRow("a target in get.env")
        << kUsb
        << (QStringList() << "get.sh"
                          << "get.env=REG_SET=" + known)
        << QStringList("get.env:1: REG_SET names a target in set.env only; here it is a variable "
                       "like any other");

    QTest::newRow("a target in commit.env")
        << kUsb
        << (QStringList() << "commit.sh"
                          << "commit.env=REG_SET=" + known)
        << QStringList(
               "commit.env:1: REG_SET names a target in set.env only; here it is a variable "
               "like any other");
    QTest::newRow("names like that of a target")
        << kUsb << QStringList("set.env=REG_SETS=" + known + "\nreg_set=" + known)
        << (QStringList() << "set.env:1: REG_SETS is not read: there is no set.sh beside it"
                          << "set.env:2: reg_set is not read: there is no set.sh beside it");

    QTest::newRow("a registry key that nobody knows")
        << kUsb
        << (QStringList() << "get.sh"
                          << "get.env=A=root/nothing")
        << QStringList("get.env:1: root/nothing: the default settings know no such key");
    QTest::newRow("a misspelt registry key")
        << kUsb
        << (QStringList() << "get.sh"
                          << "get.env=A=root/USB/root/mass_storage/allowed")
        << QStringList(
               "get.env:1: root/USB/root/mass_storage/allowed: the default settings know no "
               "such key; did you mean root/USB/root/mass-storage/allowed?");
    QTest::newRow("a directory of the registry")
        << kUsb
        << (QStringList() << "get.sh"
                          << "get.env=A=root/USB")
        << QStringList("get.env:1: root/USB: is a directory, which has no value");
    QTest::newRow("a temporary key") << kUsb
                                     << (QStringList() << "get.sh"
                                                       << "get.env=A=tmp/anything")
                                     << none;
    QTest::newRow("a key of the view")
        << kUsb
        << (QStringList() << "get.sh"
                          << "get.env=A=root/zelvo-view/usb/read_only")
        << none;
    QTest::newRow("a registry key of any session outside of one")
        << kUsb
        << (QStringList() << "get.sh"
                          << "get.env=A=root/ConnectionType/ica/connections/{UUID}/label")
        << QStringList("get.env:1: root/ConnectionType/ica/connections/{UUID}/label: \"{UUID}\" is "
                       "replaced for the keys of a session only");
    QTest::newRow("a registry key of the session")
        << kName
        << (QStringList() << "get.sh"
                          << "get.env=A=root/ConnectionType/ica/connections/{UUID}/label")
        << none;
    QTest::newRow("a view key of the session")
        << kName
        << (QStringList() << "get.sh"
                          << "get.env=A=root/zelvo-view/ica/sessions/{UUID}/name")
        << none;
    QTest::newRow("the view's placeholder")
        << kName
        << (QStringList() << "get.sh"
                          << "get.env=A=root/zelvo-view/ica/sessions/{uuid}/name")
        << QStringList("get.env:1: root/zelvo-view/ica/sessions/{uuid}/name: \"{uuid}\" is not "
                       "replaced here; the word is \"{UUID}\"");

    QTest::newRow("what set.sh prints goes to the registry")
        << kUsb
        << (QStringList() << "set.sh"
                          << "set.env=REG_SET=" + known)
        << none;
    QTest::newRow("what set.sh prints goes to commit.sh") << kAddress
                                                          << (QStringList() << "set.sh"
                                                                            << "commit.sh")
                                                          << none;
    QTest::newRow("what set.sh prints goes to the connection file")
        << kSsid << QStringList("set.sh") << none;
    QStringList const lost(
        "set.sh: what it prints is lost at the commit: there is no commit.sh, and no "
        "REG_SET line in set.env");
    QTest::newRow("what set.sh prints goes nowhere") << kUsb << QStringList("set.sh") << lost;
    QTest::newRow("what set.sh prints is nothing that the area can write")
        << "zelvo-view/wireless/enable" << QStringList("set.sh") << lost;

    QTest::newRow("targets where the display settings are set")
        << kDepth << QStringList("set.env=REG_SET=" + known)
        << (QStringList()
            << "set.env:1: what REG_SET names is not set: without a set.sh the key is "
               "served by ColorDepthActions, which does not look here"
            << "set.env:1: what REG_SET names is not committed: without a commit.sh "
               "the key is served by ColorDepthActions, which does not look here");
    QTest::newRow("targets that only the display settings commit")
        << kDepth
        << (QStringList() << "set.sh"
                          << "set.env=REG_SET=" + known)
        << QStringList(
               "set.env:1: what REG_SET names is not committed: without a commit.sh the key "
               "is served by ColorDepthActions, which does not look here");
    QTest::newRow("targets where scripts serve") << kDepth
                                                 << (QStringList() << "set.sh"
                                                                   << "commit.sh"
                                                                   << "set.env=REG_SET=" + known)
                                                 << none;

    QTest::newRow("the commit of a terminal session")
        << kSession
        << (QStringList() << "commit.sh"
                          << "commit.env=A=" + known)
        << QStringList(
               "commit.env:1: A is not read: VexlinkCommitAction, which serves the key, gives "
               "its script others");
    QTest::newRow("scripts of a session") << kSession
                                          << (QStringList() << "isVisible.sh"
                                                            << "create.sh"
                                                            << "del.sh"
                                                            << "commit.sh"
                                                            << "apply.sh")
                                          << none;
    QTest::newRow("scripts that a directory never runs")
        << kArea
        << (QStringList() << "get.sh"
                          << "set.sh"
                          << "create.sh")
        << (QStringList() << "get.sh: never runs: a directory has no value"
                          << "set.sh: never runs: a directory has no value"
                          << "create.sh: never runs: only a session, the directory \"{uuid}\", is "
                             "created");
    QString const directory("root/ConnectionType/rdesktop/connections/{UUID}");
    QTest::newRow("a session that is committed as its registry directory")
        << kRdpSession << QStringList("set.env=REG_SET=" + directory) << none;
    QTest::newRow("a terminal session that is committed as its registry directory")
        << kSession << QStringList("set.env=REG_SET=root/ConnectionType/vexlink/connections/{UUID}")
        << none;
    QTest::newRow("a session that is committed as what nobody knows")
        << kRdpSession << QStringList("set.env=REG_SET=root/nothing")
        << QStringList("set.env:1: root/nothing: the default settings know no such key");
    QTest::newRow("a value that is set as the session's directory")
        << kName << QStringList("set.env=REG_SET=" + directory)
        << QStringList("set.env:1: " + directory + ": is a directory, which has no value");
    QTest::newRow("a directory as a variable of a session")
        << kRdpSession
        << (QStringList() << "commit.sh"
                          << "commit.env=A=" + directory)
        << QStringList("commit.env:1: " + directory + ": is a directory, which has no value");
    QTest::newRow("a registry key with a typed UUID")
        << kName
        << (QStringList()
            << "get.sh"
            << QString("get.env=A=root/ConnectionType/ica/connections/%1/label").arg(kUuid))
        << none;
    QTest::newRow("a registry key with a typed UUID, outside of a session")
        << kUsb
        << QStringList(
               QString("set.env=REG_SET=root/ConnectionType/ica/connections/%1/label").arg(kUuid))
        << none;
    QTest::newRow("a misspelt registry key with a typed UUID")
        << kUsb
        << QStringList(
               QString("set.env=REG_SET=root/ConnectionType/ica/connections/%1/lable").arg(kUuid))
        << QStringList(
               QString("set.env:1: root/ConnectionType/ica/connections/%1/lable: the default "
                       "settings know no such key; did you mean "
                       "root/ConnectionType/ica/connections/%1/label?")
                   .arg(kUuid));
    QTest::newRow("a typed UUID where no session is")
        << kUsb << QStringList(QString("set.env=REG_SET=root/USB/%1").arg(kUuid))
        << QStringList(
               QString("set.env:1: root/USB/%1: the default settings know no such key").arg(kUuid));
    QTest::newRow("variables that nobody reads in a directory")
        << kArea << QStringList("get.env=A=" + known)
        << QStringList("get.env:1: A is not read: a directory has no value");
    QTest::newRow("a misspelt name in the middle of a registry key")
        << kUsb
        << (QStringList() << "get.sh"
                          << "get.env=A=root/USB/rooot/mass-storage/allowed")
        << QStringList("get.env:1: root/USB/rooot/mass-storage/allowed: the default settings know "
                       "no such key");
    QTest::newRow("a directory that is committed as its parts")
        << kArea << QStringList("set.env=REG_SET=root/USB/root/mass-storage") << none;

    QTest::newRow("a misspelt script")
        << kUsb << QStringList("Commit.sh")
        << QStringList("Commit.sh: is not looked for; did you mean commit.sh?");
    QTest::newRow("a misspelt environment file")
        << kUsb << QStringList("gte.env=x")
        << QStringList("gte.env: is not looked for; did you mean get.env?");
    QTest::newRow("an environment file that there is not")
        << kUsb << QStringList("apply.env=x")
        << QStringList("apply.env: is not looked for: the environment files are get.env, set.env, "
                       "commit.env");
}

void FolderCheckTest::findings()
{
    QFETCH(QString, key);
    QFETCH(QStringList, files);
    QFETCH(QStringList, expected);

    TestView scene;
    for (QString const& file : files) {
        QString const name = file.section('=', 0, 0);
        if (file.contains('='))
            scene.wrappers.addFile(key, name, file.section('=', 1).toLatin1());
        else
            scene.wrappers.addScript(key, name, "exit 0");
    }
    ExaminedEntry const entry(scene.view, "root/" + key);
    QVERIFY(entry.isKnown());
    QStringList found;
    for (Finding const& finding : checkFolder(scene.view, entry)) {
        QString const line = finding.line ? QString(":%1").arg(finding.line) : QString();
        found.append(QFileInfo(finding.file).fileName() + line + ": " + finding.message);
    }
    QCOMPARE(found, expected);
}

void FolderCheckTest::keyItselfIsNotAskedFor_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("expected");

    QString const sessions("root/zelvo-view/rdp/sessions/");
    QString const itself("is the key itself, which would lead the request into itself");
    QStringList const none;
    for (QString const& uuid : {QString("{UUID}"), QString(kUuid), QString(kUuid).toUpper()}) {
        QString const key = sessions + uuid + "/name";
        QTest::newRow(qPrintable("set for " + uuid))
            << "set"
            << "REG_SET=" + key << QStringList(key + ": " + itself);
        QTest::newRow(qPrintable("read for " + uuid))
            << "get"
            << "A=" + key << QStringList(key + ": " + itself);
        // These requests are others, so it is answered.
        QTest::newRow(qPrintable("read while it is set for " + uuid)) << "set"
                                                                      << "A=" + key << none;
        QTest::newRow(qPrintable("read while it is committed for " + uuid)) << "commit"
                                                                            << "A=" + key << none;
        QTest::newRow(qPrintable("another key of " + uuid))
            << "set"
            << "REG_SET=" + sessions + uuid + "/address" << none;
        QTest::newRow(qPrintable("the same of another kind for " + uuid))
            << "set"
            << "REG_SET=root/zelvo-view/ica/sessions/" + uuid + "/name" << none;
    }
    QTest::newRow("what is not replaced")
        << "set"
        << "REG_SET=" + sessions + "{uuid}/name"
        << QStringList(sessions
                       + "{uuid}/name: \"{uuid}\" is not replaced here; the word is \"{UUID}\"");
}

void FolderCheckTest::keyItselfIsNotAskedFor()
{
    QFETCH(QString, file);
    QFETCH(QString, line);
    QFETCH(QStringList, expected);

    TestView scene;
    scene.wrappers.addScript(kName, file + ".sh", "exit 1");
    scene.wrappers.addScript(kName, "commit.sh", "exit 1");
    scene.wrappers.addFile(kName, file + ".env", line.toLatin1());
    // However the key was asked for.
    for (char const* const uuid : {"{uuid}", kUuid}) {
        ExaminedEntry const entry(scene.view,
                                  QString(kName).replace("{uuid}", uuid).prepend("root/"));
        QVERIFY(entry.isKnown());
        QStringList found;
        for (Finding const& finding : checkFolder(scene.view, entry))
            found.append(finding.message);
        QCOMPARE(found, expected);
    }
}

void FolderCheckTest::findingNamesFileLineAndKey()
{
    TestView scene;
    QString const file = scene.wrappers.addFile(kUsb, "get.env", "\n\nA=root/nothing\n");
    scene.wrappers.addScript(kUsb, "get.sh", "exit 0");
    QList<Finding> const findings
        = checkFolder(scene.view, ExaminedEntry(scene.view, QString("root/") + kUsb));
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().file, file);
    QCOMPARE(findings.first().line, 3);
    QCOMPARE(findings.first().key, QString(kUsb));
}

void FolderCheckTest::foldersThatNoKeyHas_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("message");

    QString const unknown("no key of the view has this name");
    QTest::newRow("a key") << kUsb << QString();
    QTest::newRow("the root") << "zelvo-view" << QString();
    QTest::newRow("hidden by its dot") << "zelvo-view/.git" << QString();
    QTest::newRow("a name of its own") << "zelvo-view/usb/colour" << unknown;
    QTest::newRow("a misspelt name")
        << "zelvo-view/usb/read-only" << unknown + "; did you mean read_only?";
    QTest::newRow("below a value")
        << QString(kUsb) + "/data" << unknown + "; the key above is a value";
    QTest::newRow("the registry's placeholder")
        << "zelvo-view/rdp/sessions/{UUID}"
        << unknown + "; all sessions share the folder \"{uuid}\"";
    QTest::newRow("one session") << "zelvo-view/rdp/sessions/{01234567-89ab-cdef-0123-456789abcdef}"
                                 << unknown + "; all sessions share the folder \"{uuid}\"";
    QTest::newRow("another root") << "root" << unknown;
}

void FolderCheckTest::foldersThatNoKeyHas()
{
    QFETCH(QString, folder);
    QFETCH(QString, message);

    TestView scene;
    QVERIFY(QDir(scene.wrappers.directory()).mkpath(folder));
    QList<Finding> const findings = checkWrappers(scene.view);
    QCOMPARE(findings.size(), message.isNull() ? 0 : 1);
    if (message.isNull())
        return;
    QCOMPARE(findings.first().file, scene.wrappers.folder(folder));
    QCOMPARE(findings.first().message, message);
}

void FolderCheckTest::fileOfNoKeyIsFound_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isFound");

    QTest::newRow("a script") << "get.sh" << true;
    QTest::newRow("the last script") << "apply.sh" << true;
    QTest::newRow("an environment file") << "get.env" << true;
    QTest::newRow("the last environment file") << "commit.env" << true;
    QTest::newRow("a comment") << "README" << false;
}

void FolderCheckTest::fileOfNoKeyIsFound()
{
    QFETCH(QString, name);
    QFETCH(bool, isFound);

    TestView scene;
    QString const file = scene.wrappers.addFile(".", name, "A=root/USB\n");
    QList<Finding> const findings = checkWrappers(scene.view);
    QCOMPARE(findings.size(), isFound ? 1 : 0);
    if (!isFound)
        return;
    QCOMPARE(QFileInfo(findings.first().file), QFileInfo(file));
    QCOMPARE(findings.first().line, 0);
    QCOMPARE(findings.first().key, QString());
    QCOMPARE(findings.first().message, QString("lies in the folder of no key"));
    QVERIFY(hasFault(findings));
}

void FolderCheckTest::scriptWithoutAnInterpreter_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isRun");

    QTest::newRow("isVisible.sh") << "isVisible.sh" << true;
    QTest::newRow("create.sh") << "create.sh" << true;
    QTest::newRow("del.sh") << "del.sh" << true;
    QTest::newRow("get.sh") << "get.sh" << false;
    QTest::newRow("set.sh") << "set.sh" << false;
    QTest::newRow("commit.sh") << "commit.sh" << false;
    QTest::newRow("apply.sh") << "apply.sh" << false;
}

void FolderCheckTest::scriptWithoutAnInterpreter()
{
    QFETCH(QString, name);
    QFETCH(bool, isRun);

    bool const isOfAKey = name == "get.sh" || name == "set.sh";
    QString const key(isOfAKey ? kAddress : kSession);
    TestView scene;
    QString const script = scene.wrappers.addScript(key, name, "exit 0");
    if (name == "set.sh")
        scene.wrappers.addScript(key, "commit.sh", "exit 1");
    QFile file(script);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("exit 0\n");
    file.close();

    QList<Finding> const findings
        = checkFolder(scene.view, ExaminedEntry(scene.view, "root/" + key));
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().file, script);
    QCOMPARE(findings.first().line, 1);
    QString const reason("missing shebang line");
    QCOMPARE(findings.first().message,
             reason
                 + (isRun ? ", so /bin/sh runs it"
                          : "; a script that does not start counts as one that succeeded"));
    QCOMPARE(findings.first().severity, isRun ? Note : Fault);
    QCOMPARE(hasFault(findings), !isRun);
}

void FolderCheckTest::emptyValueIsNoted_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QByteArray>("commands");
    QTest::addColumn<bool>("isNoted");

    QByteArray const copy("cp \"$1\" /etc/x\n");
    QTest::newRow("a value of scripts") << kAddress << "commit.sh" << copy << true;
    QTest::newRow("a value of the registry") << kUsb << "commit.sh" << copy << true;
    QTest::newRow("a wireless value") << kSsid << "commit.sh" << copy << true;
    QTest::newRow("one that looks") << kUsb << "commit.sh"
                                    << "test -s \"$1\" || exit 1\n" + copy << false;
    QTest::newRow("a session has no value") << kSession << "commit.sh" << copy << false;
    QTest::newRow("a directory has no value") << kArea << "commit.sh" << copy << false;
    // Nothing is set without a value.
    QTest::newRow("set.sh") << kUsb << "set.sh" << copy << false;
}

void FolderCheckTest::emptyValueIsNoted()
{
    QFETCH(QString, key);
    QFETCH(QString, script);
    QFETCH(QByteArray, commands);
    QFETCH(bool, isNoted);

    TestView scene;
    QString const file = scene.wrappers.addScript(key, script, commands);
    if (script == "set.sh")
        scene.wrappers.addScript(key, "commit.sh", "exit 1");
    QList<Finding> const findings
        = checkFolder(scene.view, ExaminedEntry(scene.view, "root/" + key));
    QCOMPARE(findings.size(), isNoted ? 1 : 0);
    if (!isNoted)
        return;
    QCOMPARE(findings.first().file, file);
    QCOMPARE(findings.first().line, 0);
    QCOMPARE(findings.first().key, key);
    QCOMPARE(findings.first().severity, Note);
    QVERIFY(findings.first().message.startsWith("seems to keep an empty value"));
    QVERIFY(!hasFault(findings));
}

void FolderCheckTest::linkedFolderIsLookedInto()
{
    TestView scene;
    TestDirectory const elsewhere;
    elsewhere.write("get.sh", "#!/bin/sh\n");
    QVERIFY(QDir(scene.wrappers.directory()).mkpath(kArea));
    QVERIFY(QFile::link(elsewhere.path(), scene.wrappers.folder(kUsb)));
    QVERIFY(QFile::link("..", scene.wrappers.folder(kArea) + "/loop"));
    QList<Finding> const findings = checkWrappers(scene.view);
    QCOMPARE(findings.size(), 2);
    QVERIFY(findings.at(0).message.startsWith("is not executable"));
    QVERIFY(findings.at(1).message.startsWith("no key of the view has this name"));
}

void FolderCheckTest::environmentFileThatIsNoneIsIgnored()
{
    TestView scene;
    scene.wrappers.addScript(kUsb, "get.sh", "exit 0");
    QVERIFY(QDir(scene.wrappers.folder(kUsb)).mkdir("get.env"));
    QList<Finding> const findings = checkWrappers(scene.view);
    QCOMPARE(findings.size(), 2);
    QCOMPARE(findings.at(0).message, QString("cannot be read as a file, and is ignored"));
}

void FolderCheckTest::blankInThePathIsToldOnce()
{
    TestDirectory const directory;
    QString const baseDir = directory.file("a b");
    QVERIFY(QDir().mkpath(baseDir + "/wrappers/zelvo-view/usb/enable"));
    directory.write("a b/wrappers/zelvo-view/usb/enable/README", "x");
    ExaminedView view;
    QString error;
    QVERIFY(view.open(baseDir, QStringList(DEFAULTS_DIR), QString(), error));
    keepInstanceKnown();
    QList<Finding> const findings = checkWrappers(view);
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().file, baseDir + "/wrappers");
    QVERIFY(findings.first().message.startsWith("there is a blank or a quote in this path"));
}

void FolderCheckTest::everyKeyMayHaveItsScripts()
{
    TestView scene;
    scene.wrappers.addScript(kUsb, "get.sh", "exit 0");
    scene.wrappers.addScript(kDepth, "set.sh", "exit 0");
    scene.wrappers.addScript(kDepth, "commit.sh", "exit 0");
    scene.wrappers.addScript(kSsid, "commit.sh", "exit 0");
    scene.wrappers.addScript(kName, "isVisible.sh", "exit 0");
    scene.wrappers.addScript(kSession, "create.sh", "exit 0");
    scene.wrappers.addScript(kArea, "apply.sh", "exit 0");
    QCOMPARE(checkWrappers(scene.view).size(), 0);
}

ZELVO_TEST(FolderCheckTest)
#include "FolderCheckTest.moc"
