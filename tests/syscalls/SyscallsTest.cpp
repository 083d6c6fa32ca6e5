// SPDX-License-Identifier: MIT

// How often a request asks the system. What takes the time of a get is looking for wrapper scripts;
// the numbers are held here, so that they grow only when somebody means it.

#include "SyscallCounter.h"
#include "plugin/ZelvoView.h"
#include "registry/RegistryHost.h"
#include "support/TestProgram.h"
#include "support/TestWrappers.h"

#include <QFileInfo>
#include <QtTest>

#include <unistd.h>

namespace {

char const kSessions[] = "root/ConnectionType/rdesktop/connections";

QByteArray uuid(int i)
{
    return "{c0ffee00-1234-4321-abcd-" + QByteArray::number(i).rightJustified(12, '0') + "}";
}

/// A request of the real host with the real plugin.
class Request : public CountedWork
{
public:
    /// @param folder  of the wrappers directory; empty: there is none.
    Request(QString const& key, int sessions, QString const& folder)
        : mKey(key)
        , mSessions(sessions)
        , mFolder(folder)
    {
    }

    void prepare() override
    {
        QString error;
        if (!mHost.loadDefaults(DEFAULTS_DIR, error) || !mHost.open(":memory:", error))
            qFatal("%s", qPrintable(error));
        mPlugin.pluginIsLoaded(mHost, mHost.defaultSettings(), "",
                               QFileInfo(mWrappers.directory().path()).path());
        mHost.addPlugin(mPlugin);
        for (int i = 0; i < mSessions; ++i)
            mHost.create(QString(kSessions) + "/" + uuid(i), REG_TYPE_STRING);
        if (mHost.commit(kSessions) != 0)
            qFatal("the sessions are not there");
        if (!mFolder.isEmpty())
            mWrappers.directory().mkpath(mFolder);
    }

protected:
    RegistryHost& host() { return mHost; }
    QString const mKey;

private:
    int mSessions;
    QString mFolder;
    TestWrappers mWrappers;
    RegistryHost mHost;
    ZelvoView mPlugin;
};

class Get : public Request
{
public:
    Get(QString const& key, int sessions, QString const& folder)
        : Request(key, sessions, folder)
    {
    }

    void run() override
    {
        QMap<QString, _RegNodeType> answer;
        if (host().get(mKey, answer, REG_PARAM_VALUE, "") != 0)
            qFatal("no answer");
    }
};

/// The registry is in memory: its commits make no calls.
class SetAndCommit : public Request
{
public:
    SetAndCommit(QString const& key, int sessions, QString const& folder)
        : Request(key, sessions, folder)
    {
    }

    void run() override
    {
        if (host().set(mKey, "a text", REG_PARAM_VALUE) != 0 || host().commit(mKey) != 0)
            qFatal("not committed");
    }
};

/// A known number of calls, to know that they are seen.
class FourCalls : public CountedWork
{
public:
    void prepare() override { }

    void run() override
    {
        for (int i = 0; i < 4; ++i)
            ::access("/tmp", F_OK);
    }
};

} // namespace

class SyscallsTest : public QObject
{
    Q_OBJECT

private slots:
    void counterSeesEveryCall();
    void get_data();
    void get();
    void setAndCommit_data();
    void setAndCommit();
};

void SyscallsTest::counterSeesEveryCall()
{
    FourCalls work;
    int const calls = countSyscalls(work);
    if (calls == kCannotTrace)
        QSKIP("this machine lets no process trace another", SkipAll);
    QCOMPARE(calls, 4);
}

void SyscallsTest::get_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("sessions");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("expected");

    QString const none;
    QString const view = "root/zelvo-view";
    QString const list = view + "/rdp/sessions";
    QString const name = list + "/" + uuid(0) + "/name";
    // Whether there is a folder "usb"; "isVisible.sh" of the view.
    QTest::newRow("a mapped key without scripts") << view + "/usb/enable" << 0 << none << 2;
    QTest::newRow("one session's key") << name << 1 << none << 2;
    QTest::newRow("one session's key, of many") << name << 300 << none << 2;
    // The same, and "isVisible.sh" of the view once more for all sessions.
    QTest::newRow("a listing of sessions") << list << 3 << none << 3;
    QTest::newRow("a listing of many sessions") << list << 300 << none << 3;
    QTest::newRow("a listing of no sessions") << list << 0 << none << 2;

    // The folder; "isVisible.sh" of the key, of "usb" and of the view; "get.sh".
    QTest::newRow("a mapped key in an area with a folder")
        << view + "/usb/enable" << 0 << "zelvo-view/usb" << 5;
    // The folder; "isVisible.sh" of the key and the four branches above; "get.sh".
    QTest::newRow("one session's key in an area with a folder")
        << name << 1 << "zelvo-view/rdp" << 7;
    // The folder; "isVisible.sh" of the directory and the two branches above, and of the sessions
    // and these three.
    QTest::newRow("a listing of many sessions in an area with a folder")
        << list << 300 << "zelvo-view/rdp" << 8;
}

void SyscallsTest::get()
{
    QFETCH(QString, key);
    QFETCH(int, sessions);
    QFETCH(QString, folder);
    QFETCH(int, expected);

    Get work(key, sessions, folder);
    int const calls = countSyscalls(work);
    if (calls == kCannotTrace)
        QSKIP("this machine lets no process trace another", SkipAll);
    QCOMPARE(calls, expected);
}

void SyscallsTest::setAndCommit_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("expected");

    // Of setting and of committing each: is there a folder "rdp"; "isVisible.sh" of the view.
    QTest::newRow("an area without scripts") << QString() << 4;
    // Of each: the folder; "isVisible.sh" of the key and the four branches above; "set.env", and
    // "set.sh" or "commit.sh".
    QTest::newRow("an area with a folder") << "zelvo-view/rdp" << 16;
}

void SyscallsTest::setAndCommit()
{
    QFETCH(QString, folder);
    QFETCH(int, expected);

    SetAndCommit work("root/zelvo-view/rdp/sessions/" + uuid(0) + "/name", 1, folder);
    int const calls = countSyscalls(work);
    if (calls == kCannotTrace)
        QSKIP("this machine lets no process trace another", SkipAll);
    QCOMPARE(calls, expected);
}

ZELVO_TEST(SyscallsTest)

#include "SyscallsTest.moc"
