// What a host is told that asks the plugin to tell.

#include "actions/default/Wrapper.h"
#include "plugin/PluginScene.h"

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
    void applyScriptRunsUnderTheRequestThatQueuedIt();
    void listenerWithoutMethodsChangesNothing();
    void pluginThatIsGoneTellsNothing();

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

QTEST_MAIN(ActivityReportsTest)
#include "ActivityReportsTest.moc"
