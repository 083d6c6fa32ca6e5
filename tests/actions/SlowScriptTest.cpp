// SPDX-License-Identifier: MIT

#include "actions/default/ApplyTask.h"
#include "actions/default/DefaultActions.h"
#include "actions/default/DefaultApplyAction.h"
#include "actions/default/Wrapper.h"
#include "plugin/ActivityReports.h"
#include "support/Footprint.h"
#include "support/TestBackend.h"
#include "support/TestKit.h"
#include "support/TestProgram.h"
#include "support/TestWrappers.h"
#include "support/Waiting.h"
#include "tree/ConfigBranch.h"
#include "tree/ConfigKey.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QMutexLocker>
#include <QSharedPointer>
#include <QtTest>

#include <thread>
#include <vector>

#include <errno.h>
#include <signal.h>

namespace {

/// An apply script as an action that waits for it.
class AwaitedApplyAction : public IConfigAction
{
public:
    bool execute(IConfigEntry const& entry, QVariant&) override
    {
        QString const script = Wrapper::path(entry, Wrapper::kApply);
        ApplyTask(QFileInfo(script)).run();
        return true;
    }
};

template <typename Action> IConfigAction* newAction()
{
    return new Action;
}

/// An operation that a script serves, and what it makes of the data "before" when the script counts
/// as one that succeeded, having printed "half".
struct Operation
{
    char const* name;
    char const* script;
    IConfigAction* (*newAction)();
    QVariant data;
};

Operation const kOperations[] = {
    {"isVisible", "isVisible.sh", newAction<DefaultIsVisibleAction>, true},
    {"value", "get.sh", newAction<DefaultValueAction>, "half"},
    {"setValue", "set.sh", newAction<DefaultSetValueAction>, "half"},
    {"create", "create.sh", newAction<DefaultCreateAction>, "before"},
    {"del", "del.sh", newAction<DefaultDelAction>, "before"},
    {"commit", "commit.sh", newAction<DefaultCommitAction>, "before"},
    {"apply", "apply.sh", newAction<AwaitedApplyAction>, "before"},
};

/// A way not to end.
struct Hang
{
    char const* name;
    char const* body;
};

Hang const kHangs[] = {
    {"waits for a child, deaf to signals", "trap '' HUP INT QUIT TERM\nsleep 3600 &\nwait"},
    {"waits for a pipeline", "sleep 3600 | cat"},
    {"waits for its input", "cat"},
    {"has closed its channels", "exec <&- >&- 2>&-\nsleep 3600"},
    {"has stopped itself", "kill -STOP $$"},
};

/// The run of one script that does not end, on a thread of its own.
class Run
{
public:
    Run(TestWrappers const& wrappers, Operation const& operation, Hang const& hang)
        : mTop(operation.name, nullptr)
        // The path of a script is read as a command line.
        , mKey(new ConfigKey(QString(hang.name).remove(' '), QString(), &mTop))
        , mAction(operation.newAction())
        , mResult(false)
        , mData("before")
    {
        QByteArray const body
            = "echo $$ >pid\n"
              "[ ! \"$LAST_APPLY_COMMAND\" ] || echo logout >\"$LAST_APPLY_COMMAND\"\n"
              "printf half\n";
        wrappers.addScript(mKey->path(), operation.script, body + hang.body);
        mThread = std::thread(&Run::execute, this);
    }

    ~Run() { join(); }

    void join()
    {
        if (mThread.joinable())
            mThread.join();
    }

    QString folder() const { return mKey->path(); }
    bool result() const { return mResult; }
    QVariant data() const { return mData; }

private:
    Q_DISABLE_COPY(Run)

    void execute() { mResult = mAction->execute(*mKey, mData); }

    ConfigBranch mTop;
    ConfigKey* mKey;
    QScopedPointer<IConfigAction> mAction;
    bool mResult;
    QVariant mData;
    std::thread mThread;
};

bool exists(int pid)
{
    return ::kill(pid, 0) == 0 || errno != ESRCH;
}

} // namespace

/// Hears, on the threads of the scripts, how each has ended.
class SlowScriptListener : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void scriptHasRun(QString const&, QString const& ending, int, bool, int, qlonglong)
    {
        QMutexLocker const locker(&mMutex);
        mEndings.append(ending);
    }

    QStringList endings() const
    {
        QMutexLocker const locker(&mMutex);
        return mEndings;
    }

private:
    mutable QMutex mMutex;
    QStringList mEndings;
};

/// Takes the thirty seconds that a script may take, once for all of its scripts: they run at the
/// same time.
class SlowScriptTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void scriptPastItsTimeCountsAsSuccessAndIsKilled_data();
    void scriptPastItsTimeCountsAsSuccessAndIsKilled();
    void requestsOfAnApplyScriptPastItsTimeCount();
    void hostIsToldOfEach();
    void nothingIsLeftBehind();

private:
    TestBackend mBackend;
    TestWrappers mWrappers;
    SlowScriptListener mListener;
    QScopedPointer<ActivityReports> mReports;
    QScopedPointer<Footprint> mBefore;
    std::vector<QSharedPointer<Run>> mRuns;
};

void SlowScriptTest::initTestCase()
{
    freshKit(mBackend, mWrappers.directory());
    // What is opened for the first process of all stays open for the next.
    mWrappers.addScript("key", "set.sh", "exit 0");
    QVariant data;
    QVERIFY(DefaultSetValueAction().execute(ConfigKey("key", QString(), nullptr), data));

    mReports.reset(new ActivityReports(mListener, nullptr));
    mBefore.reset(new Footprint);
    QElapsedTimer timer;
    timer.start();
    for (Operation const& operation : kOperations) {
        for (Hang const& hang : kHangs)
            mRuns.push_back(QSharedPointer<Run>(new Run(mWrappers, operation, hang)));
    }
    for (QSharedPointer<Run> const& run : mRuns)
        run->join();
    mReports.reset();
    qint64 const elapsed = timer.elapsed();
    QVERIFY2(elapsed >= 30000 && elapsed < 60000, qPrintable(QString::number(elapsed)));
}

void SlowScriptTest::cleanupTestCase()
{
    mRuns.clear();
}

void SlowScriptTest::scriptPastItsTimeCountsAsSuccessAndIsKilled_data()
{
    QTest::addColumn<int>("index");
    // One element: Qt 4 has no columns of plain variants.
    QTest::addColumn<QVariantList>("data");

    int index = 0;
    for (Operation const& operation : kOperations) {
        for (Hang const& hang : kHangs) {
            QByteArray const name = QByteArray(operation.name) + " script that " + hang.name;
            QTest::newRow(name.constData()) << index++ << (QVariantList() << operation.data);
        }
    }
}

void SlowScriptTest::scriptPastItsTimeCountsAsSuccessAndIsKilled()
{
    QFETCH(int, index);
    QFETCH(QVariantList, data);

    Run const& run = *mRuns[static_cast<std::size_t>(index)];
    QVERIFY(run.result());
    QCOMPARE(run.data(), data.first());

    int const pid = mWrappers.read(run.folder(), "pid").trimmed().toInt();
    QVERIFY(pid > 0);
    QVERIFY(!exists(pid));
    // What the script has started is killed with it, and reaped by whoever adopts it.
    QVERIFY(waitUntil([pid] { return !exists(-pid); }));
}

void SlowScriptTest::requestsOfAnApplyScriptPastItsTimeCount()
{
    QMutexLocker const locker(&DefaultApplyAction::smLastApplyCommandMutex);
    QCOMPARE(DefaultApplyAction::smLastApplyCommand, QString("logout"));
}

void SlowScriptTest::hostIsToldOfEach()
{
    QCOMPARE(mListener.endings().size(), int(mRuns.size()));
    QCOMPARE(mListener.endings().count("timed out"), int(mRuns.size()));
}

void SlowScriptTest::nothingIsLeftBehind()
{
    // The files of the scripts lie below a directory that was there before.
    QCOMPARE(Footprint().newSince(*mBefore), QStringList());
}

ZELVO_TEST(SlowScriptTest)
#include "SlowScriptTest.moc"
