// SPDX-License-Identifier: MIT

#include "actions/default/DefaultActions.h"

#include "support/Footprint.h"
#include "support/TestBackend.h"
#include "support/TestKit.h"
#include "support/TestProgram.h"
#include "support/TestWrappers.h"
#include "tree/ConfigBranch.h"
#include "tree/ConfigKey.h"

#include <QtTest>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include <stdlib.h>
#include <unistd.h>

namespace {

char const kKey[] = "zelvo-view/key";

enum ActionIndex { IsVisible, Value, SetValue, Create, Del, Commit };

struct ActionRow
{
    char const* name;
    char const* script;
};

ActionRow const kActions[] = {
    {"isVisible", "isVisible.sh"}, {"value", "get.sh"}, {"setValue", "set.sh"},
    {"create", "create.sh"},       {"del", "del.sh"},   {"commit", "commit.sh"},
};

void addActionRows()
{
    QTest::addColumn<int>("index");
    for (int index = IsVisible; index <= Commit; ++index)
        QTest::newRow(kActions[index].name) << index;
}

/// What a wrapper is like that cannot be started.
struct Unstartable
{
    char const* name;
    char const* content;
    bool isExecutable;
};

Unstartable const kUnstartables[] = {
    {"not executable", "#!/bin/sh\ntouch ran\nexit 1\n", false},
    {"bad interpreter", "#!/nonexistent/interpreter\n", true},
    {"directory above the interpreter is a file", "#!/etc/passwd/sh\n", true},
};

/// An action whose script gets some more variables.
template <typename Action> class EnlargedAction : public Action
{
public:
    explicit EnlargedAction(QStringList const& lines)
        : mLines(lines)
    {
    }

    QStringList processEnvironment(IConfigEntry const&) override
    {
        return QProcess::systemEnvironment() + mLines;
    }

private:
    QStringList mLines;
};

IConfigAction* enlargedAction(int index, QStringList const& lines)
{
    switch (index) {
    case Value:
        return new EnlargedAction<DefaultValueAction>(lines);
    case SetValue:
        return new EnlargedAction<DefaultSetValueAction>(lines);
    default:
        return new EnlargedAction<DefaultCommitAction>(lines);
    }
}

/// The longest variable that the system gives to a program, its name and "=" included.
int longestVariable()
{
    int const pages = 32;
    return pages * int(::sysconf(_SC_PAGESIZE)) - 1;
}

QString variable(char const* name, int length)
{
    return QString("%1=").arg(QString(name)).leftJustified(length, 'x');
}

class ExtraVariableAction : public DefaultValueAction
{
public:
    QStringList processEnvironment(IConfigEntry const& entry) override
    {
        return QStringList() << "ONLY=" + entry.name() + "=x";
    }
};

/// Reads the name of one session over and over.
void readSession(IConfigAction& action, char const* uuid, std::atomic<int>& failures)
{
    ConfigBranch session(uuid, nullptr);
    IConfigEntry const* const name = new ConfigKey("name", QString(), &session);
    for (int round = 0; round < 5; ++round) {
        QVariant data;
        if (!action.execute(*name, data) || data.toString() != "shared")
            ++failures;
    }
}

} // namespace

class DefaultActionsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void missingScriptAnswersFalse_data();
    void missingScriptAnswersFalse();
    void exitCodeDecides_data();
    void exitCodeDecides();
    void visibilityIsTheExitCode_data();
    void visibilityIsTheExitCode();
    void failureLeavesTheValue_data();
    void failureLeavesTheValue();
    void scriptThatASignalEndedDidNotSucceed_data();
    void scriptThatASignalEndedDidNotSucceed();
    void scriptThatCannotBeStartedSucceeds_data();
    void scriptThatCannotBeStartedSucceeds();
    void directoryInPlaceOfAScriptSucceeds();
    void scriptWithTooLongAnEnvironmentFails_data();
    void scriptWithTooLongAnEnvironmentFails();
    void scriptThatInheritsTooLongAnEnvironmentFails_data();
    void scriptThatInheritsTooLongAnEnvironmentFails();
    void scriptWithoutAnInterpreterIsRunByTheShellIfItInherits_data();
    void scriptWithoutAnInterpreterIsRunByTheShellIfItInherits();

    void valueIsTheWholeOutput_data();
    void valueIsTheWholeOutput();
    void valueOfASilentScriptIsEmptyAndNotNull();
    void valueOfAMegabyteIsReadWhole();
    void errorOutputIsNoValue();
    void undecodableOutputIsStillAValue();

    void setScriptGetsTheValueInAFile_data();
    void setScriptGetsTheValueInAFile();
    void commitScriptGetsTheValueInAFile_data();
    void commitScriptGetsTheValueInAFile();
    void valueFileIsForItsOwnerOnly();
    void valueThatIsNoTextIsPassedAsText();
    void outputOfTheSetScriptIsTheValue_data();
    void outputOfTheSetScriptIsTheValue();
    void silentSetScriptMakesTheValueEmptyAndNotNull();
    void commitLeavesTheValue();
    void createAndDelLeaveTheValue();
    void valueOfManyMegabytesIsPassedWhole();
    void withoutATemporaryFileNoScriptRuns_data();
    void withoutATemporaryFileNoScriptRuns();

    void argumentsOfAScript_data();
    void argumentsOfAScript();
    void scriptRunsInItsOwnFolder_data();
    void scriptRunsInItsOwnFolder();
    void environmentIsInherited_data();
    void environmentIsInherited();
    void environmentIsWhatTheActionSays();
    void ownEnvironmentIsTheProcesss();
    void sessionsShareOneScript();
    void blankInThePath_data();
    void blankInThePath();
    void nothingIsLeftBehind_data();
    void nothingIsLeftBehind();
    void startsThatFailLeaveNoChild_data();
    void startsThatFailLeaveNoChild();
    void oneInstanceServesSeveralThreads();

private:
    bool execute(int index, QVariant& data);
    QString addUnstartable(int index, Unstartable const& kind) const;
    QByteArray read(QString const& name) const { return mWrappers->read(kKey, name); }

    QScopedPointer<TestBackend> mBackend;
    QScopedPointer<TestWrappers> mWrappers;
    QScopedPointer<ConfigBranch> mTop;
    IConfigEntry* mEntry;
    QScopedPointer<IConfigAction> mActions[6];
};

void DefaultActionsTest::init()
{
    mBackend.reset(new TestBackend);
    mWrappers.reset(new TestWrappers);
    freshKit(*mBackend, mWrappers->directory());
    mTop.reset(new ConfigBranch("zelvo-view", nullptr));
    mEntry = new ConfigKey("key", QString(), mTop.data());
    mActions[IsVisible].reset(new DefaultIsVisibleAction);
    mActions[Value].reset(new DefaultValueAction);
    mActions[SetValue].reset(new DefaultSetValueAction);
    mActions[Create].reset(new DefaultCreateAction);
    mActions[Del].reset(new DefaultDelAction);
    mActions[Commit].reset(new DefaultCommitAction);
}

bool DefaultActionsTest::execute(int index, QVariant& data)
{
    return mActions[index]->execute(*mEntry, data);
}

QString DefaultActionsTest::addUnstartable(int index, Unstartable const& kind) const
{
    QString const script = mWrappers->addFile(kKey, kActions[index].script, kind.content);
    if (kind.isExecutable)
        QFile::setPermissions(script, QFile::ReadOwner | QFile::ExeOwner);
    return script;
}

void DefaultActionsTest::missingScriptAnswersFalse_data()
{
    addActionRows();
}

void DefaultActionsTest::missingScriptAnswersFalse()
{
    QFETCH(int, index);

    // All scripts but the one that counts.
    for (int other = IsVisible; other <= Commit; ++other) {
        if (other != index)
            mWrappers->addScript(kKey, kActions[other].script, "touch ran");
    }
    QVariant data(QString("before"));
    QVERIFY(!execute(index, data));
    QCOMPARE(data, QVariant(QString("before")));
    QVERIFY(!mWrappers->exists(kKey, "ran"));
}

void DefaultActionsTest::exitCodeDecides_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<bool>("expected");

    QTest::newRow("isVisible, 0: it ran") << int(IsVisible) << 0 << true;
    QTest::newRow("isVisible, 1: it ran") << int(IsVisible) << 1 << true;
    QTest::newRow("isVisible, 255: it ran") << int(IsVisible) << 255 << true;
    QTest::newRow("value, 0") << int(Value) << 0 << true;
    QTest::newRow("value, 1") << int(Value) << 1 << false;
    QTest::newRow("value, 255") << int(Value) << 255 << false;
    QTest::newRow("setValue, 0") << int(SetValue) << 0 << true;
    QTest::newRow("setValue, 1") << int(SetValue) << 1 << false;
    QTest::newRow("setValue, 255") << int(SetValue) << 255 << false;
    QTest::newRow("create, 0") << int(Create) << 0 << true;
    QTest::newRow("create, 1") << int(Create) << 1 << false;
    QTest::newRow("create, 255") << int(Create) << 255 << false;
    QTest::newRow("del, 0") << int(Del) << 0 << true;
    QTest::newRow("del, 1: done all the same") << int(Del) << 1 << true;
    QTest::newRow("del, 255: done all the same") << int(Del) << 255 << true;
    QTest::newRow("commit, 0") << int(Commit) << 0 << true;
    QTest::newRow("commit, 1") << int(Commit) << 1 << false;
    QTest::newRow("commit, 255") << int(Commit) << 255 << false;
}

void DefaultActionsTest::exitCodeDecides()
{
    QFETCH(int, index);
    QFETCH(int, exitCode);
    QFETCH(bool, expected);

    mWrappers->addScript(kKey, kActions[index].script,
                         "touch ran\nexit " + QByteArray::number(exitCode));
    QVariant data(QString("before"));
    QCOMPARE(execute(index, data), expected);
    QVERIFY(mWrappers->exists(kKey, "ran"));
}

void DefaultActionsTest::visibilityIsTheExitCode_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<bool>("isVisible");

    QTest::newRow("0: visible") << 0 << true;
    QTest::newRow("1: hidden") << 1 << false;
    QTest::newRow("2: hidden") << 2 << false;
    QTest::newRow("255: hidden") << 255 << false;
}

void DefaultActionsTest::visibilityIsTheExitCode()
{
    QFETCH(int, exitCode);
    QFETCH(bool, isVisible);

    mWrappers->addScript(kKey, "isVisible.sh",
                         "echo ignored\nexit " + QByteArray::number(exitCode));
    QVariant data(QString("text"));
    QVERIFY(execute(IsVisible, data));
    QCOMPARE(data.type(), QVariant::Bool);
    QCOMPARE(data.toBool(), isVisible);
    QCOMPARE(mEntry->isVisible(), isVisible);
}

void DefaultActionsTest::failureLeavesTheValue_data()
{
    QTest::addColumn<int>("index");

    QTest::newRow("value") << int(Value);
    QTest::newRow("setValue") << int(SetValue);
    QTest::newRow("create") << int(Create);
    QTest::newRow("commit") << int(Commit);
}

void DefaultActionsTest::failureLeavesTheValue()
{
    QFETCH(int, index);

    mWrappers->addScript(kKey, kActions[index].script, "echo after\nexit 3");
    QVariant data(QString("before"));
    QVERIFY(!execute(index, data));
    QCOMPARE(data, QVariant(QString("before")));
}

void DefaultActionsTest::scriptThatASignalEndedDidNotSucceed_data()
{
    addActionRows();
}

void DefaultActionsTest::scriptThatASignalEndedDidNotSucceed()
{
    QFETCH(int, index);

    mWrappers->addScript(kKey, kActions[index].script, "echo after\nkill -KILL $$");
    QVariant data(QString("before"));
    bool const answersAnyway = index == IsVisible || index == Del;
    QCOMPARE(execute(index, data), answersAnyway);
    QCOMPARE(data, index == IsVisible ? QVariant(false) : QVariant(QString("before")));
}

void DefaultActionsTest::scriptThatCannotBeStartedSucceeds_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("kind");
    int const kinds = sizeof(kUnstartables) / sizeof(kUnstartables[0]);
    for (int index = IsVisible; index <= Commit; ++index) {
        for (int kind = 0; kind < kinds; ++kind) {
            QByteArray const name
                = QByteArray(kActions[index].name) + ", " + kUnstartables[kind].name;
            QTest::newRow(name.constData()) << index << kind;
        }
    }
}

void DefaultActionsTest::scriptThatCannotBeStartedSucceeds()
{
    QFETCH(int, index);
    QFETCH(int, kind);

    addUnstartable(index, kUnstartables[kind]);
    QVariant data(QString("before"));
    QVERIFY(execute(index, data));
    QVERIFY(!mWrappers->exists(kKey, "ran"));
    if (index == IsVisible) {
        QCOMPARE(data, QVariant(true));
    } else if (index == Value || index == SetValue) {
        QVERIFY(!data.toString().isNull());
        QCOMPARE(data.toString(), QString(""));
    } else {
        QCOMPARE(data, QVariant(QString("before")));
    }
}

void DefaultActionsTest::directoryInPlaceOfAScriptSucceeds()
{
    QVERIFY(QDir(mWrappers->directory()).mkpath(QString(kKey) + "/get.sh"));
    QVariant data;
    QVERIFY(execute(Value, data));
    QCOMPARE(data.toString(), QString(""));
}

void DefaultActionsTest::scriptWithTooLongAnEnvironmentFails_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<bool>("isTooLong");

    int const longest = longestVariable();
    QStringList many;
    for (int i = 0; i < 100; ++i)
        many << variable(("MANY" + QByteArray::number(i)).constData(), longest);
    int const indexes[] = {Value, SetValue, Commit};
    for (int const index : indexes) {
        QByteArray const name = kActions[index].name;
        QTest::newRow((name + ", the longest variable").constData())
            << index << QStringList(variable("LONG", longest)) << false;
        QTest::newRow((name + ", one byte longer").constData())
            << index << QStringList(variable("LONG", longest + 1)) << true;
        QTest::newRow((name + ", many variables").constData()) << index << many << true;
    }
}

void DefaultActionsTest::scriptWithTooLongAnEnvironmentFails()
{
    QFETCH(int, index);
    QFETCH(QStringList, lines);
    QFETCH(bool, isTooLong);

    mWrappers->addScript(kKey, kActions[index].script, "touch ran");
    QScopedPointer<IConfigAction> const action(enlargedAction(index, lines));
    QVariant data(QString("before"));
    QCOMPARE(action->execute(*mEntry, data), !isTooLong);
    QCOMPARE(mWrappers->exists(kKey, "ran"), !isTooLong);
    if (isTooLong)
        QCOMPARE(data, QVariant(QString("before")));
}

void DefaultActionsTest::scriptThatInheritsTooLongAnEnvironmentFails_data()
{
    addActionRows();
}

void DefaultActionsTest::scriptThatInheritsTooLongAnEnvironmentFails()
{
    QFETCH(int, index);

    mWrappers->addScript(kKey, kActions[index].script, "touch ran");
    qputenv("ZELVO_TEST", QByteArray(longestVariable(), 'x'));
    QVariant data(QString("before"));
    bool const isDone = execute(index, data);
    ::unsetenv("ZELVO_TEST");
    bool const answersAnyway = index == IsVisible || index == Del;
    QCOMPARE(isDone, answersAnyway);
    QCOMPARE(data, index == IsVisible ? QVariant(false) : QVariant(QString("before")));
    QVERIFY(!mWrappers->exists(kKey, "ran"));
}

void DefaultActionsTest::scriptWithoutAnInterpreterIsRunByTheShellIfItInherits_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("isRun");

    QTest::newRow("isVisible is run") << int(IsVisible) << true;
    QTest::newRow("value is not started: empty") << int(Value) << false;
    QTest::newRow("setValue is not started: empty") << int(SetValue) << false;
    QTest::newRow("create is run") << int(Create) << true;
    QTest::newRow("del is run") << int(Del) << true;
    QTest::newRow("commit is not started: done") << int(Commit) << false;
}

void DefaultActionsTest::scriptWithoutAnInterpreterIsRunByTheShellIfItInherits()
{
    QFETCH(int, index);
    QFETCH(bool, isRun);

    Unstartable const kind = {"", "printf %s \"$0 $#\" >ran\nexit 1\n", true};
    QString const script = addUnstartable(index, kind);
    QVariant data(QString("before"));
    bool const isDone = execute(index, data);
    QCOMPARE(mWrappers->exists(kKey, "ran"), isRun);
    if (isRun)
        QCOMPARE(QFile::decodeName(read("ran")), script + " 0");
    QCOMPARE(isDone, index != Create);
    if (index == IsVisible)
        QCOMPARE(data, QVariant(false));
}

void DefaultActionsTest::valueIsTheWholeOutput_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("value");

    QTest::newRow("newline at the end is kept") << QByteArray("echo abc") << "abc\n";
    QTest::newRow("no newline is added") << QByteArray("printf abc") << "abc";
    QTest::newRow("blanks are kept") << QByteArray("printf '  a b\\t'") << "  a b\t";
    QTest::newRow("several lines") << QByteArray("printf 'a\\nb\\n\\n'") << "a\nb\n\n";
    QTest::newRow("carriage returns are kept") << QByteArray("printf 'a\\r\\n'") << "a\r\n";
    QTest::newRow("UTF-8") << QByteArray("printf '\\303\\251\\342\\202\\254'")
                           << QString::fromUtf8("\xc3\xa9\xe2\x82\xac");
    QTest::newRow("NUL inside") << QByteArray("printf 'a\\000b'") << QString::fromLatin1("a\0b", 3);
    QTest::newRow("printed in pieces") << QByteArray("printf a; sleep 0.1; printf b") << "ab";
}

void DefaultActionsTest::valueIsTheWholeOutput()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, value);

    mWrappers->addScript(kKey, "get.sh", body);
    QVariant data(7);
    QVERIFY(execute(Value, data));
    QCOMPARE(data.type(), QVariant::String);
    QCOMPARE(data.toString(), value);
}

void DefaultActionsTest::valueOfASilentScriptIsEmptyAndNotNull()
{
    mWrappers->addScript(kKey, "get.sh", "exit 0");
    QVariant data;
    QVERIFY(execute(Value, data));
    QVERIFY(!data.toString().isNull());
    QVERIFY(data.toString().isEmpty());
}

void DefaultActionsTest::valueOfAMegabyteIsReadWhole()
{
    mWrappers->addScript(kKey, "get.sh", "head -c 1048576 /dev/zero | tr '\\000' x");
    QVariant data;
    QVERIFY(execute(Value, data));
    QVERIFY(data.toString() == QString(1 << 20, 'x'));
}

void DefaultActionsTest::errorOutputIsNoValue()
{
    mWrappers->addScript(kKey, "get.sh", "echo complaint >&2\nprintf value");
    QVariant data;
    QVERIFY(execute(Value, data));
    QCOMPARE(data.toString(), QString("value"));
}

void DefaultActionsTest::undecodableOutputIsStillAValue()
{
    mWrappers->addScript(kKey, "get.sh", "printf 'a\\377\\376b'");
    QVariant data;
    QVERIFY(execute(Value, data));
    QVERIFY(data.toString().startsWith("a"));
    QVERIFY(data.toString().endsWith("b"));
}

void DefaultActionsTest::setScriptGetsTheValueInAFile_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("no terminator") << "Kiosk" << QByteArray("Kiosk");
    QTest::newRow("blanks and newlines") << " a b\n\n" << QByteArray(" a b\n\n");
    QTest::newRow("what a shell would expand")
        << "$(touch x) `y` * \"'" << QByteArray("$(touch x) `y` * \"'");
    QTest::newRow("UTF-8") << QString::fromUtf8("\xc3\xa9\xe2\x82\xac")
                           << QByteArray("\xc3\xa9\xe2\x82\xac");
    QTest::newRow("NUL and control characters")
        << QString::fromLatin1("a\0\x1b", 3) << QByteArray("a\0\x1b", 3);
    QTest::newRow("empty") << "" << QByteArray("");
    QTest::newRow("null") << QString() << QByteArray("");
}

void DefaultActionsTest::setScriptGetsTheValueInAFile()
{
    QFETCH(QString, value);
    QFETCH(QByteArray, content);

    mWrappers->addScript(kKey, "set.sh", "cp \"$1\" got");
    QVariant data(value);
    QVERIFY(execute(SetValue, data));
    QVERIFY(mWrappers->exists(kKey, "got"));
    QCOMPARE(read("got"), content);
}

void DefaultActionsTest::commitScriptGetsTheValueInAFile_data()
{
    setScriptGetsTheValueInAFile_data();
}

void DefaultActionsTest::commitScriptGetsTheValueInAFile()
{
    QFETCH(QString, value);
    QFETCH(QByteArray, content);

    mWrappers->addScript(kKey, "commit.sh", "cp \"$1\" got");
    QVariant data(value);
    QVERIFY(execute(Commit, data));
    QVERIFY(mWrappers->exists(kKey, "got"));
    QCOMPARE(read("got"), content);
}

void DefaultActionsTest::valueFileIsForItsOwnerOnly()
{
    mWrappers->addScript(kKey, "commit.sh", "/usr/bin/stat -c '%a %F' \"$1\" >got");
    QVariant data(QString("value"));
    QVERIFY(execute(Commit, data));
    QCOMPARE(read("got"), QByteArray("600 regular file\n"));
}

void DefaultActionsTest::valueThatIsNoTextIsPassedAsText()
{
    mWrappers->addScript(kKey, "commit.sh", "cp \"$1\" got");
    QVariant data(42);
    QVERIFY(execute(Commit, data));
    QCOMPARE(read("got"), QByteArray("42"));
    data = true;
    QVERIFY(execute(Commit, data));
    QCOMPARE(read("got"), QByteArray("true"));
}

void DefaultActionsTest::outputOfTheSetScriptIsTheValue_data()
{
    valueIsTheWholeOutput_data();
}

void DefaultActionsTest::outputOfTheSetScriptIsTheValue()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, value);

    mWrappers->addScript(kKey, "set.sh", body);
    QVariant data(7);
    QVERIFY(execute(SetValue, data));
    QCOMPARE(data.type(), QVariant::String);
    QCOMPARE(data.toString(), value);
}

void DefaultActionsTest::silentSetScriptMakesTheValueEmptyAndNotNull()
{
    mWrappers->addScript(kKey, "set.sh", "exit 0");
    QVariant data(QString("before"));
    QVERIFY(execute(SetValue, data));
    QVERIFY(!data.toString().isNull());
    QVERIFY(data.toString().isEmpty());
}

void DefaultActionsTest::commitLeavesTheValue()
{
    mWrappers->addScript(kKey, "commit.sh", "echo after");
    QVariant data(QString("before"));
    QVERIFY(execute(Commit, data));
    QCOMPARE(data, QVariant(QString("before")));
}

void DefaultActionsTest::createAndDelLeaveTheValue()
{
    mWrappers->addScript(kKey, "create.sh", "echo after");
    mWrappers->addScript(kKey, "del.sh", "echo after");
    QVariant data(QString("before"));
    QVERIFY(execute(Create, data));
    QVERIFY(execute(Del, data));
    QCOMPARE(data, QVariant(QString("before")));
}

void DefaultActionsTest::valueOfManyMegabytesIsPassedWhole()
{
    mWrappers->addScript(kKey, "set.sh", "wc -c <\"$1\"");
    QVariant data(QString(16 << 20, 'x'));
    QVERIFY(execute(SetValue, data));
    QCOMPARE(data.toString().trimmed(), QString::number(16 << 20));
}

void DefaultActionsTest::withoutATemporaryFileNoScriptRuns_data()
{
    QTest::addColumn<int>("index");

    QTest::newRow("setValue") << int(SetValue);
    QTest::newRow("commit") << int(Commit);
}

void DefaultActionsTest::withoutATemporaryFileNoScriptRuns()
{
    QFETCH(int, index);

    mWrappers->addScript(kKey, kActions[index].script, "touch ran");
    QByteArray const before = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/nonexistent");
    QVariant data(QString("before"));
    bool const succeeded = execute(index, data);
    if (before.isEmpty())
        ::unsetenv("TMPDIR");
    else
        qputenv("TMPDIR", before);

    QVERIFY(!succeeded);
    QCOMPARE(data, QVariant(QString("before")));
    QVERIFY(!mWrappers->exists(kKey, "ran"));
}

void DefaultActionsTest::argumentsOfAScript_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("count");

    QTest::newRow("isVisible: none") << int(IsVisible) << 0;
    QTest::newRow("value: none") << int(Value) << 0;
    QTest::newRow("setValue: the file") << int(SetValue) << 1;
    QTest::newRow("create: none") << int(Create) << 0;
    QTest::newRow("del: none") << int(Del) << 0;
    QTest::newRow("commit: the file") << int(Commit) << 1;
}

void DefaultActionsTest::argumentsOfAScript()
{
    QFETCH(int, index);
    QFETCH(int, count);

    QString const script
        = mWrappers->addScript(kKey, kActions[index].script,
                               "echo $# >count\nprintf %s \"$0\" >name\nprintf %s \"$1\" >file");
    QVariant data(QString("value"));
    QVERIFY(execute(index, data));
    QCOMPARE(read("count").trimmed(), QByteArray::number(count));
    QCOMPARE(QFile::decodeName(read("name")), script);
    QString const file = QFile::decodeName(read("file"));
    QCOMPARE(QFileInfo(file).isAbsolute(), count == 1);
    // It goes with the call.
    QVERIFY(!QFile::exists(file));
}

void DefaultActionsTest::scriptRunsInItsOwnFolder_data()
{
    addActionRows();
}

void DefaultActionsTest::scriptRunsInItsOwnFolder()
{
    QFETCH(int, index);

    mWrappers->addScript(kKey, kActions[index].script, "pwd -P >folder");
    QVariant data;
    QVERIFY(execute(index, data));
    QCOMPARE(QFile::decodeName(read("folder").trimmed()),
             QFileInfo(mWrappers->folder(kKey)).canonicalFilePath());
}

void DefaultActionsTest::environmentIsInherited_data()
{
    addActionRows();
}

void DefaultActionsTest::environmentIsInherited()
{
    QFETCH(int, index);

    mWrappers->addScript(kKey, kActions[index].script, "printf %s \"$ZELVO_TEST\" >variable");
    qputenv("ZELVO_TEST", "two words=x");
    QVariant data;
    QVERIFY(execute(index, data));
    ::unsetenv("ZELVO_TEST");
    QCOMPARE(read("variable"), QByteArray("two words=x"));
}

void DefaultActionsTest::environmentIsWhatTheActionSays()
{
    mWrappers->addScript(kKey, "get.sh", "tr '\\000' '\\n' </proc/$$/environ");
    QVariant data;
    QVERIFY(ExtraVariableAction().execute(*mEntry, data));
    QCOMPARE(data.toString(), QString("ONLY=key=x\n"));
}

void DefaultActionsTest::ownEnvironmentIsTheProcesss()
{
    qputenv("ZELVO_TEST", "here");
    QStringList const expected = QProcess::systemEnvironment();
    QVERIFY(expected.contains("ZELVO_TEST=here"));
    QCOMPARE(DefaultValueAction().processEnvironment(*mEntry), expected);
    QCOMPARE(DefaultSetValueAction().processEnvironment(*mEntry), expected);
    QCOMPARE(DefaultCommitAction().processEnvironment(*mEntry), expected);
    ::unsetenv("ZELVO_TEST");
}

void DefaultActionsTest::sessionsShareOneScript()
{
    QString const folder = "zelvo-view/sessions/{uuid}/name";
    mWrappers->addScript(folder, "get.sh", "printf '%s ' \"$0\"; pwd -P");
    ConfigBranch* const sessions = mTop->branch("sessions");
    IConfigEntry const* const first = new ConfigKey(
        "name", QString(), sessions->branch("{11111111-1111-1111-1111-111111111111}"));
    IConfigEntry const* const second = new ConfigKey(
        "name", QString(), sessions->branch("{22222222-2222-2222-2222-222222222222}"));
    QVariant ofFirst;
    QVariant ofSecond;
    QVERIFY(mActions[Value]->execute(*first, ofFirst));
    QVERIFY(mActions[Value]->execute(*second, ofSecond));

    QCOMPARE(ofFirst, ofSecond);
    QCOMPARE(ofFirst.toString(),
             mWrappers->folder(folder) + "/get.sh "
                 + QFileInfo(mWrappers->folder(folder)).canonicalFilePath() + "\n");
}

void DefaultActionsTest::blankInThePath_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("runs");

    QTest::newRow("isVisible is not found: visible") << int(IsVisible) << false;
    QTest::newRow("value is not found: empty") << int(Value) << false;
    QTest::newRow("setValue runs") << int(SetValue) << true;
    QTest::newRow("create is not found: done") << int(Create) << false;
    QTest::newRow("del is not found: done") << int(Del) << false;
    QTest::newRow("commit runs") << int(Commit) << true;
}

void DefaultActionsTest::blankInThePath()
{
    QFETCH(int, index);
    QFETCH(bool, runs);

    mWrappers.reset(new TestWrappers("with blank"));
    freshKit(*mBackend, mWrappers->directory());
    mWrappers->addScript(kKey, kActions[index].script, "touch ran\nprintf output");
    QVariant data(QString("before"));
    QVERIFY(execute(index, data));
    QCOMPARE(mWrappers->exists(kKey, "ran"), runs);
    if (index == IsVisible)
        QCOMPARE(data, QVariant(true));
    if (index == Value)
        QVERIFY(data.toString().isEmpty() && !data.toString().isNull());
    if (index == SetValue)
        QCOMPARE(data.toString(), QString("output"));
}

void DefaultActionsTest::nothingIsLeftBehind_data()
{
    addActionRows();
}

void DefaultActionsTest::nothingIsLeftBehind()
{
    QFETCH(int, index);

    char const* const script = kActions[index].script;
    QVariant data(QString("value"));
    // What Qt opens for the first process of all stays open for the next.
    mWrappers->addScript(kKey, script, "exit 0");
    execute(index, data);

    Footprint const before;
    char const* const bodies[]
        = {"echo done", "exit 1", "kill -KILL $$", "rm -f \"$1\"", "exec >&- 2>&- <&-"};
    for (char const* const body : bodies) {
        mWrappers->addScript(kKey, script, body);
        for (int round = 0; round < 5; ++round)
            execute(index, data);
    }
    for (Unstartable const& kind : kUnstartables) {
        QFile::remove(mWrappers->folder(kKey) + "/" + script);
        addUnstartable(index, kind);
        execute(index, data);
    }
    QCOMPARE(Footprint().newSince(before), QStringList());
}

void DefaultActionsTest::startsThatFailLeaveNoChild_data()
{
    QTest::addColumn<int>("index");

    QTest::newRow("with the inherited environment") << int(IsVisible);
    QTest::newRow("with an environment of its own") << int(Value);
}

void DefaultActionsTest::startsThatFailLeaveNoChild()
{
    QFETCH(int, index);

    Footprint const before;
    for (Unstartable const& kind : kUnstartables) {
        QFile::remove(mWrappers->folder(kKey) + "/" + kActions[index].script);
        addUnstartable(index, kind);
        QVariant data(QString("value"));
        for (int start = 0; start < 50; ++start)
            QVERIFY(execute(index, data));
    }
    QCOMPARE(Footprint().newSince(before), QStringList());
}

void DefaultActionsTest::oneInstanceServesSeveralThreads()
{
    mWrappers->addScript("{uuid}/name", "get.sh", "printf shared");
    char const* const uuids[] = {
        "{11111111-1111-1111-1111-111111111111}",
        "{22222222-2222-2222-2222-222222222222}",
        "{33333333-3333-3333-3333-333333333333}",
    };
    std::atomic<int> failures(0);
    std::vector<std::thread> threads;
    for (char const* const uuid : uuids)
        threads.emplace_back(readSession, std::ref(*mActions[Value]), uuid, std::ref(failures));
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(failures.load(), 0);
}

ZELVO_TEST(DefaultActionsTest)
#include "DefaultActionsTest.moc"
