// SPDX-License-Identifier: MIT

#include "TestView.h"
#include "actions/registry/RegistryActions.h"
#include "doctor/FolderCheck.h"
#include "doctor/Reports.h"
#include "support/TestProgram.h"

#include <QtTest>

// An area that the doctor has never heard of: its setting class stands in this file alone.

namespace {

char const kZone[] = "root/zelvo-view/clock/zone";
char const kChip[] = "root/zelvo-view/clock/chip";
char const kZoneFile[] = "/nonexistent/zone";

BackEnd const kClock = {"clock", "the clock, and its zone file", "the clock"};

class ClockValueAction : public RegistryValueAction
{
public:
    ClockValueAction()
        : RegistryValueAction(QString())
    {
        ActionDescription& description = describeAs("ClockValueAction");
        description.backEnd = &kClock;
        description.files.append(kZoneFile);
    }

    bool execute(IConfigEntry const& entry, QVariant& data) override
    {
        if (!RegistryValueAction::execute(entry, data))
            data = "UTC";
        return true;
    }
};

class ClockCommitAction : public RegistryCommitAction
{
public:
    ClockCommitAction()
        : RegistryCommitAction(QString())
    {
        ActionDescription& description = describeAs("ClockCommitAction");
        description.backEnd = &kClock;
        description.files.append(kZoneFile);
        description.takesWaitingValue = true;
    }
};

class ClockSettingClass : public ISettingClass
{
public:
    IConfigAction* isVisibleAction(QString const&) const override { return nullptr; }
    IConfigAction* valueAction(QString const& key) const override
    {
        return key.startsWith("zelvo-view/clock/") ? &mValue : nullptr;
    }
    IConfigAction* setValueAction(QString const&) const override { return nullptr; }
    IConfigAction* createAction(QString const&) const override { return nullptr; }
    IConfigAction* delAction(QString const&) const override { return nullptr; }
    IConfigAction* commitAction(QString const& key) const override
    {
        return key == "zelvo-view/clock/zone" ? &mCommit : nullptr;
    }
    IConfigAction* applyAction(QString const&) const override { return nullptr; }

private:
    mutable ClockValueAction mValue;
    mutable ClockCommitAction mCommit;
};

char const kDeclarations[]
    = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<registry><dir name=\"root\"><dir name=\"zelvo-view\"><dir name=\"clock\">\n"
      "<key name=\"zone\" type=\"string\" default=\"UTC\"/>\n"
      "<key name=\"chip\" type=\"string\" default=\"none\"/>\n"
      "</dir></dir></dir></registry>\n";

/// The shipped view with the new area in it.
class ViewWithClock : public TestView
{
public:
    ViewWithClock()
        : TestView(kDeclarations)
    {
        ActionKit::instance()->registerSettingClass(&mClock);
    }

    QString explained(QString const& key)
    {
        ExaminedEntry const entry(view, key);
        return textOf(explain(view, entry), Style(false));
    }

    QStringList findings(QString const& key)
    {
        QStringList messages;
        for (Finding const& finding : checkFolder(view, ExaminedEntry(view, key)))
            messages.append(finding.message);
        return messages;
    }

private:
    ClockSettingClass mClock;
};

} // namespace

class NewAreaTest : public QObject
{
    Q_OBJECT

private slots:
    void explainNamesItsBackEndAndItsFiles();
    void explainKnowsTheKeyThatIsReadOnly();
    void explainCallsNothingElseReadOnly_data();
    void explainCallsNothingElseReadOnly();
    void explainAsJsonSaysTheSame();
    void valueIsFromItsBackEnd();
    void mapShowsWhatItServes();
    void documentShowsWhatItServes();
    void checkKnowsWhatIsCommitted();
};

void NewAreaTest::explainNamesItsBackEndAndItsFiles()
{
    QString const text = ViewWithClock().explained(kZone);
    QVERIFY2(text.contains("get        offered by a setting class: ClockValueAction\n"
                           "           1. get.sh (absent), get.env (absent)\n"
                           "           2. the clock, and its zone file\n"
                           "           3. the default\n"),
             qPrintable(text));
    QVERIFY2(text.contains("commit     offered by a setting class: ClockCommitAction\n"
                           "           1. commit.sh (absent), commit.env (absent)\n"
                           "           2. the clock, and its zone file\n"
                           "           3. nothing\n"),
             qPrintable(text));
    QVERIFY2(text.contains("\nReads or writes itself\n  /nonexistent/zone\n\n"), qPrintable(text));
}

void NewAreaTest::explainKnowsTheKeyThatIsReadOnly()
{
    QString const first = ViewWithClock().explained(kChip).section('\n', 0, 0);
    QCOMPARE(first, QString(kChip) + ": a string, \"none\" by default; only scripts can write it");
}

void NewAreaTest::explainCallsNothingElseReadOnly_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("committed by its area") << kZone;
    QTest::newRow("set and committed in the registry") << "root/zelvo-view/usb/enable";
    QTest::newRow("set by its area, committed by a script") << "root/zelvo-view/display/resolution";
    QTest::newRow("left to scripts") << "root/zelvo-view/vexlink/sessions/{uuid}/address";
    QTest::newRow("a directory") << "root/zelvo-view/wireless";
}

void NewAreaTest::explainCallsNothingElseReadOnly()
{
    QFETCH(QString, key);

    ViewWithClock scene;
    scene.wrappers.addScript("zelvo-view/display/resolution", "commit.sh", "exit 0");
    QVERIFY(!explain(scene.view, ExaminedEntry(scene.view, key)).isReadOnly);
}

void NewAreaTest::explainAsJsonSaysTheSame()
{
    ViewWithClock scene;
    QString const json = jsonOf(explain(scene.view, ExaminedEntry(scene.view, kChip)), nullptr);
    QVERIFY2(json.contains("\"action\":\"ClockValueAction\",\"because\":\"setting class\","
                           "\"backEnd\":\"clock\",\"registryKeys\":[]"),
             qPrintable(json));
    QVERIFY2(json.contains("\"readOnly\":true"), qPrintable(json));
    QVERIFY2(json.contains("\"files\":[\"/nonexistent/zone\"]"), qPrintable(json));
}

void NewAreaTest::valueIsFromItsBackEnd()
{
    ViewWithClock scene;
    QString const text = textOf(askLive(ExaminedEntry(scene.view, kZone)), Style(false));
    QVERIFY2(text.contains("\"UTC\", from the clock ("), qPrintable(text));
}

void NewAreaTest::mapShowsWhatItServes()
{
    ViewWithClock scene;
    QString const text = textOf(viewMap(scene.view), Style(false));
    QVERIFY2(QRegExp(".*zelvo-view/clock/chip +the clock, and its zone file\n.*").exactMatch(text),
             qPrintable(text));
    QString const json = jsonOf(viewMap(scene.view));
    QVERIFY2(json.contains("\"backEnd\":\"clock\",\"registryKeys\":[],\"operations\":[\"get\"]"),
             qPrintable(json));
}

void NewAreaTest::documentShowsWhatItServes()
{
    ViewWithClock scene;
    QString const document = markdownOf(viewMap(scene.view));
    QVERIFY(document.contains("\n## clock\n"));
    QVERIFY(document.contains(
        "\n| `clock/zone` | string | `UTC` | the clock, and its zone file | get, commit |\n"));
    QVERIFY(document.contains(
        "\n| `clock/chip` | string | `none` | the clock, and its zone file | get |\n"));
}

void NewAreaTest::checkKnowsWhatIsCommitted()
{
    ViewWithClock scene;
    scene.wrappers.addScript("zelvo-view/clock/zone", "set.sh", "exit 0");
    scene.wrappers.addScript("zelvo-view/clock/chip", "set.sh", "exit 0");
    QCOMPARE(scene.findings(kZone), QStringList());
    QCOMPARE(scene.findings(kChip),
             QStringList("what it prints is lost at the commit: there is no commit.sh, and no "
                         "REG_SET line in set.env"));
}

ZELVO_TEST(NewAreaTest)
#include "NewAreaTest.moc"
