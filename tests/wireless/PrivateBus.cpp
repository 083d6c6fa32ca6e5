// SPDX-License-Identifier: MIT

#include "wireless/PrivateBus.h"

#include "common/QtCompat.h"

#include <QByteArray>
#include <QFile>

#include <signal.h>

namespace {

int const kStartLimitMs = 30000;
int const kStopLimitMs = 10000;

void kill(QProcess& process)
{
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(kStopLimitMs);
    }
}

} // namespace

PrivateBus::PrivateBus()
{
}

PrivateBus::~PrivateBus()
{
    stopNetworkManager();
    stop();
}

bool PrivateBus::start()
{
    // The socket of a bus that was killed is still there.
    QFile::remove(mDirectory.path() + "/bus");
    QStringList const arguments = QStringList()
        << "--config-file=" BUS_CONFIG_FILE << "--address=" + address() << "--print-address"
        << "--nofork"
        << "--nopidfile";
    return firstLineOf(mBus, "dbus-daemon", arguments).startsWith("unix:path=");
}

void PrivateBus::stop()
{
    kill(mBus);
}

bool PrivateBus::startNetworkManager(QString const& scene)
{
    mNetworkManager.setEnvironment(environment());
    QStringList const arguments = QStringList()
        << NETWORK_MANAGER_SCENE << mDirectory.path() + "/calls" << scene;
    return firstLineOf(mNetworkManager, "/usr/bin/python3", arguments) == "ready";
}

void PrivateBus::stopNetworkManager()
{
    kill(mNetworkManager);
}

void PrivateBus::suspendNetworkManager()
{
    ::kill(static_cast<pid_t>(QtCompat::processId(mNetworkManager)), SIGSTOP);
}

void PrivateBus::resumeNetworkManager()
{
    ::kill(static_cast<pid_t>(QtCompat::processId(mNetworkManager)), SIGCONT);
}

QStringList PrivateBus::calls(QString const& method) const
{
    QStringList result;
    // A line is the time, the method and its arguments, text in double quotes; a call that failed
    // has a second line, which gives the reason in place of the arguments.
    QStringList const lines = QString::fromLatin1(mDirectory.read("calls")).split('\n');
    for (QString const& line : lines) {
        if (line.section(' ', 1, 1) == method && line.section(' ', 2, 2) != "raised:") {
            result.append(line.section(' ', 2).remove('"'));
        }
    }
    return result;
}

QString PrivateBus::address() const
{
    return "unix:path=" + mDirectory.path() + "/bus";
}

QStringList PrivateBus::environment() const
{
    QString const variable = "DBUS_SYSTEM_BUS_ADDRESS=";
    QStringList result;
    QStringList const inherited = QProcess::systemEnvironment();
    for (QString const& line : inherited) {
        if (!line.startsWith(variable)) {
            result.append(line);
        }
    }
    return result << variable + address();
}

BusMonitor::BusMonitor()
{
}

BusMonitor::~BusMonitor()
{
    kill(mProcess);
}

bool BusMonitor::start(PrivateBus const& bus)
{
    mProcess.start("dbus-monitor", QStringList() << "--address" << bus.address() << "--profile");
    // With its name it loses the right to be spoken to, and hears everything instead.
    return waitForLine("NameLost");
}

QStringList BusMonitor::messagesOfFirstClient()
{
    if (!waitForLine("Hello"))
        return QStringList();
    QString client;
    QStringList all = lines();
    for (int i = 0; client.isEmpty(); ++i) {
        if (all.at(i).endsWith("\tHello"))
            client = all.at(i).section('\t', 3, 3);
    }
    if (!waitForLine(client + "\t/org/freedesktop/DBus\torg.freedesktop.DBus\tNameLost"))
        return QStringList();

    QStringList result;
    all = lines();
    for (QString const& line : static_cast<QStringList const&>(all)) {
        // The kind, the time, a number, the sender, the destination, the path, the interface and
        // the name.
        QStringList const words = line.split('\t');
        if (words.value(0) == "mc" && words.value(3) == client)
            result.append("call " + words.value(4) + " " + words.value(7));
        else if (words.value(0) == "sig" && words.value(4) == client)
            result.append("signal " + words.value(7));
        else if (words.value(4) == client)
            result.append("answer");
    }
    return result;
}

/// Waits until there is a line with that end.
bool BusMonitor::waitForLine(QString const& end)
{
    while (!mOutput.contains(end.toLatin1() + '\n')) {
        if (!mProcess.waitForReadyRead(kStartLimitMs))
            return false;
        mOutput += mProcess.readAllStandardOutput();
    }
    return true;
}

QStringList BusMonitor::lines() const
{
    return QString::fromLatin1(mOutput.constData(), mOutput.size()).split('\n');
}

QString firstLineOf(QProcess& process, QString const& program, QStringList const& arguments)
{
    process.start(program, arguments);
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead(kStartLimitMs)) {
            qWarning("%s does not start: %s", qPrintable(program),
                     process.readAllStandardError().constData());
            return QString();
        }
    }
    return QString::fromLatin1(process.readLine()).trimmed();
}
