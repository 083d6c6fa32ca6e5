// SPDX-License-Identifier: MIT

// The wireless code against the NetworkManager daemon itself, on a machine without a radio: a
// network of its own with a loopback and a wired device, and a bus of its own.

#include "common/QtCompat.h"
#include "support/TestDirectory.h"
#include "support/TestProgram.h"
#include "wireless/NMConfFile.h"
#include "wireless/PrivateBus.h"
#include "wireless/WirelessSystem.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QScopedPointer>
#include <QStringList>
#include <QtTest>

#include <vector>

#include <signal.h>
#include <unistd.h>

namespace {

char const kDaemon[] = "/usr/sbin/NetworkManager";

int const kCallLimitMs = 90000;
int const kStartTries = 100;
int const kSecretTries = 20;
int const kPauseMs = 100;

char const kSettings[] = "[main]\n"
                         "plugins=keyfile\n"
                         "dns=none\n"
                         "rc-manager=unmanaged\n"
                         "auth-polkit=false\n"
                         "no-auto-default=*\n"
                         "[keyfile]\n"
                         "path=";

/// What a program left behind.
struct Result
{
    int code;
    QStringList output;
    QString errors;
};

Result run(PrivateBus const& bus, QString const& program, QStringList const& arguments)
{
    QProcess process;
    process.setEnvironment(bus.environment());
    process.start(program, arguments);
    bool const finished = process.waitForFinished(kCallLimitMs);
    Result result;
    result.code = finished ? process.exitCode() : -1;
    result.output = QString::fromUtf8(process.readAllStandardOutput().constData()).split('\n');
    result.output.removeAll(QString());
    result.errors = QString::fromUtf8(process.readAllStandardError().constData());
    return result;
}

/// The daemon needs root, and a network that is root's. An ordinary user starts the program again
/// as root of a namespace with a network of its own.
void becomeRoot()
{
    if (geteuid() == 0)
        return;
    QFile commandLine("/proc/self/cmdline");
    if (!commandLine.open(QIODevice::ReadOnly))
        return;
    QList<QByteArray> arguments = commandLine.readAll().split('\0');
    arguments.removeLast(); // behind the last NUL
    arguments[0] = QFile::encodeName(QFileInfo("/proc/self/exe").canonicalFilePath());
    std::vector<char const*> command
        = {"bwrap", "--unshare-user", "--uid",      "0", "--gid", "0", "--cap-add",
           "ALL",   "--unshare-net",  "--dev-bind", "/", "/",     "--"};
    for (QByteArray const& argument : arguments)
        command.push_back(argument.constData());
    command.push_back(nullptr);
    // Comes back only when there is no bwrap; the daemon then says what it misses.
    execvp(command[0], const_cast<char* const*>(command.data()));
}

} // namespace

class NetworkManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();

    void loopbackAndWiredDeviceAreNoWirelessOnes();
    void activeWiredConnectionStaysActive();
    void keyfileIsLoaded_data();
    void keyfileIsLoaded();
    void defaultContentWithItsEmptySsidIsRefused();
    void suspendedDaemonIsNoDeviceUntilItGoesOn();

private:
    Result nmcli(QStringList const& arguments) const { return run(mBus, "nmcli", arguments); }
    Result probe(QString const& function) const
    {
        return run(mBus, WIRELESS_PROBE, QStringList(function));
    }

    /// What NetworkManager shows for a setting of the connection "Zelvo".
    QString shown(QString const& setting) const;

    /// The same for a secret that is there. On a busy machine about one answer in a hundred leaves
    /// the secrets out, without an error; asked again, NetworkManager has them.
    QString shownSecret(QString const& setting) const;

    bool startDaemon();

    PrivateBus mBus;
    TestDirectory mSettings;
    TestDirectory mConnections;
    QProcess mDaemon;
};

void NetworkManagerTest::initTestCase()
{
    if (!QFile::exists(kDaemon))
        QSKIP("The package network-manager is not installed.", SkipAll);
    QVERIFY2(!qgetenv("VANTORA_SANDBOX_RECORD").isEmpty(),
             "NetworkManager would take over this machine's network: run it in host/sandbox");
    becomeRoot();

    QVERIFY(mBus.start());
    mSettings.write("NetworkManager.conf", kSettings + mConnections.path().toLatin1() + "\n");
    QVERIFY2(startDaemon(), mDaemon.readAll().constData());
    QStringList const wired
        = QString("connection add save no type veth con-name wired ifname wired0 "
                  "veth.peer wired1 ipv4.method disabled ipv6.method disabled")
              .split(' ');
    Result const added = nmcli(wired);
    QVERIFY2(added.code == 0, qPrintable(added.errors));
    Result const up = nmcli(QStringList() << "--wait"
                                          << "20"
                                          << "connection"
                                          << "up"
                                          << "wired");
    QVERIFY2(up.code == 0, qPrintable(up.errors));
}

void NetworkManagerTest::cleanupTestCase()
{
    mDaemon.kill();
    mDaemon.waitForFinished(kCallLimitMs);
}

bool NetworkManagerTest::startDaemon()
{
    mDaemon.setEnvironment(mBus.environment());
    mDaemon.setProcessChannelMode(QProcess::MergedChannels);
    mDaemon.start(kDaemon,
                  QStringList() << "--debug"
                                << "--config=" + mSettings.path() + "/NetworkManager.conf");
    QStringList const running("running");
    for (int tries = 0; tries < kStartTries; ++tries) {
        if (nmcli(QStringList() << "-t"
                                << "-f"
                                << "RUNNING"
                                << "general")
                .output
            == running)
            return true;
        QTest::qWait(kPauseMs);
    }
    return false;
}

void NetworkManagerTest::cleanup()
{
    // The loaded connection goes with its file; one that was not loaded has the file only.
    static_cast<void>(nmcli(QStringList() << "connection"
                                          << "delete"
                                          << "Zelvo"));
    QFile::remove(mConnections.path() + "/Zelvo");
}

QString NetworkManagerTest::shown(QString const& setting) const
{
    Result const result = nmcli(QStringList() << "-s"
                                              << "-g" << setting << "connection"
                                              << "show"
                                              << "Zelvo");
    return result.output.join("\n") + result.errors;
}

QString NetworkManagerTest::shownSecret(QString const& setting) const
{
    QString secret = shown(setting);
    for (int tries = 1; secret.isEmpty() && tries < kSecretTries; ++tries) {
        QTest::qWait(kPauseMs);
        secret = shown(setting);
    }
    return secret;
}

void NetworkManagerTest::loopbackAndWiredDeviceAreNoWirelessOnes()
{
    QStringList const devices = nmcli(QStringList() << "-t"
                                                    << "-f"
                                                    << "DEVICE,TYPE"
                                                    << "device")
                                    .output;
    QVERIFY2(devices.contains("lo:loopback"), qPrintable(devices.join(" ")));
    QVERIFY2(devices.contains("wired0:ethernet"), qPrintable(devices.join(" ")));

    Result const first = probe("firstDevice");
    Result const enabled = probe("enabled");

    QCOMPARE(first.output, QStringList("firstDevice null"));
    QCOMPARE(enabled.output, QStringList("enabled false"));
    QCOMPARE(first.errors + enabled.errors, QString());
}

void NetworkManagerTest::activeWiredConnectionStaysActive()
{
    QStringList const question = QStringList() << "-t"
                                               << "-f"
                                               << "NAME,STATE"
                                               << "connection"
                                               << "show"
                                               << "--active";
    QStringList const before = nmcli(question).output;
    QVERIFY2(before.contains("wired:activated"), qPrintable(before.join(" ")));

    Result const result = probe("deactivate");

    QCOMPARE(result.output, QStringList("deactivate"));
    QCOMPARE(result.errors, QString());
    QCOMPARE(nmcli(question).output, before);
}

void NetworkManagerTest::keyfileIsLoaded_data()
{
    QTest::addColumn<QString>("ssid");
    QTest::addColumn<QString>("security");
    QTest::addColumn<QString>("passphrase");
    QTest::addColumn<QString>("shownSsid");
    QTest::addColumn<QString>("keyManagement");
    QTest::addColumn<QString>("secretKey");

    QString const none;
    QTest::newRow("open") << "Net1"
                          << "none"
                          << ""
                          << "Net1"
                          << "" << none;
    QTest::newRow("SSID with a blank and a semicolon") << "My; Net"
                                                       << "none"
                                                       << ""
                                                       << "My; Net"
                                                       << "" << none;
    QTest::newRow("WPA") << "Net1"
                         << "WPA Personal"
                         << "secret12"
                         << "Net1"
                         << "wpa-psk"
                         << "psk";
    QTest::newRow("WPA2") << "Net1"
                          << "WPA2 Personal"
                          << "secret 12"
                          << "Net1"
                          << "wpa-psk"
                          << "psk";
    QTest::newRow("WEP key") << "Net1"
                             << "WEP"
                             << "abcde"
                             << "Net1"
                             << "none"
                             << "wep-key0";
    QTest::newRow("WEP passphrase") << "Net1"
                                    << "WEP"
                                    << "a passphrase of 32 characters..."
                                    << "Net1"
                                    << "none"
                                    << "wep-key0";
}

void NetworkManagerTest::keyfileIsLoaded()
{
    QFETCH(QString, ssid);
    QFETCH(QString, security);
    QFETCH(QString, passphrase);
    QFETCH(QString, shownSsid);
    QFETCH(QString, keyManagement);
    QFETCH(QString, secretKey);
    QScopedPointer<NMConfFile> const file(wireless_defaultNmConfig(QDir(mConnections.path())));
    QCOMPARE(file->fileName(), mConnections.path() + "/Zelvo");
    file->setSsid(ssid);
    file->setSecurity(security);
    file->setPassphrase(passphrase);
    file->sync();

    Result const load = nmcli(QStringList() << "connection"
                                            << "load" << file->fileName());

    QCOMPARE(load.errors, QString());
    QCOMPARE(shown("802-11-wireless.ssid"), shownSsid);
    QCOMPARE(shown("802-11-wireless-security.key-mgmt"), keyManagement);
    if (!secretKey.isNull())
        QCOMPARE(shownSecret("802-11-wireless-security." + secretKey), passphrase);
}

void NetworkManagerTest::defaultContentWithItsEmptySsidIsRefused()
{
    QScopedPointer<NMConfFile> const file(wireless_defaultNmConfig(QDir(mConnections.path())));
    file->sync();

    Result const load = nmcli(QStringList() << "connection"
                                            << "load" << file->fileName());

    QVERIFY2(load.errors.contains("Could not load file"), qPrintable(load.errors));
    QVERIFY(nmcli(QStringList() << "connection"
                                << "show"
                                << "Zelvo")
                .code
            != 0);
    QVERIFY(mDaemon.waitForReadyRead(kCallLimitMs) || mDaemon.bytesAvailable() > 0);
    QVERIFY(mDaemon.readAll().contains("SSID length is out of range"));
}

/// Takes the time that the D-Bus binding waits for an answer.
void NetworkManagerTest::suspendedDaemonIsNoDeviceUntilItGoesOn()
{
    pid_t const daemon = static_cast<pid_t>(QtCompat::processId(mDaemon));
    QVERIFY(kill(daemon, SIGSTOP) == 0);
    Result const suspended = probe("enabled");
    QVERIFY(kill(daemon, SIGCONT) == 0);
    Result const resumed = probe("enabled");

    QCOMPARE(suspended.output, QStringList("enabled false"));
    QVERIFY2(suspended.errors.count('\n') == 1, qPrintable(suspended.errors));
    QCOMPARE(resumed.output, QStringList("enabled false"));
    QCOMPARE(resumed.errors, QString());
}

ZELVO_TEST(NetworkManagerTest)
#include "NetworkManagerTest.moc"
