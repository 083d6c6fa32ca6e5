// SPDX-License-Identifier: MIT

#include "actions/ActionKit.h"

#include "actions/default/DefaultActions.h"
#include "actions/default/DefaultApplyAction.h"
#include "actions/registry/RegistryActions.h"
#include "support/RecordingAction.h"
#include "support/TestBackend.h"
#include "support/TestKit.h"
#include "support/TestProgram.h"
#include "support/TestWrappers.h"
#include "tree/ConfigBranch.h"
#include "tree/ConfigKey.h"

#include <QThreadPool>
#include <QtTest>

#include <typeinfo>

namespace {

char const kUuid[] = "{11111111-1111-1111-1111-111111111111}";
char const kOtherUuid[] = "{22222222-2222-2222-2222-222222222222}";

/// An entry with a path of more than one component.
class Entry
{
public:
    explicit Entry(QString const& path)
        : mTop(path.section('/', 0, 0), nullptr)
    {
        ConfigBranch* branch = &mTop;
        QStringList names = path.split('/').mid(1);
        QString const last = names.takeLast();
        for (QString const& name : names)
            branch = branch->branch(name);
        mKey = new ConfigKey(last, QString(), branch);
    }

    IConfigEntry const& operator*() const { return *mKey; }

private:
    Q_DISABLE_COPY(Entry)

    ConfigBranch mTop;
    IConfigEntry* mKey;
};

typedef void (ActionKit::*Register)(QString const&, IConfigAction*);
typedef IConfigAction* (ActionKit::*Lookup)(IConfigEntry const&) const;
typedef bool (ActionKit::*Run)(IConfigEntry const&, QVariant&);

struct Operation
{
    char const* name;
    int number;
    Register add;
    Lookup lookup;
    Run run;
    std::type_info const* defaultClass;
};

// clang-format off
Operation const kOperations[] = {
    {"isVisible", 1, &ActionKit::registerIsVisibleAction, &ActionKit::registeredIsVisibleAction,
     &ActionKit::isVisibleAction, &typeid(DefaultIsVisibleAction)},
    {"value", 2, &ActionKit::registerValueAction, &ActionKit::registeredValueAction,
     &ActionKit::valueAction, &typeid(RegistryValueAction)},
    {"setValue", 3, &ActionKit::registerSetValueAction, &ActionKit::registeredSetValueAction,
     &ActionKit::setValueAction, &typeid(RegistrySetValueAction)},
    {"create", 4, &ActionKit::registerCreateAction, &ActionKit::registeredCreateAction,
     &ActionKit::createAction, &typeid(DefaultCreateAction)},
    {"del", 5, &ActionKit::registerDelAction, &ActionKit::registeredDelAction,
     &ActionKit::delAction, &typeid(DefaultDelAction)},
    {"commit", 6, &ActionKit::registerCommitAction, &ActionKit::registeredCommitAction,
     &ActionKit::commitAction, &typeid(RegistryCommitAction)},
    {"apply", 7, &ActionKit::registerApplyAction, &ActionKit::registeredApplyAction,
     &ActionKit::applyAction, &typeid(DefaultApplyAction)},
};
// clang-format on

/// Offers one action for one operation on one key, and writes down what it was asked.
class TestSettingClass : public ISettingClass
{
public:
    TestSettingClass(int operation, QString const& key, IConfigAction* action)
        : mOperation(operation)
        , mKey(key)
        , mAction(action)
    {
    }

    IConfigAction* isVisibleAction(QString const& key) const override { return offer(1, key); }
    IConfigAction* valueAction(QString const& key) const override { return offer(2, key); }
    IConfigAction* setValueAction(QString const& key) const override { return offer(3, key); }
    IConfigAction* createAction(QString const& key) const override { return offer(4, key); }
    IConfigAction* delAction(QString const& key) const override { return offer(5, key); }
    IConfigAction* commitAction(QString const& key) const override { return offer(6, key); }
    IConfigAction* applyAction(QString const& key) const override { return offer(7, key); }

    QStringList const& asked() const { return mAsked; }

private:
    IConfigAction* offer(int operation, QString const& key) const
    {
        mAsked.append(QString::number(operation) + " " + key);
        return operation == mOperation && key == mKey ? mAction : nullptr;
    }

    int mOperation;
    QString mKey;
    IConfigAction* mAction;
    mutable QStringList mAsked;
};

void addOperationRows()
{
    QTest::addColumn<int>("index");
    int const count = sizeof(kOperations) / sizeof(kOperations[0]);
    for (int index = 0; index < count; ++index)
        QTest::newRow(kOperations[index].name) << index;
}

} // namespace

class ActionKitTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void kitKnowsWhatItWasMadeWith();
    void secondKitReplacesTheFirstAndLeavesItAlive();
    void destroyedKitLeavesAllThatItPointedTo();

    void operationsAreNumbered();
    void entryWithoutRegistrationGetsTheDefault_data();
    void entryWithoutRegistrationGetsTheDefault();
    void defaultsServeAKeyByItsScriptsAlone();
    void registeredActionServesItsKeyAndOperation_data();
    void registeredActionServesItsKeyAndOperation();
    void laterRegistrationIsKept_data();
    void laterRegistrationIsKept();
    void nullRegistrationMeansNoAction_data();
    void nullRegistrationMeansNoAction();
    void settingClassComesBeforeTheDefault_data();
    void settingClassComesBeforeTheDefault();
    void registrationComesBeforeTheSettingClass_data();
    void registrationComesBeforeTheSettingClass();
    void firstSettingClassWinsATie();
    void settingClassIsAskedUntilOneAnswers();
    void noSettingClassAnswersForAnUnknownOperation();

    void keysAreCaseSensitive();
    void everyUuidIsLookedUpAsThePlaceholder();
    void concretePathIsNeverLookedUp();

    void nullActionIsNotExecuted();
    void executingPassesDataAndAnswer();

    void matchedKeyIsServedByTheRegistry();
    void matchedKeyTakesTheGivenActions();
    void matchingLeavesTheOtherOperations();
    void sessionsOfADirectoryAreServedByTheRegistry();
    void unknownSessionDirectoryIsEmpty();
    void registeredBranchIsFound();

    void translateUuid_data();
    void translateUuid();
    void translateUuidTakesAnyPlaceholder();
    void resolveUuid_data();
    void resolveUuid();
    void translatingAPathOfAMegabyte();

    void poolsAreAStack();

private:
    QScopedPointer<TestBackend> mBackend;
    QScopedPointer<TestWrappers> mWrappers;
    ActionKit* mKit;
};

void ActionKitTest::initTestCase()
{
    // Before the first kit there is none.
    QVERIFY(!ActionKit::instance());
}

void ActionKitTest::init()
{
    mBackend.reset(new TestBackend);
    mWrappers.reset(new TestWrappers);
    mKit = &freshKit(*mBackend, mWrappers->directory());
}

void ActionKitTest::kitKnowsWhatItWasMadeWith()
{
    QVERIFY(ActionKit::instance() == mKit);
    QVERIFY(mKit->vantoraBackend() == mBackend.data());
    QCOMPARE(mKit->wrappersDirectory().path(), mWrappers->directory().path());
    QCOMPARE(freshKit(*mBackend, QDir("/base//wrappers")).wrappersDirectory(),
             QDir("/base//wrappers"));
}

void ActionKitTest::secondKitReplacesTheFirstAndLeavesItAlive()
{
    RecordingAction action;
    mKit->registerApplyAction("a/key", &action);
    ActionKit& second = freshKit(*mBackend, QDir("/second"));
    Entry const entry("a/key");

    QVERIFY(ActionKit::instance() == &second);
    QVERIFY(second.registeredApplyAction(*entry) != &action);
    QVERIFY(mKit->registeredApplyAction(*entry) == &action);
    QCOMPARE(mKit->wrappersDirectory().path(), mWrappers->directory().path());
}

void ActionKitTest::destroyedKitLeavesAllThatItPointedTo()
{
    RecordingAction action;
    TestSettingClass const settingClass(7, "a/key", &action);
    ConfigBranch const branch("branch", nullptr);
    QThreadPool const pool;
    Entry const entry("a/key");
    QList<IConfigAction*> defaults;
    {
        ActionKit kit(*mBackend, QDir("/nonexistent"));
        for (Operation const& operation : kOperations)
            defaults.append((kit.*operation.lookup)(*entry));
        kit.registerDelAction("a/key", &action);
        kit.registerSettingClass(const_cast<TestSettingClass*>(&settingClass));
        kit.registerConfigBranch("a", const_cast<ConfigBranch*>(&branch));
        kit.pushApplyThreadPool(const_cast<QThreadPool*>(&pool));
    }

    QVariant data(QString("a value"));
    QVERIFY(action.execute(*entry, data));
    QVERIFY(settingClass.applyAction("a/key") == &action);
    QCOMPARE(branch.name(), QString("branch"));
    QCOMPARE(pool.activeThreadCount(), 0);
    for (IConfigAction* const defaultAction : const_cast<QList<IConfigAction*> const&>(defaults))
        QVERIFY(!defaultAction->execute(*entry, data));
    qDeleteAll(defaults);
}

void ActionKitTest::operationsAreNumbered()
{
    QCOMPARE(int(ISettingClass::ACTION_IS_VISIBLE), 1);
    QCOMPARE(int(ISettingClass::ACTION_VALUE), 2);
    QCOMPARE(int(ISettingClass::ACTION_SET_VALUE), 3);
    QCOMPARE(int(ISettingClass::ACTION_CREATE), 4);
    QCOMPARE(int(ISettingClass::ACTION_DEL), 5);
    QCOMPARE(int(ISettingClass::ACTION_COMMIT), 6);
    QCOMPARE(int(ISettingClass::ACTION_APPLY), 7);
    QVERIFY(typeid(ActionKit::Action_t) == typeid(ISettingClass::Action_t));
}

void ActionKitTest::entryWithoutRegistrationGetsTheDefault_data()
{
    addOperationRows();
}

void ActionKitTest::entryWithoutRegistrationGetsTheDefault()
{
    QFETCH(int, index);
    Operation const& operation = kOperations[index];

    Entry const entry("a/key");
    IConfigAction* const action = (mKit->*operation.lookup)(*entry);
    QVERIFY(action);
    QCOMPARE(typeid(*action).name(), operation.defaultClass->name());
    // The default serves all keys.
    Entry const other("b/other");
    QVERIFY((mKit->*operation.lookup)(*other) == action);
}

void ActionKitTest::defaultsServeAKeyByItsScriptsAlone()
{
    Entry const entry("a/key");
    QVariant data;
    QVERIFY(!mKit->valueAction(*entry, data));
    QVERIFY(!mKit->delAction(*entry, data));
    QVERIFY(!mKit->commitAction(*entry, data));
    data = QString("a value");
    QVERIFY(!mKit->setValueAction(*entry, data));
    QVERIFY(mBackend->calls("set").isEmpty());
    QVERIFY(mBackend->calls("del").isEmpty());
    QVERIFY(mBackend->calls("commit").isEmpty());

    mWrappers->addScript("a/key", "get.sh", "printf answer");
    mWrappers->addScript("a/key", "del.sh", "touch deleted");
    QVERIFY(mKit->valueAction(*entry, data));
    QCOMPARE(data.toString(), QString("answer"));
    QVERIFY(mKit->delAction(*entry, data));
    QVERIFY(mWrappers->exists("a/key", "deleted"));
}

void ActionKitTest::registeredActionServesItsKeyAndOperation_data()
{
    addOperationRows();
}

void ActionKitTest::registeredActionServesItsKeyAndOperation()
{
    QFETCH(int, index);
    Operation const& operation = kOperations[index];

    RecordingAction action(QVariant(QString("output")));
    (mKit->*operation.add)("a/key", &action);
    Entry const entry("a/key");
    QVariant data(QString("input"));
    QVERIFY((mKit->*operation.run)(*entry, data));
    QCOMPARE(data, QVariant(QString("output")));
    QCOMPARE(action.paths(), QStringList() << "a/key");
    QCOMPARE(action.calls().first().data, QVariant(QString("input")));

    Entry const other("a/other");
    for (Operation const& any : kOperations) {
        QCOMPARE((mKit->*any.lookup)(*entry) == &action, any.number == operation.number);
        QVERIFY((mKit->*any.lookup)(*other) != &action);
    }
}

void ActionKitTest::laterRegistrationIsKept_data()
{
    addOperationRows();
}

void ActionKitTest::laterRegistrationIsKept()
{
    QFETCH(int, index);
    Operation const& operation = kOperations[index];

    RecordingAction earlier;
    RecordingAction later;
    (mKit->*operation.add)("a/key", &earlier);
    (mKit->*operation.add)("a/key", &later);
    Entry const entry("a/key");
    QVariant data;
    QVERIFY((mKit->*operation.lookup)(*entry) == &later);
    QVERIFY((mKit->*operation.run)(*entry, data));
    QVERIFY(earlier.calls().isEmpty());
}

void ActionKitTest::nullRegistrationMeansNoAction_data()
{
    addOperationRows();
}

void ActionKitTest::nullRegistrationMeansNoAction()
{
    QFETCH(int, index);
    Operation const& operation = kOperations[index];

    RecordingAction offered;
    TestSettingClass settingClass(operation.number, "a/key", &offered);
    mKit->registerSettingClass(&settingClass);
    (mKit->*operation.add)("a/key", nullptr);
    Entry const entry("a/key");
    QVariant data(QString("input"));
    QVERIFY(!(mKit->*operation.lookup)(*entry));
    QVERIFY(!(mKit->*operation.run)(*entry, data));
    QCOMPARE(data, QVariant(QString("input")));
    QVERIFY(settingClass.asked().isEmpty());
}

void ActionKitTest::settingClassComesBeforeTheDefault_data()
{
    addOperationRows();
}

void ActionKitTest::settingClassComesBeforeTheDefault()
{
    QFETCH(int, index);
    Operation const& operation = kOperations[index];

    RecordingAction offered;
    TestSettingClass settingClass(operation.number, "a/{uuid}/key", &offered);
    mKit->registerSettingClass(&settingClass);
    Entry const entry(QString("a/") + kUuid + "/key");
    QVERIFY((mKit->*operation.lookup)(*entry) == &offered);
    QCOMPARE(settingClass.asked(),
             QStringList() << QString::number(operation.number) + " a/{uuid}/key");

    Entry const other("a/other");
    QVERIFY((mKit->*operation.lookup)(*other) != &offered);
}

void ActionKitTest::registrationComesBeforeTheSettingClass_data()
{
    addOperationRows();
}

void ActionKitTest::registrationComesBeforeTheSettingClass()
{
    QFETCH(int, index);
    Operation const& operation = kOperations[index];

    RecordingAction offered;
    RecordingAction registered;
    TestSettingClass settingClass(operation.number, "a/key", &offered);
    mKit->registerSettingClass(&settingClass);
    (mKit->*operation.add)("a/key", &registered);
    Entry const entry("a/key");
    QVERIFY((mKit->*operation.lookup)(*entry) == &registered);
    QVERIFY(settingClass.asked().isEmpty());
}

void ActionKitTest::firstSettingClassWinsATie()
{
    RecordingAction first;
    RecordingAction second;
    TestSettingClass firstClass(2, "a/key", &first);
    TestSettingClass secondClass(2, "a/key", &second);
    mKit->registerSettingClass(&firstClass);
    mKit->registerSettingClass(&secondClass);

    QVERIFY(mKit->registeredActionFromSettingClasses("a/key", ISettingClass::ACTION_VALUE)
            == &first);
    QVERIFY(secondClass.asked().isEmpty());
}

void ActionKitTest::settingClassIsAskedUntilOneAnswers()
{
    RecordingAction offered;
    TestSettingClass silent(0, QString(), nullptr);
    TestSettingClass answering(2, "a/key", &offered);
    mKit->registerSettingClass(&silent);
    mKit->registerSettingClass(&silent);
    mKit->registerSettingClass(&answering);

    QVERIFY(mKit->registeredActionFromSettingClasses("a/key", ISettingClass::ACTION_VALUE)
            == &offered);
    // No check for duplicates.
    QCOMPARE(silent.asked().size(), 2);
    QVERIFY(!mKit->registeredActionFromSettingClasses("a/none", ISettingClass::ACTION_VALUE));
}

void ActionKitTest::noSettingClassAnswersForAnUnknownOperation()
{
    RecordingAction offered;
    TestSettingClass settingClass(1, "a/key", &offered);
    mKit->registerSettingClass(&settingClass);

    ActionKit::Action_t const zero = static_cast<ActionKit::Action_t>(0);
    QVERIFY(!mKit->registeredActionFromSettingClasses("a/key", zero));
    QVERIFY(settingClass.asked().isEmpty());
}

void ActionKitTest::keysAreCaseSensitive()
{
    RecordingAction action;
    mKit->registerDelAction("a/Key", &action);
    Entry const entry("a/key");

    QVERIFY(mKit->registeredDelAction(*entry) != &action);
}

void ActionKitTest::everyUuidIsLookedUpAsThePlaceholder()
{
    RecordingAction action;
    mKit->registerDelAction("a/{uuid}/b/{uuid}/c", &action);
    Entry const entry(QString("a/") + kUuid + "/b/" + kOtherUuid + "/c");

    QVERIFY(mKit->registeredDelAction(*entry) == &action);
}

void ActionKitTest::concretePathIsNeverLookedUp()
{
    RecordingAction action;
    QString const path = QString("a/") + kUuid + "/key";
    mKit->registerDelAction(path, &action);

    QVERIFY(mKit->registeredDelAction(*Entry(path)) != &action);
}

void ActionKitTest::nullActionIsNotExecuted()
{
    Entry const entry("a/key");
    QVariant data(QString("input"));

    QVERIFY(!mKit->executeAction(nullptr, *entry, data));
    QCOMPARE(data, QVariant(QString("input")));
}

void ActionKitTest::executingPassesDataAndAnswer()
{
    Entry const entry("a/key");
    RecordingAction action(QVariant(7));
    QVariant data(QString("input"));

    QVERIFY(mKit->executeAction(&action, *entry, data));
    QCOMPARE(data, QVariant(7));
    action.refuse();
    QVERIFY(!mKit->executeAction(&action, *entry, data));
    QCOMPARE(action.calls().size(), 2);
}

void ActionKitTest::matchedKeyIsServedByTheRegistry()
{
    mKit->matchRegistryKey("a/{uuid}/name", "root/A/{UUID}/label", nullptr, nullptr);
    QString const registryKey = QString("root/A/") + kUuid + "/label";
    mBackend->addValue(registryKey, "office");
    Entry const entry(QString("a/") + kUuid + "/name");

    QVariant data;
    QVERIFY(mKit->valueAction(*entry, data));
    QCOMPARE(data.toString(), QString("office"));
    data = QString("home");
    QVERIFY(mKit->setValueAction(*entry, data));
    QCOMPARE(mBackend->calls("set"), QStringList() << "set " + registryKey + " home");
    QVERIFY(mKit->commitAction(*entry, data));
    QCOMPARE(mBackend->calls("commit"), QStringList() << "commit " + registryKey);
    QVERIFY(mKit->delAction(*entry, data));
    QCOMPARE(mBackend->calls("del"), QStringList() << "del " + registryKey);
}

void ActionKitTest::matchedKeyTakesTheGivenActions()
{
    RecordingAction value;
    RecordingAction setValue;
    mKit->matchRegistryKey("a/key", "root/A/key", &value, &setValue);
    Entry const entry("a/key");

    QVERIFY(mKit->registeredValueAction(*entry) == &value);
    QVERIFY(mKit->registeredSetValueAction(*entry) == &setValue);
    QVERIFY(dynamic_cast<RegistryDelAction*>(mKit->registeredDelAction(*entry)));
    RegistryCommitAction const* const commit
        = dynamic_cast<RegistryCommitAction*>(mKit->registeredCommitAction(*entry));
    QVERIFY(commit);
    QCOMPARE(commit->registryKey(), QString("root/A/key"));
}

void ActionKitTest::matchingLeavesTheOtherOperations()
{
    Entry const other("a/other");
    mKit->matchRegistryKey("a/key", "root/A/key", nullptr, nullptr);
    Entry const entry("a/key");

    QVERIFY(mKit->registeredIsVisibleAction(*entry) == mKit->registeredIsVisibleAction(*other));
    QVERIFY(mKit->registeredCreateAction(*entry) == mKit->registeredCreateAction(*other));
    QVERIFY(mKit->registeredApplyAction(*entry) == mKit->registeredApplyAction(*other));
}

void ActionKitTest::sessionsOfADirectoryAreServedByTheRegistry()
{
    mKit->setRegistryUuidDir("a/sessions", "root/A/connections");
    QCOMPARE(mKit->getRegistryUuidDir("a/sessions/{uuid}"), QString("root/A/connections"));
    Entry const entry(QString("a/sessions/") + kUuid);
    QString const registryKey = QString("root/A/connections/") + kUuid;

    QVariant data;
    QVERIFY(mKit->createAction(*entry, data));
    QVERIFY(mKit->commitAction(*entry, data));
    QVERIFY(mKit->delAction(*entry, data));
    QCOMPARE(mBackend->calls(),
             QStringList() << "create " + registryKey << "commit " + registryKey
                           << "del " + registryKey);
}

void ActionKitTest::unknownSessionDirectoryIsEmpty()
{
    mKit->setRegistryUuidDir("a/sessions", "root/A/connections");

    QVERIFY(mKit->getRegistryUuidDir("a/sessions").isEmpty());
    QVERIFY(mKit->getRegistryUuidDir("a/sessions/{UUID}").isEmpty());
    QVERIFY(mKit->getRegistryUuidDir(QString("a/sessions/") + kUuid).isEmpty());
    QVERIFY(mKit->getRegistryUuidDir(QString()).isEmpty());
}

void ActionKitTest::registeredBranchIsFound()
{
    ConfigBranch first("first", nullptr);
    ConfigBranch second("second", nullptr);
    mKit->registerConfigBranch("a/sessions", &first);

    QVERIFY(mKit->registeredConfigBranch("a/sessions") == &first);
    QVERIFY(!mKit->registeredConfigBranch("a"));
    mKit->registerConfigBranch("a/sessions", &second);
    QVERIFY(mKit->registeredConfigBranch("a/sessions") == &second);
    mKit->registerConfigBranch("a/sessions", nullptr);
    QVERIFY(!mKit->registeredConfigBranch("a/sessions"));
}

void ActionKitTest::translateUuid_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QString const uuid = kUuid;

    QTest::newRow("UUID inside") << "a/b/" + uuid + "/c"
                                 << "a/b/{uuid}/c";
    QTest::newRow("UUID at the end") << "a/" + uuid << "a/{uuid}";
    QTest::newRow("UUID alone") << uuid << "{uuid}";
    QTest::newRow("two UUIDs") << uuid + "/a/" + kOtherUuid << "{uuid}/a/{uuid}";
    QTest::newRow("two UUIDs side by side") << uuid + "/" + kOtherUuid << "{uuid}/{uuid}";
    QTest::newRow("without braces") << "a/11111111-1111-1111-1111-111111111111"
                                    << "a/{uuid}";
    QTest::newRow("in capitals") << "a/{ABCDEFAB-CDEF-ABCD-EFAB-CDEFABCDEFAB}"
                                 << "a/{uuid}";
    QTest::newRow("nil UUID stays") << "a/{00000000-0000-0000-0000-000000000000}"
                                    << "a/{00000000-0000-0000-0000-000000000000}";
    QTest::newRow("no UUID") << "a/b"
                             << "a/b";
    QTest::newRow("cut short") << "a/{11111111-1111-1111-1111-11111111111"
                               << "a/{11111111-1111-1111-1111-11111111111";
    QTest::newRow("placeholder typed by hand") << "a/{uuid}/{UUID}"
                                               << "a/{uuid}/{UUID}";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("slash") << "/"
                           << "/";
    QTest::newRow("empty pieces are kept") << "/a//" + uuid + "/"
                                           << "/a//{uuid}/";
    QTest::newRow("part of a name stays") << "a/x" + uuid << "a/x" + uuid;
}

void ActionKitTest::translateUuid()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);

    QCOMPARE(ActionKit::translateUuid(path, "{uuid}"), expected);
}

void ActionKitTest::translateUuidTakesAnyPlaceholder()
{
    QString const path = QString("a/") + kUuid;

    QCOMPARE(ActionKit::translateUuid(path, "{UUID}"), QString("a/{UUID}"));
    QCOMPARE(ActionKit::translateUuid(path, ""), QString("a/"));
}

void ActionKitTest::resolveUuid_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("registryTemplate");
    QTest::addColumn<QString>("expected");
    QString const uuid = kUuid;

    QTest::newRow("UUID takes the placeholder") << "a/" + uuid + "/name"
                                                << "root/A/{UUID}/label"
                                                << "root/A/" + uuid + "/label";
    QTest::newRow("path without UUID: the placeholder stays") << "a/b"
                                                              << "root/A/{UUID}/label"
                                                              << "root/A/{UUID}/label";
    QTest::newRow("nil UUID is none") << "a/{00000000-0000-0000-0000-000000000000}"
                                      << "root/{UUID}"
                                      << "root/{UUID}";
    QTest::newRow("template without placeholder") << "a/" + uuid << "root/A"
                                                  << "root/A";
    QTest::newRow("every placeholder gets the first UUID")
        << "a/" + uuid + "/" + kOtherUuid << "{UUID}/x/{UUID}" << uuid + "/x/" + uuid;
    QTest::newRow("the view's placeholder is another word") << "a/" + uuid << "root/{uuid}"
                                                            << "root/{uuid}";
    QTest::newRow("part of a name stays") << "a/" + uuid << "root/x{UUID}"
                                          << "root/x{UUID}";
    QTest::newRow("the UUID is taken as it stands") << "a/11111111-1111-1111-1111-11111111111A"
                                                    << "r/{UUID}"
                                                    << "r/11111111-1111-1111-1111-11111111111A";
    QTest::newRow("empty pieces are kept") << "a/" + uuid << "/r//{UUID}/"
                                           << "/r//" + uuid + "/";
    QTest::newRow("empty template") << "a/" + uuid << ""
                                    << "";
    QTest::newRow("empty path") << ""
                                << "root/{UUID}"
                                << "root/{UUID}";
}

void ActionKitTest::resolveUuid()
{
    QFETCH(QString, path);
    QFETCH(QString, registryTemplate);
    QFETCH(QString, expected);

    QCOMPARE(ActionKit::resolveUuid(path, registryTemplate), expected);
}

void ActionKitTest::translatingAPathOfAMegabyte()
{
    QString const path = QString("x/").repeated(1 << 19) + kUuid;

    QCOMPARE(ActionKit::translateUuid(path, "{uuid}").size(), (1 << 20) + 6);
    QCOMPARE(ActionKit::resolveUuid(path, "root/{UUID}"), QString("root/") + kUuid);
}

void ActionKitTest::poolsAreAStack()
{
    QThreadPool first;
    QThreadPool second;
    mKit->pushApplyThreadPool(&first);
    QVERIFY(mKit->topApplyTreadPool() == &first);
    mKit->pushApplyThreadPool(&second);
    QVERIFY(mKit->topApplyTreadPool() == &second);
    QVERIFY(mKit->popApplyThreadPool() == &second);
    QVERIFY(mKit->topApplyTreadPool() == &first);
    QVERIFY(mKit->popApplyThreadPool() == &first);
}

ZELVO_TEST(ActionKitTest)
#include "ActionKitTest.moc"
