// SPDX-License-Identifier: MIT

// Scripts that go wrong in other ways than by an exit status, each through the plugin: a request
// comes to what it comes to with a script that succeeds or fails, and leaves nothing behind.

#include "faults/ScriptRequests.h"
#include "support/Footprint.h"
#include "support/TestProgram.h"
#include "support/Waiting.h"

#include <QDir>
#include <QtTest>

#include <atomic>
#include <functional>
#include <thread>

#include <errno.h>
#include <malloc.h>
#include <signal.h>

namespace {

int const kMebi = 1024 * 1024;
int const kHundredMebi = 100 * kMebi;

QByteArray const kPrintHundredMebi("head -c 104857600 /dev/zero | tr '\\000' x");

/// Rows for every kind of script, each with every one of `bodies`.
struct Body
{
    char const* name;
    char const* body;
};

template <int kCount> void addRows(Body const (&bodies)[kCount])
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QByteArray>("body");
    for (int kind = 0; kind < ScriptRequests::kKinds; ++kind) {
        for (Body const& body : bodies) {
            QByteArray const name = QByteArray(ScriptRequests::script(kind)) + " " + body.name;
            QTest::newRow(name.constData()) << kind << QByteArray(body.body);
        }
    }
}

void addKindRows()
{
    QTest::addColumn<int>("kind");
    for (int kind = 0; kind < ScriptRequests::kKinds; ++kind)
        QTest::newRow(ScriptRequests::script(kind)) << kind;
}

bool exists(int pid)
{
    return ::kill(pid, 0) == 0 || errno != ESRCH;
}

/// A line of this process's state about its memory, in bytes.
qint64 memory(char const* line)
{
    QFile file("/proc/self/status");
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    QString const state = QString::fromLatin1(file.readAll());
    return state.section(line, 1, 1).section("kB", 0, 0).trimmed().toLongLong() * 1024;
}

qint64 residentMemory()
{
    ::malloc_trim(0);
    return memory("VmRSS:");
}

/// The most that was resident since the last call.
qint64 takePeakMemory()
{
    qint64 const peak = memory("VmHWM:");
    QFile file("/proc/self/clear_refs");
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
    return peak;
}

} // namespace

/// The address sanitizer keeps freed memory for a while, which here would be taken for kept output.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer asks for this name.
extern "C" char const* __asan_default_options()
{
    return "quarantine_size_mb=1:thread_local_quarantine_size_kb=64";
}

class ScriptFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void successAndFailureDiffer_data();
    void successAndFailureDiffer();
    void signalIsAFailure_data();
    void signalIsAFailure();
    void closedChannelsAreNoFailure_data();
    void closedChannelsAreNoFailure();
    void childThatStaysIsNotWaitedFor_data();
    void childThatStaysIsNotWaitedFor();
    void outputOfAChildThatStaysIsNotWaitedFor();
    void scriptThatIsReplacedRunsToItsEnd_data();
    void scriptThatIsReplacedRunsToItsEnd();
    void scriptThatIsRemovedRunsToItsEnd_data();
    void scriptThatIsRemovedRunsToItsEnd();
    void folderThatIsRemovedUnderItsScript_data();
    void folderThatIsRemovedUnderItsScript();
    void hundredMebibytesAreAValue();
    void memoryOfALongValueIsGivenBack();
    void hundredMebibytesToNobodyAreNotKept_data();
    void hundredMebibytesToNobodyAreNotKept();
    void hundredMebibytesOfErrorsAreNotKeptForAListener_data();
    void hundredMebibytesOfErrorsAreNotKeptForAListener();
    void outputWithoutEndIsAFailure_data();
    void outputWithoutEndIsAFailure();

private:
    /// Runs the request of a script that waits half way until `change` is done.
    QStringList runWhile(int kind, std::function<void()> const& change);

    /// That nothing is kept of what a script writes to a channel that nobody reads.
    void checkNothingIsKept(int kind, QByteArray const& channel);

    QScopedPointer<ScriptRequests> mRequests;
    QScopedPointer<Footprint> mBefore;
};

void ScriptFaultsTest::initTestCase()
{
    QVERIFY2(!qgetenv("VANTORA_SANDBOX_RECORD").isEmpty(), "runs in the sandbox only");
    // What is opened for the first process of all stays open for the next.
    ScriptRequests requests;
    requests.runSucceeding(ScriptRequests::Get);
    requests.runSucceeding(ScriptRequests::Apply);
}

void ScriptFaultsTest::init()
{
    mBefore.reset(new Footprint);
    mRequests.reset(new ScriptRequests);
}

void ScriptFaultsTest::cleanup()
{
    mRequests.reset();
    QCOMPARE(Footprint().newSince(*mBefore), QStringList());
}

void ScriptFaultsTest::successAndFailureDiffer_data()
{
    addKindRows();
}

/// Without it, the comparisons of the other tests would show nothing.
void ScriptFaultsTest::successAndFailureDiffer()
{
    QFETCH(int, kind);

    QStringList const succeeding = mRequests->runSucceeding(kind);
    QStringList const failing = mRequests->runFailing(kind);
    // A script that deletes may answer what it likes.
    QCOMPARE(succeeding == failing, kind == ScriptRequests::Del);
    QVERIFY(kind != ScriptRequests::Del || mRequests->runWithout(kind) != failing);
}

void ScriptFaultsTest::signalIsAFailure_data()
{
    Body const bodies[] = {
        {"hangs up", "kill -HUP $$"},
        {"is interrupted", "kill -INT $$"},
        {"quits", "ulimit -c 0; kill -QUIT $$"},
        {"aborts", "ulimit -c 0; kill -ABRT $$"},
        {"is killed", "kill -KILL $$"},
        {"breaks a memory access", "ulimit -c 0; kill -SEGV $$"},
        {"breaks a pipe", "kill -PIPE $$"},
        {"runs into an alarm", "kill -ALRM $$"},
        {"is terminated", "kill -TERM $$"},
        {"has a signal of its own", "kill -USR1 $$"},
        {"is killed with its children", "sleep 300 & kill -KILL 0"},
        {"has a child that a signal ended", "sh -c 'kill -SEGV $$'"},
    };
    addRows(bodies);
}

void ScriptFaultsTest::signalIsAFailure()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, body);

    QStringList const failing = mRequests->runFailing(kind);
    mRequests->addScript(kind, ScriptRequests::asking(kind) + "printf half\n" + body);
    QCOMPARE(mRequests->run(kind), failing);
}

void ScriptFaultsTest::closedChannelsAreNoFailure_data()
{
    Body const bodies[] = {
        {"closes its input", "exec <&-"},
        {"closes its output", "exec >&-"},
        {"closes its error output", "exec 2>&-"},
        {"closes all of them and goes on for a while", "exec <&- >&- 2>&-\nsleep 0.2"},
    };
    addRows(bodies);
}

void ScriptFaultsTest::closedChannelsAreNoFailure()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, body);

    QStringList const succeeding = mRequests->runSucceeding(kind);
    mRequests->addScript(kind, body + "\n" + ScriptRequests::asking(kind) + ": >ran");
    QCOMPARE(mRequests->run(kind), succeeding);
    QVERIFY(mRequests->scene.wrappers.exists(ScriptRequests::folder(kind), "ran"));
}

void ScriptFaultsTest::childThatStaysIsNotWaitedFor_data()
{
    Body const bodies[] = {
        {"leaves a child that holds its channels", "sleep 300 &"},
        {"leaves a child without channels", "sleep 300 <&- >&- 2>&- &"},
        {"leaves a child in a session of its own", "setsid sleep 300 &"},
    };
    addRows(bodies);
}

void ScriptFaultsTest::childThatStaysIsNotWaitedFor()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, body);

    QStringList const succeeding = mRequests->runSucceeding(kind);
    mRequests->addScript(kind, ScriptRequests::asking(kind) + body + "\necho $! >child");
    QCOMPARE(mRequests->run(kind), succeeding);

    QByteArray const written
        = mRequests->scene.wrappers.read(ScriptRequests::folder(kind), "child");
    int const child = written.trimmed().toInt();
    QVERIFY(child > 0);
    // It may be a service that the script was to start.
    QVERIFY(exists(child));
    ::kill(child, SIGKILL);
    QVERIFY(waitUntil([child] { return !exists(child); }));
}

void ScriptFaultsTest::outputOfAChildThatStaysIsNotWaitedFor()
{
    mRequests->addScript(ScriptRequests::Get,
                         "{ while [ ! -e go ]; do sleep 0.01; done; printf late; : >printed; } &\n"
                         "printf value");
    QCOMPARE(mRequests->run(ScriptRequests::Get),
             QStringList() << "0"
                           << "value value");
    TestWrappers const& wrappers = mRequests->scene.wrappers;
    wrappers.addFile(ScriptRequests::folder(ScriptRequests::Get), "go", "");
    // Nobody reads it, so the child may well end at that.
    QStringList const children = Footprint().newSince(*mBefore);
    for (QString const& line : children)
        QVERIFY2(!line.startsWith("child"), qPrintable(line));
}

QStringList ScriptFaultsTest::runWhile(int kind, std::function<void()> const& change)
{
    TestWrappers const& wrappers = mRequests->scene.wrappers;
    QString const folder = ScriptRequests::folder(kind);
    // Outside the folder, which may be what changes.
    QString const gate = wrappers.directory().path() + "/";
    mRequests->addScript(kind,
                         ": >" + gate.toLatin1() + "started\n" + "until [ -e " + gate.toLatin1()
                             + "go ]; do sleep 0.01; done\n" + ScriptRequests::asking(kind)
                             + "exit 0");
    std::atomic<bool> isOver(false);
    std::thread changer([&] {
        while (!isOver && !QFile::exists(gate + "started"))
            QTest::qSleep(1);
        change();
        QFile(gate + "go").open(QIODevice::WriteOnly);
    });
    QStringList const outcome = mRequests->run(kind);
    isOver = true;
    changer.join();
    QFile::remove(gate + "started");
    QFile::remove(gate + "go");
    return outcome;
}

void ScriptFaultsTest::scriptThatIsReplacedRunsToItsEnd_data()
{
    addKindRows();
}

void ScriptFaultsTest::scriptThatIsReplacedRunsToItsEnd()
{
    QFETCH(int, kind);

    QStringList const succeeding = mRequests->runSucceeding(kind);
    QStringList const failing = mRequests->runFailing(kind);
    QStringList const outcome = runWhile(kind, [this, kind] {
        TestWrappers const& wrappers = mRequests->scene.wrappers;
        QString const folder = ScriptRequests::folder(kind);
        QString const script = wrappers.folder(folder) + "/" + ScriptRequests::script(kind);
        QString const next = wrappers.addScript(folder, "next", "exit 1");
        ::rename(qPrintable(next), qPrintable(script));
    });
    QCOMPARE(outcome, succeeding);
    // The next request runs the next script.
    QCOMPARE(mRequests->run(kind), failing);
}

void ScriptFaultsTest::scriptThatIsRemovedRunsToItsEnd_data()
{
    addKindRows();
}

void ScriptFaultsTest::scriptThatIsRemovedRunsToItsEnd()
{
    QFETCH(int, kind);

    QStringList const without = mRequests->runWithout(kind);
    QStringList const succeeding = mRequests->runSucceeding(kind);
    QStringList const outcome = runWhile(kind, [this, kind] {
        QString const folder = mRequests->scene.wrappers.folder(ScriptRequests::folder(kind));
        QFile::remove(folder + "/" + ScriptRequests::script(kind));
    });
    QCOMPARE(outcome, succeeding);
    QCOMPARE(mRequests->run(kind), without);
}

void ScriptFaultsTest::folderThatIsRemovedUnderItsScript_data()
{
    addKindRows();
}

void ScriptFaultsTest::folderThatIsRemovedUnderItsScript()
{
    QFETCH(int, kind);

    QStringList const without = mRequests->runWithout(kind);
    QStringList const succeeding = mRequests->runSucceeding(kind);
    QStringList const outcome = runWhile(kind, [this, kind] {
        QString const folder = mRequests->scene.wrappers.folder(ScriptRequests::folder(kind));
        QFile::remove(folder + "/" + ScriptRequests::script(kind));
        QVERIFY(QDir().rmdir(folder));
    });
    QCOMPARE(outcome, succeeding);
    QCOMPARE(mRequests->run(kind), without);
}

void ScriptFaultsTest::hundredMebibytesAreAValue()
{
    ScriptRequests& requests = *mRequests;
    QString const key = requests.scene.at("usb/enable");
    requests.addScript(ScriptRequests::Get, kPrintHundredMebi);
    QMap<QString, _RegNodeType> result;
    QCOMPARE(requests.scene.plugin->get(key, result, REG_PARAM_VALUE, ""), 0);
    QCOMPARE(result.size(), 1);
    QVERIFY(result.constBegin().key() == QString(kHundredMebi, 'x'));

    requests.addScript(ScriptRequests::Set, kPrintHundredMebi);
    requests.addScript(ScriptRequests::Commit, "wc -c <\"$1\" >size");
    QCOMPARE(requests.scene.set(key, "x"), 0);
    QCOMPARE(requests.scene.commit(key), 0);
    QByteArray const size
        = requests.scene.wrappers.read(ScriptRequests::folder(ScriptRequests::Commit), "size");
    QCOMPARE(size.trimmed(), QByteArray::number(kHundredMebi));
}

void ScriptFaultsTest::memoryOfALongValueIsGivenBack()
{
    mRequests->addScript(ScriptRequests::Get, kPrintHundredMebi);
    mRequests->run(ScriptRequests::Get);
    qint64 const before = residentMemory();
    for (int round = 0; round < 3; ++round)
        mRequests->run(ScriptRequests::Get);
    qint64 const grown = residentMemory() - before;
    QVERIFY2(grown < kHundredMebi, qPrintable(QString::number(grown)));
}

void ScriptFaultsTest::hundredMebibytesToNobodyAreNotKept_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QByteArray>("channel");
    for (int kind = 0; kind < ScriptRequests::kKinds; ++kind) {
        QByteArray const script = ScriptRequests::script(kind);
        QTest::newRow(script + ", error output") << kind << QByteArray(">&2");
        if (kind != ScriptRequests::Get && kind != ScriptRequests::Set)
            QTest::newRow(script + ", output") << kind << QByteArray("");
    }
}

void ScriptFaultsTest::hundredMebibytesToNobodyAreNotKept()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, channel);

    checkNothingIsKept(kind, channel);
}

void ScriptFaultsTest::hundredMebibytesOfErrorsAreNotKeptForAListener_data()
{
    addKindRows();
}

void ScriptFaultsTest::hundredMebibytesOfErrorsAreNotKeptForAListener()
{
    QFETCH(int, kind);

    QObject listener;
    PluginScene& scene = mRequests->scene;
    scene.plugin->setProperty("activityListener", QVariant::fromValue(&listener));
    scene.load(scene.defaults, scene.baseDir());
    checkNothingIsKept(kind, ">&2");
    mRequests.reset();
}

void ScriptFaultsTest::checkNothingIsKept(int kind, QByteArray const& channel)
{
    QStringList const succeeding = mRequests->runSucceeding(kind);
    mRequests->addScript(kind,
                         ScriptRequests::asking(kind) + "{ " + kPrintHundredMebi + "; }" + channel);
    takePeakMemory();
    qint64 const before = residentMemory();
    QCOMPARE(mRequests->run(kind), succeeding);
    qint64 const grown = takePeakMemory() - before;
    QVERIFY2(grown < kHundredMebi / 2, qPrintable(QString::number(grown)));
}

void ScriptFaultsTest::outputWithoutEndIsAFailure_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("get.sh") << int(ScriptRequests::Get);
    QTest::newRow("set.sh") << int(ScriptRequests::Set);
}

void ScriptFaultsTest::outputWithoutEndIsAFailure()
{
    QFETCH(int, kind);

    QStringList const failing = mRequests->runFailing(kind);
    mRequests->addScript(kind, "echo $$ >pid\nyes");
    QCOMPARE(mRequests->run(kind), failing);
    QByteArray const pid = mRequests->scene.wrappers.read(ScriptRequests::folder(kind), "pid");
    int const group = -pid.trimmed().toInt();
    QVERIFY(waitUntil([group] { return !exists(group); }));
}

ZELVO_TEST(ScriptFaultsTest)
#include "ScriptFaultsTest.moc"
