// SPDX-License-Identifier: MIT

// Untrusted keys and values, given to the plugin as it is built. Each of its scripts writes down
// how it was started, and every path that the plugin looks at is noted: a text of a request is
// never part of a command line or a path, and reaches a script in the value file or a declared
// variable.

#include "loader/PluginLoader.h"
#include "registry/RegistryHost.h"
#include "support/Footprint.h"
#include "support/TestDirectory.h"
#include "support/TestProgram.h"
#include "untrusted/PathWatch.h"
#include "untrusted/Records.h"

#include <vantora/abstractplugin.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QScopedPointer>
#include <QSystemSemaphore>
#include <QtTest>

namespace {

int const kKibi = 1024;
int const kMebi = 1024 * kKibi;

// More than the system takes for one variable of a program.
int const kLargestVariable = 128 * kKibi;

// Those that read and those that commit.
int const kWirelessActions = 2;

// Made by nothing but a command that was carried out.
char const kTrace[] = "/tmp/owned";

QString const kRoot = QLatin1String("root/zelvo-view");
QString const kSession = QLatin1String("{c0ffee00-1234-4321-abcd-0123456789ab}");

char const* const kScripts[] = {"get.sh", "set.sh", "create.sh", "del.sh", "commit.sh", "apply.sh"};

// The keys whose scripts are recorded.
char const* const kFolders[] = {
    "zelvo-view",
    "zelvo-view/usb",
    "zelvo-view/usb/enable",
    "zelvo-view/rdp",
    "zelvo-view/rdp/sessions",
    "zelvo-view/rdp/sessions/{uuid}",
    "zelvo-view/rdp/sessions/{uuid}/name",
    "zelvo-view/rdp/sessions/{uuid}/address",
    "zelvo-view/display/resolution",
    "zelvo-view/wireless/ssid",
    "zelvo-view/wireless/passphrase",
};

/// Texts that something else than a configuration may take for its own, by what they are.
struct Text
{
    char const* name;
    QString text;
};

QList<Text> untrustedTexts()
{
    QString const nul = QString::fromLatin1("a") + QChar(0) + "b";
    QString const penguin = QString::fromUtf8("\xf0\x9f\x90\xa7");
    Text const texts[] = {
        {"a NUL", nul},
        {"a newline", "a\nb"},
        {"a line of a script", "\n#!/bin/sh\ntouch /tmp/owned\n"},
        {"a double quote", "a\"b"},
        {"quotes of both kinds", "\"'; touch /tmp/owned; '\""},
        {"a command in $()", "$(touch /tmp/owned)"},
        {"a command in backticks", "`touch /tmp/owned`"},
        {"a command behind a semicolon", "; touch /tmp/owned"},
        {"a command behind a pipe", "| touch /tmp/owned"},
        {"a command behind an ampersand", "& touch /tmp/owned &"},
        {"a redirection", "> /tmp/owned"},
        {"an option", "--help"},
        {"two dots", ".."},
        {"a way out", "../../../../../../tmp/owned"},
        {"a way to another folder", "../../evil"},
        {"an absolute path", "/tmp/owned"},
        {"a blank in front", " a"},
        {"a blank behind", "a "},
        {"blanks alone", "   "},
        {"doubled slashes", "a//b"},
        {"a trailing slash", "a/"},
        {"the view's placeholder", "{uuid}"},
        {"the registry's placeholder", "{UUID}"},
        {"the nil UUID", "{00000000-0000-0000-0000-000000000000}"},
        {"a UUID that lacks a digit", "{c0ffee00-1234-4321-abcd-0123456789a}"},
        {"a UUID in pieces", "{c0ffee00-/1234-4321-abcd-0123456789ab}"},
        {"an assignment", "REG_SET=root/USB/root/mass-storage/allowed"},
        {"a last command", "reboot"},
        {"a format", "%s%n%1"},
        {"control characters", "\x01\x1b[31m\x7f"},
        {"beyond the basic plane", penguin},
        {"a lone high surrogate", QString("a") + QChar(0xd83d) + "b"},
        {"a lone low surrogate", QString("a") + QChar(0xdc27) + "b"},
        {"surrogates the wrong way round", QString(QChar(0xdc27)) + QChar(0xd83d)},
    };
    QList<Text> list;
    for (Text const& text : texts)
        list.append(text);
    return list;
}

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

/// A started host with the built plugin, whose scripts are all recorded.
class Scene
{
public:
    Scene()
        : mPlugin(nullptr)
    {
        QString error;
        if (!mHost.loadDefaults(DEFAULTS_DIR, error) || !mHost.open(":memory:", error))
            qFatal("%s", qPrintable(error));
        mPlugin = mLoader.load(PLUGIN_FILE, error);
        if (!mPlugin)
            qFatal("%s", qPrintable(error));
        installRecorder();
        mPlugin->pluginIsLoaded(mHost, mHost.defaultSettings(), "", baseDir());
        mHost.addPlugin(*mPlugin);
    }

    QString baseDir() const { return mDirectory.path() + "/base"; }

    RegistryHost& host() { return mHost; }

    int run(QString const& operation, QString const& key)
    {
        QMap<QString, _RegNodeType> answer;
        if (operation == "get")
            return mPlugin->get(key, answer, REG_PARAM_VALUE, "");
        if (operation == "type")
            return mPlugin->get(key, answer, REG_PARAM_TYPE, "");
        if (operation == "set")
            return mPlugin->set(key, "x", REG_PARAM_VALUE);
        if (operation == "create")
            return mPlugin->create(key, REG_TYPE_STRING);
        if (operation == "del")
            return mPlugin->del(key);
        if (operation == "commit")
            return mPlugin->commit(key);
        if (operation == "apply")
            return apply(key);
        return mPlugin->contains(key);
    }

    /// Applies and waits for the end, as whoever asked for it does.
    int apply(QString const& key)
    {
        QString const command = "tmp/apply/untrusted";
        QSystemSemaphore semaphore(command, 0, QSystemSemaphore::Create);
        int const code = mPlugin->apply(key, command);
        if (code == 0)
            semaphore.acquire();
        return code;
    }

    QString read(QString const& key)
    {
        QString value;
        return mHost.get(key, value, REG_PARAM_VALUE, "") == 0 ? value : QString();
    }

    int set(QString const& key, QString const& value)
    {
        return mPlugin->set(key, value, REG_PARAM_VALUE);
    }

private:
    Q_DISABLE_COPY(Scene)

    void installRecorder() const
    {
        for (char const* const folder : kFolders)
            linkRecorder("wrappers/" + QString(folder));
        linkRecorder("wrappers/zelvo-view/usb/enable", "isVisible.sh");
        linkRecorder("wrappers/zelvo-view/rdp/sessions/{uuid}/name", "isVisible.sh");
        // It would count as having deleted the session, which then stayed.
        QFile::remove(baseDir() + "/wrappers/zelvo-view/rdp/sessions/{uuid}/del.sh");
        // What a way out of the wrappers directory would lead to.
        linkRecorder("evil");
        linkRecorder("wrappers/evil");
        QByteArray const session = "root/ConnectionType/rdesktop/connections/{UUID}/";
        QString const address = "base/wrappers/zelvo-view/rdp/sessions/{uuid}/address/";
        QStringList const files = QStringList() << "get.env"
                                                << "set.env"
                                                << "commit.env";
        for (QString const& file : files)
            mDirectory.write(address + file, "LABEL=" + session + "label\n");
    }

    void linkRecorder(QString const& folder) const
    {
        QDir().mkpath(baseDir() + "/" + folder);
        for (char const* const script : kScripts)
            linkRecorder(folder, script);
    }

    void linkRecorder(QString const& folder, QString const& script) const
    {
        if (!QFile::link(RECORDER_FILE, baseDir() + "/" + folder + "/" + script))
            qFatal("cannot link %s", qPrintable(folder));
    }

    TestDirectory mDirectory;
    RegistryHost mHost;
    PluginLoader mLoader;
    AbstractPlugin* mPlugin;
};

bool isTemporaryFile(QByteArray const& path)
{
    return QRegExp("/tmp/[A-Za-z0-9_-]+\\.[A-Za-z0-9]{6}").exactMatch(QString::fromLatin1(path));
}

} // namespace

class UntrustedValuesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void keyReachesNoCommandLineAndNoPath_data();
    void keyReachesNoCommandLineAndNoPath();
    void sessionNameReachesNoCommandLineAndNoPath_data();
    void sessionNameReachesNoCommandLineAndNoPath();
    void valueReachesNoCommandLineAndNoPath_data();
    void valueReachesNoCommandLineAndNoPath();

private:
    /// Ends the notes of a case and looks at them.
    void checkNotes();
    void checkRecord(Record const& record) const;
    void checkEnvironment(Record const& record) const;

    /// That the value came to the scripts of setting and committing of each key, in their files.
    void checkValue(QString const& value, int keys) const;

    QScopedPointer<Scene> mScene;
    QScopedPointer<Footprint> mBefore;
    QScopedPointer<PathWatch> mWatch;
    QList<Record> mRecords;
};

void UntrustedValuesTest::initTestCase()
{
    // Without a radio its settings are hidden, but for this mark.
    QFile mark("/tmp/.wireless-disabled");
    QVERIFY(mark.open(QIODevice::WriteOnly));
    mScene.reset(new Scene);
    // What is made once and kept, such as the connection to a bus, is made here.
    QCOMPARE(mScene->run("get", kRoot + "/wireless"), 0);
    QCOMPARE(mScene->run("apply", kRoot + "/usb"), 0);
    QVERIFY(!takeRecords().isEmpty());
}

void UntrustedValuesTest::cleanupTestCase()
{
    mScene.reset();
}

void UntrustedValuesTest::init()
{
    mBefore.reset(new Footprint);
    mWatch.reset(new PathWatch);
}

void UntrustedValuesTest::cleanup()
{
    mWatch.reset();
}

void UntrustedValuesTest::checkNotes()
{
    QStringList const paths = mWatch->paths();
    mWatch.reset();
    for (QString const& path : paths)
        QVERIFY2(PathWatch::isExpected(path, mScene->baseDir()), qPrintable(path));

    mRecords = takeRecords();
    for (Record const& record : static_cast<QList<Record> const&>(mRecords)) {
        checkRecord(record);
        if (QTest::currentTestFailed())
            return;
    }
    QStringList const left = Footprint().newSince(*mBefore);
    // Each action of the wireless settings holds on to the connection file that it read last.
    for (QString const& line : left)
        QVERIFY2(line.endsWith(" of /etc/NetworkManager/system-connections/Zelvo"),
                 qPrintable(line));
    QVERIFY(left.size() <= kWirelessActions);
    QVERIFY2(!QFile::exists(kTrace), "a text of a request was carried out");
}

void UntrustedValuesTest::checkRecord(Record const& record) const
{
    QByteArray const wrappers = QFile::encodeName(mScene->baseDir()) + "/wrappers/";
    QVERIFY2(record.folder.startsWith(wrappers), record.folder.constData());
    bool isKnown = false;
    for (char const* const folder : kFolders)
        isKnown = isKnown || record.folder == wrappers + folder;
    QVERIFY2(isKnown, record.folder.constData());

    QByteArray const script = record.script();
    QCOMPARE(record.arguments.value(0), record.folder + "/" + script);
    bool const takesValue = script == "set.sh" || script == "commit.sh";
    QCOMPARE(record.arguments.size(), takesValue ? 2 : 1);
    if (takesValue)
        QVERIFY2(isTemporaryFile(record.arguments.at(1)), record.arguments.at(1).constData());
    checkEnvironment(record);
}

void UntrustedValuesTest::checkEnvironment(Record const& record) const
{
    if (record.script() == "apply.sh") {
        QCOMPARE(record.environment.size(), 1);
        QByteArray const file = record.variable("LAST_APPLY_COMMAND");
        QVERIFY2(QRegExp("/tmp/wlox-zelvo-view-[A-Za-z0-9]{6}").exactMatch(file), file.constData());
        return;
    }
    // A key that is told to a script is the declared one, for all sessions.
    QByteArray const key = record.variable("REG_SET");
    QVERIFY2(!key.toLower().contains("c0ffee"), key.constData());
    // Besides what is inherited there are the declared variables alone.
    QStringList const inherited = QProcess::systemEnvironment();
    for (QByteArray const& line : record.environment) {
        bool const isDeclared = line.startsWith("REG_SET=") || line.startsWith("LABEL=");
        QVERIFY2(isDeclared || inherited.contains(QString::fromLocal8Bit(line)), line.constData());
    }
}

void UntrustedValuesTest::keyReachesNoCommandLineAndNoPath_data()
{
    QTest::addColumn<QString>("key");

    QList<Text> texts = untrustedTexts();
    Text const megabyte = {"a megabyte", QString("x").repeated(kMebi)};
    texts.append(megabyte);
    for (Text const& text : static_cast<QList<Text> const&>(texts)) {
        QByteArray const name = text.name;
        QTest::newRow(name + " below the root") << kRoot + "/" + text.text;
        QTest::newRow(name + " in place of a key") << kRoot + "/usb/" + text.text;
        QTest::newRow(name + " behind a key") << kRoot + "/usb/enable" + text.text;
        QTest::newRow(name + " below a key") << kRoot + "/usb/enable/" + text.text;
        QTest::newRow(name + " in place of a session") << kRoot + "/rdp/sessions/" + text.text;
        QTest::newRow(name + " in a session")
            << kRoot + "/rdp/sessions/" + kSession + "/" + text.text;
    }
    QTest::newRow("half a million components") << kRoot + QString("/a").repeated(500000);
    QTest::newRow("a trailing slash") << kRoot + "/usb/enable/";
    QTest::newRow("a doubled slash") << kRoot + "/usb//enable";
    QTest::newRow("a way up and down again") << kRoot + "/usb/../usb/enable";
}

void UntrustedValuesTest::keyReachesNoCommandLineAndNoPath()
{
    QFETCH(QString, key);

    QStringList const all = operations();
    for (QString const& operation : all) {
        int const code = mScene->run(operation, key);
        // The default settings know the placeholder.
        bool const isKnown = operation == "contains" && key == kRoot + "/rdp/sessions/{uuid}";
        QVERIFY2(code == (isKnown ? 0 : 1), qPrintable(operation));
    }
    checkNotes();
}

void UntrustedValuesTest::sessionNameReachesNoCommandLineAndNoPath_data()
{
    QTest::addColumn<QString>("name");

    // What follows the digits is not looked at: all of these are sessions.
    QList<Text> const texts = untrustedTexts();
    for (Text const& text : texts) {
        if (!text.text.contains("/"))
            QTest::newRow(text.name) << kSession + text.text;
    }
    QTest::newRow("nothing but the UUID") << kSession;
    QTest::newRow("without braces") << kSession.mid(1, kSession.size() - 2);
    QTest::newRow("in capitals") << kSession.toUpper();
    QTest::newRow("a megabyte") << kSession + QString("x").repeated(kMebi);
}

void UntrustedValuesTest::sessionNameReachesNoCommandLineAndNoPath()
{
    QFETCH(QString, name);

    QString const session = kRoot + "/rdp/sessions/" + name;
    // The host refuses to make sessions that cannot stand in its documents.
    bool const isMade = mScene->run("create", session) == 0;
    QCOMPARE(mScene->set(session + "/address", "x"), 0);
    QStringList const all = QStringList() << "commit"
                                          << "get"
                                          << "apply";
    for (QString const& operation : all) {
        QCOMPARE(mScene->run(operation, session), 0);
        QCOMPARE(mScene->run(operation, session + "/address"), 0);
    }
    QCOMPARE(mScene->run("contains", session), isMade ? 0 : 1);
    QCOMPARE(mScene->run("del", session), 0);
    QCOMPARE(mScene->host().commit("root"), 0);
    QCOMPARE(mScene->run("contains", session), 1);
    checkNotes();

    QByteArray seen;
    for (Record const& record : static_cast<QList<Record> const&>(mRecords))
        seen += record.script() + ' ';
    QVERIFY2(seen.contains("isVisible.sh"), seen.constData());
    for (char const* const script : kScripts)
        QVERIFY2(seen.contains(script), script);
}

void UntrustedValuesTest::valueReachesNoCommandLineAndNoPath_data()
{
    QTest::addColumn<QString>("value");

    QList<Text> const texts = untrustedTexts();
    for (Text const& text : texts)
        QTest::newRow(text.name) << text.text;
    QTest::newRow("empty") << "";
    QTest::newRow("half a megabyte") << QString("0123456789abcdef").repeated(kMebi / 32);
    QTest::newRow("sixteen megabytes") << QString("0123456789abcdef").repeated(kMebi);
}

void UntrustedValuesTest::valueReachesNoCommandLineAndNoPath()
{
    QFETCH(QString, value);

    QString const session = kRoot + "/rdp/sessions/" + kSession;
    QCOMPARE(mScene->run("create", session), 0);
    QCOMPARE(mScene->run("commit", session), 0);
    QStringList keys = QStringList() << session + "/name" << session + "/address";
    // A network's name is kept as a list of numbers: of so large a one it takes seconds to make.
    if (value.size() <= kMebi)
        keys << kRoot + "/usb/enable" << kRoot + "/wireless/ssid" << kRoot + "/wireless/passphrase"
             << kRoot + "/display/resolution";
    for (QString const& key : static_cast<QStringList const&>(keys)) {
        QCOMPARE(mScene->set(key, value), 0);
        QCOMPARE(mScene->run("commit", key), 0);
        QCOMPARE(mScene->run("get", key), 0);
    }
    QVERIFY(mScene->read(session + "/name") == value);
    QCOMPARE(mScene->run("apply", session), 0);
    QCOMPARE(mScene->run("del", session), 0);
    QCOMPARE(mScene->host().commit("root"), 0);
    checkNotes();
    checkValue(value, keys.size());
}

void UntrustedValuesTest::checkValue(QString const& value, int keys) const
{
    QByteArray const label = value.left(value.indexOf(QChar(0))).toLocal8Bit();
    int valueFiles = 0;
    int labels = 0;
    for (Record const& record : mRecords) {
        // A key's own, not those of the session or the root.
        bool const isKey = !record.folder.endsWith("}") && !record.folder.endsWith("/zelvo-view");
        if (isKey && record.arguments.size() == 2 && record.value == value.toUtf8())
            ++valueFiles;
        if (record.folder.endsWith("/address") && record.script() == "get.sh") {
            QVERIFY(record.variable("LABEL") == label);
            ++labels;
        }
    }
    // A script whose environment is too large is not started: those of "address", here.
    bool const isTooLarge = label.size() > kLargestVariable;
    QCOMPARE(valueFiles, 2 * keys - (isTooLarge ? 2 : 0));
    QCOMPARE(labels > 0, !isTooLarge);
}

ZELVO_TEST(UntrustedValuesTest)
#include "UntrustedValuesTest.moc"
