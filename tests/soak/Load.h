// SPDX-License-Identifier: MIT

#pragma once

#include "loader/PluginLoader.h"
#include "registry/RegistryHost.h"
#include "support/TestDirectory.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <random>

class QObject;

/// A mixed load, as from people and programs that use all of the view, on the real host with the
/// built plugin: the same for each run. Ends the program when a request is not answered as it must
/// be: a load that is refused says nothing.
class Load
{
public:
    enum Kind { PLAIN, SCRIPTS };

    /// @param kind  whether some of the keys have scripts.
    explicit Load(Kind kind);

    /// One request.
    void request();

    /// Waits for what is under way and brings the host back to where it was at the beginning: the
    /// same values, no sessions, nothing pending. What is then held is what has been left behind.
    void settle();

private:
    Q_DISABLE_COPY(Load)

    struct Row;
    static Row const kRows[];
    static int sAllWeights();

    void installScripts() const;

    // One request each.
    void readValue();
    void readWirelessValue();
    void list();
    void listWithWireless();
    void askFor();
    void change();
    void changeWireless();
    void commitKey();
    void commitArea();
    void commitAll();
    void createSession();
    void deleteSession();
    void apply();
    void requestUnknownKey();

    void set(QString const& key, QString const& value);
    void commit(QString const& key);
    void del(QString const& session);
    void get(QString const& key);

    void deleteSessions();
    void resetValues();
    /// Until there are no more than `mostLeft` under way.
    void waitForApplies(int mostLeft);

    int random(int count);
    QString oneOf(QStringList const& texts);
    /// A key with a value; of a session, when there is one and it is its turn.
    QString anyKey();
    QString anyDirectory();
    QString anyValue(QString const& key);
    QString newSession();

    TestDirectory mDirectory;
    RegistryHost mHost;
    // Goes before the host: the plugin waits for its applies, which end with calls of the host.
    PluginLoader mLoader;
    QObject* mPlugin;

    std::mt19937 mRandom;
    QStringList mSessions;
    int mSessionsMade;
};
