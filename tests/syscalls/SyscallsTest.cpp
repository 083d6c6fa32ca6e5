// How often a request asks the system. What takes the time of a get is looking for wrapper scripts;
// the numbers are held here, so that they grow only when somebody means it.

#include "SyscallCounter.h"
#include "plugin/ZelvoView.h"
#include "registry/RegistryHost.h"
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

/// One get from the real host with the real plugin.
class Get : public CountedWork
{
public:
    Get(QString const& key, int sessions)
        : mKey(key)
        , mSessions(sessions)
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
    }

    void run() override
    {
        QMap<QString, _RegNodeType> answer;
        if (mHost.get(mKey, answer, REG_PARAM_VALUE, "") != 0)
            qFatal("no answer");
    }

private:
    QString mKey;
    int mSessions;
    TestWrappers mWrappers;
    RegistryHost mHost;
    ZelvoView mPlugin;
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
    QTest::addColumn<int>("expected");

    QString const view = "root/zelvo-view";
    QString const list = view + "/rdp/sessions";
    // "isVisible.sh" of the key, of "usb" and of the view; "get.sh".
    QTest::newRow("a mapped key without scripts") << view + "/usb/enable" << 0 << 4;
    // "isVisible.sh" of the key and the four branches above; "get.sh".
    QTest::newRow("one session's key") << list + "/" + uuid(0) + "/name" << 1 << 6;
    QTest::newRow("one session's key, of many") << list + "/" + uuid(0) + "/name" << 300 << 6;
    // Of the directory and the two branches above; of the sessions and these three.
    QTest::newRow("a listing of sessions") << list << 3 << 7;
    QTest::newRow("a listing of many sessions") << list << 300 << 7;
    QTest::newRow("a listing of no sessions") << list << 0 << 3;
}

void SyscallsTest::get()
{
    QFETCH(QString, key);
    QFETCH(int, sessions);
    QFETCH(int, expected);

    Get work(key, sessions);
    int const calls = countSyscalls(work);
    if (calls == kCannotTrace)
        QSKIP("this machine lets no process trace another", SkipAll);
    QCOMPARE(calls, expected);
}

QTEST_MAIN(SyscallsTest)

#include "SyscallsTest.moc"
