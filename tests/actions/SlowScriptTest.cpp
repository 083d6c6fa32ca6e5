#include "actions/default/DefaultActions.h"
#include "support/Footprint.h"
#include "support/TestBackend.h"
#include "support/TestKit.h"
#include "support/TestWrappers.h"
#include "support/Waiting.h"
#include "tree/ConfigKey.h"

#include <QElapsedTimer>
#include <QtTest>

#include <errno.h>
#include <signal.h>

/// Takes the thirty seconds that a script may take; there is one such test.
class SlowScriptTest : public QObject
{
    Q_OBJECT

private slots:
    void scriptPastItsTimeCountsAsSuccessAndIsKilled();
};

namespace {

bool exists(int pid)
{
    return ::kill(pid, 0) == 0 || errno != ESRCH;
}

} // namespace

void SlowScriptTest::scriptPastItsTimeCountsAsSuccessAndIsKilled()
{
    TestBackend backend;
    TestWrappers const wrappers;
    freshKit(backend, wrappers.directory());
    ConfigKey const key("key", QString(), nullptr);
    QVariant data(QString("before"));
    wrappers.addScript("key", "set.sh", "exit 0");
    QVERIFY(DefaultSetValueAction().execute(key, data));

    wrappers.addScript("key", "set.sh",
                       "trap '' TERM\necho $$ >pid\nprintf half\nsleep 60 &\necho $! >child\nwait");
    Footprint const before;
    QElapsedTimer timer;
    timer.start();
    QVERIFY(DefaultSetValueAction().execute(key, data));
    qint64 const elapsed = timer.elapsed();
    QVERIFY2(elapsed >= 30000 && elapsed < 60000, qPrintable(QString::number(elapsed)));
    QCOMPARE(data.toString(), QString("half"));

    int const pid = wrappers.read("key", "pid").trimmed().toInt();
    QVERIFY(pid > 0);
    QVERIFY(!exists(pid));
    // What the script has started is killed with it, and reaped by whoever adopts it.
    int const child = wrappers.read("key", "child").trimmed().toInt();
    QVERIFY(child > 0);
    QVERIFY(waitUntil([child] { return !exists(child); }));
    // The files of the script lie below a directory that was there before.
    QCOMPARE(Footprint().newSince(before), QStringList());
}

QTEST_MAIN(SlowScriptTest)
#include "SlowScriptTest.moc"
