// SPDX-License-Identifier: MIT

// What the scripts inherit of the plugin's open files: nothing, however many of them are started at
// the same time and whatever the other threads have open then.

#include "plugin/PluginScene.h"
#include "support/TestProgram.h"
#include "support/Waiting.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <chrono>
#include <thread>

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

int const kRounds = 2;
int const kRequests = 8;
int const kScripts = 20;

char const kSession[] = "{11111111-1111-1111-1111-111111111111}";

// One line for each descriptor: its number and, behind an arrow, what it is open for.
QByteArray const kList("exec /bin/ls -l /proc/self/fd >>descriptors");

/// The folder of an apply script, as a view key.
QString folder(int script)
{
    return "zelvo-view/storm/key" + QString::number(script);
}

/// The numbers of the descriptors that every child of this process gets: the three channels, and
/// what whoever started it meant its children to have.
QStringList inheritedAnyway()
{
    QStringList numbers = QStringList() << "0"
                                        << "1"
                                        << "2";
    QStringList const open
        = QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    for (QString const& number : open) {
        int const flags = ::fcntl(number.toInt(), F_GETFD);
        if (flags >= 0 && !(flags & FD_CLOEXEC) && !numbers.contains(number))
            numbers << number;
    }
    return numbers;
}

template <typename Function> Function ofSystem(char const* symbol)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, symbol));
}

/// Lets the other threads start scripts while the file is open.
int keptOpen(int file)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return file;
}

} // namespace

// They stand before the system's own, and give what those give, only later.
extern "C" {
int slowMkstemp(char* name) __asm__("mkstemp");
int slowMkostemp(char* name, int flags) __asm__("mkostemp");
}

int slowMkstemp(char* name)
{
    return keptOpen(ofSystem<int (*)(char*)>("mkstemp")(name));
}

int slowMkostemp(char* name, int flags)
{
    return keptOpen(ofSystem<int (*)(char*, int)>("mkostemp")(name, flags));
}

class ScriptDescriptorsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void scriptInheritsNothing_data();
    void scriptInheritsNothing();
    void scriptsOfManyRequestsInheritNothing();

private:
    /// Checks what the scripts of a folder have written down.
    ///
    /// @param runs  how often one has run.
    void checkDescriptors(QString const& viewKey, int runs) const;

    QStringList mAnyway;
    QScopedPointer<PluginScene> mScene;
};

void ScriptDescriptorsTest::initTestCase()
{
    mAnyway = inheritedAnyway();
}

void ScriptDescriptorsTest::init()
{
    mScene.reset(new PluginScene("root/zelvo-view"));
}

void ScriptDescriptorsTest::checkDescriptors(QString const& viewKey, int runs) const
{
    QRegExp const ownListing("/proc/[0-9]+/fd");
    QString const text = QFile::decodeName(mScene->wrappers.read(viewKey, "descriptors"));
    QStringList const lines = text.split('\n');
    int listings = 0;
    for (QString const& line : lines) {
        int const arrow = line.indexOf(" -> ");
        if (arrow < 0)
            continue;
        if (QRegExp(ownListing).exactMatch(line.mid(arrow + 4)))
            ++listings;
        else
            QVERIFY2(mAnyway.contains(line.left(arrow).section(' ', -1)), qPrintable(line));
    }
    QCOMPARE(listings, runs);
}

void ScriptDescriptorsTest::scriptInheritsNothing_data()
{
    QTest::addColumn<QString>("script");

    QTest::newRow("isVisible") << "isVisible.sh";
    QTest::newRow("get") << "get.sh";
    QTest::newRow("set") << "set.sh";
    QTest::newRow("create") << "create.sh";
    QTest::newRow("del") << "del.sh";
    QTest::newRow("commit") << "commit.sh";
    QTest::newRow("apply") << "apply.sh";
}

void ScriptDescriptorsTest::scriptInheritsNothing()
{
    QFETCH(QString, script);

    QString const viewKey
        = script == "create.sh" ? "zelvo-view/rdp/sessions/{uuid}" : "zelvo-view/usb/enable";
    QString const key = mScene->at("usb/enable");
    mScene->wrappers.addScript(viewKey, script, kList);
    if (script == "isVisible.sh" || script == "get.sh")
        mScene->get(key);
    else if (script == "create.sh")
        mScene->create(mScene->at("rdp/sessions/") + kSession);
    else if (script == "del.sh")
        mScene->del(key);
    else if (script == "apply.sh")
        mScene->plugin->apply(key, QString());
    else
        mScene->set(key, "false");
    if (script == "commit.sh")
        mScene->commit(key);
    QVERIFY(waitUntil([this] { return mScene->plugin->children().isEmpty(); }));
    checkDescriptors(viewKey, 1);
}

void ScriptDescriptorsTest::scriptsOfManyRequestsInheritNothing()
{
    for (int script = 0; script < kScripts; ++script) {
        mScene->defaults.addValue("root/" + folder(script), "");
        mScene->wrappers.addScript(folder(script), "apply.sh", kList);
    }
    // Their value files are open meanwhile.
    mScene->wrappers.addScript("zelvo-view/radio/ssid", "set.sh", kList);
    mScene->wrappers.addScript("zelvo-view/radio/ssid", "commit.sh", kList);
    int values = 0;
    for (int round = 0; round < kRounds; ++round) {
        for (int request = 0; request < kRequests; ++request)
            QCOMPARE(mScene->plugin->apply(mScene->at("storm"), QString()), 0);
        do {
            QCOMPARE(mScene->set(mScene->at("radio/ssid"), "a name"), 0);
            QCOMPARE(mScene->commit(mScene->at("radio/ssid")), 0);
            ++values;
            QCoreApplication::processEvents();
        } while (!mScene->plugin->children().isEmpty());
    }
    checkDescriptors("zelvo-view/radio/ssid", 2 * values);
    for (int script = 0; script < kScripts; ++script)
        checkDescriptors(folder(script), kRounds * kRequests);
}

ZELVO_TEST(ScriptDescriptorsTest)
#include "ScriptDescriptorsTest.moc"
