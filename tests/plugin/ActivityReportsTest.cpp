// SPDX-License-Identifier: MIT

// What a host is told that asks the plugin to tell.

#include "plugin/ActivityReports.h"

#include "actions/IActionDescription.h"
#include "actions/IConfigAction.h"
#include "actions/default/ApplyTask.h"
#include "actions/default/Wrapper.h"
#include "plugin/PluginScene.h"
#include "support/LastCommandWatch.h"
#include "support/ReleaseCounter.h"
#include "support/TestProgram.h"

#include <QMutex>
#include <QMutexLocker>
#include <QThread>

namespace {

char const kRoot[] = "root/zelvo-view";
int const kRequest = 7;

} // namespace

class Listener : public QObject
{
    Q_OBJECT

public:
    QStringList told() const
    {
        QMutexLocker const locker(&mMutex);
        return mTold;
    }

    Q_INVOKABLE void scriptHasComplained(QString const& script, QByteArray const& errorOutput)
    {
        tell(script.section('/', -1) + " says " + QString::fromUtf8(errorOutput).trimmed());
    }

    Q_INVOKABLE void lastCommandIsSettled(QString const& request, QString const& command,
                                          QString const& outcome, QString const& file)
    {
        tell(request + ", " + command + ", " + outcome + ", " + file);
    }

    Q_INVOKABLE int currentRequest() const { return kRequest; }

    Q_INVOKABLE void resumeRequest(int request)
    {
        bool const isElsewhere = QThread::currentThread() != thread();
        tell(QString("resume %1%2").arg(request).arg(isElsewhere ? " elsewhere" : ""));
    }

    Q_INVOKABLE void scriptHasRun(QString const& script, QString const& ending, int exitCode,
                                  bool isSuccess, int, qlonglong outputBytes)
    {
        QString const name = script.section('/', -1);
        QString const end = ending == "exited" ? QString("exit %1").arg(exitCode) : ending;
        tell(QString("%1: %2, %3, %4 bytes")
                 .arg(name, end, isSuccess ? "success" : "failure")
                 .arg(outputBytes));
    }

private:
    void tell(QString const& line)
    {
        QMutexLocker const locker(&mMutex);
        mTold << line;
    }

    mutable QMutex mMutex;
    QStringList mTold;
};

/// Hears where values come from.
class SourceListener : public QObject
{
    Q_OBJECT

public:
    QStringList told() const { return mTold; }

    Q_INVOKABLE void valueWasRead(QString const& key, QString const& source)
    {
        mTold << key.section('/', 2) + ": " + source;
    }

private:
    QStringList mTold;
};

namespace {

/// Always has a value.
class FixedAction : public IConfigAction
{
public:
    bool execute(IConfigEntry const&, QVariant& data) override
    {
        data = "fixed";
        return true;
    }
};

BackEnd const kBoard = {"board", nullptr, "the board"};

class BoardAction : public FixedAction, public DescribedAction
{
public:
    BoardAction() { describeAs("BoardAction").backEnd = &kBoard; }
};

} // namespace

/// A listener that has none of the methods.
class DeafListener : public QObject
{
    Q_OBJECT
};

class ActivityReportsTest : public QObject
{
    Q_OBJECT

private slots:
    void runOfAScriptIsTold_data();
    void runOfAScriptIsTold();
    void scriptThatCannotStartIsTold();
    void scriptWithTooLongAnEnvironmentIsTold();
    void applyScriptRunsUnderTheRequestThatQueuedIt();
    void errorOutputIsToldBeforeTheRun();
    void lastCommandIsToldBeforeTheEnd_data();
    void lastCommandIsToldBeforeTheEnd();
    void requestWithoutLastCommandTellsOfNone();
    void sourceOfAValueIsTold_data();
    void sourceOfAValueIsTold();
    void sourceOfAValueForAScriptIsToldBefore();
    void sourceIsTheActionsOwnWord();
    void sourceOfAnActionThatSaysNoWordIsEmpty();
    void listenerWithoutMethodsChangesNothing();
    void pluginThatIsGoneTellsNothing();
    void pluginThatGoesLeavesAnotherOneItsListener();
    void applyThatEndsUnderANewKitIsNotTold();
    void scriptThatStartsUnderANewKitIsNotTold();

private:
    static void listen(PluginScene& scene, QObject& listener)
    {
        scene.plugin->setProperty("activityListener", QVariant::fromValue(&listener));
        scene.load(scene.defaults, scene.baseDir());
    }
};

void ActivityReportsTest::runOfAScriptIsTold_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("told");

    QTest::newRow("a value") << QByteArray("printf home") << "get.sh: exit 0, success, 4 bytes";
    QTest::newRow("a failure") << QByteArray("exit 3") << "get.sh: exit 3, failure, 0 bytes";
    QTest::newRow("a signal") << QByteArray("kill -9 $$") << "get.sh: signal, failure, 0 bytes";
}

void ActivityReportsTest::runOfAScriptIsTold()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, told);

    Listener listener;
    PluginScene scene(kRoot);
    listen(scene, listener);
    scene.wrappers.addScript("zelvo-view/radio/ssid", "get.sh", body);
    QCOMPARE(scene.get(scene.at("radio/ssid")), 0);
    QCOMPARE(listener.told(), QStringList(told));
}

void ActivityReportsTest::scriptThatCannotStartIsTold()
{
    Listener listener;
    PluginScene scene(kRoot);
    listen(scene, listener);
    scene.wrappers.addFile("zelvo-view/radio/ssid", "get.sh", "#!/bin/sh\n");
    QCOMPARE(scene.get(scene.at("radio/ssid")), 0);
    QCOMPARE(listener.told(), QStringList("get.sh: not started, success, 0 bytes"));
}

void ActivityReportsTest::scriptWithTooLongAnEnvironmentIsTold()
{
    Listener listener;
    PluginScene scene(kRoot);
    listen(scene, listener);
    scene.wrappers.addScript("zelvo-view/radio/ssid", "isVisible.sh", "exit 0");
    qputenv("ZELVO_TEST", QByteArray(1 << 20, 'x'));
    int const code = scene.get(scene.at("radio/ssid"));
    ::unsetenv("ZELVO_TEST");
    QCOMPARE(code, 1);
    QCOMPARE(listener.told(), QStringList("isVisible.sh: environment too long, failure, 0 bytes"));
}

void ActivityReportsTest::applyScriptRunsUnderTheRequestThatQueuedIt()
{
    Listener listener;
    {
        PluginScene scene(kRoot);
        listen(scene, listener);
        scene.wrappers.addScript("zelvo-view/radio/ssid", "apply.sh", "exit 0");
        QCOMPARE(scene.plugin->apply(scene.at("radio/ssid"), QString()), 0);
        // The end of the plugin is the end of the apply.
    }
    QCOMPARE(listener.told(),
             QStringList() << "resume 7 elsewhere"
                           << "apply.sh: exit 0, success, 0 bytes");
}

void ActivityReportsTest::errorOutputIsToldBeforeTheRun()
{
    Listener listener;
    PluginScene scene(kRoot);
    listen(scene, listener);
    scene.wrappers.addScript("zelvo-view/radio/ssid", "get.sh", "echo no radio >&2; exit 3");
    QCOMPARE(scene.get(scene.at("radio/ssid")), 0);
    QCOMPARE(listener.told(),
             QStringList() << "get.sh says no radio"
                           << "get.sh: exit 3, failure, 0 bytes");
}

void ActivityReportsTest::lastCommandIsToldBeforeTheEnd_data()
{
    QTest::addColumn<QByteArray>("asked");
    QTest::addColumn<QByteArray>("handOver");
    QTest::addColumn<QString>("told");

    QString const file = ", /tmp/last-apply-command";
    QTest::newRow("a word") << QByteArray("logout") << QByteArray() << "wlox-logoff, started, ";
    QTest::newRow("a command line")
        << QByteArray("/bin/true --now") << QByteArray() << "/bin/true --now, started, ";
    QTest::newRow("a command line of nothing")
        << QByteArray("\"\"") << QByteArray() << "\"\", not started, ";
    QTest::newRow("handed over") << QByteArray("logout") << QByteArray("file")
                                 << "logout:wlox-logoff, handed over" + file;
    QTest::newRow("not handed over") << QByteArray("reboot") << QByteArray("directory")
                                     << "reboot:wlox-reboot, not handed over" + file;
}

void ActivityReportsTest::lastCommandIsToldBeforeTheEnd()
{
    QFETCH(QByteArray, asked);
    QFETCH(QByteArray, handOver);
    QFETCH(QString, told);

    QDir const tmp("/tmp");
    QFile file(tmp.filePath("last-apply-command"));
    if (handOver == "directory")
        QVERIFY(tmp.mkdir("last-apply-command"));
    else if (!handOver.isEmpty())
        QVERIFY(file.open(QIODevice::WriteOnly));
    Listener listener;
    {
        PluginScene scene(kRoot);
        listen(scene, listener);
        scene.wrappers.addScript("zelvo-view/radio/ssid", "apply.sh", asksFor(asked));
        ReleaseCounter const counter("tmp/apply/reports");
        QCOMPARE(scene.plugin->apply(scene.at("radio/ssid"), "tmp/apply/reports"), 0);
        // No event is served here, and the plugin is not waited for.
        while (counter.count() == 0)
            QTest::qSleep(1);
        QCOMPARE(listener.told().last(), "tmp/apply/reports, " + told);
    }
    tmp.rmdir("last-apply-command");
    file.remove();
}

void ActivityReportsTest::requestWithoutLastCommandTellsOfNone()
{
    Listener listener;
    {
        PluginScene scene(kRoot);
        listen(scene, listener);
        QCOMPARE(scene.apply(scene.at("radio/ssid")), 0);
    }
    QCOMPARE(listener.told(), QStringList());
}

void ActivityReportsTest::sourceOfAValueIsTold_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("registryValue");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("told");

    QTest::newRow("script") << QByteArray("printf false") << "1"
                            << "usb/enable" << QStringList("usb/enable: script");
    QTest::newRow("registry") << QByteArray() << "1"
                              << "usb/enable" << QStringList("usb/enable: registry");
    QTest::newRow("registry for a script that fails")
        << QByteArray("printf false; exit 1") << "1"
        << "usb/enable" << QStringList("usb/enable: registry");
    QTest::newRow("empty value") << QByteArray("exit 0") << "1"
                                 << "usb/enable" << QStringList("usb/enable: script");
    QTest::newRow("default") << QByteArray("exit 1") << QString() << "usb/enable" << QStringList();
    QTest::newRow("listing") << QByteArray("exit 0") << "1"
                             << "usb" << QStringList();
}

void ActivityReportsTest::sourceOfAValueIsTold()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, registryValue);
    QFETCH(QString, key);
    QFETCH(QStringList, told);

    SourceListener listener;
    PluginScene scene(kRoot);
    listen(scene, listener);
    if (!script.isEmpty())
        scene.wrappers.addScript("zelvo-view/usb/enable", "get.sh", script);
    if (!registryValue.isNull())
        scene.backend.addValue("root/USB/root/mass-storage/allowed", registryValue);
    QCOMPARE(scene.get(scene.at(key)), 0);
    QCOMPARE(listener.told(), told);
}

void ActivityReportsTest::sourceOfAValueForAScriptIsToldBefore()
{
    SourceListener listener;
    PluginScene scene(kRoot);
    listen(scene, listener);
    scene.wrappers.addScript("zelvo-view/radio/ssid", "get.sh", "printf home");
    scene.wrappers.addScript("zelvo-view/usb/enable", "get.sh", "exit 1");
    scene.wrappers.addFile("zelvo-view/usb/enable", "get.env",
                           "SSID=" + scene.at("radio/ssid").toLatin1() + "\n");
    scene.backend.addValue("root/USB/root/mass-storage/allowed", "1");
    QCOMPARE(scene.get(scene.at("usb/enable")), 0);
    QCOMPARE(listener.told(),
             QStringList() << "radio/ssid: script"
                           << "usb/enable: registry");
}

void ActivityReportsTest::sourceIsTheActionsOwnWord()
{
    SourceListener listener;
    PluginScene scene(kRoot);
    listen(scene, listener);
    BoardAction action;
    ActionKit::instance()->registerValueAction("zelvo-view/radio/ssid", &action);
    QCOMPARE(scene.get(scene.at("radio/ssid")), 0);
    QCOMPARE(listener.told(), QStringList("radio/ssid: board"));
}

void ActivityReportsTest::sourceOfAnActionThatSaysNoWordIsEmpty()
{
    SourceListener listener;
    PluginScene scene(kRoot);
    listen(scene, listener);
    FixedAction action;
    ActionKit::instance()->registerValueAction("zelvo-view/radio/ssid", &action);
    QCOMPARE(scene.get(scene.at("radio/ssid")), 0);
    QCOMPARE(listener.told(), QStringList("radio/ssid: "));
}

void ActivityReportsTest::listenerWithoutMethodsChangesNothing()
{
    DeafListener listener;
    PluginScene scene(kRoot);
    listen(scene, listener);
    scene.wrappers.addScript("zelvo-view/radio/ssid", "get.sh", "printf home");
    QStringList answer;
    QCOMPARE(scene.get(scene.at("radio/ssid"), &answer), 0);
    QCOMPARE(answer, QStringList("value home"));
}

void ActivityReportsTest::pluginThatIsGoneTellsNothing()
{
    Listener listener;
    {
        PluginScene scene(kRoot);
        listen(scene, listener);
    }
    TestWrappers const wrappers;
    QVERIFY(Wrapper(wrappers.addScript("key", "get.sh", "exit 0")).run());
    QCOMPARE(listener.told(), QStringList());
}

void ActivityReportsTest::pluginThatGoesLeavesAnotherOneItsListener()
{
    Listener first;
    Listener second;
    PluginScene scene(kRoot);
    {
        PluginScene former(kRoot);
        listen(former, first);
        listen(scene, second);
    }
    scene.wrappers.addScript("zelvo-view/radio/ssid", "get.sh", "printf home");
    QCOMPARE(scene.get(scene.at("radio/ssid")), 0);
    QCOMPARE(first.told(), QStringList());
    QCOMPARE(second.told(), QStringList("get.sh: exit 0, success, 4 bytes"));
}

void ActivityReportsTest::applyThatEndsUnderANewKitIsNotTold()
{
    Listener listener;
    {
        PluginScene scene(kRoot);
        listen(scene, listener);
        scene.wrappers.addScript("zelvo-view/radio/ssid", "apply.sh",
                                 ": >here; until [ -e go ]; do /bin/sleep 0.01; done\n"
                                     + asksFor("logout"));
        QCOMPARE(scene.apply(scene.at("radio/ssid")), 0);
        while (!scene.wrappers.exists("zelvo-view/radio/ssid", "here"))
            QTest::qSleep(1);
        freshKit(scene.backend, scene.wrappers.directory());
        scene.wrappers.addFile("zelvo-view/radio/ssid", "go", "");
    }
    QCOMPARE(listener.told(), QStringList("resume 7 elsewhere"));
}

void ActivityReportsTest::scriptThatStartsUnderANewKitIsNotTold()
{
    Listener listener;
    PluginScene scene(kRoot);
    ActivityReports reports(listener, nullptr);
    QScopedPointer<QRunnable> const task(reports.scriptIsQueued(new ApplyTask(
        QFileInfo(scene.wrappers.addScript("zelvo-view/radio/ssid", "apply.sh", "exit 0")))));
    freshKit(scene.backend, scene.wrappers.directory());
    task->run();
    QCOMPARE(listener.told(), QStringList());
}

ZELVO_TEST(ActivityReportsTest)
#include "ActivityReportsTest.moc"
