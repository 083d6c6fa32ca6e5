// SPDX-License-Identifier: MIT

// Many apply requests in quick succession, each with many scripts, on all threads they take.

#include "actions/default/LastCommandTask.h"
#include "plugin/PluginScene.h"
#include "support/Footprint.h"
#include "support/LastCommandWatch.h"
#include "support/ReleaseCounter.h"
#include "support/TestProgram.h"
#include "support/Waiting.h"

#include <QDir>
#include <QSharedPointer>
#include <QtTest>

#include <atomic>
#include <thread>

namespace {

int const kRequests = 8;
int const kScripts = 20;
// How long nothing must happen for a test to believe that nothing does.
int const kSettleMs = 200;

QString doneKey(int request)
{
    return "tmp/apply/storm" + QString::number(request);
}

/// The folder of a script, as a view key.
QString folder(int script)
{
    return "zelvo-view/storm/key" + QString::number(script);
}

int threadCount()
{
    return QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

} // namespace

class ApplyStormTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void everyRequestRunsItsScriptsAndIsToldOnce();
    void commandAskedForOnceRunsOnce_data();
    void commandAskedForOnceRunsOnce();
    void highestOfRacingCommandsRunsOnce();
    void noneOfManyCommandsRunsTwice();
    void commandsStartWhileTheEnvironmentIsRead();
    void pluginIsDestroyedInTheMiddle_data();
    void pluginIsDestroyedInTheMiddle();
    void nothingIsKept();

private:
    /// Adds to what a script does.
    void addToScript(int script, QByteArray const& body) const;

    /// Has one of the runs of a script, whichever comes first, ask for a command.
    void askOnce(int script, QByteArray const& command) const;

    /// Sends all requests off.
    void storm() const;

    int releases() const;
    int scriptsRun() const;

    /// That all has run and each request was told once, and no command is pending.
    void checkEnd() const;

    QScopedPointer<PluginScene> mScene;
    QList<QSharedPointer<ReleaseCounter>> mCounters;
};

void ApplyStormTest::initTestCase()
{
    // Elsewhere the commands would be the machine's own.
    QVERIFY2(!qgetenv("VANTORA_SANDBOX_RECORD").isEmpty(), "runs in the sandbox only");
}

void ApplyStormTest::init()
{
    mScene.reset(new PluginScene("root/zelvo-view"));
    for (int script = 0; script < kScripts; ++script) {
        mScene->defaults.addValue("root/" + folder(script), "");
        mScene->wrappers.addScript(folder(script), "apply.sh", "echo >>../log");
    }
    for (int request = 0; request < kRequests; ++request)
        mCounters.append(QSharedPointer<ReleaseCounter>(new ReleaseCounter(doneKey(request))));
    setPendingCommand(QString());
    forgetStartedCommands();
}

void ApplyStormTest::cleanup()
{
    mScene.reset();
    mCounters.clear();
}

void ApplyStormTest::addToScript(int script, QByteArray const& body) const
{
    QByteArray const before = mScene->wrappers.read(folder(script), "apply.sh");
    mScene->wrappers.addFile(folder(script), "apply.sh", before + body + "\n");
}

void ApplyStormTest::askOnce(int script, QByteArray const& command) const
{
    addToScript(script, "! /bin/mkdir asked 2>/dev/null || " + asksFor(command));
}

void ApplyStormTest::storm() const
{
    for (int request = 0; request < kRequests; ++request)
        QCOMPARE(mScene->plugin->apply(mScene->at("storm"), doneKey(request)), 0);
}

int ApplyStormTest::releases() const
{
    int sum = 0;
    for (QSharedPointer<ReleaseCounter> const& counter : mCounters)
        sum += counter->count();
    return sum;
}

int ApplyStormTest::scriptsRun() const
{
    return mScene->wrappers.read("zelvo-view/storm", "log").size();
}

void ApplyStormTest::checkEnd() const
{
    // On a busy machine under a sanitizer this takes its time.
    while (releases() < kRequests)
        QTest::qWait(1);
    QTest::qWait(kSettleMs);
    for (QSharedPointer<ReleaseCounter> const& counter : mCounters)
        QCOMPARE(counter->count(), 1);
    QStringList const calls = mScene->backend.calls();
    for (int request = 0; request < kRequests; ++request) {
        QCOMPARE(calls.count("set " + doneKey(request) + " 0"), 1);
        QCOMPARE(calls.count("commit " + doneKey(request)), 1);
    }
    QCOMPARE(scriptsRun(), kRequests * kScripts);
    QVERIFY(pendingCommand().isNull());
}

void ApplyStormTest::everyRequestRunsItsScriptsAndIsToldOnce()
{
    storm();
    checkEnd();
    QCOMPARE(startedCommands(), QStringList());
}

void ApplyStormTest::commandAskedForOnceRunsOnce_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("started");

    QTest::newRow("reboot") << "reboot"
                            << "wlox-reboot";
    QTest::newRow("lowest of the ranked ones") << "restart-desktop"
                                               << "xfce4-panel --restart";
    QTest::newRow("command line") << "wlox-logoff now"
                                  << "wlox-logoff now";
}

void ApplyStormTest::commandAskedForOnceRunsOnce()
{
    QFETCH(QString, command);
    QFETCH(QString, started);

    askOnce(kScripts / 2, command.toLatin1());
    storm();
    checkEnd();
    QVERIFY(waitUntil([] { return !startedCommands().isEmpty(); }));
    QCOMPARE(startedCommands(), QStringList(started));
}

void ApplyStormTest::highestOfRacingCommandsRunsOnce()
{
    char const* const commands[] = {"restart-desktop", "logout", "reboot", "restart-display"};
    int script = 0;
    for (char const* const command : commands)
        askOnce(script++, command);
    storm();
    checkEnd();
    QVERIFY(waitUntil([] { return startedCommands().contains("wlox-reboot"); }));

    // The others may have been taken by a request that ended before.
    QStringList const started = startedCommands();
    QCOMPARE(started.count("wlox-reboot"), 1);
    QStringList others = started;
    others.removeAll("wlox-reboot");
    QCOMPARE(others.removeDuplicates(), 0);
    QStringList const known = QStringList() << "wlox-logoff"
                                            << "wlox-restartX"
                                            << "xfce4-panel --restart";
    for (QString const& line : static_cast<QStringList const&>(others))
        QVERIFY2(known.contains(line), qPrintable(line));
}

void ApplyStormTest::noneOfManyCommandsRunsTwice()
{
    // Each run of each script asks for a command of its own.
    for (int script = 0; script < kScripts; ++script)
        addToScript(script, "echo wlox-logoff $$ >>\"$LAST_APPLY_COMMAND\"");
    storm();
    checkEnd();
    QVERIFY(waitUntil([] { return !startedCommands().isEmpty(); }));

    QStringList started = startedCommands();
    QVERIFY(started.size() <= kRequests);
    for (QString const& line : static_cast<QStringList const&>(started))
        QVERIFY2(QRegExp("wlox-logoff [0-9]+").exactMatch(line), qPrintable(line));
    QCOMPARE(started.removeDuplicates(), 0);
}

/// A process that is forked meanwhile has the toolkit's lock on the environment held for ever.
void ApplyStormTest::commandsStartWhileTheEnvironmentIsRead()
{
    std::atomic<bool> isOver(false);
    std::thread reader([&isOver] {
        while (!isOver)
            qgetenv("PATH");
    });
    int const commands = 50;
    QThreadPool pool;
    for (int command = 0; command < commands; ++command) {
        setPendingCommand("reboot");
        LastCommandTask(&mScene->backend, &pool, QString()).executeCommand();
    }
    isOver = true;
    reader.join();
    QVERIFY(waitUntil([commands] { return startedCommands().size() == commands; }));
}

void ApplyStormTest::pluginIsDestroyedInTheMiddle_data()
{
    QTest::addColumn<int>("runsBefore");

    QTest::newRow("at once") << 0;
    QTest::newRow("after the first script") << 1;
    QTest::newRow("after half of the scripts") << kRequests * kScripts / 2;
    QTest::newRow("before the last script") << kRequests * kScripts - 1;
    QTest::newRow("after the last script") << kRequests * kScripts;
}

void ApplyStormTest::pluginIsDestroyedInTheMiddle()
{
    QFETCH(int, runsBefore);

    askOnce(kScripts - 1, "reboot");
    Footprint const before;
    int const threads = threadCount();
    storm();
    // No event comes in between, as in a host that waits for nothing else.
    while (scriptsRun() < runsBefore)
        QTest::qSleep(1);
    mScene->plugin.reset();

    // All is done when the destructor returns.
    QCOMPARE(scriptsRun(), kRequests * kScripts);
    QCOMPARE(mScene->backend.calls("commit").size(), kRequests);
    QVERIFY(waitUntil([threads] { return threadCount() == threads; }));
    checkEnd();
    QVERIFY(waitUntil([] { return !startedCommands().isEmpty(); }));
    QCOMPARE(startedCommands(), QStringList("wlox-reboot"));
    forgetStartedCommands();
    QCOMPARE(Footprint().newSince(before), QStringList());
}

void ApplyStormTest::nothingIsKept()
{
    storm();
    checkEnd();
    // Pools and keepers go by their signals.
    QVERIFY(waitUntil([this] { return mScene->plugin->children().isEmpty(); }));
}

ZELVO_TEST(ApplyStormTest)
#include "ApplyStormTest.moc"
