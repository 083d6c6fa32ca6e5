#include "doctor/ScriptFile.h"

#include "actions/default/Wrapper.h"
#include "support/TestDirectory.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <sys/stat.h>

namespace {

/// How the plugin's runner sees the script end.
class LastRun : public WrapperObserver
{
public:
    LastRun()
        : wasStarted(false)
    {
        Wrapper::sSetObserver(this);
    }
    ~LastRun() override { Wrapper::sSetObserver(nullptr); }

    void scriptHasRun(WrapperRun const& run) override
    {
        wasStarted = run.ending != WrapperRun::NotStarted;
    }

    bool wasStarted;

private:
    Q_DISABLE_COPY(LastRun)
};

bool starts(QString const& script)
{
    LastRun const last;
    static_cast<void>(Wrapper(script).run());
    return last.wasStarted;
}

QStringList described(QList<Problem> const& problems)
{
    QStringList lines;
    for (Problem const& problem : problems)
        lines.append(QString::number(problem.line) + ": " + problem.message.section(';', 0, 0));
    return lines;
}

} // namespace

class ScriptFileTest : public QObject
{
    Q_OBJECT

private slots:
    void problemsAreThoseOfTheRunner_data();
    void problemsAreThoseOfTheRunner();
    void missingFileHasNoProblem();
    void linkToNothingCountsAsMissing();
    void directoryIsNoScript();
    void pipeIsNotWaitedFor();
    void pathsThatACommandLineSplits_data();
    void pathsThatACommandLineSplits();
};

void ScriptFileTest::problemsAreThoseOfTheRunner_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isExecutable");
    QTest::addColumn<QStringList>("problems");
    QTest::addColumn<bool>("startsAtAll");

    QStringList const none;
    QTest::newRow("a shell script") << QByteArray("#!/bin/sh\nexit 0\n") << true << none << true;
    QTest::newRow("one line without its end") << QByteArray("#!/bin/sh") << true << none << true;
    QTest::newRow("blanks around the interpreter")
        << QByteArray("#! /bin/sh -e \nexit 0\n") << true << none << true;
    QTest::newRow("env with a program")
        << QByteArray("#!/usr/bin/env sh\nexit 0\n") << true << none << true;
    QTest::newRow("not executable")
        << QByteArray("#!/bin/sh\n") << false << QStringList("0: is not executable") << false;
    QTest::newRow("empty") << QByteArray() << true
                           << QStringList("1: no interpreter: the file does not begin with \"#!\"")
                           << false;
    QTest::newRow("no interpreter")
        << QByteArray("exit 0\n") << true
        << QStringList("1: no interpreter: the file does not begin with \"#!\"") << false;
    QTest::newRow("a line before the interpreter")
        << QByteArray("\n#!/bin/sh\n") << true
        << QStringList("1: no interpreter: the file does not begin with \"#!\"") << false;
    QTest::newRow("a byte order mark")
        << QByteArray("\xef\xbb\xbf#!/bin/sh\n") << true
        << QStringList("1: a byte order mark stands before the \"#!\"") << false;
    QTest::newRow("nothing behind #!")
        << QByteArray("#!\nexit 0\n") << true
        << QStringList("1: no interpreter stands behind the \"#!\"") << false;
    QTest::newRow("an interpreter that is missing")
        << QByteArray("#!/no/such/sh\n") << true
        << QStringList("1: there is no interpreter \"/no/such/sh\"") << false;
    QTest::newRow("an interpreter below a file")
        << QByteArray("#!/etc/passwd/sh\n") << true
        << QStringList("1: there is no interpreter \"/etc/passwd/sh\"") << false;
    QTest::newRow("an interpreter that is no program")
        << QByteArray("#!/etc/passwd\n") << true
        << QStringList("1: the interpreter \"/etc/passwd\" is no program") << false;
    QTest::newRow("an interpreter that is a directory")
        << QByteArray("#!/bin\n") << true
        << QStringList("1: the interpreter \"/bin\" is no program") << false;
    QTest::newRow("an interpreter without a path")
        << QByteArray("#!sh\n") << true << QStringList("1: the interpreter \"sh\" has no full path")
        << false;
    QTest::newRow("CRLF in the first line")
        << QByteArray("#!/bin/sh\r\nexit 0\r\n") << true
        << QStringList(
               "1: the line ends in CRLF, and the CR becomes a part of the interpreter's name")
        << false;
    // These start and then fail, or do what nobody meant.
    QTest::newRow("env without its program")
        << QByteArray("#!/usr/bin/env no-such-program\n") << true
        << QStringList("1: env finds no program \"no-such-program\"") << true;
    QTest::newRow("CRLF further down")
        << QByteArray("#!/bin/sh\nexit 0\n\nexit 1\r\n") << true
        << QStringList("4: the line ends in CRLF, and the CR becomes a part of its last word")
        << true;
}

void ScriptFileTest::problemsAreThoseOfTheRunner()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isExecutable);
    QFETCH(QStringList, problems);
    QFETCH(bool, startsAtAll);

    TestDirectory const directory;
    QString const script = directory.write("get.sh", content);
    if (isExecutable)
        QCOMPARE(::chmod(QFile::encodeName(script).constData(), 0755), 0);
    QCOMPARE(described(problemsOfScript(script)), problems);
    QCOMPARE(starts(script), startsAtAll);
}

void ScriptFileTest::missingFileHasNoProblem()
{
    TestDirectory const directory;
    QCOMPARE(described(problemsOfScript(directory.file("get.sh"))), QStringList());
}

void ScriptFileTest::linkToNothingCountsAsMissing()
{
    TestDirectory const directory;
    QString const script = directory.file("get.sh");
    QVERIFY(QFile::link(directory.file("nothing"), script));
    QCOMPARE(described(problemsOfScript(script)), QStringList("0: a link to nothing"));
    QVERIFY(!QFile::exists(script));
}

void ScriptFileTest::directoryIsNoScript()
{
    TestDirectory const directory;
    QVERIFY(QDir(directory.path()).mkdir("get.sh"));
    QString const script = directory.file("get.sh");
    QCOMPARE(described(problemsOfScript(script)), QStringList("0: is no regular file"));
    QVERIFY(!starts(script));
}

void ScriptFileTest::pipeIsNotWaitedFor()
{
    TestDirectory const directory;
    QString const script = directory.file("get.sh");
    QCOMPARE(::mkfifo(QFile::encodeName(script).constData(), 0755), 0);
    QCOMPARE(described(problemsOfScript(script)), QStringList("0: is no regular file"));
}

void ScriptFileTest::pathsThatACommandLineSplits_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("isSplit");

    QTest::newRow("an ordinary name") << "wrappers" << false;
    QTest::newRow("a blank") << "my wrappers" << true;
    QTest::newRow("a tab") << "my\twrappers" << true;
    QTest::newRow("a no-break space") << QString::fromUtf8("my\302\240wrappers") << true;
    QTest::newRow("a double quote") << "my\"wrappers" << true;
    QTest::newRow("two double quotes") << "\"wrappers\"" << true;
    QTest::newRow("a single quote") << "my'wrappers" << false;
    QTest::newRow("a backslash") << "my\\wrappers" << false;
    QTest::newRow("a dollar sign") << "my$wrappers" << false;
    QTest::newRow("braces") << "{uuid}" << false;
}

void ScriptFileTest::pathsThatACommandLineSplits()
{
    QFETCH(QString, folder);
    QFETCH(bool, isSplit);

    TestDirectory const directory;
    QString const script = directory.write(folder + "/get.sh", "#!/bin/sh\n");
    QCOMPARE(::chmod(QFile::encodeName(script).constData(), 0755), 0);
    QCOMPARE(isSplitByCommandLine(script), isSplit);
    QCOMPARE(starts(script), !isSplit);
    QCOMPARE(described(problemsOfScript(script)), QStringList());
}

QTEST_MAIN(ScriptFileTest)
#include "ScriptFileTest.moc"
