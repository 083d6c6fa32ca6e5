// SPDX-License-Identifier: MIT

// An apply request from its start to its end: which threads take part, and what is left of it.

#include "plugin/ApplyRequests.h"

#include "actions/ActionKit.h"
#include "actions/default/DefaultApplyAction.h"
#include "plugin/PluginScene.h"
#include "support/TestProgram.h"
#include "support/Waiting.h"
#include "tree/ConfigBranch.h"
#include "tree/ConfigKey.h"

#include <QPointer>
#include <QSemaphore>
#include <QSharedPointer>
#include <QThread>
#include <QThreadPool>
#include <QtTest>

#include <atomic>

namespace {

char const kRoot[] = "root/zelvo-view";
char const kDoneKey[] = "tmp/apply/1";

/// Applies by script, and remembers the pool.
class PoolWatch : public IConfigAction
{
public:
    bool execute(IConfigEntry const& entry, QVariant& data) override
    {
        mPool = ActionKit::instance()->topApplyTreadPool();
        mOwner = mPool->parent();
        return DefaultApplyAction().execute(entry, data);
    }

    bool isPoolGone() const { return mPool.isNull(); }

    /// Of the pool, when it was used.
    QObject const* owner() const { return mOwner; }

private:
    QPointer<QThreadPool> mPool;
    QObject const* mOwner;
};

/// A thread that a plugin may live in.
class Home : public QThread
{
public:
    enum Kind { NotStarted, WithoutEvents, WithEvents };

    explicit Home(Kind kind)
        : mKind(kind)
        , mHasRun(false)
    {
        if (mKind != NotStarted)
            start();
    }

    ~Home() override { end(); }

    void end()
    {
        quit();
        mGate.release();
        wait();
        // The thread sanitizer knows nothing of the wait, but of this.
        static_cast<void>(mHasRun.load());
    }

protected:
    void run() override
    {
        if (mKind == WithEvents)
            exec();
        else
            mGate.acquire();
        mHasRun = true;
    }

private:
    Kind const mKind;
    std::atomic<bool> mHasRun;
    QSemaphore mGate;
};

/// Runs no event loop meanwhile.
template <typename Condition> bool sleepUntil(Condition holds)
{
    int const longestMs = 10000;
    int const stepMs = 5;
    for (int sleptMs = 0; !holds() && sleptMs < longestMs; sleptMs += stepMs)
        QTest::qSleep(stepMs);
    return holds();
}

void addHomes()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("with an event loop") << int(Home::WithEvents);
    QTest::newRow("without one") << int(Home::WithoutEvents);
    QTest::newRow("that does not run") << int(Home::NotStarted);
}

} // namespace

class ApplyRequestsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void endOfTheRequestsWaitsForTheirScripts();
    void poolBelongsToThePlugin();
    void poolGoesAtTheEnd();
    void poolsOfEndedRequestsGoWithoutTheOthers();
    void scriptsOfOneRequestRunSideBySide();

    void pluginInAnotherThreadIsServed_data() { addHomes(); }
    void pluginInAnotherThreadIsServed();
    void poolGoesInTheThreadOfThePlugin();
    void pluginThatLeavesItsThreadWaitsForItsApplies_data() { addHomes(); }
    void pluginThatLeavesItsThreadWaitsForItsApplies();
    void pluginIsDeletedInItsThreadInTheMiddle();

private:
    void holdScript(QString const& name) const;
    void releaseScript(QString const& name) const;
    bool isOver() const { return mScene->backend.value(kDoneKey) == "0"; }

    QScopedPointer<PluginScene> mScene;
    QSharedPointer<PoolWatch> mPool;
};

void ApplyRequestsTest::init()
{
    mScene.reset(new PluginScene(kRoot));
    mPool = QSharedPointer<PoolWatch>(new PoolWatch);
    ActionKit::instance()->registerApplyAction("zelvo-view/radio/ssid", mPool.data());
}

void ApplyRequestsTest::cleanup()
{
    mScene.reset();
}

/// Has the script of a key of the area "radio" wait.
void ApplyRequestsTest::holdScript(QString const& name) const
{
    mScene->wrappers.addScript("zelvo-view/radio/" + name, "apply.sh",
                               "while [ ! -e go ]; do /bin/sleep 0.01; done; : >ran");
}

void ApplyRequestsTest::releaseScript(QString const& name) const
{
    mScene->wrappers.addFile("zelvo-view/radio/" + name, "go", "");
}

void ApplyRequestsTest::endOfTheRequestsWaitsForTheirScripts()
{
    mScene->wrappers.addScript("zelvo-view/radio/ssid", "apply.sh", "/bin/sleep 0.3; : >ran");
    ConfigBranch top("zelvo-view", nullptr);
    ConfigBranch* const radio = new ConfigBranch("radio", &top);
    ConfigKey* const key = new ConfigKey("ssid", QString(), radio);
    QObject owner;
    {
        ApplyRequests requests(owner);
        requests.start(*key, &mScene->backend, kDoneKey);
        QVERIFY(!isOver());
        QCOMPARE(owner.children().size(), 1);
    }
    QVERIFY(isOver());
    QVERIFY(mScene->wrappers.exists("zelvo-view/radio/ssid", "ran"));
    QVERIFY(owner.children().isEmpty());
}

void ApplyRequestsTest::poolBelongsToThePlugin()
{
    mScene->wrappers.addScript("zelvo-view/radio/ssid", "apply.sh", "exit 0");
    QCOMPARE(mScene->apply(mScene->at("radio/ssid")), 0);
    QVERIFY(mPool->owner() == mScene->plugin.data());
}

void ApplyRequestsTest::poolGoesAtTheEnd()
{
    holdScript("ssid");
    QCOMPARE(mScene->plugin->apply(mScene->at("radio/ssid"), kDoneKey), 0);
    QTest::qWait(50);
    QVERIFY(!mPool->isPoolGone());
    releaseScript("ssid");
    QVERIFY(waitUntil([this] { return mPool->isPoolGone(); }));
    QVERIFY(isOver());
}

void ApplyRequestsTest::poolsOfEndedRequestsGoWithoutTheOthers()
{
    holdScript("ssid");
    holdScript("security");
    QCOMPARE(mScene->apply(mScene->at("radio/security")), 0);
    QCOMPARE(mScene->apply(mScene->at("radio/ssid")), 0);
    releaseScript("ssid");
    QVERIFY(waitUntil([this] { return mPool->isPoolGone(); }));
    QVERIFY(!mScene->wrappers.exists("zelvo-view/radio/security", "ran"));
    QVERIFY(!mScene->plugin->children().isEmpty());

    releaseScript("security");
    QVERIFY(waitUntil([this] { return mScene->plugin->children().isEmpty(); }));
    QVERIFY(mScene->wrappers.exists("zelvo-view/radio/security", "ran"));
}

/// On one processor the toolkit's pool runs one after the other: the first then waits in vain.
void ApplyRequestsTest::scriptsOfOneRequestRunSideBySide()
{
    bool const areConcurrent = QThread::idealThreadCount() > 1;
    QByteArray const looks = areConcurrent ? "2000" : "20";
    QStringList const names = QStringList() << "security"
                                            << "passphrase";
    for (QString const& name : names) {
        QByteArray const other = "../" + names.at(name == names.at(0) ? 1 : 0).toLatin1();
        mScene->wrappers.addScript("zelvo-view/radio/" + name, "apply.sh",
                                   ": >here\nlooks=0\n"
                                   "until [ -e "
                                       + other + "/here ] || [ $looks = " + looks
                                       + " ]; do /bin/sleep 0.01; looks=$((looks + 1)); done\n"
                                         "[ -e "
                                       + other + "/here ] && : >met");
    }
    QCOMPARE(mScene->plugin->apply(mScene->at("radio"), kDoneKey), 0);
    QVERIFY(sleepUntil([this] { return isOver(); }));
    int met = 0;
    for (QString const& name : names)
        met += mScene->wrappers.exists("zelvo-view/radio/" + name, "met") ? 1 : 0;
    QCOMPARE(met, areConcurrent ? 2 : 1);
}

void ApplyRequestsTest::pluginInAnotherThreadIsServed()
{
    QFETCH(int, kind);

    Home home(static_cast<Home::Kind>(kind));
    mScene->plugin->moveToThread(&home);
    mScene->wrappers.addScript("zelvo-view/radio/ssid", "apply.sh", "echo x >>runs");
    for (int request = 0; request < 3; ++request)
        QCOMPARE(mScene->apply(mScene->at("radio/ssid")), 0);
    QCOMPARE(mScene->plugin->apply(mScene->at("radio/ssid"), kDoneKey), 0);
    QVERIFY(sleepUntil([this] { return isOver(); }));
    home.end();
    mScene->plugin.reset();
    QVERIFY(mPool->isPoolGone());
    QCOMPARE(mScene->wrappers.read("zelvo-view/radio/ssid", "runs"), QByteArray("x\nx\nx\nx\n"));
}

void ApplyRequestsTest::poolGoesInTheThreadOfThePlugin()
{
    Home home(Home::WithEvents);
    mScene->plugin->moveToThread(&home);
    mScene->wrappers.addScript("zelvo-view/radio/ssid", "apply.sh", "exit 0");
    QCOMPARE(mScene->apply(mScene->at("radio/ssid")), 0);
    // No event is served here.
    QVERIFY(sleepUntil([this] { return mPool->isPoolGone(); }));
    home.end();
    mScene->plugin.reset();
}

void ApplyRequestsTest::pluginThatLeavesItsThreadWaitsForItsApplies()
{
    QFETCH(int, kind);

    {
        Home home(static_cast<Home::Kind>(kind));
        mScene->plugin->moveToThread(&home);
        mScene->wrappers.addScript("zelvo-view/radio/ssid", "apply.sh", "/bin/sleep 0.3; : >ran");
        QCOMPARE(mScene->plugin->apply(mScene->at("radio/ssid"), kDoneKey), 0);
        home.end();
        mScene->plugin.reset();
    }
    QVERIFY(mScene->wrappers.exists("zelvo-view/radio/ssid", "ran"));
    QVERIFY(isOver());
    QVERIFY(mPool->isPoolGone());
}

void ApplyRequestsTest::pluginIsDeletedInItsThreadInTheMiddle()
{
    Home home(Home::WithEvents);
    QPointer<QObject> const plugin = mScene->plugin.data();
    plugin->moveToThread(&home);
    mScene->wrappers.addScript("zelvo-view/radio/ssid", "apply.sh", "/bin/sleep 0.3; : >ran");
    QCOMPARE(mScene->plugin->apply(mScene->at("radio/ssid"), kDoneKey), 0);
    mScene->plugin.take()->deleteLater();
    QVERIFY(sleepUntil([&plugin] { return plugin.isNull(); }));
    QVERIFY(sleepUntil([this] { return mPool->isPoolGone(); }));
    QVERIFY(isOver());
    QVERIFY(mScene->wrappers.exists("zelvo-view/radio/ssid", "ran"));
}

ZELVO_TEST(ApplyRequestsTest)
#include "ApplyRequestsTest.moc"
