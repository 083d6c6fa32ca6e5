// SPDX-License-Identifier: MIT

#include "wireless/WirelessSystem.h"

#include "common/QtCompat.h"
#include "support/TestDirectory.h"
#include "support/TestProgram.h"
#include "wireless/NMConfFile.h"
#include "wireless/PrivateBus.h"
#include "wireless/WarningRecorder.h"

#include <QByteArray>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QScopedPointer>
#include <QStringList>
#include <QtTest>

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

char const kWirelessFile[] = "[connection]\ntype=802-11-wireless\n";
char const kWiredFile[] = "[connection]\ntype=802-3-ethernet\n";

char const kDevices[] = "/org/freedesktop/NetworkManager/Devices/";
char const kActive[] = "/org/freedesktop/NetworkManager/ActiveConnection/";

// Well below the 25 s that the D-Bus binding waits for an answer.
int const kAtOnceMs = 10000;
int const kProbeLimitMs = 90000;

/// A process that calls functions of the wireless system, each named by an argument.
class Probe
{
public:
    Probe(PrivateBus const& bus, QStringList const& functions)
        : mOutputBeforeWait(0)
        , mElapsedMs(0)
    {
        mProcess.setEnvironment(bus.environment());
        mTime.start();
        mProcess.start(WIRELESS_PROBE, functions);
    }

    /// Waits until the next function "wait" is reached.
    bool reachesWait()
    {
        while (!isWaiting() && mProcess.waitForReadyRead(kProbeLimitMs))
            mOutput += mProcess.readAllStandardOutput();
        return isWaiting();
    }

    /// Ends the function "wait".
    void goOn()
    {
        mOutputBeforeWait = mOutput.size();
        mProcess.write("\n");
        mProcess.waitForBytesWritten(kProbeLimitMs);
    }

    /// Stops the process where it stands, by a signal.
    void suspend() { ::kill(static_cast<pid_t>(QtCompat::processId(mProcess)), SIGSTOP); }
    void resume() { ::kill(static_cast<pid_t>(QtCompat::processId(mProcess)), SIGCONT); }

    /// Waits for the end; true when the process ended by itself, all functions called.
    bool finishes()
    {
        bool const finished = mProcess.waitForFinished(kProbeLimitMs);
        mElapsedMs = mTime.elapsed();
        mOutput += mProcess.readAllStandardOutput();
        mWarnings = mProcess.readAllStandardError();
        return finished && mProcess.exitStatus() == QProcess::NormalExit
            && mProcess.exitCode() == 0;
    }

    /// One line per function, or "waiting".
    QStringList results() const { return lines(mOutput); }

    QStringList warnings() const { return lines(mWarnings); }

    qint64 elapsedMs() const { return mElapsedMs; }

private:
    bool isWaiting() const
    {
        return mOutput.size() > mOutputBeforeWait && mOutput.endsWith("waiting\n");
    }

    static QStringList lines(QByteArray const& text)
    {
        QStringList result = QString::fromUtf8(text.constData(), text.size()).split('\n');
        result.removeAll(QString());
        return result;
    }

    QProcess mProcess;
    QElapsedTimer mTime;
    QByteArray mOutput;
    int mOutputBeforeWait;
    QByteArray mWarnings;
    qint64 mElapsedMs;
};

QStringList deviceFunctions()
{
    return QStringList() << "firstDevice"
                         << "enabled";
}

QStringList noDevice()
{
    return QStringList() << "firstDevice null"
                         << "enabled false";
}

bool isQuoted(QString const& line)
{
    return line.size() > 2 && line.startsWith('"') && line.endsWith('"');
}

} // namespace

class WirelessSystemTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void connectionFile_data();
    void connectionFile();
    void emptyDirectoryGivesTheOwnFileWithDefaultContentUnwritten();
    void relativeDirectoryGivesAnAbsolutePath();
    void filterOfTheDirectoryObjectDoesNotCount();
    void wiredFileIsParsedOnTheWay();
    void subdirectoriesAndHiddenFilesAreNotOpened();
    void linkToAPipeIsNotOpened();

    void device_data();
    void device();
    void noNetworkManagerIsNoDeviceAtOnceWithOneWarning();
    void noBusIsNoDeviceAtOnceWithOneWarning();
    void networkManagerThatComesLaterIsSeen();
    void networkManagerThatDiesDuringACallIsNoDevice();
    void busThatDiesDuringACallIsNoDevice();
    void busThatHasComeBackServesTheNextRequest();
    void busThatCameBackUnnoticedServesTheNextRequest();
    void busThatIsThereLaterServesTheNextRequest();
    void connectionKnowsItsNameBeforeItIsUsed_data();
    void connectionKnowsItsNameBeforeItIsUsed();
    void connectionServesOneRequestAfterTheOther_data();
    void connectionServesOneRequestAfterTheOther();

    void deactivation_data();
    void deactivation();
    void deactivationWithoutNetworkManagerDoesNothingAtOnce();
    void deactivationWithoutABusDoesNothingAtOnce();

    void silentNetworkManagerIsGivenUpAfterTheBindingsTimeOut();
    void suspendedNetworkManagerIsNoDeviceUntilItGoesOn();
    void networkManagerThatNeverAnswersIsCalledOnce();

private:
    QStringList messagesAfterDeathsOfTheBus(int deaths);

    // Of a NetworkManager that never answers one call, of one that never answers any, and of one
    // that is suspended for a while: started first, and looked at when all else is done, because
    // they take their time.
    PrivateBus mMuteBus;
    BusMonitor mMuteMonitor;
    QScopedPointer<Probe> mMuteProbe;
    PrivateBus mSilentBus;
    QScopedPointer<Probe> mSilentProbe;
    PrivateBus mSuspendedBus;
    QScopedPointer<Probe> mSuspendedProbe;
};

void WirelessSystemTest::initTestCase()
{
    QVERIFY(mSilentBus.start());
    QVERIFY(mSilentBus.startNetworkManager("silent"));
    mSilentProbe.reset(new Probe(mSilentBus, QStringList("firstDevice")));

    QVERIFY(mSuspendedBus.start());
    QVERIFY(mSuspendedBus.startNetworkManager("one_wireless"));
    mSuspendedProbe.reset(new Probe(mSuspendedBus,
                                    QStringList() << "enabled"
                                                  << "wait"
                                                  << "enabled"
                                                  << "wait"
                                                  << "enabled"));
    QVERIFY(mSuspendedProbe->reachesWait());
    mSuspendedBus.suspendNetworkManager();
    mSuspendedProbe->goOn();

    QVERIFY(mMuteBus.start());
    QVERIFY(mMuteBus.startNetworkManager("one_wireless"));
    mMuteBus.suspendNetworkManager();
    QVERIFY(mMuteMonitor.start(mMuteBus));
    mMuteProbe.reset(new Probe(mMuteBus, QStringList("enabled")));
}

void WirelessSystemTest::connectionFile_data()
{
    QTest::addColumn<QStringList>("wired");
    QTest::addColumn<QStringList>("wireless");
    QTest::addColumn<QString>("chosen");

    QTest::newRow("no file: the own one") << QStringList() << QStringList() << "Zelvo";
    QTest::newRow("only wired ones: the own one") << (QStringList() << "aaa"
                                                                    << "bbb")
                                                  << QStringList() << "Zelvo";
    QTest::newRow("first wireless one behind a wired one") << QStringList("aaa")
                                                           << (QStringList() << "ccc"
                                                                             << "bbb")
                                                           << "bbb";
    QTest::newRow("by character code: Office before home") << QStringList()
                                                           << (QStringList() << "home"
                                                                             << "Office")
                                                           << "Office";
    QTest::newRow("by character code: digits before letters") << QStringList()
                                                              << (QStringList() << "a"
                                                                                << "10"
                                                                                << "9")
                                                              << "10";
    QTest::newRow("by character code: beyond ASCII last")
        << QStringList() << (QStringList() << QString::fromUtf8("\xc3\xa4") << "z") << "z";
    QTest::newRow("the own file is one among others") << QStringList()
                                                      << (QStringList() << "Zelvo"
                                                                        << "home")
                                                      << "Zelvo";
    QTest::newRow("another one goes before the own file") << QStringList()
                                                          << (QStringList() << "Zelvo"
                                                                            << "Office")
                                                          << "Office";
    QTest::newRow("any name ending") << QStringList()
                                     << (QStringList() << "Net1.nmconnection"
                                                       << "Net2")
                                     << "Net1.nmconnection";
}

void WirelessSystemTest::connectionFile()
{
    QFETCH(QStringList, wired);
    QFETCH(QStringList, wireless);
    QFETCH(QString, chosen);
    TestDirectory const directory;
    for (QString const& name : static_cast<QStringList const&>(wired))
        directory.write(name, kWiredFile);
    for (QString const& name : static_cast<QStringList const&>(wireless))
        directory.write(name, kWirelessFile);

    QScopedPointer<NMConfFile> const file(wireless_defaultNmConfig(QDir(directory.path())));

    QCOMPARE(file->fileName(), directory.path() + "/" + chosen);
}

void WirelessSystemTest::emptyDirectoryGivesTheOwnFileWithDefaultContentUnwritten()
{
    TestDirectory const directory;

    QScopedPointer<NMConfFile> const file(wireless_defaultNmConfig(QDir(directory.path())));

    QCOMPARE(file->fileName(), directory.path() + "/Zelvo");
    QVERIFY(file->isWirelessConfig());
    QVERIFY(file->toString().contains("\nid=Zelvo\n"));
    QVERIFY(!QFile::exists(directory.path() + "/Zelvo"));
}

void WirelessSystemTest::relativeDirectoryGivesAnAbsolutePath()
{
    TestDirectory const directory;
    directory.write("home", kWirelessFile);
    QString const old = QDir::currentPath();
    QVERIFY(QDir::setCurrent(directory.path()));

    QScopedPointer<NMConfFile> const file(wireless_defaultNmConfig(QDir(".")));
    QVERIFY(QFile::remove("home"));
    QScopedPointer<NMConfFile> const own(wireless_defaultNmConfig(QDir(".")));

    QVERIFY(QDir::setCurrent(old));
    QCOMPARE(file->fileName(), directory.path() + "/home");
    QCOMPARE(own->fileName(), directory.path() + "/Zelvo");
}

void WirelessSystemTest::filterOfTheDirectoryObjectDoesNotCount()
{
    TestDirectory const directory;
    directory.write("home", kWirelessFile);
    QDir const filtered(directory.path(), "*.none", QDir::Time, QDir::Dirs);

    QScopedPointer<NMConfFile> const file(wireless_defaultNmConfig(filtered));

    QCOMPARE(file->fileName(), directory.path() + "/home");
}

void WirelessSystemTest::wiredFileIsParsedOnTheWay()
{
    TestDirectory const directory;
    directory.write("aaa", QByteArray("stray\n") + kWiredFile);
    directory.write("bbb", kWirelessFile);
    directory.write("ccc", QByteArray("never seen\n") + kWirelessFile);
    WarningRecorder const recorder;

    QScopedPointer<NMConfFile> const file(wireless_defaultNmConfig(QDir(directory.path())));

    QCOMPARE(file->fileName(), directory.path() + "/bbb");
    QCOMPARE(recorder.warnings(), QStringList("unparsed line 1 of " + directory.path() + "/aaa"));
}

void WirelessSystemTest::subdirectoriesAndHiddenFilesAreNotOpened()
{
    TestDirectory const directory;
    directory.write(".hidden", QByteArray("hidden\n") + kWirelessFile);
    QVERIFY(QDir(directory.path()).mkdir("aaa"));
    directory.write("aaa/inner", QByteArray("inner\n") + kWirelessFile);
    WarningRecorder const recorder;

    QScopedPointer<NMConfFile> const file(wireless_defaultNmConfig(QDir(directory.path())));

    QCOMPARE(file->fileName(), directory.path() + "/Zelvo");
    QCOMPARE(recorder.warnings(), QStringList());
}

void WirelessSystemTest::linkToAPipeIsNotOpened()
{
    TestDirectory const directory;
    TestDirectory const elsewhere;
    QString const pipe = elsewhere.path() + "/pipe";
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(QFile::link(pipe, directory.path() + "/aaa"));
    QVERIFY(QFile::link(directory.path() + "/nowhere", directory.path() + "/bbb"));

    QScopedPointer<NMConfFile> const file(wireless_defaultNmConfig(QDir(directory.path())));

    QCOMPARE(file->fileName(), directory.path() + "/Zelvo");
}

void WirelessSystemTest::device_data()
{
    QTest::addColumn<QString>("scene");
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("warning");

    QString const none;
    QString const noWarning;
    QString const wlan0 = QString(kDevices) + "wlan0";

    QTest::newRow("no device") << "nothing" << none << noWarning;
    QTest::newRow("wired devices only") << "wired_only" << none << noWarning;
    QTest::newRow("one wireless device") << "one_wireless" << wlan0 << noWarning;
    QTest::newRow("several behind wired ones: the first in NetworkManager's order")
        << "several_wireless" << QString(kDevices) + "wlan1" << noWarning;
    QTest::newRow("wireless device without any capability")
        << "wireless_without_capabilities" << wlan0 << noWarning;
    QTest::newRow("device that is gone when it is asked") << "gone_device" << none << noWarning;
    QTest::newRow("device that is gone, before one that is there")
        << "gone_device_first" << wlan0 << noWarning;
    QTest::newRow("answer that takes two seconds") << "late" << wlan0 << noWarning;
    QTest::newRow("GetDevices answers with an error")
        << "error" << none << "\"the devices are on strike\"";
    QTest::newRow("GetDevices answers with a text")
        << "no_paths" << none << "\"Unexpected reply signature: got \"s\"";
}

void WirelessSystemTest::device()
{
    QFETCH(QString, scene);
    QFETCH(QString, device);
    QFETCH(QString, warning);
    PrivateBus bus;
    QVERIFY(bus.start());
    QVERIFY(bus.startNetworkManager(scene));

    Probe probe(bus, deviceFunctions());

    QVERIFY(probe.finishes());
    QStringList const found = QStringList() << "firstDevice " + device << "enabled true";
    QCOMPARE(probe.results(), device.isNull() ? noDevice() : found);
    // One for each of the two functions.
    QStringList const warnings = probe.warnings();
    QCOMPARE(warnings.size(), warning.isNull() ? 0 : 2);
    for (QString const& line : warnings) {
        QVERIFY(isQuoted(line));
        QVERIFY2(line.startsWith(warning), qPrintable(line));
    }
}

void WirelessSystemTest::noNetworkManagerIsNoDeviceAtOnceWithOneWarning()
{
    PrivateBus bus;
    QVERIFY(bus.start());

    Probe probe(bus, QStringList("enabled"));

    QVERIFY(probe.finishes());
    QCOMPARE(probe.results(), QStringList("enabled false"));
    QCOMPARE(probe.warnings().size(), 1);
    QVERIFY(isQuoted(probe.warnings().first()));
    QVERIFY(probe.warnings().first().contains("org.freedesktop.NetworkManager"));
    QVERIFY(probe.elapsedMs() < kAtOnceMs);
}

void WirelessSystemTest::noBusIsNoDeviceAtOnceWithOneWarning()
{
    PrivateBus const bus;

    Probe probe(bus, QStringList("enabled"));

    QVERIFY(probe.finishes());
    QCOMPARE(probe.results(), QStringList("enabled false"));
    QCOMPARE(probe.warnings().size(), 1);
    QVERIFY(isQuoted(probe.warnings().first()));
    QVERIFY(probe.elapsedMs() < kAtOnceMs);
}

void WirelessSystemTest::networkManagerThatComesLaterIsSeen()
{
    PrivateBus bus;
    QVERIFY(bus.start());
    Probe probe(bus,
                QStringList() << "enabled"
                              << "wait"
                              << "enabled"
                              << "wait"
                              << "enabled");

    QVERIFY(probe.reachesWait());
    QVERIFY(bus.startNetworkManager("one_wireless"));
    probe.goOn();
    QVERIFY(probe.reachesWait());
    bus.stopNetworkManager();
    probe.goOn();

    QVERIFY(probe.finishes());
    QCOMPARE(probe.results(),
             QStringList() << "enabled false"
                           << "waiting"
                           << "enabled true"
                           << "waiting"
                           << "enabled false");
}

void WirelessSystemTest::networkManagerThatDiesDuringACallIsNoDevice()
{
    PrivateBus bus;
    QVERIFY(bus.start());
    QVERIFY(bus.startNetworkManager("silent"));
    Probe probe(bus, QStringList("firstDevice"));
    QStringList const asked("");
    for (int tries = 0; bus.calls("GetDevices").isEmpty() && tries < 100; ++tries)
        QTest::qSleep(50);
    QCOMPARE(bus.calls("GetDevices"), asked);

    bus.stopNetworkManager();

    QVERIFY(probe.finishes());
    QCOMPARE(probe.results(), QStringList("firstDevice null"));
    QCOMPARE(probe.warnings().size(), 1);
    QVERIFY(isQuoted(probe.warnings().first()));
    QVERIFY(probe.elapsedMs() < kAtOnceMs);
}

void WirelessSystemTest::busThatDiesDuringACallIsNoDevice()
{
    PrivateBus bus;
    QVERIFY(bus.start());
    QVERIFY(bus.startNetworkManager("silent"));
    Probe probe(bus, QStringList("firstDevice"));
    for (int tries = 0; bus.calls("GetDevices").isEmpty() && tries < 100; ++tries)
        QTest::qSleep(50);
    QCOMPARE(bus.calls("GetDevices").size(), 1);

    bus.stop();

    QVERIFY(probe.finishes());
    QCOMPARE(probe.results(), QStringList("firstDevice null"));
    QCOMPARE(probe.warnings().size(), 1);
    QVERIFY(isQuoted(probe.warnings().first()));
    QVERIFY(probe.elapsedMs() < kAtOnceMs);
}

void WirelessSystemTest::busThatHasComeBackServesTheNextRequest()
{
    int const deaths = 3;
    QStringList functions("enabled");
    QStringList results("enabled true");
    for (int i = 0; i < deaths; ++i) {
        functions << "wait"
                  << "enabled"
                  << "deactivate"
                  << "wait"
                  << "enabled"
                  << "enabled";
        results << "waiting"
                << "enabled false"
                << "deactivate"
                << "waiting"
                << "enabled true"
                << "enabled true";
    }
    PrivateBus bus;
    QVERIFY(bus.start());
    QVERIFY(bus.startNetworkManager("one_wireless"));
    Probe probe(bus, functions);

    for (int i = 0; i < deaths; ++i) {
        QVERIFY(probe.reachesWait());
        bus.stop();
        probe.goOn();
        QVERIFY(probe.reachesWait());
        bus.stopNetworkManager();
        QVERIFY(bus.start());
        QVERIFY(bus.startNetworkManager("one_wireless"));
        probe.goOn();
    }

    QVERIFY(probe.finishes());
    QCOMPARE(probe.results(), results);
    // Each says why there is no connection.
    QStringList const warnings = probe.warnings();
    QCOMPARE(warnings.size(), 2 * deaths);
    for (QString const& line : warnings)
        QVERIFY2(isQuoted(line) && line.contains(bus.address().section('=', 1)), qPrintable(line));
}

/// When the request comes, nobody has seen yet that the connection is dead.
void WirelessSystemTest::busThatCameBackUnnoticedServesTheNextRequest()
{
    int const deaths = 5;
    QStringList functions("enabled");
    QStringList results("enabled true");
    for (int i = 0; i < deaths; ++i) {
        functions << "wait"
                  << "enabled";
        results << "waiting"
                << "enabled true";
    }
    PrivateBus bus;
    QVERIFY(bus.start());
    QVERIFY(bus.startNetworkManager("one_wireless"));
    Probe probe(bus, functions);

    for (int i = 0; i < deaths; ++i) {
        QVERIFY(probe.reachesWait());
        probe.suspend();
        bus.stop();
        bus.stopNetworkManager();
        QVERIFY(bus.start());
        QVERIFY(bus.startNetworkManager("one_wireless"));
        probe.goOn();
        probe.resume();
    }

    QVERIFY(probe.finishes());
    QCOMPARE(probe.results(), results);
    QCOMPARE(probe.warnings(), QStringList());
}

void WirelessSystemTest::busThatIsThereLaterServesTheNextRequest()
{
    PrivateBus bus;
    Probe probe(bus,
                QStringList() << "enabled"
                              << "wait"
                              << "enabled");

    QVERIFY(probe.reachesWait());
    QVERIFY(bus.start());
    QVERIFY(bus.startNetworkManager("one_wireless"));
    probe.goOn();

    QVERIFY(probe.finishes());
    QCOMPARE(probe.results(),
             QStringList() << "enabled false"
                           << "waiting"
                           << "enabled true");
}

void WirelessSystemTest::connectionKnowsItsNameBeforeItIsUsed_data()
{
    QTest::addColumn<int>("deaths");

    QTest::newRow("the first connection") << 0;
    QTest::newRow("the one that takes its place") << 1;
    QTest::newRow("the next one") << 2;
}

/// The toolkit notes the name in another thread, and looks at it in each call of a service: only an
/// answer of the bus itself tells that it has been noted.
void WirelessSystemTest::connectionKnowsItsNameBeforeItIsUsed()
{
    QFETCH(int, deaths);

    QStringList const messages = messagesAfterDeathsOfTheBus(deaths);

    QCOMPARE(messages.mid(0, 6),
             QStringList() << "call org.freedesktop.DBus Hello"
                           << "answer"
                           << "signal NameAcquired"
                           << "call org.freedesktop.DBus GetId"
                           << "answer"
                           << "call org.freedesktop.NetworkManager Introspect");
}

void WirelessSystemTest::connectionServesOneRequestAfterTheOther_data()
{
    connectionKnowsItsNameBeforeItIsUsed_data();
}

void WirelessSystemTest::connectionServesOneRequestAfterTheOther()
{
    QFETCH(int, deaths);

    QStringList const messages = messagesAfterDeathsOfTheBus(deaths);

    QCOMPARE(messages.count("call org.freedesktop.NetworkManager Introspect"), 2);
}

/// What a process and the bus say to each other while it makes two requests, after the bus has been
/// killed and started anew so often. There is no NetworkManager.
QStringList WirelessSystemTest::messagesAfterDeathsOfTheBus(int deaths)
{
    QStringList functions;
    for (int i = 0; i < deaths; ++i)
        functions << "enabled"
                  << "wait";
    functions << "enabled"
              << "enabled";
    PrivateBus bus;
    QScopedPointer<BusMonitor> monitor(new BusMonitor);
    bool isReady = bus.start() && monitor->start(bus);
    Probe probe(bus, functions);
    for (int i = 0; i < deaths && isReady; ++i) {
        isReady = probe.reachesWait();
        bus.stop();
        monitor.reset(new BusMonitor);
        isReady = isReady && bus.start() && monitor->start(bus);
        probe.goOn();
    }
    return isReady && probe.finishes() ? monitor->messagesOfFirstClient() : QStringList();
}

void WirelessSystemTest::deactivation_data()
{
    QTest::addColumn<QString>("scene");
    QTest::addColumn<QStringList>("deactivated");

    QString const zero = QString(kActive) + "0";

    QTest::newRow("no active connection") << "no_active" << QStringList();
    QTest::newRow("one wireless device: once") << "active_with_one_wireless" << QStringList(zero);
    QTest::newRow("two wireless devices: twice")
        << "active_with_two_wireless" << (QStringList() << zero << zero);
    QTest::newRow("wired device: not at all") << "active_with_wired" << QStringList();
    QTest::newRow("several connections, in order")
        << "several_active"
        << (QStringList() << QString(kActive) + "mixed" << QString(kActive) + "mixed"
                          << QString(kActive) + "wireless");
    QTest::newRow("connection that is gone when it is asked") << "gone_active" << QStringList(zero);
    QTest::newRow("connection with a device that is gone")
        << "active_with_gone_device" << QStringList(zero);
    QTest::newRow("active connections that are no list") << "active_is_text" << QStringList();
    QTest::newRow("devices that are no list") << "active_devices_are_text" << QStringList();
    QTest::newRow("deactivation that fails is not looked at")
        << "deactivation_fails" << (QStringList() << zero << zero);
}

void WirelessSystemTest::deactivation()
{
    QFETCH(QString, scene);
    QFETCH(QStringList, deactivated);
    PrivateBus bus;
    QVERIFY(bus.start());
    QVERIFY(bus.startNetworkManager(scene));

    Probe probe(bus, QStringList("deactivate"));

    QVERIFY(probe.finishes());
    QCOMPARE(bus.calls("DeactivateConnection"), deactivated);
    QCOMPARE(probe.warnings(), QStringList());
}

void WirelessSystemTest::deactivationWithoutNetworkManagerDoesNothingAtOnce()
{
    PrivateBus bus;
    QVERIFY(bus.start());

    Probe probe(bus, QStringList("deactivate"));

    QVERIFY(probe.finishes());
    QCOMPARE(probe.warnings().size(), 1);
    QVERIFY(isQuoted(probe.warnings().first()));
    QVERIFY(probe.elapsedMs() < kAtOnceMs);
}

void WirelessSystemTest::deactivationWithoutABusDoesNothingAtOnce()
{
    PrivateBus const bus;

    Probe probe(bus, QStringList("deactivate"));

    QVERIFY(probe.finishes());
    QCOMPARE(probe.warnings().size(), 1);
    QVERIFY(isQuoted(probe.warnings().first()));
    QVERIFY(probe.elapsedMs() < kAtOnceMs);
}

void WirelessSystemTest::silentNetworkManagerIsGivenUpAfterTheBindingsTimeOut()
{
    QVERIFY(mSilentProbe->finishes());

    QCOMPARE(mSilentBus.calls("GetDevices").size(), 1);
    QCOMPARE(mSilentProbe->results(), QStringList("firstDevice null"));
    QCOMPARE(mSilentProbe->warnings().size(), 1);
    QVERIFY(isQuoted(mSilentProbe->warnings().first()));
}

void WirelessSystemTest::suspendedNetworkManagerIsNoDeviceUntilItGoesOn()
{
    QVERIFY(mSuspendedProbe->reachesWait());
    mSuspendedBus.resumeNetworkManager();
    mSuspendedProbe->goOn();

    QVERIFY(mSuspendedProbe->finishes());
    QCOMPARE(mSuspendedProbe->results(),
             QStringList() << "enabled true"
                           << "waiting"
                           << "enabled false"
                           << "waiting"
                           << "enabled true");
    QCOMPARE(mSuspendedProbe->warnings().size(), 1);
    QVERIFY(isQuoted(mSuspendedProbe->warnings().first()));
}

void WirelessSystemTest::networkManagerThatNeverAnswersIsCalledOnce()
{
    QVERIFY(mMuteProbe->finishes());
    QStringList const messages = mMuteMonitor.messagesOfFirstClient();

    QCOMPARE(mMuteProbe->results(), QStringList("enabled false"));
    QCOMPARE(messages.filter("call org.freedesktop.NetworkManager "),
             QStringList("call org.freedesktop.NetworkManager Introspect"));
    QCOMPARE(mMuteProbe->warnings().size(), 1);
    QVERIFY(isQuoted(mMuteProbe->warnings().first()));
}

ZELVO_TEST(WirelessSystemTest)
#include "WirelessSystemTest.moc"
