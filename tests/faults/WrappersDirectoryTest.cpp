// SPDX-License-Identifier: MIT

// A wrappers directory that is not what it should be, with a request of every kind: it comes to
// what it comes to without a script, with one, one that cannot be started, or one that fails.

#include "faults/ScriptRequests.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

char const kScript[] = ": >ran";

/// What a request is to come to.
enum Expected { NoScript, ScriptRuns, ScriptCannotBeStarted, EnvironmentIsTooLong };

/// Gives up, for this process and what it starts, the administrator's right to open any file.
bool obeyPermissions()
{
    int const rights[] = {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH};
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3];
    if (::syscall(SYS_capget, &header, data) != 0)
        return false;
    for (int const right : rights) {
        // An ordinary user has none to drop.
        static_cast<void>(::prctl(PR_CAPBSET_DROP, right, 0, 0, 0));
        data[0].permitted &= ~(1U << right);
        data[0].effective &= ~(1U << right);
        data[0].inheritable &= ~(1U << right);
    }
    return ::syscall(SYS_capset, &header, data) == 0;
}

/// The names of the files beside a script.
QStringList environmentFiles()
{
    return QStringList() << "get.env"
                         << "set.env"
                         << "commit.env";
}

/// One request and the wrappers for it, which are changed before it is carried out.
class Wrappers
{
public:
    Wrappers(ScriptRequests const& requests, int kind)
        : mRequests(requests)
        , mKind(kind)
    {
        mRequests.addScript(mKind, kScript);
    }

    QString directory() const { return mRequests.scene.wrappers.directory().path(); }
    QString folder() const { return directory() + "/" + ScriptRequests::folder(mKind); }
    QString script() const { return folder() + "/" + ScriptRequests::script(mKind); }

    /// Moves the directory out of the way.
    void moveDirectory() const { check(QDir().rename(directory(), directory() + "-of-old")); }

    void removeScript() const { check(QFile::remove(script())); }

    void link(QString const& target, QString const& name) const
    {
        check(QFile::link(target, name));
    }

    void makeDirectory(QString const& name) const { check(QDir().mkdir(name)); }

    void makePipe(QString const& name) const
    {
        check(::mkfifo(QFile::encodeName(name).constData(), 0700) == 0);
    }

    void writeFile(QString const& name, QByteArray const& content) const
    {
        QFile file(name);
        check(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }

    void allow(QString const& name, mode_t mode) const
    {
        check(::chmod(QFile::encodeName(name).constData(), mode) == 0);
    }

    /// Does the same to the three environment files of the folder.
    template <typename Change> void eachEnvironmentFile(Change change) const
    {
        QStringList const files = environmentFiles();
        for (QString const& file : files)
            change(folder() + "/" + file);
    }

    static void check(bool isDone)
    {
        if (!isDone)
            qFatal("the wrappers cannot be changed");
    }

private:
    ScriptRequests const& mRequests;
    int mKind;
};

typedef void (*Change)(Wrappers const&);

// The directory itself.

void missing(Wrappers const& wrappers)
{
    wrappers.moveDirectory();
}

void aFile(Wrappers const& wrappers)
{
    wrappers.moveDirectory();
    wrappers.writeFile(wrappers.directory(), "#!/bin/sh\n: >ran\n");
}

void danglingLink(Wrappers const& wrappers)
{
    wrappers.moveDirectory();
    wrappers.link(wrappers.directory() + "-that-is-not", wrappers.directory());
}

void linkToItself(Wrappers const& wrappers)
{
    wrappers.moveDirectory();
    wrappers.link(wrappers.directory(), wrappers.directory());
}

void linkToADirectory(Wrappers const& wrappers)
{
    wrappers.moveDirectory();
    wrappers.link(wrappers.directory() + "-of-old", wrappers.directory());
}

void unreadable(Wrappers const& wrappers)
{
    wrappers.allow(wrappers.directory(), 0);
}

void listedOnly(Wrappers const& wrappers)
{
    wrappers.allow(wrappers.directory(), S_IRUSR);
}

void searchedOnly(Wrappers const& wrappers)
{
    wrappers.allow(wrappers.directory(), S_IXUSR);
}

// What is in it.

void folderIsAFile(Wrappers const& wrappers)
{
    wrappers.removeScript();
    Wrappers::check(QDir().rmdir(wrappers.folder()));
    wrappers.writeFile(wrappers.folder(), kScript);
}

void folderIsALinkToItself(Wrappers const& wrappers)
{
    wrappers.removeScript();
    Wrappers::check(QDir().rmdir(wrappers.folder()));
    wrappers.link(wrappers.folder(), wrappers.folder());
}

void folderLeadsUp(Wrappers const& wrappers)
{
    wrappers.removeScript();
    Wrappers::check(QDir().rmdir(wrappers.folder()));
    wrappers.link(wrappers.directory(), wrappers.folder());
}

void danglingLinks(Wrappers const& wrappers)
{
    wrappers.removeScript();
    wrappers.link(wrappers.folder() + "/nowhere", wrappers.script());
    wrappers.eachEnvironmentFile(
        [&wrappers](QString const& file) { wrappers.link(wrappers.folder() + "/nowhere", file); });
}

void linksInALoop(Wrappers const& wrappers)
{
    wrappers.removeScript();
    wrappers.link(wrappers.folder() + "/round", wrappers.script());
    wrappers.link(wrappers.script(), wrappers.folder() + "/round");
    wrappers.eachEnvironmentFile([&wrappers](QString const& file) { wrappers.link(file, file); });
}

void scriptIsADirectory(Wrappers const& wrappers)
{
    wrappers.removeScript();
    wrappers.makeDirectory(wrappers.script());
}

void scriptIsAPipe(Wrappers const& wrappers)
{
    wrappers.removeScript();
    wrappers.makePipe(wrappers.script());
}

void scriptIsADevice(Wrappers const& wrappers)
{
    wrappers.removeScript();
    wrappers.link("/dev/zero", wrappers.script());
}

void scriptIsEmpty(Wrappers const& wrappers)
{
    wrappers.writeFile(wrappers.script(), "");
}

void environmentFilesAreDirectories(Wrappers const& wrappers)
{
    wrappers.eachEnvironmentFile(
        [&wrappers](QString const& file) { wrappers.makeDirectory(file); });
}

void environmentFilesArePipes(Wrappers const& wrappers)
{
    wrappers.eachEnvironmentFile([&wrappers](QString const& file) { wrappers.makePipe(file); });
}

void environmentFilesAreEndless(Wrappers const& wrappers)
{
    wrappers.eachEnvironmentFile(
        [&wrappers](QString const& file) { wrappers.link("/dev/zero", file); });
}

void environmentFilesAreHoles(Wrappers const& wrappers)
{
    wrappers.eachEnvironmentFile([&wrappers](QString const& file) {
        wrappers.writeFile(file, "");
        Wrappers::check(::truncate(QFile::encodeName(file).constData(), 256 << 20) == 0);
    });
}

void environmentFilesNameManyMissingKeys(Wrappers const& wrappers)
{
    wrappers.eachEnvironmentFile([&wrappers](QString const& file) {
        wrappers.writeFile(file, QByteArray("VARIABLE=root/nowhere\n").repeated(50000));
    });
}

/// More than the system takes for one program.
void environmentFilesNameManyKeys(Wrappers const& wrappers)
{
    QByteArray declarations;
    for (int number = 0; number < 50000; ++number) {
        QByteArray const name = "VARIABLE" + QByteArray::number(number).rightJustified(100, '_');
        declarations += name + "=root/USB/root/mass-storage/allowed\n";
    }
    wrappers.eachEnvironmentFile([&wrappers, &declarations](QString const& file) {
        wrappers.writeFile(file, declarations);
    });
}

struct Row
{
    char const* name;
    Change change;
    Expected expected;
    // Of the kinds whose scripts get what the environment files declare.
    Expected expectedWithEnvironment;
};

Row const kRows[] = {
    {"directory is missing", missing, NoScript, NoScript},
    {"directory is a file", aFile, NoScript, NoScript},
    {"directory is a dangling link", danglingLink, NoScript, NoScript},
    {"directory is a link to itself", linkToItself, NoScript, NoScript},
    {"directory is a link to another", linkToADirectory, ScriptRuns, ScriptRuns},
    {"directory may not be read", unreadable, NoScript, NoScript},
    {"directory may be listed only", listedOnly, NoScript, NoScript},
    {"directory may be searched only", searchedOnly, ScriptRuns, ScriptRuns},
    {"folder is a file", folderIsAFile, NoScript, NoScript},
    {"folder is a link to itself", folderIsALinkToItself, NoScript, NoScript},
    {"folder leads up", folderLeadsUp, NoScript, NoScript},
    {"dangling links", danglingLinks, NoScript, NoScript},
    {"links in a loop", linksInALoop, NoScript, NoScript},
    {"script is a directory", scriptIsADirectory, ScriptCannotBeStarted, ScriptCannotBeStarted},
    {"script is a pipe", scriptIsAPipe, ScriptCannotBeStarted, ScriptCannotBeStarted},
    {"script is a device", scriptIsADevice, ScriptCannotBeStarted, ScriptCannotBeStarted},
    {"script is empty", scriptIsEmpty, ScriptCannotBeStarted, ScriptCannotBeStarted},
    {"environment files are directories", environmentFilesAreDirectories, ScriptRuns, ScriptRuns},
    {"environment files are pipes", environmentFilesArePipes, ScriptRuns, ScriptRuns},
    {"environment files are endless", environmentFilesAreEndless, ScriptRuns, ScriptRuns},
    {"environment files are holes of 256 MiB", environmentFilesAreHoles, ScriptRuns, ScriptRuns},
    {"environment files name 50000 missing keys", environmentFilesNameManyMissingKeys, ScriptRuns,
     ScriptRuns},
    {"environment files name 50000 keys", environmentFilesNameManyKeys, ScriptRuns,
     EnvironmentIsTooLong},
};
int const kRowCount = sizeof(kRows) / sizeof(kRows[0]);

bool takesEnvironment(int kind)
{
    return kind == ScriptRequests::Get || kind == ScriptRequests::Set
        || kind == ScriptRequests::Commit;
}

QStringList usualOutcome(int kind, Expected expected)
{
    ScriptRequests requests;
    if (expected == NoScript)
        return requests.runWithout(kind);
    if (expected == EnvironmentIsTooLong)
        return requests.runFailing(kind);
    requests.addScript(kind, kScript);
    return requests.run(kind);
}

} // namespace

class WrappersDirectoryTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void request_data();
    void request();
    void listing_data();
    void listing();
};

void WrappersDirectoryTest::initTestCase()
{
    QVERIFY2(!qgetenv("VANTORA_SANDBOX_RECORD").isEmpty(), "runs in the sandbox only");
    QVERIFY(obeyPermissions());
}

void WrappersDirectoryTest::request_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("kind");
    for (int row = 0; row < kRowCount; ++row) {
        for (int kind = 0; kind < ScriptRequests::kKinds; ++kind) {
            QByteArray const name
                = QByteArray(kRows[row].name) + ", " + ScriptRequests::script(kind);
            QTest::newRow(name.constData()) << row << kind;
        }
    }
}

void WrappersDirectoryTest::request()
{
    QFETCH(int, row);
    QFETCH(int, kind);

    Expected const expected
        = takesEnvironment(kind) ? kRows[row].expectedWithEnvironment : kRows[row].expected;
    QStringList const usual = usualOutcome(kind, expected);
    ScriptRequests requests;
    Wrappers const wrappers(requests, kind);
    kRows[row].change(wrappers);
    QStringList const outcome = requests.run(kind);
    ::chmod(QFile::encodeName(wrappers.directory()).constData(), S_IRWXU);
    QCOMPARE(outcome, usual);
    QCOMPARE(QFile::exists(wrappers.folder() + "/ran"), expected == ScriptRuns);
}

void WrappersDirectoryTest::listing_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < kRowCount; ++row)
        QTest::newRow(kRows[row].name) << row;
}

void WrappersDirectoryTest::listing()
{
    QFETCH(int, row);

    QStringList children;
    ScriptRequests requests;
    Wrappers const wrappers(requests, ScriptRequests::IsVisible);
    kRows[row].change(wrappers);
    int const code = requests.scene.get(requests.scene.at("usb"), &children);
    ::chmod(QFile::encodeName(wrappers.directory()).constData(), S_IRWXU);
    QCOMPARE(code, 0);
    QCOMPARE(children,
             QStringList() << "key " + requests.scene.at("usb/enable")
                           << "key " + requests.scene.at("usb/read_only"));
}

ZELVO_TEST(WrappersDirectoryTest)
#include "WrappersDirectoryTest.moc"
