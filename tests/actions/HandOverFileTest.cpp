// SPDX-License-Identifier: MIT

// The file into which a last command is handed over lies where everybody may write.

#include "actions/default/HandOverFile.h"

#include "actions/default/LastCommandTask.h"
#include "support/LastCommandWatch.h"
#include "support/TestBackend.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QThreadPool>
#include <QtTest>

#include <atomic>
#include <functional>
#include <initializer_list>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace {

char const kHandOverFile[] = "/tmp/last-apply-command";
char const kOtherFile[] = "/tmp/another-file";
// More than the first line, which is read: rewritten it is another text.
char const kOtherContent[] = "wlox-logoff other\nand more\n";
char const kOffered[] = "wlox-logoff offered";
char const kTemporaryName[] = "/tmp/being-made";

// How long nothing must happen for a test to believe that nothing does.
int const kSettleMs = 200;

QByteArray readFile(char const* name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(char const* name, QByteArray const& content)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/// Whether this process has the file open.
bool isOpen(char const* name)
{
    QFileInfoList const descriptors
        = QDir("/proc/self/fd").entryInfoList(QDir::Files | QDir::System);
    for (QFileInfo const& descriptor : descriptors) {
        if (descriptor.symLinkTarget() == name)
            return true;
    }
    return false;
}

void makeFile(char const* name)
{
    writeFile(name, kOffered);
}

void makeLink(char const* name)
{
    static_cast<void>(::symlink(kOtherFile, name));
}

void makeHardLink(char const* name)
{
    static_cast<void>(::link(kOtherFile, name));
}

/// What is made under the name, and taken from it, as fast as can be.
typedef void (*Maker)(char const* name);

void changeAlways(Maker maker, std::atomic<bool> const& isOver)
{
    for (unsigned round = 0; !isOver; ++round) {
        maker(kTemporaryName);
        // The name is given by one step, and taken by one.
        ::rename(kTemporaryName, kHandOverFile);
        if (round % 2 == 0)
            ::unlink(kHandOverFile);
        // A rename onto a link to the same file does nothing.
        ::unlink(kTemporaryName);
    }
}

void makeInTurn(char const* name)
{
    Maker const makers[] = {makeFile, makeLink, makeHardLink};
    static unsigned turn = 0;
    makers[turn++ % 3](name);
}

} // namespace

class HandOverFileTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void fileIsReadAndReplaced();
    void replacingKeepsTheFileItself();
    void missingFileIsNotThere();
    void whatIsNoFileOfItsOwnIsNotUsed_data();
    void whatIsNoFileOfItsOwnIsNotUsed();
    void fileThatVanishesIsNotMissing();
    void fileThatVanishesInTheMiddleKeepsTheCommandFromRunning();
    void fileThatIsExchangedMeanwhileIsLeftAlone();
    void fileLongerThanAnyOutputOffersNothing();

    void textOfTheFileIsNeverStarted();
    void noOtherFileIsEverWritten_data();
    void noOtherFileIsEverWritten();

private:
    enum { InTurn, Link, HardLink };

    static void carryOut(QString const& pending);
    static void carryOutBesideChanges(Maker maker, QString const& pending, int tries);
};

void HandOverFileTest::initTestCase()
{
    // Elsewhere the commands would be the machine's own.
    QVERIFY2(!qgetenv("VANTORA_SANDBOX_RECORD").isEmpty(), "runs in the sandbox only");
}

void HandOverFileTest::init()
{
    forgetStartedCommands();
    QVERIFY(writeFile(kOtherFile, kOtherContent));
}

void HandOverFileTest::cleanup()
{
    setPendingCommand(QString());
    for (char const* const name : {kHandOverFile, kOtherFile, kTemporaryName}) {
        QFile::remove(name);
        QDir().rmdir(name);
    }
}

void HandOverFileTest::carryOut(QString const& pending)
{
    TestBackend backend;
    QThreadPool pool;
    setPendingCommand(pending);
    LastCommandTask(&backend, &pool, QString()).executeCommand();
}

void HandOverFileTest::fileIsReadAndReplaced()
{
    QVERIFY(writeFile(kHandOverFile, "restart-desktop:xfce4-panel --restart\nx"));
    HandOverFile file;
    QString command;
    QVERIFY(file.exists());
    QVERIFY(file.read(command));
    QCOMPARE(command, QString("restart-desktop"));
    QVERIFY(file.replace("reboot"));
    QCOMPARE(readFile(kHandOverFile), QByteArray("reboot"));
}

void HandOverFileTest::replacingKeepsTheFileItself()
{
    QVERIFY(writeFile(kHandOverFile, ""));
    QVERIFY(::chmod(kHandOverFile, 0604) == 0);
    struct stat before = {};
    QVERIFY(::stat(kHandOverFile, &before) == 0);
    QVERIFY(HandOverFile().replace("logout"));
    struct stat after = {};
    QVERIFY(::stat(kHandOverFile, &after) == 0);
    QVERIFY(before.st_ino == after.st_ino);
    QVERIFY(before.st_mode == after.st_mode);
}

void HandOverFileTest::missingFileIsNotThere()
{
    HandOverFile file;
    QString command("as before");
    QVERIFY(!file.exists());
    QVERIFY(!file.read(command));
    QVERIFY(!file.replace("reboot"));
    QCOMPARE(command, QString("as before"));
    QVERIFY(!QFile::exists(kHandOverFile));
}

void HandOverFileTest::whatIsNoFileOfItsOwnIsNotUsed_data()
{
    QTest::addColumn<QByteArray>("kind");

    QTest::newRow("link to a file") << QByteArray("link");
    QTest::newRow("link to nothing") << QByteArray("dangling link");
    QTest::newRow("hard link") << QByteArray("hard link");
    QTest::newRow("pipe") << QByteArray("pipe");
    QTest::newRow("directory") << QByteArray("directory");
}

void HandOverFileTest::whatIsNoFileOfItsOwnIsNotUsed()
{
    QFETCH(QByteArray, kind);

    if (kind == "link")
        makeLink(kHandOverFile);
    else if (kind == "dangling link")
        QVERIFY(::symlink("/tmp/nothing", kHandOverFile) == 0);
    else if (kind == "hard link")
        makeHardLink(kHandOverFile);
    else if (kind == "pipe")
        QVERIFY(::mkfifo(kHandOverFile, 0600) == 0);
    else
        QVERIFY(QDir().mkdir(kHandOverFile));
    {
        HandOverFile file;
        QString command;
        QVERIFY(file.exists());
        QVERIFY(!file.read(command));
        QVERIFY(!file.replace("reboot"));
    }
    carryOut("reboot");

    QVERIFY(pendingCommand().isNull());
    QCOMPARE(readFile(kOtherFile), QByteArray(kOtherContent));
    QVERIFY(!QFile::exists("/tmp/nothing"));
    QTest::qWait(kSettleMs);
    QCOMPARE(startedCommands(), QStringList());
}

void HandOverFileTest::fileThatVanishesIsNotMissing()
{
    QVERIFY(writeFile(kHandOverFile, kOffered));
    HandOverFile file;
    QVERIFY(::unlink(kHandOverFile) == 0);
    QString command;
    QVERIFY(file.exists());
    QVERIFY(file.read(command));
    QCOMPARE(command, QString(kOffered));
    static_cast<void>(file.replace("reboot"));
    QVERIFY(!QFile::exists(kHandOverFile));
}

void HandOverFileTest::fileThatVanishesInTheMiddleKeepsTheCommandFromRunning()
{
    // One that was just made is looked at for some time: long enough to take it away.
    for (int round = 0; round < 10; ++round) {
        QVERIFY(writeFile(kHandOverFile, ""));
        std::atomic<bool> isOver(false);
        std::thread task([&isOver] {
            carryOut("reboot");
            isOver = true;
        });
        while (!isOver && !isOpen(kHandOverFile)) { }
        ::unlink(kHandOverFile);
        task.join();
    }
    QTest::qWait(kSettleMs);
    QCOMPARE(startedCommands(), QStringList());
}

void HandOverFileTest::fileThatIsExchangedMeanwhileIsLeftAlone()
{
    QVERIFY(writeFile(kHandOverFile, ""));
    HandOverFile file;
    QVERIFY(::rename(kOtherFile, kHandOverFile) == 0);
    static_cast<void>(file.replace("reboot"));
    QCOMPARE(readFile(kHandOverFile), QByteArray(kOtherContent));
}

void HandOverFileTest::fileLongerThanAnyOutputOffersNothing()
{
    QVERIFY(writeFile(kHandOverFile, "logout\n"));
    QVERIFY(::truncate(kHandOverFile, 134217729) == 0);
    carryOut("restart-display");
    QCOMPARE(readFile(kHandOverFile), QByteArray("restart-display:wlox-restartX"));
}

void HandOverFileTest::carryOutBesideChanges(Maker maker, QString const& pending, int tries)
{
    std::atomic<bool> isOver(false);
    std::thread changing(changeAlways, maker, std::ref(isOver));
    for (int round = 0; round < tries && readFile(kOtherFile) == kOtherContent; ++round)
        carryOut(pending);
    isOver = true;
    changing.join();
}

void HandOverFileTest::textOfTheFileIsNeverStarted()
{
    carryOutBesideChanges(makeFile, QString(), 3000);
    QTest::qWait(kSettleMs);
    QCOMPARE(startedCommands(), QStringList());
}

void HandOverFileTest::noOtherFileIsEverWritten_data()
{
    QTest::addColumn<int>("maker");
    QTest::addColumn<QString>("pending");
    QTest::addColumn<int>("tries");

    QTest::newRow("links and files, nothing pending") << int(InTurn) << QString() << 3000;
    QTest::newRow("links, nothing pending") << int(Link) << QString() << 3000;
    QTest::newRow("hard links, nothing pending") << int(HardLink) << QString() << 3000;
    // Started as well, whenever nothing has the name.
    QTest::newRow("links and files, a command is pending") << int(InTurn) << "reboot" << 300;
}

void HandOverFileTest::noOtherFileIsEverWritten()
{
    QFETCH(int, maker);
    QFETCH(QString, pending);
    QFETCH(int, tries);

    Maker const makers[] = {makeInTurn, makeLink, makeHardLink};
    carryOutBesideChanges(makers[maker], pending, tries);
    QCOMPARE(readFile(kOtherFile), QByteArray(kOtherContent));
}

ZELVO_TEST(HandOverFileTest)
#include "HandOverFileTest.moc"
