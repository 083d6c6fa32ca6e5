// SPDX-License-Identifier: MIT

#include "actions/default/ApplyTask.h"
#include "actions/default/DefaultApplyAction.h"
#include "actions/default/LastCommandTask.h"
#include "actions/default/LastCommands.h"
#include "plugin/AutoThread.h"
#include "support/Footprint.h"
#include "support/LastCommandWatch.h"
#include "support/ReleaseCounter.h"
#include "support/TestBackend.h"
#include "support/TestKit.h"
#include "support/TestProgram.h"
#include "support/TestWrappers.h"
#include "support/Waiting.h"
#include "support/WithoutPrivilege.h"
#include "tree/ConfigBranch.h"
#include "tree/ConfigKey.h"

#include <QPointer>
#include <QSemaphore>
#include <QSystemSemaphore>
#include <QThreadPool>
#include <QtTest>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

char const kHandOverFile[] = "/tmp/last-apply-command";
char const kDoneKey[] = "tmp/apply/test";
// How long nothing must happen for a test to believe that nothing does.
int const kSettleMs = 200;

QByteArray readFile(QString const& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(QString const& name, QByteArray const& content)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

/// A thread that runs until it is let go, and tells when it is deleted.
class HeldThread : public QThread
{
public:
    HeldThread(QSemaphore& gate, bool& isDeleted)
        : mGate(gate)
        , mIsDeleted(isDeleted)
    {
    }

    ~HeldThread() override { mIsDeleted = true; }

protected:
    void run() override { mGate.acquire(); }

private:
    QSemaphore& mGate;
    bool& mIsDeleted;
};

/// Lets a held thread go after a while.
void releaseLater(QSemaphore& gate)
{
    QTest::qSleep(kSettleMs);
    gate.release();
}

/// Holds every commit until it is let go.
class HeldBackend : public TestBackend
{
public:
    int commit(QString const& key) override
    {
        mCommits.release();
        mGate.acquire();
        return TestBackend::commit(key);
    }

    bool isCommitting() { return mCommits.available() > 0; }
    void letGo() { mGate.release(); }

private:
    QSemaphore mCommits;
    QSemaphore mGate;
};

void offerOften(char const* command)
{
    for (int round = 0; round < 1000; ++round)
        DefaultApplyAction::sSetLastApplyCommand(command);
}

} // namespace

class ApplyTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void missingScriptQueuesNothing();
    void scriptIsQueuedOnTheTopPool();
    void sessionsShareOneScript();

    void environmentIsTheRequestFileAlone();
    void requestFileIsEmptyAndPrivateAndGoes();
    void scriptRunsInItsOwnFolderWithoutArguments();
    void linesAreOffered_data();
    void linesAreOffered();
    void failedScriptAsksForNothing_data();
    void failedScriptAsksForNothing();
    void scriptThatCannotBeStartedAsksForNothing();
    void scriptThatRemovesItsFileAsksForNothing();
    void fileIsReadUpToItsLongest_data();
    void fileIsReadUpToItsLongest();
    void blankInThePathKeepsTheScriptFromBeingFound();
    void applyTaskLeavesNothingBehind();

    void ranking_data();
    void ranking();
    void offersAreTrimmed_data();
    void offersAreTrimmed();
    void offersFromSeveralThreads();
    void offerWaitsForItsTurn();

    void highestOfARequestRunsOnce_data();
    void highestOfARequestRunsOnce();
    void programOfACommand_data();
    void programOfACommand();
    void unknownCommandRunsAsACommandLine();
    void commandHasASessionOfItsOwnAndHearsOfBrokenPipes();
    void commandThatCannotStartIsForgotten();
    void failingScriptRunsNothing();
    void pendingCommandIsResetToNull();
    void handOver_data();
    void handOver();
    void handOverIsInTheEncodingOfTheLocale();
    void handOverFileThatCannotBeReadTakesTheCommandItself();
    void handOverFileThatCannotBeOpenedKeepsTheCommandFromRunning();
    void handOverFileThatIsAPipeIsNotWaitedFor();
    void commandIsTakenOnceByTasksThatEndTogether();
    void commandIsTakenInItsTurn();

    void requestReturnsBeforeItsScriptsHaveRun();
    void requestTakesItsPoolOffTheStack();
    void endIsToldOnce_data();
    void endIsToldOnce();
    void endBeforeAnybodyWaitsIsNotMissed();
    void semaphoreIsShutUntilTheKeyIsCommitted();
    void endIsToldThoughTheBackendRefuses();
    void nobodyIsToldWithoutAKey();
    void handOverIsDoneWhenTheEndIsTold();
    void keeperAndThreadAreFreed();
    void requestLeavesNothingBehind();

    void keeperIsDeletedWithItsThreadBySignal();
    void keeperWaitsForItsThread();
    void keeperWithoutAThread();

private:
    void pendingCommandIsDropped();
    ConfigKey* addKey(QString const& name);
    void apply(IConfigEntry& entry, QString const& key = QString());
    void applyOn(Vantora& backend, IConfigEntry& entry, QString const& key);
    /// Runs one script as a task, here and now.
    void runScript(QByteArray const& body);
    bool isIdle() const { return mPlugin->findChildren<AutoThread*>().isEmpty(); }
    bool waitUntilIdle() const;

    QScopedPointer<TestBackend> mBackend;
    QScopedPointer<TestWrappers> mWrappers;
    QScopedPointer<ConfigBranch> mTop;
    // Stands for the plugin object, the owner of pools and keepers.
    QScopedPointer<QObject> mPlugin;
    ActionKit* mKit;
};

void ApplyTest::initTestCase()
{
    // Elsewhere the commands would be the machine's own.
    QVERIFY2(!qgetenv("VANTORA_SANDBOX_RECORD").isEmpty(), "runs in the sandbox only");
}

void ApplyTest::init()
{
    mBackend.reset(new TestBackend);
    mWrappers.reset(new TestWrappers);
    mKit = &freshKit(*mBackend, mWrappers->directory());
    mTop.reset(new ConfigBranch("zelvo-view", nullptr));
    mPlugin.reset(new QObject);
    setPendingCommand(QString());
    forgetStartedCommands();
    QVERIFY(!QFile::exists(kHandOverFile));
}

void ApplyTest::cleanup()
{
    QVERIFY(waitUntilIdle());
    mPlugin.reset();
    QFile::remove(kHandOverFile);
    QDir().rmdir(kHandOverFile);
}

ConfigKey* ApplyTest::addKey(QString const& name)
{
    return new ConfigKey(name, QString(), mTop.data());
}

void ApplyTest::apply(IConfigEntry& entry, QString const& key)
{
    applyOn(*mBackend, entry, key);
}

void ApplyTest::applyOn(Vantora& backend, IConfigEntry& entry, QString const& key)
{
    mKit->pushApplyThreadPool(new QThreadPool(mPlugin.data()));
    entry.apply();
    DefaultApplyAction::sExecuteLastApplyCommand(&backend, key);
}

void ApplyTest::runScript(QByteArray const& body)
{
    QString const script = mWrappers->addScript("zelvo-view/key", "apply.sh", body);
    ApplyTask(QFileInfo(script)).run();
}

bool ApplyTest::waitUntilIdle() const
{
    return waitUntil([this] { return isIdle(); });
}

void ApplyTest::missingScriptQueuesNothing()
{
    QThreadPool pool;
    mKit->pushApplyThreadPool(&pool);
    mWrappers->addScript("zelvo-view/key", "get.sh", "touch ran");
    QVariant data(QString("before"));

    QVERIFY(!DefaultApplyAction().execute(*addKey("key"), data));
    QVERIFY(mKit->popApplyThreadPool() == &pool);
    QCOMPARE(pool.activeThreadCount(), 0);
    QCOMPARE(data, QVariant(QString("before")));
}

void ApplyTest::scriptIsQueuedOnTheTopPool()
{
    QThreadPool below;
    QThreadPool top;
    mKit->pushApplyThreadPool(&below);
    mKit->pushApplyThreadPool(&top);
    mWrappers->addScript("zelvo-view/key", "apply.sh",
                         "while [ ! -e go ]; do sleep 0.01; done; touch ran");
    QVariant data(QString("before"));

    QVERIFY(DefaultApplyAction().execute(*addKey("key"), data));
    // It answers before the script has run.
    QVERIFY(!mWrappers->exists("zelvo-view/key", "ran"));
    QCOMPARE(top.activeThreadCount(), 1);
    QCOMPARE(below.activeThreadCount(), 0);
    mWrappers->addFile("zelvo-view/key", "go", "");
    top.waitForDone();
    QVERIFY(mWrappers->exists("zelvo-view/key", "ran"));
    QCOMPARE(data, QVariant(QString("before")));
    mKit->popApplyThreadPool();
    mKit->popApplyThreadPool();
}

void ApplyTest::sessionsShareOneScript()
{
    mWrappers->addScript("zelvo-view/{uuid}", "apply.sh", "echo x >>runs");
    addKey("{11111111-1111-1111-1111-111111111111}");
    addKey("{22222222-2222-2222-2222-222222222222}");

    apply(*mTop);
    QVERIFY(waitUntilIdle());
    QCOMPARE(mWrappers->read("zelvo-view/{uuid}", "runs"), QByteArray("x\nx\n"));
}

void ApplyTest::environmentIsTheRequestFileAlone()
{
    qputenv("ZELVO_TEST", "not passed on");
    runScript("/bin/cat /proc/$$/environ >environment\nprintf %s \"$LAST_APPLY_COMMAND\" >name");
    QByteArray const name = mWrappers->read("zelvo-view/key", "name");

    QCOMPARE(mWrappers->read("zelvo-view/key", "environment"),
             "LAST_APPLY_COMMAND=" + name + QByteArray(1, '\0'));
    QVERIFY(QRegExp("/tmp/wlox-zelvo-view-[A-Za-z0-9]{6}").exactMatch(name));
}

void ApplyTest::requestFileIsEmptyAndPrivateAndGoes()
{
    runScript("/usr/bin/stat -c '%a %s %F' \"$LAST_APPLY_COMMAND\" >status\n"
              "printf %s \"$LAST_APPLY_COMMAND\" >name");
    QCOMPARE(mWrappers->read("zelvo-view/key", "status"), QByteArray("600 0 regular empty file\n"));
    QVERIFY(!QFile::exists(mWrappers->read("zelvo-view/key", "name")));
}

void ApplyTest::scriptRunsInItsOwnFolderWithoutArguments()
{
    runScript("pwd -P >folder\necho $# >count");
    QCOMPARE(QFile::decodeName(mWrappers->read("zelvo-view/key", "folder").trimmed()),
             QFileInfo(mWrappers->folder("zelvo-view/key")).canonicalFilePath());
    QCOMPARE(mWrappers->read("zelvo-view/key", "count"), QByteArray("0\n"));
}

void ApplyTest::linesAreOffered_data()
{
    // As printf writes it.
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("pending");

    QTest::newRow("a word") << QByteArray("reboot\\n") << "reboot";
    QTest::newRow("between blanks") << QByteArray("  reboot \\t\\n") << "reboot";
    QTest::newRow("no newline at the end") << QByteArray("logout") << "logout";
    QTest::newRow("carriage return at the end") << QByteArray("logout\\r\\n") << "logout";
    QTest::newRow("several lines: the highest")
        << QByteArray("restart-desktop\\nlogout\\nrestart-display\\n") << "logout";
    QTest::newRow("up to the first NUL") << QByteArray("logout\\000x\\n") << "logout";
    QTest::newRow("unknown lines: the last") << QByteArray("first --now\\nsecond\\n") << "second";
    QTest::newRow("an empty line clears an unknown one") << QByteArray("first\\n\\n") << "";
    QTest::newRow("an empty line leaves a word of the ranking")
        << QByteArray("logout\\n\\n") << "logout";
    QTest::newRow("Latin-1") << QByteArray("caf\\351\\n") << QString::fromLatin1("caf\xe9");
    QTest::newRow("nothing") << QByteArray("") << "";
}

void ApplyTest::linesAreOffered()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, pending);

    runScript("printf '" + text + "' >\"$LAST_APPLY_COMMAND\"");
    QCOMPARE(pendingCommand(), pending);
}

void ApplyTest::failedScriptAsksForNothing_data()
{
    QTest::addColumn<QByteArray>("end");

    QTest::newRow("exits with 1") << QByteArray("exit 1");
    QTest::newRow("exits with 255") << QByteArray("exit 255");
    QTest::newRow("ended by a signal") << QByteArray("kill -KILL $$");
}

void ApplyTest::failedScriptAsksForNothing()
{
    QFETCH(QByteArray, end);

    runScript(asksFor("reboot") + "\nprintf %s \"$LAST_APPLY_COMMAND\" >name\n" + end);
    QVERIFY(pendingCommand().isNull());
    QByteArray const name = mWrappers->read("zelvo-view/key", "name");
    QVERIFY(name.startsWith("/tmp/"));
    QVERIFY(!QFile::exists(name));
}

void ApplyTest::scriptThatCannotBeStartedAsksForNothing()
{
    Footprint const before;
    QString const script = mWrappers->addFile("zelvo-view/key", "apply.sh", "#!/bin/sh\n");
    ApplyTask(QFileInfo(script)).run();

    QVERIFY(pendingCommand().isNull());
    QCOMPARE(Footprint().newSince(before), QStringList());
}

void ApplyTest::scriptThatRemovesItsFileAsksForNothing()
{
    runScript(asksFor("reboot") + "\n/bin/rm \"$LAST_APPLY_COMMAND\"");
    QVERIFY(pendingCommand().isNull());
}

void ApplyTest::fileIsReadUpToItsLongest_data()
{
    QTest::addColumn<QByteArray>("size");
    QTest::addColumn<QString>("pending");

    QTest::newRow("128 MiB") << QByteArray("134217728") << "logout";
    QTest::newRow("a byte more: asks for nothing") << QByteArray("134217729") << "";
}

void ApplyTest::fileIsReadUpToItsLongest()
{
    QFETCH(QByteArray, size);
    QFETCH(QString, pending);

    runScript(asksFor("logout") + "\n/usr/bin/truncate -s " + size + " \"$LAST_APPLY_COMMAND\"");
    QCOMPARE(pendingCommand(), pending);
}

void ApplyTest::blankInThePathKeepsTheScriptFromBeingFound()
{
    mWrappers.reset(new TestWrappers("with blank"));
    mKit = &freshKit(*mBackend, mWrappers->directory());
    mWrappers->addScript("zelvo-view/key", "apply.sh", "touch ran");

    apply(*addKey("key"));
    QVERIFY(waitUntilIdle());
    QVERIFY(!mWrappers->exists("zelvo-view/key", "ran"));
}

void ApplyTest::applyTaskLeavesNothingBehind()
{
    runScript("exit 0");
    Footprint const before;
    for (int round = 0; round < 5; ++round) {
        runScript(asksFor("my-tool"));
        runScript(asksFor("my-tool") + "\nexit 1");
        runScript("kill -KILL $$");
        runScript("/bin/rm \"$LAST_APPLY_COMMAND\"");
    }
    QCOMPARE(Footprint().newSince(before), QStringList());
}

void ApplyTest::ranking_data()
{
    QTest::addColumn<QString>("pending");
    QTest::addColumn<QString>("offer");
    QTest::addColumn<QString>("expected");

    struct Row
    {
        char const* pending;
        char const* offer;
        char const* expected;
    };
    // clang-format off
    Row const rows[] = {
        {"reboot",          "reboot",          "reboot"},
        {"reboot",          "logout",          "reboot"},
        {"reboot",          "restart-display", "reboot"},
        {"reboot",          "restart-desktop", "reboot"},
        {"reboot",          "my-tool",         "reboot"},
        {"reboot",          "",                "reboot"},
        {"logout",          "reboot",          "reboot"},
        {"logout",          "logout",          "logout"},
        {"logout",          "restart-display", "logout"},
        {"logout",          "restart-desktop", "logout"},
        {"logout",          "my-tool",         "logout"},
        {"logout",          "",                "logout"},
        {"restart-display", "reboot",          "reboot"},
        {"restart-display", "logout",          "logout"},
        {"restart-display", "restart-display", "restart-display"},
        {"restart-display", "restart-desktop", "restart-display"},
        {"restart-display", "my-tool",         "restart-display"},
        {"restart-display", "",                "restart-display"},
        {"restart-desktop", "reboot",          "reboot"},
        {"restart-desktop", "logout",          "logout"},
        {"restart-desktop", "restart-display", "restart-display"},
        {"restart-desktop", "restart-desktop", "restart-desktop"},
        {"restart-desktop", "my-tool",         "restart-desktop"},
        {"restart-desktop", "",                "restart-desktop"},
        {"my-tool",         "reboot",          "reboot"},
        {"my-tool",         "logout",          "logout"},
        {"my-tool",         "restart-display", "restart-display"},
        {"my-tool",         "restart-desktop", "restart-desktop"},
        {"my-tool",         "your-tool",       "your-tool"},
        {"my-tool",         "",                ""},
        {"",                "reboot",          "reboot"},
        {"",                "logout",          "logout"},
        {"",                "restart-display", "restart-display"},
        {"",                "restart-desktop", "restart-desktop"},
        {"",                "my-tool",         "my-tool"},
        {"",                "",                ""},
        // The words are case-sensitive and whole.
        {"logout",          "Reboot",          "logout"},
        {"Reboot",          "restart-desktop", "restart-desktop"},
        {"reboot now",      "restart-desktop", "restart-desktop"},
        {"restart-desktop", "logout now",      "restart-desktop"},
    };
    // clang-format on
    for (Row const& row : rows) {
        QByteArray const name = QByteArray("'") + row.pending + "' is offered '" + row.offer + "'";
        QTest::newRow(name.constData())
            << QString(row.pending) << QString(row.offer) << QString(row.expected);
    }
    QTest::newRow("nothing is offered 'restart-desktop'") << QString() << "restart-desktop"
                                                          << "restart-desktop";
    QTest::newRow("nothing is offered 'my-tool'") << QString() << "my-tool"
                                                  << "my-tool";
}

void ApplyTest::ranking()
{
    QFETCH(QString, pending);
    QFETCH(QString, offer);
    QFETCH(QString, expected);

    QCOMPARE(lastCommandAfterOffer(pending, offer), expected);
    setPendingCommand(pending);
    DefaultApplyAction::sSetLastApplyCommand(offer);
    QCOMPARE(pendingCommand(), expected);
}

void ApplyTest::offersAreTrimmed_data()
{
    QTest::addColumn<QString>("offer");
    QTest::addColumn<QString>("expected");

    QTest::newRow("blanks around") << "  reboot \t"
                                   << "reboot";
    QTest::newRow("newline") << "reboot\r\n"
                             << "reboot";
    QTest::newRow("blanks inside stay") << " my-tool  --now "
                                        << "my-tool  --now";
    QTest::newRow("blanks alone: empty") << " \n"
                                         << "";
}

void ApplyTest::offersAreTrimmed()
{
    QFETCH(QString, offer);
    QFETCH(QString, expected);

    DefaultApplyAction::sSetLastApplyCommand(offer);
    QCOMPARE(pendingCommand(), expected);
}

void ApplyTest::offersFromSeveralThreads()
{
    char const* const commands[] = {"restart-desktop", "logout", "my-tool", "restart-display"};
    std::vector<std::thread> threads;
    for (char const* const command : commands)
        threads.emplace_back(offerOften, command);
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(pendingCommand(), QString("logout"));
}

void ApplyTest::offerWaitsForItsTurn()
{
    std::atomic<bool> isOffered(false);
    QMutexLocker locker(&DefaultApplyAction::smLastApplyCommandMutex);
    std::thread offering([&isOffered] {
        DefaultApplyAction::sSetLastApplyCommand("logout");
        isOffered = true;
    });
    QTest::qWait(kSettleMs);
    bool const wasOffered = isOffered;
    locker.unlock();
    offering.join();
    QVERIFY(!wasOffered);
    QCOMPARE(pendingCommand(), QString("logout"));
}

void ApplyTest::highestOfARequestRunsOnce_data()
{
    QTest::addColumn<QStringList>("commands");
    QString const desktop = "restart-desktop";
    QString const logout = "logout";
    QString const display = "restart-display";

    QTest::newRow("desktop, logout, display") << (QStringList() << desktop << logout << display);
    QTest::newRow("desktop, display, logout") << (QStringList() << desktop << display << logout);
    QTest::newRow("logout, desktop, display") << (QStringList() << logout << desktop << display);
    QTest::newRow("logout, display, desktop") << (QStringList() << logout << display << desktop);
    QTest::newRow("display, desktop, logout") << (QStringList() << display << desktop << logout);
    QTest::newRow("display, logout, desktop") << (QStringList() << display << logout << desktop);
}

void ApplyTest::highestOfARequestRunsOnce()
{
    QFETCH(QStringList, commands);

    // Each script waits for the one before it.
    QByteArray const go = QFile::encodeName(mWrappers->folder("zelvo-view")) + "/";
    for (int number = 0; number < commands.size(); ++number) {
        QString const name = "key" + QString::number(number);
        QByteArray const before = go + QByteArray::number(number);
        QByteArray const after = go + QByteArray::number(number + 1);
        addKey(name);
        mWrappers->addScript("zelvo-view/" + name, "apply.sh",
                             "while [ ! -e " + before + " ]; do /bin/sleep 0.01; done\n"
                                 + asksFor(commands.at(number).toLatin1()) + "\n: >" + after);
    }
    mWrappers->addFile("zelvo-view", "0", "");
    apply(*mTop);
    QVERIFY(waitUntilIdle());
    QVERIFY(waitUntil([] { return !startedCommands().isEmpty(); }));
    QTest::qWait(kSettleMs);
    QCOMPARE(startedCommands(), QStringList() << "wlox-logoff");
}

void ApplyTest::programOfACommand_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("program");

    QTest::newRow("reboot") << "reboot"
                            << "wlox-reboot";
    QTest::newRow("logout") << "logout"
                            << "wlox-logoff";
    QTest::newRow("restart-display") << "restart-display"
                                     << "wlox-restartX";
    QTest::newRow("restart-desktop") << "restart-desktop"
                                     << "xfce4-panel --restart";
}

void ApplyTest::programOfACommand()
{
    QFETCH(QString, command);
    QFETCH(QString, program);

    QThreadPool pool;
    setPendingCommand(command);
    LastCommandTask(mBackend.data(), &pool, QString()).executeCommand();
    QVERIFY(waitUntil([] { return !startedCommands().isEmpty(); }));
    QCOMPARE(startedCommands(), QStringList() << program);
}

void ApplyTest::unknownCommandRunsAsACommandLine()
{
    QString const tool = mWrappers->addScript("tools", "my-tool",
                                              "cd \"${0%/*}\"\n"
                                              "printf '%s|' \"$@\" >got.part\n"
                                              "mv got.part got");
    QThreadPool pool;
    setPendingCommand(tool + " --now \"two words\"");
    LastCommandTask(mBackend.data(), &pool, QString()).executeCommand();

    QVERIFY(waitUntil([this] { return mWrappers->exists("tools", "got"); }));
    QCOMPARE(mWrappers->read("tools", "got"), QByteArray("--now|two words|"));
}

void ApplyTest::commandHasASessionOfItsOwnAndHearsOfBrokenPipes()
{
    QString const tool = mWrappers->addScript("tools", "my-tool",
                                              "cd \"${0%/*}\"\n"
                                              "cut -d ' ' -f 6 /proc/$$/stat >got.part\n"
                                              "sed -n 's/^SigIgn:.//p' /proc/$$/status >>got.part\n"
                                              "mv got.part got");
    // As Qt has it from the first process that it starts.
    ::signal(SIGPIPE, SIG_IGN);
    QThreadPool pool;
    setPendingCommand(tool);
    LastCommandTask(mBackend.data(), &pool, QString()).executeCommand();

    QVERIFY(waitUntil([this] { return mWrappers->exists("tools", "got"); }));
    QList<QByteArray> const lines = mWrappers->read("tools", "got").split('\n');
    QVERIFY(lines.at(0).toInt() != ::getsid(0));
#if QT_VERSION >= 0x050f00
    // Before, it is the toolkit that starts the program, and that leaves them ignored.
    bool isNumber = false;
    quint64 const ignored = lines.at(1).toULongLong(&isNumber, 16);
    QVERIFY(isNumber);
    QVERIFY((ignored & (1 << (SIGPIPE - 1))) == 0);
#endif
}

void ApplyTest::commandThatCannotStartIsForgotten()
{
    QThreadPool pool;
    setPendingCommand("/nonexistent/my-tool --now");
    LastCommandTask(mBackend.data(), &pool, QString()).executeCommand();

    QVERIFY(pendingCommand().isNull());
}

void ApplyTest::failingScriptRunsNothing()
{
    mWrappers->addScript("zelvo-view/key", "apply.sh", asksFor("reboot") + "\nexit 1");
    apply(*addKey("key"));
    QVERIFY(waitUntilIdle());
    QTest::qWait(kSettleMs);
    QCOMPARE(startedCommands(), QStringList());
}

void ApplyTest::pendingCommandIsResetToNull()
{
    QThreadPool pool;
    setPendingCommand("logout");
    LastCommandTask(mBackend.data(), &pool, QString()).executeCommand();

    QVERIFY(pendingCommand().isNull());
    LastCommandTask(mBackend.data(), &pool, QString()).executeCommand();
    QVERIFY(waitUntil([] { return !startedCommands().isEmpty(); }));
    QTest::qWait(kSettleMs);
    QCOMPARE(startedCommands(), QStringList() << "wlox-logoff");
}

void ApplyTest::handOver_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("pending");
    QTest::addColumn<QByteArray>("after");

    QTest::newRow("waiting command outranks the pending one")
        << QByteArray("logout:wlox-logoff") << "restart-display"
        << QByteArray("logout:wlox-logoff");
    QTest::newRow("pending command outranks the waiting one")
        << QByteArray("restart-display:wlox-restartX") << "reboot"
        << QByteArray("reboot:wlox-reboot");
    QTest::newRow("waiting command alone") << QByteArray("restart-desktop") << ""
                                           << QByteArray("restart-desktop:xfce4-panel --restart");
    QTest::newRow("empty file takes a word")
        << QByteArray("") << "reboot" << QByteArray("reboot:wlox-reboot");
    QTest::newRow("empty file clears an unknown command")
        << QByteArray("") << "my-tool --now" << QByteArray("");
    QTest::newRow("empty file, nothing pending") << QByteArray("") << "" << QByteArray("");
    QTest::newRow("empty first field clears an unknown command")
        << QByteArray(":wlox-reboot\nx") << "my-tool" << QByteArray(":wlox-reboot\nx");
    QTest::newRow("unknown command waiting replaces an unknown one")
        << QByteArray("their-tool --now") << "my-tool" << QByteArray("their-tool --now");
    QTest::newRow("unknown command waiting gives way to a word")
        << QByteArray("their-tool:x") << "logout" << QByteArray("logout:wlox-logoff");
    QTest::newRow("first line alone counts")
        << QByteArray("restart-display\nreboot\n") << "restart-desktop"
        << QByteArray("restart-display:wlox-restartX");
    QTest::newRow("line is trimmed")
        << QByteArray("  logout \r\n") << "restart-desktop" << QByteArray("logout:wlox-logoff");
    QTest::newRow("field is trimmed")
        << QByteArray("logout :x") << "restart-desktop" << QByteArray("logout:wlox-logoff");
    QTest::newRow("line up to its NUL")
        << QByteArray("logout\0x:y", 10) << "restart-desktop" << QByteArray("logout:wlox-logoff");
    QTest::newRow("random bytes give way to a word")
        << QByteArray("\xff\xfe\x01\x80\n", 5) << "reboot" << QByteArray("reboot:wlox-reboot");
}

void ApplyTest::handOver()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, pending);
    QFETCH(QByteArray, after);

    writeFile(kHandOverFile, before);
    setPendingCommand(pending);
    QThreadPool pool;
    LastCommandTask(mBackend.data(), &pool, QString()).executeCommand();

    QCOMPARE(readFile(kHandOverFile), after);
    QVERIFY(pendingCommand().isEmpty());
    QTest::qWait(kSettleMs);
    QCOMPARE(startedCommands(), QStringList());
}

void ApplyTest::handOverIsInTheEncodingOfTheLocale()
{
    // In the sandbox that is UTF-8; what scripts ask for and what waits is read as Latin-1.
    runScript("printf 'caf\\351 --now' >\"$LAST_APPLY_COMMAND\"");
    writeFile(kHandOverFile, "");
    QVERIFY(::chmod(kHandOverFile, S_IWUSR) == 0);
    {
        WithoutPrivilege const withoutPrivilege(kHandOverFile);
        QThreadPool pool;
        LastCommandTask(mBackend.data(), &pool, QString()).executeCommand();
    }
    QVERIFY(::chmod(kHandOverFile, S_IRUSR | S_IWUSR) == 0);
    QCOMPARE(readFile(kHandOverFile), QByteArray("caf\xc3\xa9 --now"));

    writeFile(kHandOverFile, "\xfc\xdf");
    QThreadPool pool;
    LastCommandTask(mBackend.data(), &pool, QString()).executeCommand();
    QCOMPARE(readFile(kHandOverFile), QByteArray("\xc3\xbc\xc3\x9f"));
}

void ApplyTest::handOverFileThatCannotBeReadTakesTheCommandItself()
{
    writeFile(kHandOverFile, "reboot");
    QVERIFY(::chmod(kHandOverFile, S_IWUSR) == 0);
    WithoutPrivilege const withoutPrivilege(kHandOverFile);
    QVERIFY(!QFile(kHandOverFile).open(QIODevice::ReadOnly));
    setPendingCommand("my-tool --now");
    QThreadPool pool;
    LastCommandTask(mBackend.data(), &pool, QString()).executeCommand();

    QVERIFY(::chmod(kHandOverFile, S_IRUSR) == 0);
    QCOMPARE(readFile(kHandOverFile), QByteArray("my-tool --now"));
    QVERIFY(pendingCommand().isNull());
}

void ApplyTest::handOverFileThatCannotBeOpenedKeepsTheCommandFromRunning()
{
    QVERIFY(QDir().mkdir(kHandOverFile));
    pendingCommandIsDropped();
}

void ApplyTest::handOverFileThatIsAPipeIsNotWaitedFor()
{
    QVERIFY(::mkfifo(kHandOverFile, 0600) == 0);
    pendingCommandIsDropped();
}

void ApplyTest::pendingCommandIsDropped()
{
    setPendingCommand("reboot");
    QThreadPool pool;
    LastCommandTask(mBackend.data(), &pool, QString()).executeCommand();

    QVERIFY(pendingCommand().isNull());
    QTest::qWait(kSettleMs);
    QCOMPARE(startedCommands(), QStringList());
}

void ApplyTest::commandIsTakenOnceByTasksThatEndTogether()
{
    setPendingCommand("logout");
    for (int number = 0; number < 8; ++number)
        apply(*mTop);
    QVERIFY(waitUntilIdle());
    QVERIFY(waitUntil([] { return !startedCommands().isEmpty(); }));
    QTest::qWait(kSettleMs);
    QCOMPARE(startedCommands(), QStringList() << "wlox-logoff");
}

void ApplyTest::commandIsTakenInItsTurn()
{
    setPendingCommand("logout");
    QMutexLocker locker(&DefaultApplyAction::smLastApplyCommandMutex);
    apply(*mTop);
    QTest::qWait(kSettleMs);
    QStringList const started = startedCommands();
    locker.unlock();
    QCOMPARE(started, QStringList());
    QVERIFY(waitUntil([] { return startedCommands() == QStringList("wlox-logoff"); }));
}

void ApplyTest::requestReturnsBeforeItsScriptsHaveRun()
{
    ReleaseCounter const counter(kDoneKey);
    mWrappers->addScript("zelvo-view/key", "apply.sh",
                         "while [ ! -e go ]; do /bin/sleep 0.01; done; : >ran");
    apply(*addKey("key"), kDoneKey);

    QVERIFY(!mWrappers->exists("zelvo-view/key", "ran"));
    QTest::qWait(kSettleMs);
    QCOMPARE(counter.count(), 0);
    QVERIFY(mBackend->calls().isEmpty());
    mWrappers->addFile("zelvo-view/key", "go", "");
    QVERIFY(waitUntil([&counter] { return counter.count() == 1; }));
    QVERIFY(mWrappers->exists("zelvo-view/key", "ran"));
}

void ApplyTest::requestTakesItsPoolOffTheStack()
{
    QThreadPool below;
    mKit->pushApplyThreadPool(&below);
    apply(*mTop);
    QVERIFY(mKit->popApplyThreadPool() == &below);
}

void ApplyTest::endIsToldOnce_data()
{
    QTest::addColumn<QString>("pending");
    QTest::addColumn<QStringList>("started");

    QTest::newRow("nothing was asked for") << QString() << QStringList();
    QTest::newRow("a command was run") << "logout" << (QStringList() << "wlox-logoff");
}

void ApplyTest::endIsToldOnce()
{
    QFETCH(QString, pending);
    QFETCH(QStringList, started);

    ReleaseCounter const counter(kDoneKey);
    setPendingCommand(pending);
    apply(*mTop, kDoneKey);
    QVERIFY(waitUntil([&counter] { return counter.count() > 0; }));
    QVERIFY(waitUntilIdle());
    // A program that was started detached takes its time to write down that it was.
    QVERIFY(waitUntil([&started] { return startedCommands().size() >= started.size(); }));
    QTest::qWait(kSettleMs);

    QCOMPARE(counter.count(), 1);
    QCOMPARE(mBackend->calls(),
             QStringList() << QString("set ") + kDoneKey + " 0" << QString("commit ") + kDoneKey);
    QCOMPARE(startedCommands(), started);
}

void ApplyTest::endBeforeAnybodyWaitsIsNotMissed()
{
    QSystemSemaphore semaphore(kDoneKey, 0, QSystemSemaphore::Create);
    apply(*mTop, kDoneKey);
    QVERIFY(waitUntilIdle());

    std::atomic<bool> isAcquired(false);
    std::thread waiting([&semaphore, &isAcquired] {
        semaphore.acquire();
        isAcquired = true;
    });
    bool const wasAcquired = waitUntil([&isAcquired] { return isAcquired.load(); });
    // Else the thread would wait for ever.
    semaphore.release();
    waiting.join();
    QVERIFY(wasAcquired);
}

void ApplyTest::semaphoreIsShutUntilTheKeyIsCommitted()
{
    HeldBackend backend;
    ReleaseCounter const counter(kDoneKey);
    applyOn(backend, *mTop, kDoneKey);
    bool const isCommitted = waitUntil([&backend] { return backend.isCommitting(); });
    QTest::qWait(kSettleMs);
    int const early = counter.count();
    backend.letGo();
    QVERIFY(isCommitted);
    QCOMPARE(early, 0);
    QVERIFY(waitUntil([&counter] { return counter.count() == 1; }));
    QVERIFY(waitUntilIdle());
    QCOMPARE(backend.value(kDoneKey), QString("0"));
}

void ApplyTest::endIsToldThoughTheBackendRefuses()
{
    ReleaseCounter const counter(kDoneKey);
    mBackend->fail("set");
    mBackend->fail("commit");
    apply(*mTop, kDoneKey);
    QVERIFY(waitUntil([&counter] { return counter.count() == 1; }));
    QCOMPARE(mBackend->calls().size(), 2);
}

void ApplyTest::nobodyIsToldWithoutAKey()
{
    apply(*mTop, QString(""));
    apply(*mTop, QString());
    QVERIFY(waitUntilIdle());
    QCOMPARE(mBackend->calls(), QStringList());
}

void ApplyTest::handOverIsDoneWhenTheEndIsTold()
{
    writeFile(kHandOverFile, "");
    mWrappers->addScript("zelvo-view/key", "apply.sh", asksFor("reboot"));
    QSystemSemaphore semaphore(kDoneKey, 0, QSystemSemaphore::Create);
    apply(*addKey("key"), kDoneKey);
    QVERIFY(semaphore.acquire());
    QCOMPARE(readFile(kHandOverFile), QByteArray("reboot:wlox-reboot"));
    QCOMPARE(mBackend->value(kDoneKey), QString("0"));
}

void ApplyTest::keeperAndThreadAreFreed()
{
    apply(*mTop);
    QList<AutoThread*> const keepers = mPlugin->findChildren<AutoThread*>();
    QCOMPARE(keepers.size(), 1);
    QPointer<AutoThread> const keeper = keepers.first();
    // Only by its signal, which needs the event loop.
    QVERIFY(waitUntil([&keeper] { return keeper.isNull(); }));
    QCOMPARE(mPlugin->findChildren<QThreadPool*>().size(), 1);
}

void ApplyTest::requestLeavesNothingBehind()
{
    mWrappers->addScript("zelvo-view/key", "apply.sh", asksFor(""));
    IConfigEntry* const key = addKey("key");
    apply(*key, kDoneKey);
    QVERIFY(waitUntilIdle());

    Footprint const before;
    for (int round = 0; round < 5; ++round)
        apply(*key, kDoneKey);
    QVERIFY(waitUntilIdle());
    QCOMPARE(Footprint().newSince(before), QStringList());
}

void ApplyTest::keeperIsDeletedWithItsThreadBySignal()
{
    QSemaphore gate;
    bool isThreadDeleted = false;
    HeldThread* const thread = new HeldThread(gate, isThreadDeleted);
    QPointer<AutoThread> const keeper = new AutoThread(thread);
    QObject::connect(thread, SIGNAL(finished()), keeper, SLOT(deleteThread()));
    thread->start(QThread::InheritPriority);

    QTest::qWait(kSettleMs);
    QVERIFY(!keeper.isNull());
    gate.release();
    QVERIFY(waitUntil([&keeper] { return keeper.isNull(); }));
    QVERIFY(isThreadDeleted);
}

void ApplyTest::keeperWaitsForItsThread()
{
    QSemaphore gate;
    bool isThreadDeleted = false;
    HeldThread* const thread = new HeldThread(gate, isThreadDeleted);
    QScopedPointer<AutoThread> keeper(new AutoThread(thread));
    thread->start();
    std::thread releaser(releaseLater, std::ref(gate));

    QElapsedTimer timer;
    timer.start();
    keeper.reset();
    bool const wasThreadDeleted = isThreadDeleted;
    qint64 const elapsed = timer.elapsed();
    releaser.join();
    QVERIFY(wasThreadDeleted);
    QVERIFY(elapsed >= kSettleMs / 2);
}

void ApplyTest::keeperWithoutAThread()
{
    QPointer<AutoThread> const keeper = new AutoThread(nullptr);
    QVERIFY(QMetaObject::invokeMethod(keeper, "deleteThread"));
    QVERIFY(keeper.isNull());
}

ZELVO_TEST(ApplyTest)
#include "ApplyTest.moc"
