// SPDX-License-Identifier: MIT

#include "plugin/AutoThread.h"

#include "common/QtCompat.h"
#include "support/TestProgram.h"
#include "support/Waiting.h"

#include <QPointer>
#include <QThread>
#include <QtTest>

#include <atomic>

namespace {

/// Runs for a moment and says when it has.
class TestThread : public QThread
{
public:
    explicit TestThread(std::atomic<bool>* ended)
        : mEnded(ended)
    {
    }

protected:
    void run() override
    {
        msleep(50);
        *mEnded = true;
    }

private:
    std::atomic<bool>* mEnded;
};

} // namespace

class AutoThreadTest : public QObject
{
    Q_OBJECT

private slots:
    void deletesTheThreadAndItselfWhenTheThreadEnds();
    void slotDeletesAThreadThatNeverRan();
    void slotWithoutThreadDeletesTheKeeper();
    void deletedKeeperWaitsForItsThread();
    void hasItsSlotAsItsFirstMethod();
    void metacast();
};

void AutoThreadTest::deletesTheThreadAndItselfWhenTheThreadEnds()
{
    std::atomic<bool> ended(false);
    QPointer<QThread> const thread = new TestThread(&ended);
    QPointer<AutoThread> const keeper = new AutoThread(thread);
    QObject::connect(thread, SIGNAL(finished()), keeper, SLOT(deleteThread()));
    QtCompat::connectThreadTerminated(thread, keeper, SLOT(deleteThread()));
    thread->start(QThread::InheritPriority);
    QVERIFY(waitUntil([&] { return keeper.isNull(); }));
    QVERIFY(thread.isNull());
    QVERIFY(ended);
}

void AutoThreadTest::slotDeletesAThreadThatNeverRan()
{
    std::atomic<bool> ended(false);
    QPointer<QThread> const thread = new TestThread(&ended);
    QPointer<AutoThread> const keeper = new AutoThread(thread);
    QVERIFY(QMetaObject::invokeMethod(keeper, "deleteThread"));
    QVERIFY(keeper.isNull());
    QVERIFY(thread.isNull());
    QVERIFY(!ended);
}

void AutoThreadTest::slotWithoutThreadDeletesTheKeeper()
{
    QPointer<AutoThread> const keeper = new AutoThread(nullptr);
    keeper->deleteThread();
    QVERIFY(keeper.isNull());
}

void AutoThreadTest::deletedKeeperWaitsForItsThread()
{
    std::atomic<bool> ended(false);
    QPointer<QThread> const thread = new TestThread(&ended);
    AutoThread* const keeper = new AutoThread(thread);
    thread->start();
    delete keeper;
    QVERIFY(ended);
    QVERIFY(thread.isNull());
}

void AutoThreadTest::hasItsSlotAsItsFirstMethod()
{
    QMetaObject const& own = AutoThread::staticMetaObject;
    QCOMPARE(own.indexOfSlot("deleteThread()"), own.methodOffset());
    QCOMPARE(own.methodCount() - own.methodOffset(), 1);
}

void AutoThreadTest::metacast()
{
    AutoThread keeper(nullptr);
    QVERIFY(keeper.qt_metacast("AutoThread") == &keeper);
    QVERIFY(keeper.qt_metacast("QObject") == &keeper);
    QVERIFY(!keeper.qt_metacast("QThread"));
}

ZELVO_TEST(AutoThreadTest)
#include "AutoThreadTest.moc"
