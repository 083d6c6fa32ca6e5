// SPDX-License-Identifier: MIT

#include "shell/commands/Apply.h"
#include "support/TestProgram.h"

#include <QSystemSemaphore>
#include <QtTest>

namespace {

char const* const kName = "tmp/apply/test";

int const kLongSeconds = 60;
int const kShortSeconds = 1;

/// As the last-command thread of a plugin does it.
void release()
{
    QSystemSemaphore(QLatin1String(kName), 0, QSystemSemaphore::Open).release();
}

} // namespace

class ApplyWaitTest : public QObject
{
    Q_OBJECT

public slots:
    void releaseNow() { release(); }

private slots:
    void endBeforeTheWaitIsNotMissed();
    void eventsAreServedWhileWaiting();
    void waitEndsAfterItsTime();
    void waitOfNoTimeEndsAtOnce();
    void formerReleaseDoesNotCount();
};

void ApplyWaitTest::endBeforeTheWaitIsNotMissed()
{
    ApplyWait wait(QLatin1String(kName), QLatin1String("test"));
    QString error;
    QVERIFY2(wait.isReady(error), qPrintable(error));
    release();
    QVERIFY(wait.wait(kLongSeconds));
}

void ApplyWaitTest::eventsAreServedWhileWaiting()
{
    ApplyWait wait(QLatin1String(kName), QLatin1String("test"));
    int const soonMilliseconds = 100;
    QTimer::singleShot(soonMilliseconds, this, SLOT(releaseNow()));
    QVERIFY(wait.wait(kLongSeconds));
}

void ApplyWaitTest::waitEndsAfterItsTime()
{
    ApplyWait wait(QLatin1String(kName), QLatin1String("test"));
    QElapsedTimer elapsed;
    elapsed.start();
    QVERIFY(!wait.wait(kShortSeconds));
    int const millisecondsPerSecond = 1000;
    // Timers may be early by a twentieth.
    QVERIFY(elapsed.elapsed() >= kShortSeconds * millisecondsPerSecond * 19 / 20);
}

void ApplyWaitTest::waitOfNoTimeEndsAtOnce()
{
    ApplyWait wait(QLatin1String(kName), QLatin1String("test"));
    QVERIFY(!wait.wait(0));
}

void ApplyWaitTest::formerReleaseDoesNotCount()
{
    {
        ApplyWait wait(QLatin1String(kName), QLatin1String("test"));
        release();
    }
    ApplyWait wait(QLatin1String(kName), QLatin1String("test"));
    QVERIFY(!wait.wait(kShortSeconds));
}

ZELVO_TEST(ApplyWaitTest)

#include "ApplyWaitTest.moc"
