// SPDX-License-Identifier: MIT

#include "host/OpenRegistry.h"
#include "support/DiskSyncs.h"
#include "support/TestDirectory.h"
#include "support/TestProgram.h"

#include <initializer_list>

#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

class RegistryDatabaseTest : public QObject
{
    Q_OBJECT

private slots:
    void committedValuesAreThereAgain();
    void everyCommitIsOnTheDiskWhenItIsDone();
    void uncommittedChangesAreGone();
    void everyTextComesBackAsItWas_data();
    void everyTextComesBackAsItWas();
    void keysThatAreNoLongerDeclaredAreKeptOutOfSight();
    void fileThatCannotBeOpenedStaysAsItWas_data();
    void fileThatCannotBeOpenedStaysAsItWas();
    void fileWithADamagedPageIsRefused();
    void newerVersionIsRefused();
    void pathsThatCannotBeOpened_data();
    void pathsThatCannotBeOpened();
    void unusualFileName();
    void secondHostIsRefused();
    void failedWriteKeepsTheChangesPending();
    void killedHost_data();
    void killedHost();
    void hostKilledWhileItsJournalWasMovedIntoTheFile();
    void hostKilledWhileItMadeTheFile();
    void journalBesideAForeignFileIsNoExcuse_data();
    void journalBesideAForeignFileIsNoExcuse();
};

namespace {

QString const kUsb = QLatin1String("root/USB/root/mass-storage/allowed");
QString const kSession = kRdp + QLatin1Char('/') + kFirst;

void runSql(QString const& file, QByteArray const& sql)
{
    sqlite3* connection = nullptr;
    QCOMPARE(sqlite3_open(QFile::encodeName(file).constData(), &connection), SQLITE_OK);
    int const result = sqlite3_exec(connection, sql.constData(), nullptr, nullptr, nullptr);
    QByteArray const message = sqlite3_errmsg(connection);
    sqlite3_close(connection);
    QVERIFY2(result == SQLITE_OK, message.constData());
}

QByteArray makeDatabase(QByteArray const& sql)
{
    TestDirectory scratch;
    runSql(scratch.file("made.db"), sql);
    return scratch.read("made.db");
}

// Makes a database in one transaction, and copies the file and its journal before that has ended,
// when the first page is not written yet.
void makeHalf(QString const& file)
{
    TestDirectory scratch;
    QString const made = scratch.file("made.db");
    sqlite3* connection = nullptr;
    QCOMPARE(sqlite3_open(QFile::encodeName(made).constData(), &connection), SQLITE_OK);
    char const* const sql = "PRAGMA cache_size = 1; BEGIN EXCLUSIVE; CREATE TABLE a (b);"
                            "INSERT INTO a VALUES (randomblob(100000))";
    QCOMPARE(sqlite3_exec(connection, sql, nullptr, nullptr, nullptr), SQLITE_OK);
    QVERIFY(QFile::copy(made, file));
    QVERIFY(QFile::copy(made + "-journal", file + "-journal"));
    sqlite3_close(connection);
}

QString refusal(QString const& database)
{
    RegistryHost registry;
    QString error;
    if (!registry.loadDefaults(DEFAULTS_DIR, error))
        qFatal("%s", qPrintable(error));
    return registry.open(database, error) ? QString() : error;
}

QString sessionNumber(int number)
{
    QString const name = QLatin1String("{11111111-1111-4111-8111-%1}");
    return kRdp + QLatin1Char('/') + name.arg(number, 12, 16, QLatin1Char('0'));
}

// Commits session after session, each with two values in one commit, and tells its number after the
// commit has returned; between the commits there is always something pending. Ends only by a
// signal.
void commitForEver(QString const& database, int report)
{
    OpenRegistry registry(database);
    for (int number = 1;; ++number) {
        QString const session = sessionNumber(number);
        QString const value = QString::number(number);
        registry.create(session);
        registry.set(session + "/label", value);
        registry.set(session + "/address", value);
        if (registry.commit(session) != 0)
            _exit(1);
        if (write(report, &number, sizeof(number)) != static_cast<ssize_t>(sizeof(number)))
            _exit(1);
        registry.set(session + "/label", "uncommitted");
        registry.del(sessionNumber(1));
    }
}

// Runs `commitForEver` in a process of its own, kills it and answers the last number it told.
int runAndKill(QString const& database, int milliseconds)
{
    int channel[2];
    if (pipe(channel) != 0)
        qFatal("no pipe");
    pid_t const child = fork();
    if (child == 0) {
        close(channel[0]);
        commitForEver(database, channel[1]);
    }
    close(channel[1]);
    int last = 0;
    int number = 0;
    // The first number comes when the host is up; a child that fails ends the pipe.
    if (read(channel[0], &number, sizeof(number)) == static_cast<ssize_t>(sizeof(number)))
        last = number;
    usleep(static_cast<useconds_t>(milliseconds) * 1000);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    while (read(channel[0], &number, sizeof(number)) == static_cast<ssize_t>(sizeof(number)))
        last = number;
    close(channel[0]);
    return WIFSIGNALED(status) ? last : 0;
}

// Does the first step of moving a journal into its database, and no further one: copies the latest
// first page, which tells how long the file is going to be. False when the file is that long.
bool copyFirstPageFromJournal(QString const& database)
{
    int const journalHeader = 32;
    int const frameHeader = 24;
    int const page = 4096;
    QFile journal(database + "-wal");
    if (!journal.open(QIODevice::ReadOnly))
        qFatal("no journal");
    QByteArray const frames = journal.readAll().mid(journalHeader);
    QByteArray firstPage;
    for (int at = 0; at + frameHeader + page <= frames.size(); at += frameHeader + page) {
        if (frames.mid(at, 4) == QByteArray("\0\0\0\1", 4))
            firstPage = frames.mid(at + frameHeader, page);
    }

    QFile file(database);
    if (!file.open(QIODevice::ReadWrite) || file.write(firstPage) != firstPage.size())
        qFatal("cannot write %s", qPrintable(database));
    int const pages = firstPage.isEmpty() ? 0 : firstPage.mid(28, 4).toHex().toInt(nullptr, 16);
    return qint64(pages) * page > file.size();
}

} // namespace

void RegistryDatabaseTest::committedValuesAreThereAgain()
{
    TestDirectory scratch;
    QString const database = scratch.file("registry.db");
    {
        OpenRegistry registry(database);
        registry.addSession(kSession, "one");
        QCOMPARE(registry.set(kUsb, "0"), 0);
        QCOMPARE(registry.commit(kUsb), 0);
    }
    {
        OpenRegistry registry(database);
        QCOMPARE(registry.answer(kSession + "/label"), QString::fromLatin1("2 one"));
        QCOMPARE(registry.answer(kUsb), QString::fromLatin1("2 0"));
        QCOMPARE(registry.del(kSession), 0);
        QCOMPARE(registry.del(kUsb), 0);
        QCOMPARE(registry.commit("root"), 0);
    }
    OpenRegistry registry(database);
    QCOMPARE(registry.answers(kRdp), QStringList());
    QCOMPARE(registry.answer(kUsb), QString::fromLatin1("3 1"));
    QCOMPARE(registry.create(kSession), 0);
    QCOMPARE(registry.commit(kSession), 0);
    QCOMPARE(registry.answer(kSession + "/label"), QString::fromLatin1("3 "));
}

void RegistryDatabaseTest::everyCommitIsOnTheDiskWhenItIsDone()
{
    TestDirectory scratch;
    OpenRegistry registry(scratch.file("registry.db"));
    // The first commits of a file sync what later ones need not.
    for (char const* const value : {"0", "1", "0"}) {
        QCOMPARE(registry.set(kUsb, value), 0);
        int const before = diskSyncs();
        QCOMPARE(registry.commit(kUsb), 0);
        QVERIFY2(diskSyncs() > before, value);
    }
}

void RegistryDatabaseTest::uncommittedChangesAreGone()
{
    TestDirectory scratch;
    QString const database = scratch.file("registry.db");
    {
        OpenRegistry registry(database);
        QCOMPARE(registry.set(kUsb, "0"), 0);
        QCOMPARE(registry.create(kSession), 0);
    }
    OpenRegistry registry(database);
    QCOMPARE(registry.answer(kUsb), QString::fromLatin1("3 1"));
    QCOMPARE(registry.answers(kRdp), QStringList());
    QCOMPARE(registry.pending(), QStringList());
}

void RegistryDatabaseTest::everyTextComesBackAsItWas_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("empty") << "";
    QTest::newRow("blanks and newlines") << " a\tb\r\nc ";
    QTest::newRow("NUL") << QString::fromLatin1("a\0b\0", 4);
    QTest::newRow("control characters") << "\x01\x1b\x7f";
    QTest::newRow("umlauts") << QString::fromUtf8("\xc3\xa4\xc3\xb6\xc3\xbc");
    QTest::newRow("outside the basic plane") << QString::fromUtf8("\xf0\x9f\x98\x80");
    QTest::newRow("high surrogate alone") << QString(QChar(0xd83d));
    QTest::newRow("low surrogate first") << QString(QChar(0xde00)) + QChar(0xd83d);
    QTest::newRow("no characters") << QString(QChar(0xffff)) + QChar(0xfffe) + QChar(0xfeff);
    QTest::newRow("many megabytes") << QString(8 * 1024 * 1024, QChar(0x20ac));
}

void RegistryDatabaseTest::everyTextComesBackAsItWas()
{
    QFETCH(QString, text);

    TestDirectory scratch;
    QString const database = scratch.file("registry.db");
    {
        OpenRegistry registry(database);
        registry.addSession(kSession, text);
    }
    OpenRegistry registry(database);
    QString read = "before";
    QCOMPARE(registry.get(kSession + "/label", read, REG_PARAM_VALUE, QString()), 0);
    QVERIFY(read == text);
    QVERIFY(!read.isNull());
}

void RegistryDatabaseTest::keysThatAreNoLongerDeclaredAreKeptOutOfSight()
{
    TestDirectory scratch;
    QString const database = scratch.file("registry.db");
    {
        OpenRegistry registry(database);
        registry.addSession(kSession, "one");
    }
    {
        TestDirectory defaults;
        defaults.write("a.xml", "<registry><dir name='root'><key name='k'/></dir></registry>");
        OpenRegistry registry(database, defaults.path());
        QCOMPARE(registry.answers("root"), QStringList() << "1 root/k");
        QCOMPARE(registry.set("root/k", "v"), 0);
        QCOMPARE(registry.commit("root"), 0);
    }
    OpenRegistry registry(database);
    QCOMPARE(registry.answer(kSession + "/label"), QString::fromLatin1("2 one"));
    QCOMPARE(registry.answer("root/k"), QString::fromLatin1("code 1"));
}

void RegistryDatabaseTest::fileThatCannotBeOpenedStaysAsItWas_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("reason");

    QByteArray const damaged
        = makeDatabase("CREATE TABLE a (b); PRAGMA application_id = 1447973970;"
                       "PRAGMA user_version = 1;");
    QTest::newRow("one byte") << QByteArray("x") << "not a database";
    QTest::newRow("short text") << QByteArray("not a database\n") << "not a database";
    QTest::newRow("long text") << QByteArray("text\n").repeated(10000) << "not a database";
    QTest::newRow("zeros") << QByteArray(8192, '\0') << "not a database";
    QTest::newRow("database of another program")
        << makeDatabase("CREATE TABLE a (b); INSERT INTO a VALUES (1)") << "not the registry's";
    QTest::newRow("database of another program, marked")
        << makeDatabase("PRAGMA application_id = 5; PRAGMA user_version = 1; CREATE TABLE a (b)")
        << "not the registry's";
    QTest::newRow("without its tables") << damaged << "no such table";
    QTest::newRow("cut off behind the first page") << damaged.left(4096) << "malformed";
}

void RegistryDatabaseTest::fileThatCannotBeOpenedStaysAsItWas()
{
    QFETCH(QByteArray, contents);
    QFETCH(QString, reason);

    TestDirectory scratch;
    QString const file = scratch.write("registry.db", contents);
    QString const error = refusal(file);
    QVERIFY2(error.startsWith(file), qPrintable(error));
    QVERIFY2(error.contains(reason), qPrintable(error));
    QCOMPARE(scratch.read("registry.db"), contents);
    QCOMPARE(QDir(scratch.path()).entryList(QDir::Files), QStringList() << "registry.db");
}

void RegistryDatabaseTest::fileWithADamagedPageIsRefused()
{
    int const page = 4096;
    int const sessions = 300;
    TestDirectory scratch;
    QString const file = scratch.file("registry.db");
    {
        OpenRegistry registry(file);
        for (int number = 1; number <= sessions; ++number) {
            QCOMPARE(registry.create(sessionNumber(number)), 0);
            QCOMPARE(registry.set(sessionNumber(number) + "/label", "a label"), 0);
        }
        QCOMPARE(registry.commit("root"), 0);
    }
    QByteArray const whole = scratch.read("registry.db");
    QVERIFY(whole.size() > 10 * page);
    // The page that lists the unused ones is not read, and there is none.
    for (int at = page; at < whole.size(); at += page) {
        scratch.write("registry.db", QByteArray(whole).replace(at, page, QByteArray(page, '\377')));
        QVERIFY2(refusal(file).contains("malformed"), QByteArray::number(at / page).constData());
    }
}

void RegistryDatabaseTest::newerVersionIsRefused()
{
    TestDirectory scratch;
    QString const file = scratch.file("registry.db");
    {
        OpenRegistry registry(file);
    }
    runSql(file, "PRAGMA user_version = 2");
    QByteArray const contents = scratch.read("registry.db");
    QString const error = refusal(file);
    QVERIFY2(error.contains("newer version (2)"), qPrintable(error));
    QCOMPARE(scratch.read("registry.db"), contents);
}

void RegistryDatabaseTest::pathsThatCannotBeOpened_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("empty") << "";
    QTest::newRow("directory") << QDir::tempPath();
    QTest::newRow("in a missing directory") << QDir::tempPath() + "/missing/registry.db";
}

void RegistryDatabaseTest::pathsThatCannotBeOpened()
{
    QFETCH(QString, path);

    QVERIFY(!refusal(path).isEmpty());
}

void RegistryDatabaseTest::unusualFileName()
{
    TestDirectory scratch;
    QString const file = scratch.file("a b%41?mode=ro&#c.db");
    {
        OpenRegistry registry(file);
        registry.addSession(kSession, "one");
    }
    QCOMPARE(QDir(scratch.path()).entryList(QDir::Files), QStringList() << "a b%41?mode=ro&#c.db");
    OpenRegistry registry(file);
    QCOMPARE(registry.answer(kSession + "/label"), QString::fromLatin1("2 one"));
}

void RegistryDatabaseTest::secondHostIsRefused()
{
    TestDirectory scratch;
    QString const file = scratch.file("registry.db");
    OpenRegistry registry(file);
    registry.addSession(kSession, "one");
    QString const error = refusal(file);
    QVERIFY2(error.contains("in use by another host"), qPrintable(error));

    // A look at the file from this process has not given its lock away to others.
    pid_t const child = fork();
    if (child == 0)
        _exit(refusal(file).contains("in use by another host") ? 0 : 1);
    int status = -1;
    QCOMPARE(waitpid(child, &status, 0), child);
    QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);

    QCOMPARE(registry.set(kSession + "/label", "two"), 0);
    QCOMPARE(registry.commit("root"), 0);
    QCOMPARE(registry.answer(kSession + "/label"), QString::fromLatin1("2 two"));
}

void RegistryDatabaseTest::failedWriteKeepsTheChangesPending()
{
    TestDirectory scratch;
    QString const file = scratch.file("registry.db");
    {
        OpenRegistry registry(file);
    }
    runSql(file,
           "CREATE TRIGGER full BEFORE INSERT ON setting WHEN NEW.key LIKE '%label'"
           " BEGIN SELECT RAISE(ABORT, 'no room'); END");
    OpenRegistry registry(file);
    QCOMPARE(registry.create(kSession), 0);
    QCOMPARE(registry.set(kSession + "/address", "host"), 0);
    QCOMPARE(registry.set(kSession + "/label", "one"), 0);
    QVERIFY(registry.commit(kSession) != 0);
    QCOMPARE(registry.answers(kRdp), QStringList());
    QCOMPARE(registry.pending().size(), 3);

    QCOMPARE(registry.rollback(kSession + "/label"), 0);
    QCOMPARE(registry.commit(kSession), 0);
    QCOMPARE(registry.answer(kSession + "/address"), QString::fromLatin1("2 host"));
}

void RegistryDatabaseTest::killedHost_data()
{
    QTest::addColumn<int>("milliseconds");

    QTest::newRow("at once") << 0;
    QTest::newRow("after 3 ms") << 3;
    QTest::newRow("after 17 ms") << 17;
    QTest::newRow("after 50 ms") << 50;
    QTest::newRow("after 111 ms") << 111;
    QTest::newRow("after 400 ms") << 400;
}

void RegistryDatabaseTest::killedHost()
{
    QFETCH(int, milliseconds);

    TestDirectory scratch;
    QString const file = scratch.file("registry.db");
    int const told = runAndKill(file, milliseconds);
    QVERIFY(told > 0);

    OpenRegistry registry(file);
    // The commit that was cut off may be there as a whole or not at all.
    int const found = registry.answers(kRdp).size();
    QVERIFY2(found == told || found == told + 1,
             qPrintable(QString::fromLatin1("%1 told, %2 found").arg(told).arg(found)));
    for (int number = 1; number <= found; ++number) {
        QString const expected = "2 " + QString::number(number);
        QCOMPARE(registry.answer(sessionNumber(number) + "/label"), expected);
        QCOMPARE(registry.answer(sessionNumber(number) + "/address"), expected);
    }
    QCOMPARE(registry.pending(), QStringList());
}

// The file alone is then no database in order; with its journal it is one.
void RegistryDatabaseTest::hostKilledWhileItsJournalWasMovedIntoTheFile()
{
    // The host has to be killed when it has written enough, and before it moves the journal itself.
    for (int milliseconds = 1; milliseconds < 1000; milliseconds *= 2) {
        TestDirectory scratch;
        QString const file = scratch.file("registry.db");
        int const told = runAndKill(file, milliseconds);
        QVERIFY(told > 0);
        if (!copyFirstPageFromJournal(file))
            continue;
        OpenRegistry registry(file);
        QVERIFY(registry.answers(kRdp).size() >= told);
        return;
    }
    QFAIL("no host was killed at the right moment");
}

void RegistryDatabaseTest::hostKilledWhileItMadeTheFile()
{
    TestDirectory scratch;
    QString const file = scratch.file("registry.db");
    makeHalf(file);
    QCOMPARE(scratch.read("registry.db").left(100), QByteArray(100, '\0'));
    {
        OpenRegistry registry(file);
        QCOMPARE(registry.answer(kUsb), QString::fromLatin1("3 1"));
        registry.addSession(kSession, "one");
    }
    QCOMPARE(QDir(scratch.path()).entryList(QDir::Files), QStringList() << "registry.db");
    OpenRegistry registry(file);
    QCOMPARE(registry.answer(kSession + "/label"), QString::fromLatin1("2 one"));
}

void RegistryDatabaseTest::journalBesideAForeignFileIsNoExcuse_data()
{
    QTest::addColumn<QByteArray>("contents");

    QTest::newRow("text") << QByteArray("text\n").repeated(1000);
    QTest::newRow("zeros and then text") << QByteArray(99, '\0') + QByteArray("text\n").repeated(9);
    QTest::newRow("database of another program") << makeDatabase("CREATE TABLE a (b)");
}

void RegistryDatabaseTest::journalBesideAForeignFileIsNoExcuse()
{
    QFETCH(QByteArray, contents);

    TestDirectory scratch;
    makeHalf(scratch.file("registry.db"));
    QByteArray const journal = scratch.read("registry.db-journal");
    QString const file = scratch.write("registry.db", contents);
    QVERIFY(!refusal(file).isEmpty());
    QCOMPARE(scratch.read("registry.db"), contents);
    QVERIFY(scratch.read("registry.db-journal") == journal);
}

ZELVO_TEST(RegistryDatabaseTest)
#include "RegistryDatabaseTest.moc"
