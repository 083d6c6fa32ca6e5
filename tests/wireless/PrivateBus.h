// SPDX-License-Identifier: MIT

#pragma once

#include "support/TestDirectory.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

/// A message bus of a test's own, with a NetworkManager on it if one is started. Other processes
/// get it as their system bus through environment().
class PrivateBus
{
public:
    PrivateBus();
    ~PrivateBus();

    /// Whether it accepts connections. A bus that was stopped is started at the same address.
    bool start();

    /// Kills the bus without a farewell to those who are connected.
    void stop();

    /// Starts the NetworkManager of that name from network-manager-scene; true once it can be
    /// asked.
    bool startNetworkManager(QString const& scene);

    /// Kills NetworkManager.
    void stopNetworkManager();

    /// Stops NetworkManager where it stands, by a signal: it keeps its name on the bus.
    void suspendNetworkManager();
    void resumeNetworkManager();

    /// The arguments of the calls of `method` that NetworkManager received, in order.
    QStringList calls(QString const& method) const;

    QString address() const;

    /// This process's environment with the system bus at address().
    QStringList environment() const;

private:
    Q_DISABLE_COPY(PrivateBus)

    TestDirectory mDirectory;
    QProcess mBus;
    QProcess mNetworkManager;
};

/// Sees what passes over a private bus.
class BusMonitor
{
public:
    BusMonitor();
    ~BusMonitor();

    /// Whether it sees everything from now on.
    bool start(PrivateBus const& bus);

    /// Waits until the first client that has connected since the start has left.
    ///
    /// @return its messages, in order: "call DESTINATION METHOD" of those that it sent, "answer"
    ///         and "signal NAME" of those that it got.
    QStringList messagesOfFirstClient();

private:
    Q_DISABLE_COPY(BusMonitor)

    bool waitForLine(QString const& end);
    QStringList lines() const;

    QProcess mProcess;
    QByteArray mOutput;
};

/// Starts `program` as `process` and waits for its first line of output.
///
/// @return that line without its end; empty when it ends or 30 s pass before it is there.
QString firstLineOf(QProcess& process, QString const& program, QStringList const& arguments);
