// SPDX-License-Identifier: MIT

#include "actions/IActivityObserver.h"
#include "actions/default/ApplyTask.h"
#include "actions/default/Wrapper.h"
#include "support/TestBackend.h"
#include "support/TestKit.h"
#include "support/TestProgram.h"
#include "support/TestWrappers.h"

#include <QtTest>

#include <thread>

namespace {

class RunList : public IActivityObserver
{
public:
    RunList() { ActionKit::instance()->setObserver(this); }
    ~RunList() override { ActionKit::instance()->setObserver(nullptr); }

    void scriptHasRun(WrapperRun const& run) override { runs.append(run); }

    QList<WrapperRun> runs;

private:
    Q_DISABLE_COPY(RunList)
};

} // namespace

class WrapperObserverTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void isToldOfTheEnd_data();
    void isToldOfTheEnd();
    void isToldOfAScriptThatDoesNotStart();
    void isToldOfAnEnvironmentThatIsTooLong();
    void isToldOfOutputWithoutTakingIt();
    void isToldTheEndOfALongErrorOutput();
    void isToldNothingOnceItIsTakenAway();
    void isToldNothingOnceTheKitIsMadeAnew();
    void isToldNothingOfARunThatHasBegunBefore();
    void leavesQueuedScriptsAsTheyAre();

private:
    TestBackend mBackend;
};

void WrapperObserverTest::initTestCase()
{
    QVERIFY(!ActionKit::sObserver());
    freshKit(mBackend, QDir());
}

void WrapperObserverTest::isToldOfTheEnd_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("takesValue");
    QTest::addColumn<int>("ending");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<bool>("isSuccess");

    int const exited = WrapperRun::Exited;
    QTest::newRow("exit status 0") << QByteArray("exit 0") << false << exited << 0 << true;
    QTest::newRow("another exit status") << QByteArray("exit 3") << false << exited << 3 << false;
    QTest::newRow("with a value: exit status 0")
        << QByteArray("exit 0") << true << exited << 0 << true;
    QTest::newRow("with a value: another exit status")
        << QByteArray("exit 3") << true << exited << 3 << false;
    QTest::newRow("signal") << QByteArray("kill -9 $$") << false << int(WrapperRun::EndedBySignal)
                            << 0 << false;
}

void WrapperObserverTest::isToldOfTheEnd()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, takesValue);
    QFETCH(int, ending);
    QFETCH(int, exitCode);
    QFETCH(bool, isSuccess);

    TestWrappers const wrappers;
    QString const script = wrappers.addScript("key", "get.sh", body);
    RunList const list;
    Wrapper wrapper(script);
    QCOMPARE(takesValue ? wrapper.runWithValue("value") : wrapper.run(), isSuccess);

    QCOMPARE(list.runs.size(), 1);
    WrapperRun const run = list.runs.first();
    QCOMPARE(run.script, script);
    QCOMPARE(int(run.ending), ending);
    if (ending == WrapperRun::Exited)
        QCOMPARE(run.exitCode, exitCode);
    QCOMPARE(run.isSuccess(), isSuccess);
    QVERIFY(run.milliseconds >= 0);
}

void WrapperObserverTest::isToldOfAScriptThatDoesNotStart()
{
    TestWrappers const wrappers;
    RunList const list;
    QVERIFY(Wrapper(wrappers.addFile("key", "get.sh", "#!/bin/sh\nexit 1\n")).run());
    QCOMPARE(list.runs.size(), 1);
    QCOMPARE(int(list.runs.first().ending), int(WrapperRun::NotStarted));
    QVERIFY(list.runs.first().isSuccess());
}

void WrapperObserverTest::isToldOfAnEnvironmentThatIsTooLong()
{
    TestWrappers const wrappers;
    RunList const list;
    Wrapper wrapper(wrappers.addScript("key", "get.sh", "exit 0"));
    wrapper.setEnvironment(QStringList("LABEL=" + QString(1 << 20, 'x')));
    QVERIFY(!wrapper.run());
    QCOMPARE(list.runs.size(), 1);
    QCOMPARE(int(list.runs.first().ending), int(WrapperRun::EnvironmentTooLong));
    QVERIFY(!list.runs.first().isSuccess());
}

void WrapperObserverTest::isToldOfOutputWithoutTakingIt()
{
    TestWrappers const wrappers;
    RunList const list;
    Wrapper wrapper(wrappers.addScript("key", "get.sh", "printf four; printf oops >&2"),
                    Wrapper::KeepOutput);
    QVERIFY(wrapper.run());
    QCOMPARE(list.runs.size(), 1);
    QCOMPARE(list.runs.first().outputBytes, qint64(4));
    QCOMPARE(list.runs.first().errorOutput, QByteArray("oops"));
    QCOMPARE(wrapper.output(), QString("four"));
}

void WrapperObserverTest::isToldTheEndOfALongErrorOutput()
{
    TestWrappers const wrappers;
    RunList const list;
    QVERIFY(Wrapper(wrappers.addScript("key", "get.sh",
                                       "exec >&2; printf begin; yes | head -c 1000000; printf end"))
                .run());
    QCOMPARE(list.runs.size(), 1);
    QByteArray const told = list.runs.first().errorOutput;
    QCOMPARE(told.size(), 64 * 1024);
    QVERIFY(told.startsWith("y\n") || told.startsWith("\ny"));
    QVERIFY(told.endsWith("y\nend"));
}

void WrapperObserverTest::isToldNothingOnceItIsTakenAway()
{
    TestWrappers const wrappers;
    QString const script = wrappers.addScript("key", "get.sh", "exit 0");
    RunList list;
    QVERIFY(Wrapper(script).run());
    QCOMPARE(list.runs.size(), 1);
    ActionKit::instance()->setObserver(nullptr);
    QVERIFY(Wrapper(script).run());
    QCOMPARE(list.runs.size(), 1);
}

void WrapperObserverTest::isToldNothingOnceTheKitIsMadeAnew()
{
    TestWrappers const wrappers;
    QString const script = wrappers.addScript("key", "get.sh", "exit 0");
    RunList const list;
    freshKit(mBackend, QDir());
    QVERIFY(!ActionKit::sObserver());
    QVERIFY(Wrapper(script).run());
    QCOMPARE(list.runs.size(), 0);
}

/// Nobody has measured the time since its start.
void WrapperObserverTest::isToldNothingOfARunThatHasBegunBefore()
{
    TestWrappers const wrappers;
    QString const script
        = wrappers.addScript("key", "get.sh", ": >here; until [ -e go ]; do /bin/sleep 0.01; done");
    bool isSuccess = false;
    std::thread run([&] { isSuccess = Wrapper(script).run(); });
    while (!wrappers.exists("key", "here"))
        QTest::qSleep(1);
    RunList const list;
    wrappers.addFile("key", "go", "");
    run.join();
    QVERIFY(isSuccess);
    QCOMPARE(list.runs.size(), 0);
}

void WrapperObserverTest::leavesQueuedScriptsAsTheyAre()
{
    ApplyTask task((QFileInfo()));
    RunList list;
    QCOMPARE(list.scriptIsQueued(&task), static_cast<QRunnable*>(&task));
}

ZELVO_TEST(WrapperObserverTest)
#include "WrapperObserverTest.moc"
