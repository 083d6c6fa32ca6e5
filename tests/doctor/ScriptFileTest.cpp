// SPDX-License-Identifier: MIT

#include "doctor/ScriptFile.h"

#include "actions/IActivityObserver.h"
#include "actions/default/Wrapper.h"
#include "common/Text.h"
#include "support/TestBackend.h"
#include "support/TestDirectory.h"
#include "support/TestKit.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QtTest>

#include <initializer_list>

#include <sys/stat.h>

namespace {

/// How the plugin's runner sees the script end.
class LastRun : public IActivityObserver
{
public:
    LastRun()
        : wasStarted(false)
    {
        freshKit(mBackend, QDir()).setObserver(this);
    }
    ~LastRun() override { ActionKit::instance()->setObserver(nullptr); }

    void scriptHasRun(WrapperRun const& run) override
    {
        wasStarted = run.ending != WrapperRun::NotStarted;
    }

    bool wasStarted;

private:
    Q_DISABLE_COPY(LastRun)

    TestBackend mBackend;
};

bool starts(QString const& script, ScriptEnvironment environment)
{
    LastRun const last;
    Wrapper wrapper(script);
    if (environment == OwnEnvironment)
        wrapper.setEnvironment(QProcess::systemEnvironment());
    static_cast<void>(wrapper.run());
    return last.wasStarted;
}

QByteArray readFile(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList described(QList<Problem> const& problems)
{
    QStringList lines;
    for (Problem const& problem : problems)
        lines.append(QString::number(problem.line) + (problem.severity == Note ? ": note: " : ": ")
                     + problem.message.section(';', 0, 0));
    return lines;
}

} // namespace

class ScriptFileTest : public QObject
{
    Q_OBJECT

private slots:
    void problemsAreThoseOfTheRunner_data();
    void problemsAreThoseOfTheRunner();
    void shellRunsWhatNamesNoInterpreter_data();
    void shellRunsWhatNamesNoInterpreter();
    void scriptThatDoesNotStartCountsAsSuccess();
    void envWithoutAProgramStartsTheScriptAgain();
    void scriptIsReadToItsEnd();
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
    QTest::newRow("an interpreter without a path, behind a blank")
        << QByteArray("#! sh\n") << true
        << QStringList("1: the interpreter \"sh\" has no full path") << false;
    // These start and then fail, or do what nobody meant.
    QTest::newRow("env without its program")
        << QByteArray("#!/usr/bin/env no-such-program\n") << true
        << QStringList("1: env finds no program \"no-such-program\"") << true;
    QString const oneWord(", which is one word to it without its \"-S\"");
    QTest::newRow("env with an option for the program")
        << QByteArray("#!/usr/bin/env sh -e\nexit 0\n") << true
        << QStringList("1: env finds no program \"sh -e\"" + oneWord) << true;
    QTest::newRow("env that splits")
        << QByteArray("#!/usr/bin/env -S sh\nexit 0\n") << true << none << true;
    QTest::newRow("env that splits, with an option")
        << QByteArray("#!/usr/bin/env -S sh -e\nexit 0\n") << true << none << true;
    QTest::newRow("env that splits, with a variable")
        << QByteArray("#!/usr/bin/env -S A=1 sh\nexit 0\n") << true << none << true;
    QTest::newRow("env that splits, with an option of its own")
        << QByteArray("#!/usr/bin/env -S -i sh\nexit 0\n") << true << none << true;
    QTest::newRow("env that splits, without its program")
        << QByteArray("#!/usr/bin/env -S no-such-program\n") << true
        << QStringList("1: env finds no program \"no-such-program\"") << true;
    QTest::newRow("a program") << readFile("/bin/true") << true << none << true;
    QTest::newRow("a program with CRLF in it") << readFile("/bin/true") + "\n\r\n"
                                               << true << none << true;
    QTest::newRow("CRLF in a line of the second kilobyte")
        << "#!/bin/sh\n" + QByteArray(1500, '\n') + "exit 1\r\n"
        << true
        << QStringList("1502: the line ends in CRLF, and the CR becomes a part of its last word")
        << true;
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
    QCOMPARE(described(problemsOfScript(script, OwnEnvironment)), problems);
    QCOMPARE(described(problemsOfScript(script, InheritedEnvironment)), problems);
    QCOMPARE(starts(script, OwnEnvironment), startsAtAll);
    QCOMPARE(starts(script, InheritedEnvironment), startsAtAll);
}

void ScriptFileTest::shellRunsWhatNamesNoInterpreter_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("problems");
    QTest::addColumn<QStringList>("notesOfAnInheritedEnvironment");

    QString const none("missing shebang line");
    QString const shell(", so /bin/sh runs it");
    QTest::newRow("empty") << QByteArray() << QStringList("1: " + none)
                           << QStringList("1: note: " + none + shell);
    QTest::newRow("no interpreter") << QByteArray("exit 0\n") << QStringList("1: " + none)
                                    << QStringList("1: note: " + none + shell);
    QTest::newRow("a line before the interpreter")
        << QByteArray("\n#!/bin/sh\n") << QStringList("1: " + none)
        << QStringList("1: note: " + none + shell);
    QTest::newRow("CRLF") << QByteArray("true\nexit 0\r\n") << QStringList("1: " + none)
                          << (QStringList()
                              << "1: note: " + none + shell
                              << "2: the line ends in CRLF, and the CR becomes a part of its last "
                                 "word");
    QString const nothing("the shebang line names no interpreter");
    QTest::newRow("nothing behind #!") << QByteArray("#!\nexit 0\n") << QStringList("1: " + nothing)
                                       << QStringList("1: note: " + nothing + shell);
    QTest::newRow("blanks behind #!")
        << QByteArray("#! \t\nexit 0\n") << QStringList("1: " + nothing)
        << QStringList("1: note: " + nothing + shell);
    // The shell runs it, but not as whoever wrote it has meant it.
    QString const mark("a byte order mark stands before the shebang line");
    QTest::newRow("a byte order mark")
        << QByteArray("\xef\xbb\xbf#!/bin/sh\n") << QStringList("1: " + mark)
        << QStringList("1: " + mark + shell);
}

void ScriptFileTest::shellRunsWhatNamesNoInterpreter()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, problems);
    QFETCH(QStringList, notesOfAnInheritedEnvironment);

    TestDirectory const directory;
    QString const script = directory.write("isVisible.sh", content);
    QCOMPARE(::chmod(QFile::encodeName(script).constData(), 0755), 0);
    QCOMPARE(described(problemsOfScript(script, OwnEnvironment)), problems);
    QVERIFY(!starts(script, OwnEnvironment));
    QCOMPARE(described(problemsOfScript(script, InheritedEnvironment)),
             notesOfAnInheritedEnvironment);
    QVERIFY(starts(script, InheritedEnvironment));
}

void ScriptFileTest::scriptThatDoesNotStartCountsAsSuccess()
{
    TestDirectory const directory;
    QString const script = directory.write("get.sh", "exit 0\n");
    QString const words("; a script that does not start counts as one that succeeded");
    QVERIFY(problemsOfScript(script, OwnEnvironment).first().message.endsWith(words));
    QCOMPARE(::chmod(QFile::encodeName(script).constData(), 0755), 0);
    QVERIFY(problemsOfScript(script, OwnEnvironment).first().message.endsWith(words));
    QVERIFY(!problemsOfScript(script, InheritedEnvironment).first().message.contains(words));
}

void ScriptFileTest::envWithoutAProgramStartsTheScriptAgain()
{
    TestDirectory const directory;
    QString const script = directory.file("get.sh");
    for (char const* const line : {"#!/usr/bin/env", "#!/usr/bin/env -S\n", "#! /usr/bin/env \n"}) {
        directory.write("get.sh", line);
        QCOMPARE(::chmod(QFile::encodeName(script).constData(), 0755), 0);
        QCOMPARE(described(problemsOfScript(script, OwnEnvironment)),
                 QStringList("1: env names no program, so it starts this script, again and again"));
    }
}

void ScriptFileTest::scriptIsReadToItsEnd()
{
    TestDirectory const directory;
    QByteArray const script = "#!/bin/sh\n" + QByteArray(5000, '#');
    QByteArray content("x");
    QVERIFY(!readScript(directory.file("set.sh"), content));
    QVERIFY(readScript(directory.write("get.sh", script), content));
    QCOMPARE(content, script);
    QVERIFY(readScript(directory.write("commit.sh", QByteArray()), content));
    QVERIFY(content.isEmpty());
}

void ScriptFileTest::missingFileHasNoProblem()
{
    TestDirectory const directory;
    QCOMPARE(described(problemsOfScript(directory.file("get.sh"), OwnEnvironment)), QStringList());
}

void ScriptFileTest::linkToNothingCountsAsMissing()
{
    TestDirectory const directory;
    QString const script = directory.file("get.sh");
    QVERIFY(QFile::link(directory.file("nothing"), script));
    QCOMPARE(described(problemsOfScript(script, OwnEnvironment)),
             QStringList("0: a dangling link"));
    QVERIFY(!QFile::exists(script));
}

void ScriptFileTest::directoryIsNoScript()
{
    TestDirectory const directory;
    QVERIFY(QDir(directory.path()).mkdir("get.sh"));
    QString const script = directory.file("get.sh");
    QCOMPARE(described(problemsOfScript(script, OwnEnvironment)),
             QStringList("0: is no regular file"));
    QVERIFY(!starts(script, OwnEnvironment));
}

void ScriptFileTest::pipeIsNotWaitedFor()
{
    TestDirectory const directory;
    QString const script = directory.file("get.sh");
    QCOMPARE(::mkfifo(QFile::encodeName(script).constData(), 0755), 0);
    QCOMPARE(described(problemsOfScript(script, OwnEnvironment)),
             QStringList("0: is no regular file"));
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
    QCOMPARE(starts(script, OwnEnvironment), !isSplit);
    QCOMPARE(described(problemsOfScript(script, OwnEnvironment)), QStringList());
}

ZELVO_TEST(ScriptFileTest)
#include "ScriptFileTest.moc"
