// SPDX-License-Identifier: MIT

#include "display/DisplaySettingClass.h"

#include "DisplayBackend.h"
#include "actions/ActionKit.h"
#include "display/ConfigActions.h"
#include "support/TestProgram.h"
#include "support/TestWrappers.h"
#include "tree/ConfigKey.h"

#include <QtTest>

namespace {

typedef IConfigAction* (DisplaySettingClass::*Getter)(QString const&) const;

struct Operation
{
    char const* name;
    Getter getter;
    char const* script;
    int code;
};

Operation const kOperations[] = {
    {"value", &DisplaySettingClass::valueAction, "get.sh", 2},
    {"setValue", &DisplaySettingClass::setValueAction, "set.sh", 3},
    {"commit", &DisplaySettingClass::commitAction, "commit.sh", 6},
};

char const* const kKeys[] = {
    "zelvo-view/display/color_depth",     "zelvo-view/display/multi_monitor_mode",
    "zelvo-view/display/refresh_rate",    "zelvo-view/display/resolution",
    "zelvo-view/display/primary_monitor",
};

QString const kResolution = QString::fromLatin1("zelvo-view/display/resolution");

} // namespace

/// All cases share one kit and one setting class, as the plugin has them: both live for the
/// process.
class DisplaySettingClassTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void servesTheFiveKeys_data();
    void servesTheFiveKeys();
    void tellsTheObjectWhatToDo_data();
    void tellsTheObjectWhatToDo();
    void commitAfterValueIsACommit();
    void leavesOtherKeysAlone_data();
    void leavesOtherKeysAlone();
    void leavesOtherOperationsAlone_data();
    void leavesOtherOperationsAlone();

    void scriptTakesPrecedenceForItsOperation_data();
    void scriptTakesPrecedenceForItsOperation();
    void scriptOfAnotherKeyDoesNotMatter();
    void removedScriptLeavesTheObject();
    void scriptAnswersThroughTheKit();

    void firstSettingMakesAProfile();
    void setCommittedAndReadBack_data();
    void setCommittedAndReadBack();
    void modesAreTheNumbersOfTheRegistry_data();
    void modesAreTheNumbersOfTheRegistry();

private:
    void addScript(QString const& key, QString const& name, QByteArray const& body = QByteArray());

    DisplayBackend mBackend;
    TestWrappers mWrappers;
    // The kit's, for the process.
    DisplaySettingClass* mSettings;
    QStringList mScripts;
};

void DisplaySettingClassTest::initTestCase()
{
    QVERIFY2(!qgetenv("VANTORA_SANDBOX_RECORD").isEmpty(), "to be run in the sandbox only");
    ActionKit::init(mBackend, mWrappers.directory());
    mSettings = new DisplaySettingClass(mBackend);
    ActionKit::instance()->registerSettingClass(mSettings);
}

void DisplaySettingClassTest::cleanup()
{
    for (QString const& script : static_cast<QStringList const&>(mScripts))
        QVERIFY(QFile::remove(script));
    mScripts.clear();
}

void DisplaySettingClassTest::addScript(QString const& key, QString const& name,
                                        QByteArray const& body)
{
    mScripts.append(mWrappers.addScript(key, name, body));
}

void DisplaySettingClassTest::servesTheFiveKeys_data()
{
    QTest::addColumn<QString>("key");

    for (char const* key : kKeys)
        QTest::newRow(key) << key;
}

void DisplaySettingClassTest::servesTheFiveKeys()
{
    QFETCH(QString, key);

    IConfigAction* const action = mSettings->valueAction(key);
    QVERIFY(action);
    QCOMPARE(mSettings->setValueAction(key), action);
    QCOMPARE(mSettings->commitAction(key), action);
    for (char const* other : kKeys)
        QCOMPARE(mSettings->valueAction(other) == action, key == other);
}

void DisplaySettingClassTest::tellsTheObjectWhatToDo_data()
{
    QTest::addColumn<int>("operation");

    QTest::newRow("value is 2") << 0;
    QTest::newRow("setValue is 3") << 1;
    QTest::newRow("commit is 6") << 2;
}

void DisplaySettingClassTest::tellsTheObjectWhatToDo()
{
    QFETCH(int, operation);

    Operation const& tested = kOperations[operation];
    ConfigActions* const actions
        = dynamic_cast<ConfigActions*>((mSettings->*tested.getter)(kResolution));
    QVERIFY(actions);
    QCOMPARE(int(actions->currentAction()), tested.code);
}

void DisplaySettingClassTest::commitAfterValueIsACommit()
{
    IConfigAction* const action = mSettings->valueAction(kResolution);
    QCOMPARE(mSettings->commitAction(kResolution), action);
    QCOMPARE(int(dynamic_cast<ConfigActions&>(*action).currentAction()), 6);
}

void DisplaySettingClassTest::leavesOtherKeysAlone_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("the branch itself") << "zelvo-view/display";
    QTest::newRow("the root of the view") << "zelvo-view";
    QTest::newRow("no such display key") << "zelvo-view/display/brightness";
    QTest::newRow("below a display key") << "zelvo-view/display/resolution/width";
    QTest::newRow("trailing slash") << "zelvo-view/display/resolution/";
    QTest::newRow("leading slash") << "/zelvo-view/display/resolution";
    QTest::newRow("other case") << "zelvo-view/display/Resolution";
    QTest::newRow("without the root") << "display/resolution";
    QTest::newRow("out of the folder") << "zelvo-view/display/../display/resolution";
    QTest::newRow("empty") << "";
    QTest::newRow("a megabyte") << QString(1 << 20, 'x');
}

void DisplaySettingClassTest::leavesOtherKeysAlone()
{
    QFETCH(QString, key);

    for (Operation const& operation : kOperations)
        QVERIFY2(!(mSettings->*operation.getter)(key), operation.name);
}

void DisplaySettingClassTest::leavesOtherOperationsAlone_data()
{
    servesTheFiveKeys_data();
}

void DisplaySettingClassTest::leavesOtherOperationsAlone()
{
    QFETCH(QString, key);

    QVERIFY(!mSettings->isVisibleAction(key));
    QVERIFY(!mSettings->createAction(key));
    QVERIFY(!mSettings->delAction(key));
    QVERIFY(!mSettings->applyAction(key));
}

void DisplaySettingClassTest::scriptTakesPrecedenceForItsOperation_data()
{
    QTest::addColumn<QString>("script");

    QTest::newRow("get.sh") << "get.sh";
    QTest::newRow("set.sh") << "set.sh";
    QTest::newRow("commit.sh") << "commit.sh";
    QTest::newRow("apply.sh: no operation of the class") << "apply.sh";
    QTest::newRow("get.env: no script") << "get.env";
}

void DisplaySettingClassTest::scriptTakesPrecedenceForItsOperation()
{
    QFETCH(QString, script);

    addScript(kResolution, script);
    for (Operation const& operation : kOperations) {
        bool const isBuiltIn = (mSettings->*operation.getter)(kResolution) != nullptr;
        QVERIFY2(isBuiltIn == (script != operation.script), operation.name);
    }
}

void DisplaySettingClassTest::scriptOfAnotherKeyDoesNotMatter()
{
    addScript("zelvo-view/display/refresh_rate", "get.sh");
    addScript("zelvo-view/display", "get.sh");
    QVERIFY(mSettings->valueAction(kResolution));
    QVERIFY(!mSettings->valueAction("zelvo-view/display/refresh_rate"));
}

void DisplaySettingClassTest::removedScriptLeavesTheObject()
{
    addScript(kResolution, "get.sh");
    QVERIFY(!mSettings->valueAction(kResolution));
    cleanup();
    QVERIFY(mSettings->valueAction(kResolution));
}

void DisplaySettingClassTest::scriptAnswersThroughTheKit()
{
    addScript(kResolution, "get.sh", "printf 640x480");
    ConfigKey resolution(kResolution, QString(), nullptr);
    QCOMPARE(resolution.value(), QString("640x480"));

    // The script reads only: setting still reaches the profile.
    mBackend.forgetCalls();
    resolution.setValue("1024x768");
    QStringList const writes = mBackend.calls("set").filter(QRegExp("/(width|height) "));
    QCOMPARE(writes.size(), 2);
    QVERIFY2(writes.first().endsWith("/width 1024"), qPrintable(writes.first()));
    QVERIFY2(writes.last().endsWith("/height 768"), qPrintable(writes.last()));
}

void DisplaySettingClassTest::firstSettingMakesAProfile()
{
    DisplayBackend backend;
    DisplaySettingClass const settings(backend);
    ConfigKey const entry(kResolution, QString(), nullptr);
    QVariant value;
    QVERIFY(!settings.valueAction(kResolution)->execute(entry, value));

    value = "Auto";
    QVERIFY(settings.setValueAction(kResolution)->execute(entry, value));
    QCOMPARE(backend.calls("create").size(), 1);
    QVERIFY(settings.commitAction(kResolution)->execute(entry, value));

    QVariant readBack;
    QVERIFY(settings.valueAction(kResolution)->execute(entry, readBack));
    QCOMPARE(readBack, QVariant("Auto"));

    // The class leaves its objects to the process; this process goes on.
    for (char const* key : kKeys)
        delete settings.valueAction(key);
}

void DisplaySettingClassTest::setCommittedAndReadBack_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");

    QTest::newRow("resolution") << "resolution"
                                << "1280x1024"
                                << "1280x1024";
    QTest::newRow("resolution, automatic") << "resolution"
                                           << "Auto"
                                           << "Auto";
    QTest::newRow("refresh rate") << "refresh_rate"
                                  << "72"
                                  << "72";
    QTest::newRow("refresh rate, automatic") << "refresh_rate"
                                             << "Auto"
                                             << "Auto";
    QTest::newRow("color depth") << "color_depth"
                                 << "16 Bpp"
                                 << "16 Bpp";
    QTest::newRow("color depth, nonsense") << "color_depth"
                                           << "many"
                                           << "8 Bpp";
    QTest::newRow("mode 0") << "multi_monitor_mode"
                            << "Same as primary"
                            << "Same as primary";
    QTest::newRow("mode 1") << "multi_monitor_mode"
                            << "Extend above primary"
                            << "Extend above primary";
    QTest::newRow("mode 2") << "multi_monitor_mode"
                            << "Extend to the right of primary"
                            << "Extend to the right of primary";
    QTest::newRow("mode 3") << "multi_monitor_mode"
                            << "Extend to the left of primary"
                            << "Extend to the left of primary";
    QTest::newRow("mode 4") << "multi_monitor_mode"
                            << "Extend below primary"
                            << "Extend below primary";
    QTest::newRow("no other monitor") << "multi_monitor_mode"
                                      << "Disable"
                                      << "Disable";
    QTest::newRow("primary monitor") << "primary_monitor"
                                     << "2"
                                     << "2";
    QTest::newRow("primary monitor, none such") << "primary_monitor"
                                                << "0"
                                                << "1";
}

void DisplaySettingClassTest::setCommittedAndReadBack()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QString, expected);

    // The first row may meet a registry without a profile and without a label in use.
    mBackend.addDefault("root/Display/Configuration/primaryprofile", "");
    ConfigKey entry("zelvo-view/display/" + key, QString(), nullptr);
    entry.setValue(value);
    entry.commit();
    QCOMPARE(entry.value(), expected);
}

void DisplaySettingClassTest::modesAreTheNumbersOfTheRegistry_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("number");

    QTest::newRow("same") << "Same as primary"
                          << "0";
    QTest::newRow("above") << "Extend above primary"
                           << "1";
    QTest::newRow("right") << "Extend to the right of primary"
                           << "2";
    QTest::newRow("left") << "Extend to the left of primary"
                          << "3";
    QTest::newRow("below") << "Extend below primary"
                           << "4";
}

void DisplaySettingClassTest::modesAreTheNumbersOfTheRegistry()
{
    QFETCH(QString, mode);
    QFETCH(QString, number);

    mBackend.use("work");
    mBackend.addValue("root/Display/Configuration/secondaryprofile", "work");
    mBackend.addValue("root/Display/Configuration/secondarymode", number);
    QCOMPARE(ConfigKey("zelvo-view/display/multi_monitor_mode", QString(), nullptr).value(), mode);
}

ZELVO_TEST(DisplaySettingClassTest)

#include "DisplaySettingClassTest.moc"
