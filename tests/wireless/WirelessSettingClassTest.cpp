// SPDX-License-Identifier: MIT

#include "wireless/WirelessSettingClass.h"

#include "actions/ActionKit.h"
#include "actions/IConfigAction.h"
#include "common/Text.h"
#include "support/Footprint.h"
#include "support/TestBackend.h"
#include "support/TestKit.h"
#include "support/TestProgram.h"
#include "support/TestWrappers.h"
#include "tree/ConfigBranch.h"
#include "tree/ConfigKey.h"
#include "wireless/PrivateBus.h"

#include <QByteArray>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QStringList>
#include <QVariant>
#include <QtTest>

#include <sys/stat.h>

namespace {

char const kConnections[] = "/etc/NetworkManager/system-connections";
char const kMarker[] = "/tmp/.wireless-disabled";

// Well below the 25 s that the D-Bus binding waits for an answer.
int const kAtOnceMs = 10000;

char const kWpaFile[] = "[802-11-wireless-security]\n"
                        "key-mgmt=wpa-psk\n"
                        "psk=secret12\n"
                        "[connection]\n"
                        "type=802-11-wireless\n"
                        "[802-11-wireless]\n"
                        "security=802-11-wireless-security\n"
                        "ssid=78;101;116;49;\n";

struct ScriptRow
{
    char const* key;
    char const* name;
};

// All that the tests make.
ScriptRow const kScripts[] = {
    {"zelvo-view/wireless", "isVisible.sh"},
    {"zelvo-view/wireless/ssid", "get.sh"},
    {"zelvo-view/wireless/enable", "commit.sh"},
};

QString connectionPath(QString const& name)
{
    return QString(kConnections) + "/" + name;
}

void writeConnection(QString const& name, QByteArray const& content)
{
    QFile file(connectionPath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), static_cast<qint64>(content.size()));
}

QByteArray readConnection(QString const& name)
{
    QFile file(connectionPath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList connections()
{
    return QDir(kConnections).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace

class WirelessSettingClassTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();

    void keys_data();
    void keys();
    void oneActionServesAllKeysOfAnOperation();

    void readingWithoutAConnectionFileCreatesNone();
    void reading_data();
    void reading();
    void enableReadsWhetherThereIsADevice_data();
    void enableReadsWhetherThereIsADevice();
    void readingAnUnknownNameFailsAndLeavesTheValue();
    void getScriptGoesFirst();
    void getScriptThatFailsLeavesItToTheFile();

    void commit_data();
    void commit();
    void committedFileIsForItsOwnerOnly();
    void wpa2ReadsBackAsWpa();
    void commitOfTheFirstWirelessFileLeavesTheOthersAlone();
    void commitOfEnableFails();
    void commitOfEnableByAScriptSucceeds();
    void commitOfAnUnknownNameFails();
    void nullValueIsNotWritten_data();
    void nullValueIsNotWritten();
    void committingTwiceKeepsThePassphrase();
    void passphraseThatWouldNotReadBackIsRefused_data();
    void passphraseThatWouldNotReadBackIsRefused();
    void passphraseReadsBack_data();
    void passphraseReadsBack();
    void fileThatCannotBeWrittenIsNotNoticed();

    void visibility_data();
    void visibility();
    void visibilityScriptGoesFirst_data();
    void visibilityScriptGoesFirst();
    void onlyTheBranchHasAVisibilityOfItsOwn();

    void readingManyTimesKeepsNoDescriptors();

private:
    ConfigKey& key(QString const& name) { return *static_cast<ConfigKey*>(mBranch->child(name)); }

    bool read(QString const& name, QVariant& data)
    {
        return mClass->valueAction("zelvo-view/wireless/ssid")->execute(key(name), data);
    }

    bool commit(QString const& name, QString const& value)
    {
        QVariant data = value;
        return mClass->commitAction("zelvo-view/wireless/ssid")->execute(key(name), data);
    }

    TestWrappers mWrappers;
    TestBackend mBackend;
    PrivateBus mBus;
    // Lives for the process, as it does in the plugin.
    WirelessSettingClass* mClass;
    ConfigBranch* mRoot;
    // The root's.
    ConfigBranch* mBranch;
};

void WirelessSettingClassTest::initTestCase()
{
    mRoot = nullptr;
    QVERIFY2(!qgetenv("VANTORA_SANDBOX_RECORD").isEmpty(),
             "the connections of this machine would be written: run it in host/sandbox");
    QVERIFY(mBus.start());
    QVERIFY(qputenv("DBUS_SYSTEM_BUS_ADDRESS", mBus.address().toLatin1()));

    mClass = new WirelessSettingClass;
    freshKit(mBackend, mWrappers.directory()).registerSettingClass(mClass);
    mRoot = new ConfigBranch("zelvo-view", nullptr);
    mBranch = new ConfigBranch("wireless", mRoot);
    QStringList const names = QStringList() << "enable"
                                            << "ssid"
                                            << "security"
                                            << "passphrase"
                                            << "SSID";
    for (QString const& name : names)
        new ConfigKey(name, QString(), mBranch);
}

void WirelessSettingClassTest::cleanupTestCase()
{
    delete mRoot;
}

void WirelessSettingClassTest::cleanup()
{
    mBus.stopNetworkManager();
    QFile::remove(kMarker);
    QStringList const left = connections();
    for (QString const& name : left) {
        QFile::remove(connectionPath(name));
        QDir().rmdir(connectionPath(name));
    }
    for (ScriptRow const& row : kScripts)
        QFile::remove(mWrappers.folder(row.key) + "/" + row.name);
    QCOMPARE(mBackend.calls(), QStringList());
}

void WirelessSettingClassTest::keys_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("isVisible");
    QTest::addColumn<bool>("valueAndCommit");

    QTest::newRow("the branch has a visibility only") << "zelvo-view/wireless" << true << false;
    QTest::newRow("enable") << "zelvo-view/wireless/enable" << false << true;
    QTest::newRow("ssid has no visibility") << "zelvo-view/wireless/ssid" << false << true;
    QTest::newRow("security") << "zelvo-view/wireless/security" << false << true;
    QTest::newRow("passphrase") << "zelvo-view/wireless/passphrase" << false << true;
    QTest::newRow("other letter case") << "zelvo-view/wireless/SSID" << false << false;
    QTest::newRow("branch in other letter case") << "zelvo-view/Wireless" << false << false;
    QTest::newRow("branch with a / behind it") << "zelvo-view/wireless/" << false << false;
    QTest::newRow("unknown key of the branch") << "zelvo-view/wireless/other" << false << false;
    QTest::newRow("key below a key") << "zelvo-view/wireless/ssid/ssid" << false << false;
    QTest::newRow("key with a text before it") << "root/zelvo-view/wireless/ssid" << false << false;
    QTest::newRow("name alone") << "ssid" << false << false;
    QTest::newRow("empty key") << "" << false << false;
}

void WirelessSettingClassTest::keys()
{
    QFETCH(QString, key);
    QFETCH(bool, isVisible);
    QFETCH(bool, valueAndCommit);

    QCOMPARE(mClass->isVisibleAction(key) != nullptr, isVisible);
    QCOMPARE(mClass->valueAction(key) != nullptr, valueAndCommit);
    QCOMPARE(mClass->commitAction(key) != nullptr, valueAndCommit);
    QVERIFY(!mClass->setValueAction(key));
    QVERIFY(!mClass->createAction(key));
    QVERIFY(!mClass->delAction(key));
    QVERIFY(!mClass->applyAction(key));
}

void WirelessSettingClassTest::oneActionServesAllKeysOfAnOperation()
{
    QString const ssid = "zelvo-view/wireless/ssid";
    QString const enable = "zelvo-view/wireless/enable";
    QString const branch = "zelvo-view/wireless";

    QCOMPARE(mClass->valueAction(ssid), mClass->valueAction(enable));
    QCOMPARE(mClass->commitAction(ssid), mClass->commitAction(enable));
    QCOMPARE(mClass->isVisibleAction(branch), mClass->isVisibleAction(branch));
    QVERIFY(mClass->valueAction(ssid) != mClass->commitAction(ssid));
}

void WirelessSettingClassTest::readingWithoutAConnectionFileCreatesNone()
{
    QCOMPARE(key("security").value(), QString("none"));
    QCOMPARE(key("ssid").value(), QString(""));
    QVERIFY(!key("ssid").value().isNull());
    QCOMPARE(key("passphrase").value(), QString(""));
    QVERIFY(!key("passphrase").value().isNull());

    QCOMPARE(connections(), QStringList());
}

void WirelessSettingClassTest::reading_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");

    QTest::newRow("SSID") << "ssid"
                          << "Net1";
    QTest::newRow("security") << "security"
                              << "WPA Personal";
    QTest::newRow("passphrase") << "passphrase"
                                << "secret12";
}

void WirelessSettingClassTest::reading()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    writeConnection("home", kWpaFile);
    QVariant data;

    QVERIFY(read(name, data));

    QVERIFY(data.type() == QVariant::String);
    QCOMPARE(data.toString(), value);
    QCOMPARE(readConnection("home"), QByteArray(kWpaFile));
    QCOMPARE(key(name).value(), value);
}

void WirelessSettingClassTest::enableReadsWhetherThereIsADevice_data()
{
    QTest::addColumn<QString>("scene");
    QTest::addColumn<bool>("enabled");

    QTest::newRow("no NetworkManager") << QString() << false;
    QTest::newRow("wired devices only") << "wired_only" << false;
    QTest::newRow("wireless device") << "one_wireless" << true;
}

void WirelessSettingClassTest::enableReadsWhetherThereIsADevice()
{
    QFETCH(QString, scene);
    QFETCH(bool, enabled);
    QVERIFY(scene.isNull() || mBus.startNetworkManager(scene));
    QVariant data;

    QVERIFY(read("enable", data));

    QVERIFY(data.type() == QVariant::Bool);
    QCOMPARE(data.toBool(), enabled);
    QCOMPARE(key("enable").value(), QString(enabled ? "true" : "false"));
}

void WirelessSettingClassTest::readingAnUnknownNameFailsAndLeavesTheValue()
{
    QVariant data = "before";

    QVERIFY(!read("SSID", data));

    QCOMPARE(data.toString(), QString("before"));
}

void WirelessSettingClassTest::getScriptGoesFirst()
{
    writeConnection("home", kWpaFile);
    mWrappers.addScript("zelvo-view/wireless/ssid", "get.sh", "printf scripted");

    QCOMPARE(key("ssid").value(), QString("scripted"));
}

void WirelessSettingClassTest::getScriptThatFailsLeavesItToTheFile()
{
    writeConnection("home", kWpaFile);
    mWrappers.addScript("zelvo-view/wireless/ssid", "get.sh", "printf scripted; exit 1");

    QCOMPARE(key("ssid").value(), QString("Net1"));
}

void WirelessSettingClassTest::commit_data()
{
    QTest::addColumn<QStringList>("commits");
    QTest::addColumn<QByteArray>("security");
    QTest::addColumn<QByteArray>("wireless");

    QByteArray const common("channel=0\nmode=infrastructure\nmtu=0\nrate=0\n");
    QByteArray const open = common + "seen-bssids=00:1e:2a:03:c7:de;\n";
    QByteArray const secured
        = common + "security=802-11-wireless-security\nseen-bssids=00:1e:2a:03:c7:de;\n";

    QTest::newRow("SSID") << QStringList("ssid:Net1") << QByteArray()
                          << open + "ssid=78;101;116;49;\ntx-power=0\n";
    QTest::newRow("empty SSID") << (QStringList() << "ssid:Net1"
                                                  << "ssid:")
                                << QByteArray() << open + "ssid=\ntx-power=0\n";
    QTest::newRow("SSID with a newline")
        << QStringList("ssid:a\nb") << QByteArray() << open + "ssid=97;10;98;\ntx-power=0\n";
    QTest::newRow("security before the passphrase")
        << (QStringList() << "security:WPA2 Personal"
                          << "passphrase:secret12")
        << QByteArray("[802-11-wireless-security]\nkey-mgmt=wpa-psk\npsk=secret12\n"
                      "wep-key-type=0\nwep-tx-keyidx=0\n")
        << secured + "ssid=\ntx-power=0\n";
    QTest::newRow("passphrase before the security: dropped")
        << (QStringList() << "passphrase:secret12"
                          << "security:WEP")
        << QByteArray("[802-11-wireless-security]\nauth-alg=shared\nkey-mgmt=none\n"
                      "wep-key-type=1\nwep-key0=\nwep-tx-keyidx=0\n")
        << secured + "ssid=\ntx-power=0\n";
    QTest::newRow("another type takes the passphrase along")
        << (QStringList() << "security:WPA Personal"
                          << "passphrase:secret12"
                          << "security:WEP")
        << QByteArray("[802-11-wireless-security]\nauth-alg=shared\nkey-mgmt=none\n"
                      "wep-key-type=1\nwep-key0=secret12\nwep-tx-keyidx=0\n")
        << secured + "ssid=\ntx-power=0\n";
    QTest::newRow("empty passphrase is written")
        << (QStringList() << "security:WPA Personal"
                          << "passphrase:secret12"
                          << "passphrase:")
        << QByteArray("[802-11-wireless-security]\nkey-mgmt=wpa-psk\npsk=\n"
                      "wep-key-type=0\nwep-tx-keyidx=0\n")
        << secured + "ssid=\ntx-power=0\n";
    QTest::newRow("back to an open network") << (QStringList() << "security:WPA Personal"
                                                               << "passphrase:secret12"
                                                               << "security:none")
                                             << QByteArray() << open + "ssid=\ntx-power=0\n";
}

void WirelessSettingClassTest::commit()
{
    QFETCH(QStringList, commits);
    QFETCH(QByteArray, security);
    QFETCH(QByteArray, wireless);

    for (QString const& line : static_cast<QStringList const&>(commits))
        QVERIFY(commit(line.section(':', 0, 0), emptyText() + line.section(':', 1)));

    QCOMPARE(connections(), QStringList("Zelvo"));
    QCOMPARE(readConnection("Zelvo"),
             "\n" + security
                 + "\n[connection]\nautoconnect=true\nid=Zelvo\ntimestamp=0\ntype=802-11-wireless\n"
                   "uuid=a3021b5f-f1b6-4398-a548-b967630b62be\n"
                   "\n[802-11-wireless]\n"
                 + wireless
                 + "\n[ipv4]\nignore-auto-dns=false\nignore-auto-routes=false\nmethod=auto\n"
                   "never-default=false\n");
}

void WirelessSettingClassTest::committedFileIsForItsOwnerOnly()
{
    QVERIFY(commit("ssid", "Net1"));

    struct stat status;
    QCOMPARE(stat(QFile::encodeName(connectionPath("Zelvo")).constData(), &status), 0);
    QCOMPARE(static_cast<int>(status.st_mode & 07777), 0600);
}

void WirelessSettingClassTest::wpa2ReadsBackAsWpa()
{
    key("security").setBufferValue("WPA2 Personal");
    key("security").commit();

    QCOMPARE(key("security").value(), QString("WPA Personal"));
}

void WirelessSettingClassTest::commitOfTheFirstWirelessFileLeavesTheOthersAlone()
{
    QByteArray const wired("[connection]\ntype=802-3-ethernet\n");
    writeConnection("aaa", wired);
    writeConnection("bbb", kWpaFile);
    writeConnection("ccc", kWpaFile);

    QVERIFY(commit("ssid", "Net2"));

    QCOMPARE(connections(),
             QStringList() << "aaa"
                           << "bbb"
                           << "ccc");
    QCOMPARE(readConnection("aaa"), wired);
    QVERIFY(readConnection("bbb").contains("\nssid=78;101;116;50;\n"));
    QCOMPARE(readConnection("ccc"), QByteArray(kWpaFile));
}

void WirelessSettingClassTest::commitOfEnableFails()
{
    QVERIFY(!commit("enable", "true"));
    QVERIFY(!commit("enable", QString()));

    QCOMPARE(connections(), QStringList());
}

void WirelessSettingClassTest::commitOfEnableByAScriptSucceeds()
{
    mWrappers.addScript("zelvo-view/wireless/enable", "commit.sh", "exit 0");

    QVERIFY(commit("enable", "true"));

    QCOMPARE(connections(), QStringList());
}

void WirelessSettingClassTest::commitOfAnUnknownNameFails()
{
    QVERIFY(!commit("SSID", "Net1"));

    QCOMPARE(connections(), QStringList());
}

void WirelessSettingClassTest::nullValueIsNotWritten_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("SSID") << "ssid";
    QTest::newRow("security") << "security";
    QTest::newRow("passphrase") << "passphrase";
}

void WirelessSettingClassTest::nullValueIsNotWritten()
{
    QFETCH(QString, name);

    QVERIFY(commit(name, QString()));
    QCOMPARE(connections(), QStringList());

    writeConnection("home", kWpaFile);
    QVERIFY(commit(name, QString()));
    QCOMPARE(readConnection("home"), QByteArray(kWpaFile));
}

void WirelessSettingClassTest::committingTwiceKeepsThePassphrase()
{
    key("security").setBufferValue("WPA Personal");
    key("passphrase").setBufferValue("secret12");
    mBranch->commit();
    // Nothing was set since.
    key("security").setBufferValue(QString());
    key("passphrase").setBufferValue(QString());
    mBranch->commit();

    QCOMPARE(key("security").value(), QString("WPA Personal"));
    QCOMPARE(key("passphrase").value(), QString("secret12"));
}

void WirelessSettingClassTest::passphraseThatWouldNotReadBackIsRefused_data()
{
    QTest::addColumn<QString>("passphrase");

    QTest::newRow("line feeds and =") << "secret12\n[ipv4]\nmethod=manual";
    QTest::newRow("line feed inside") << "secret\n12";
    QTest::newRow("line feed at the end") << "secret12\n";
    QTest::newRow("carriage return") << "secret12\rx";
    QTest::newRow("carriage return at the end") << "secret12\r";
    QTest::newRow("NUL") << QString("secret") + QChar(0) + "12";
    QTest::newRow("NUL at the end") << QString("secret12") + QChar(0);
    QTest::newRow("=") << "secret=12";
    QTest::newRow("= at the start") << "=secret12";
    QTest::newRow("= at the end") << "secret12=";
    QTest::newRow("blank at the start") << " secret12";
    QTest::newRow("blank at the end") << "secret12 ";
    QTest::newRow("tab at the end") << "secret12\t";
    QTest::newRow("form feed at the start") << "\fsecret12";
    QTest::newRow("nothing but blanks") << "   ";
    QTest::newRow("character outside Latin-1") << QString::fromUtf8("secret\xe2\x82\xac");
    QTest::newRow("character just outside Latin-1") << QString("secret12") + QChar(0x100);
    QTest::newRow("character of two code units") << QString::fromUtf8("secret\xf0\x9f\x94\x91");
}

void WirelessSettingClassTest::passphraseThatWouldNotReadBackIsRefused()
{
    QFETCH(QString, passphrase);

    QVERIFY(!commit("passphrase", passphrase));
    QCOMPARE(connections(), QStringList());

    writeConnection("home", kWpaFile);
    QVERIFY(!commit("passphrase", passphrase));
    QCOMPARE(readConnection("home"), QByteArray(kWpaFile));
}

void WirelessSettingClassTest::passphraseReadsBack_data()
{
    QTest::addColumn<QString>("passphrase");

    QTest::newRow("empty") << "";
    QTest::newRow("blank inside") << "correct horse";
    QTest::newRow("what other files use as marks") << "#;[ipv4]\\\"'%1";
    QTest::newRow("all of Latin-1 that is printed") << QString::fromLatin1("\xa1\xbf\xe9\xff");
    QTest::newRow("no-break space at both ends") << QString::fromLatin1("\xa0secret12\xa0");
    QTest::newRow("control character") << "secret\0012";
}

void WirelessSettingClassTest::passphraseReadsBack()
{
    QFETCH(QString, passphrase);
    QStringList const types = QStringList() << "WPA Personal"
                                            << "WEP";
    for (QString const& type : types) {
        writeConnection("home", kWpaFile);
        QVERIFY(commit("security", type));

        QVERIFY(commit("passphrase", passphrase));

        QCOMPARE(key("passphrase").value(), passphrase);
        // As it does when what was read is written again.
        QVERIFY(commit("ssid", "Net1"));
        QCOMPARE(key("passphrase").value(), passphrase);
    }
}

void WirelessSettingClassTest::fileThatCannotBeWrittenIsNotNoticed()
{
    QVERIFY(QDir(kConnections).mkdir("Zelvo"));

    QVERIFY(commit("ssid", "Net1"));

    QCOMPARE(connections(), QStringList("Zelvo"));
    QCOMPARE(key("ssid").value(), QString(""));
}

void WirelessSettingClassTest::visibility_data()
{
    QTest::addColumn<QString>("scene");
    QTest::addColumn<bool>("marker");
    QTest::addColumn<bool>("visible");

    QTest::newRow("no NetworkManager, no marker: hidden") << QString() << false << false;
    QTest::newRow("no NetworkManager, marker: shown") << QString() << true << true;
    QTest::newRow("no wireless device, no marker: hidden") << "wired_only" << false << false;
    QTest::newRow("no wireless device, marker: shown") << "wired_only" << true << true;
    QTest::newRow("wireless device, no marker: shown") << "one_wireless" << false << true;
    QTest::newRow("wireless device, marker: shown") << "one_wireless" << true << true;
    QTest::newRow("GetDevices fails, no marker: hidden") << "error" << false << false;
}

void WirelessSettingClassTest::visibility()
{
    QFETCH(QString, scene);
    QFETCH(bool, marker);
    QFETCH(bool, visible);
    QVERIFY(scene.isNull() || mBus.startNetworkManager(scene));
    QFile file(kMarker);
    QVERIFY(!marker || file.open(QIODevice::WriteOnly));
    QElapsedTimer time;
    time.start();
    QVariant data = !visible;

    QVERIFY(mClass->isVisibleAction("zelvo-view/wireless")->execute(*mBranch, data));

    QVERIFY(data.type() == QVariant::Bool);
    QCOMPARE(data.toBool(), visible);
    QCOMPARE(mBranch->isVisible(), visible);
    QCOMPARE(key("ssid").isVisible(), visible);
    QVERIFY(time.elapsed() < kAtOnceMs);
    QCOMPARE(QFile::exists(kMarker), marker);
}

void WirelessSettingClassTest::visibilityScriptGoesFirst_data()
{
    QTest::addColumn<QString>("scene");
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<bool>("visible");

    QTest::newRow("it hides a device that is there")
        << "one_wireless" << QByteArray("exit 1") << false;
    QTest::newRow("it shows a device that is not there")
        << QString() << QByteArray("exit 0") << true;
}

void WirelessSettingClassTest::visibilityScriptGoesFirst()
{
    QFETCH(QString, scene);
    QFETCH(QByteArray, script);
    QFETCH(bool, visible);
    QVERIFY(scene.isNull() || mBus.startNetworkManager(scene));
    mWrappers.addScript("zelvo-view/wireless", "isVisible.sh", script);

    QCOMPARE(mBranch->isVisible(), visible);
}

void WirelessSettingClassTest::onlyTheBranchHasAVisibilityOfItsOwn()
{
    mWrappers.addScript("zelvo-view/wireless", "isVisible.sh", "exit 0");
    QVERIFY(key("ssid").isVisible());

    mWrappers.addScript("zelvo-view/wireless", "isVisible.sh", "exit 1");
    QVERIFY(!key("ssid").isVisible());
}

void WirelessSettingClassTest::readingManyTimesKeepsNoDescriptors()
{
    writeConnection("aaa", "[connection]\ntype=802-3-ethernet\n");
    writeConnection("home", kWpaFile);
    QCOMPARE(key("ssid").value(), QString("Net1"));
    QVERIFY(commit("ssid", "Net1"));
    Footprint const before;

    for (int times = 0; times < 2000; ++times)
        QCOMPARE(key("ssid").value(), QString("Net1"));
    for (int times = 0; times < 200; ++times)
        QVERIFY(commit("ssid", "Net1"));

    QCOMPARE(Footprint().newSince(before), QStringList());
}

ZELVO_TEST(WirelessSettingClassTest)
#include "WirelessSettingClassTest.moc"
