// SPDX-License-Identifier: MIT

#include "support/RecordingAction.h"
#include "support/TestBackend.h"
#include "support/TestKit.h"
#include "support/TestProgram.h"
#include "support/WatchedEntries.h"

#include <QtTest>

namespace {

/// An entry that is neither key nor branch.
class BareEntry : public AbstractConfigEntry
{
public:
    explicit BareEntry(QString const& name, IConfigEntry* parent = nullptr)
        : AbstractConfigEntry(name, parent)
    {
    }

    bool addChild(IConfigEntry*) override { return false; }
    IConfigEntry* child(QString const&) const override { return nullptr; }
    void del() override { }
    void commit() override { }
    void apply() override { }
    IConfigEntry* clone() override { return nullptr; }
};

/// An action during which the branch of its entry loses one child and gets another.
class RestlessAction : public RecordingAction
{
public:
    RestlessAction(IConfigEntry& leaving, IConfigEntry* arriving)
        : mLeaving(leaving)
        , mArriving(arriving)
    {
    }

    bool execute(IConfigEntry const& entry, QVariant& data) override
    {
        if (calls().isEmpty()) {
            ConfigBranch* const branch = dynamic_cast<ConfigBranch*>(entry.parent());
            branch->detachChild(mLeaving);
            branch->addChild(mArriving);
        }
        return RecordingAction::execute(entry, data);
    }

private:
    IConfigEntry& mLeaving;
    IConfigEntry* mArriving;
};

/// A key that remembers the state of the entry that it was cloned with.
class StateKey : public ConfigKey
{
public:
    StateKey(QString const& name, IConfigEntry* parent)
        : ConfigKey(name, QString(), parent)
        , mParentState(ENTRY_IDLE)
    {
    }

    IConfigEntry* clone() override
    {
        mParentState = parent()->state();
        return ConfigKey::clone();
    }

    entry_state_t parentState() const { return mParentState; }

private:
    entry_state_t mParentState;
};

QStringList list(char const* blankSeparated)
{
    return QString(blankSeparated).split(' ');
}

} // namespace

class ConfigEntryTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void newEntryHasItsNameAndIsIdle();
    void newKeyIsLinkedIntoItsParent();
    void newBranchIsLinkedIntoItsParent();
    void commonPartDoesNotLinkItself();
    void newKeyIsATextWithoutValue();

    void pathNamesAllFromTheTopDown();
    void pathOfAnEntryWithoutParentIsItsName();
    void pathFollowsARename();

    void replacingChildGoesToTheEnd();
    void childIsReplacedWhateverItsKind();
    void addingAChildAgainChangesNothing();
    void nullChildIsRefused();
    void namesAreCaseSensitive();
    void keyTakesNoChildren();
    void childThatWasRenamedIntoItsNamesakeStaysOnce();

    void branchAnswersTheBranchOfThatName();
    void branchMakesTheMissingOne();
    void branchReplacesAKeyOfThatName();
    void branchBehindAKeyOfItsNameIsFound();

    void detachedChildStaysAlive();
    void strangerIsNotDetached();
    void namesakeIsNotDetached();

    void settingTheCurrentParentDoesNothing();
    void settingNoParentTouchesNoList();
    void settingAParentAddsToItsChildren();

    void visibleWhereNoActionRan();
    void visibilityActionThatFailsDoesNotHide();
    void visibilityIsReadAsBool_data();
    void visibilityIsReadAsBool();
    void hiddenBranchHidesAllBelow();
    void keyHiddenByItsOwnActionIsHiddenWhateverItsParentSays();

    void valueOfAKeyWithoutActionIsNull();
    void valueOfAKeyWhoseActionFailsIsNull();
    void valueIsTheTextOfWhatTheActionAnswers_data();
    void valueIsTheTextOfWhatTheActionAnswers();
    void emptyValueIsNotNull();

    void setValueWithoutActionBuffersTheText();
    void setValueBuffersWhatTheActionMadeOfIt();
    void setValueWhoseActionFailsBuffersTheText();
    void emptyValueIsBufferedAsEmpty();

    void keyOperationsTellTheirState();
    void branchOperationsTellTheirState();
    void commitPassesTheBufferedValue();
    void commitOfAKeyThatWasNotSetPassesNull();
    void otherOperationsPassNothing();
    void childrenGoBeforeTheirBranch();
    void childrenAddedOrRemovedByAnActionDoNotDisturbTheWalk();
    void operationsWithoutActionsDoNothing();

    void clonedKeyHasAllOfTheKey();
    void clonedBranchIsADeepCopy();
    void branchIsCloningWhileItsChildrenAreCloned();
    void branchDeletesItsChildrenInOrder();
    void renamedChildIsFoundByItsNewName();
    void bufferHoldsAnyText_data();
    void bufferHoldsAnyText();

private:
    TestBackend mBackend;
    ActionKit* mKit;
};

void ConfigEntryTest::init()
{
    mKit = &freshKit(mBackend, QDir("/nonexistent"));
}

void ConfigEntryTest::newEntryHasItsNameAndIsIdle()
{
    ConfigKey const key("key", "default", nullptr);
    ConfigBranch const branch("branch", nullptr);

    QCOMPARE(key.name(), QString("key"));
    QCOMPARE(branch.name(), QString("branch"));
    QCOMPARE(key.state(), IConfigEntry::ENTRY_IDLE);
    QCOMPARE(branch.state(), IConfigEntry::ENTRY_IDLE);
    QVERIFY(!key.parent());
    QVERIFY(!branch.parent());
}

void ConfigEntryTest::newKeyIsLinkedIntoItsParent()
{
    ConfigBranch branch("branch", nullptr);
    ConfigKey* const key = new ConfigKey("key", QString(), &branch);

    QVERIFY(key->parent() == &branch);
    QVERIFY(branch.child("key") == key);
}

void ConfigEntryTest::newBranchIsLinkedIntoItsParent()
{
    ConfigBranch top("top", nullptr);
    ConfigBranch* const branch = new ConfigBranch("branch", &top);

    QVERIFY(branch->parent() == &top);
    QVERIFY(top.child("branch") == branch);
}

void ConfigEntryTest::commonPartDoesNotLinkItself()
{
    ConfigBranch branch("branch", nullptr);
    BareEntry const entry("entry", &branch);

    QVERIFY(entry.parent() == &branch);
    QVERIFY(branch.children().isEmpty());
}

void ConfigEntryTest::newKeyIsATextWithoutValue()
{
    ConfigKey const key("key", "default", nullptr);

    QCOMPARE(key.defaultValue(), QString("default"));
    QCOMPARE(key.type(), REG_TYPE_STRING);
    QVERIFY(key.regExp().isEmpty());
    QVERIFY(key.bufferValue().isNull());
}

void ConfigEntryTest::pathNamesAllFromTheTopDown()
{
    ConfigBranch top("zelvo-view", nullptr);
    ConfigBranch* const branch = new ConfigBranch("b", &top);
    ConfigKey const* const key = new ConfigKey("c", QString(), branch);

    QCOMPARE(key->path(), QString("zelvo-view/b/c"));
    QCOMPARE(branch->path(), QString("zelvo-view/b"));
    QCOMPARE(top.path(), QString("zelvo-view"));
}

void ConfigEntryTest::pathOfAnEntryWithoutParentIsItsName()
{
    QCOMPARE(ConfigKey("key", QString(), nullptr).path(), QString("key"));
    QCOMPARE(ConfigKey(QString(), QString(), nullptr).path(), QString(""));
}

void ConfigEntryTest::pathFollowsARename()
{
    ConfigBranch top("top", nullptr);
    ConfigBranch* const branch = new ConfigBranch("before", &top);
    ConfigKey const* const key = new ConfigKey("key", QString(), branch);

    branch->setName("after");
    QCOMPARE(key->path(), QString("top/after/key"));
}

void ConfigEntryTest::replacingChildGoesToTheEnd()
{
    QStringList deleted;
    ConfigBranch branch("branch", nullptr);
    new WatchedKey("a", &branch, deleted);
    new WatchedKey("b", &branch, deleted);
    QScopedPointer<WatchedKey> second(new WatchedKey("a", nullptr, deleted));

    QVERIFY(branch.addChild(second.data()));
    WatchedKey const* const added = second.take();
    QCOMPARE(deleted, list("a"));
    QCOMPARE(childNames(branch), list("b a"));
    QVERIFY(branch.child("a") == added);
    QVERIFY(added->parent() == &branch);
}

void ConfigEntryTest::childIsReplacedWhateverItsKind()
{
    QStringList deleted;
    ConfigBranch branch("branch", nullptr);
    new WatchedKey("a", new WatchedBranch("x", &branch, deleted), deleted);
    new ConfigKey("x", QString(), &branch);
    QCOMPARE(deleted, list("x a"));
    QCOMPARE(childNames(branch), list("x"));

    new ConfigBranch("x", &branch);
    QCOMPARE(childNames(branch), list("x/"));
}

void ConfigEntryTest::addingAChildAgainChangesNothing()
{
    QStringList deleted;
    ConfigBranch branch("branch", nullptr);
    WatchedKey* const first = new WatchedKey("a", &branch, deleted);
    new WatchedKey("b", &branch, deleted);

    QVERIFY(branch.addChild(first));
    QCOMPARE(childNames(branch), list("a b"));
    QVERIFY(deleted.isEmpty());
}

void ConfigEntryTest::nullChildIsRefused()
{
    ConfigBranch branch("branch", nullptr);

    QVERIFY(!branch.addChild(nullptr));
    QVERIFY(branch.children().isEmpty());
}

void ConfigEntryTest::namesAreCaseSensitive()
{
    ConfigBranch branch("branch", nullptr);
    new ConfigKey("a", QString(), &branch);
    new ConfigKey("A", QString(), &branch);

    QCOMPARE(childNames(branch), list("a A"));
    QCOMPARE(branch.child("A")->name(), QString("A"));
    QVERIFY(!branch.child("b"));
}

void ConfigEntryTest::keyTakesNoChildren()
{
    ConfigKey key("key", QString(), nullptr);
    ConfigKey child("child", QString(), nullptr);

    QVERIFY(!key.addChild(&child));
    QVERIFY(!key.addChild(nullptr));
    QVERIFY(!key.child("child"));
    QVERIFY(!child.parent());
}

void ConfigEntryTest::childThatWasRenamedIntoItsNamesakeStaysOnce()
{
    QStringList deleted;
    {
        ConfigBranch branch("branch", nullptr);
        new WatchedKey("a", &branch, deleted);
        WatchedKey* const renamed = new WatchedKey("b", &branch, deleted);
        renamed->setName("a");
        QVERIFY(branch.addChild(renamed));
        QCOMPARE(deleted, list("a"));
        QCOMPARE(branch.children().size(), 1);
        QVERIFY(branch.child("a") == renamed);
    }
    QCOMPARE(deleted, list("a a"));
}

void ConfigEntryTest::branchAnswersTheBranchOfThatName()
{
    ConfigBranch top("top", nullptr);
    ConfigBranch* const branch = new ConfigBranch("x", &top);
    new ConfigKey("key", QString(), branch);

    QVERIFY(top.branch("x") == branch);
    QCOMPARE(childNames(*branch), list("key"));
    QCOMPARE(childNames(top), list("x/"));
}

void ConfigEntryTest::branchMakesTheMissingOne()
{
    ConfigBranch top("top", nullptr);
    new ConfigKey("key", QString(), &top);
    ConfigBranch const* const branch = top.branch("x");

    QCOMPARE(childNames(top), list("key x/"));
    QVERIFY(branch->parent() == &top);
    QVERIFY(branch->children().isEmpty());
}

void ConfigEntryTest::branchReplacesAKeyOfThatName()
{
    QStringList deleted;
    ConfigBranch top("top", nullptr);
    new WatchedKey("x", &top, deleted);
    new ConfigKey("y", QString(), &top);
    ConfigBranch const* const branch = top.branch("x");

    QCOMPARE(deleted, list("x"));
    QVERIFY(branch->children().isEmpty());
    QCOMPARE(childNames(top), list("y x/"));
}

void ConfigEntryTest::branchBehindAKeyOfItsNameIsFound()
{
    ConfigBranch top("top", nullptr);
    ConfigKey* const key = new ConfigKey("key", QString(), &top);
    ConfigBranch* const branch = new ConfigBranch("x", &top);
    key->setName("x");

    QVERIFY(top.child("x") == key);
    QVERIFY(top.branch("x") == branch);
    QCOMPARE(childNames(top), list("x x/"));
}

void ConfigEntryTest::detachedChildStaysAlive()
{
    QStringList deleted;
    ConfigBranch branch("branch", nullptr);
    new ConfigKey("a", QString(), &branch);
    QScopedPointer<WatchedKey> const child(new WatchedKey("b", &branch, deleted));
    new ConfigKey("c", QString(), &branch);

    QVERIFY(branch.detachChild(*child));
    QVERIFY(!child->parent());
    QVERIFY(deleted.isEmpty());
    QCOMPARE(childNames(branch), list("a c"));
    QVERIFY(!branch.child("b"));
}

void ConfigEntryTest::strangerIsNotDetached()
{
    ConfigBranch branch("branch", nullptr);
    new ConfigKey("a", QString(), &branch);
    ConfigBranch other("other", nullptr);
    ConfigKey* const stranger = new ConfigKey("b", QString(), &other);

    QVERIFY(!branch.detachChild(*stranger));
    QVERIFY(stranger->parent() == &other);
    QCOMPARE(childNames(other), list("b"));
    QCOMPARE(childNames(branch), list("a"));
}

void ConfigEntryTest::namesakeIsNotDetached()
{
    ConfigBranch branch("branch", nullptr);
    new ConfigKey("a", QString(), &branch);
    ConfigKey namesake("a", QString(), nullptr);

    QVERIFY(!branch.detachChild(namesake));
    QCOMPARE(childNames(branch), list("a"));
}

void ConfigEntryTest::settingTheCurrentParentDoesNothing()
{
    ConfigBranch branch("branch", nullptr);
    BareEntry entry("entry", &branch);

    // It is in no list: adding it would show.
    entry.setParent(&branch);
    QVERIFY(branch.children().isEmpty());
    QVERIFY(entry.parent() == &branch);
}

void ConfigEntryTest::settingNoParentTouchesNoList()
{
    ConfigBranch branch("branch", nullptr);
    ConfigKey* const key = new ConfigKey("key", QString(), &branch);

    key->setParent(nullptr);
    QVERIFY(!key->parent());
    QVERIFY(branch.child("key") == key);
}

void ConfigEntryTest::settingAParentAddsToItsChildren()
{
    ConfigBranch before("before", nullptr);
    ConfigBranch after("after", nullptr);
    ConfigKey* const key = new ConfigKey("key", QString(), &before);

    key->setParent(&after);
    QVERIFY(key->parent() == &after);
    QVERIFY(after.child("key") == key);
    // The former parent is not told.
    QVERIFY(before.child("key") == key);
    before.detachChild(*key);
    QVERIFY(after.detachChild(*key));
    delete key;
}

void ConfigEntryTest::visibleWhereNoActionRan()
{
    ConfigBranch branch("branch", nullptr);
    ConfigKey const* const key = new ConfigKey("key", QString(), &branch);

    // The default action looks for a script; there is none.
    QVERIFY(key->isVisible());
    mKit->registerIsVisibleAction("branch/key", nullptr);
    QVERIFY(key->isVisible());
}

void ConfigEntryTest::visibilityActionThatFailsDoesNotHide()
{
    RecordingAction action((QVariant(false)));
    action.refuse();
    mKit->registerIsVisibleAction("key", &action);

    QVERIFY(ConfigKey("key", QString(), nullptr).isVisible());
}

void ConfigEntryTest::visibilityIsReadAsBool_data()
{
    // One element: Qt 4 has no columns of plain variants.
    QTest::addColumn<QVariantList>("answer");
    QTest::addColumn<bool>("isVisible");

    QTest::newRow("true") << (QVariantList() << QVariant(true)) << true;
    QTest::newRow("false") << (QVariantList() << QVariant(false)) << false;
    QTest::newRow("one") << (QVariantList() << QVariant(1)) << true;
    QTest::newRow("zero") << (QVariantList() << QVariant(0)) << false;
    QTest::newRow("the text true") << (QVariantList() << QVariant(QString("true"))) << true;
    QTest::newRow("the text false") << (QVariantList() << QVariant(QString("false"))) << false;
    QTest::newRow("the text 0") << (QVariantList() << QVariant(QString("0"))) << false;
    QTest::newRow("any other text") << (QVariantList() << QVariant(QString("hidden"))) << true;
    QTest::newRow("an empty text") << (QVariantList() << QVariant(QString(""))) << false;
    QTest::newRow("nothing") << (QVariantList() << QVariant()) << false;
}

void ConfigEntryTest::visibilityIsReadAsBool()
{
    QFETCH(QVariantList, answer);
    QFETCH(bool, isVisible);

    RecordingAction action(answer.first());
    mKit->registerIsVisibleAction("key", &action);
    QCOMPARE(ConfigKey("key", QString(), nullptr).isVisible(), isVisible);
    QVERIFY(action.calls().first().data.isNull());
}

void ConfigEntryTest::hiddenBranchHidesAllBelow()
{
    ConfigBranch top("top", nullptr);
    ConfigBranch* const hidden = new ConfigBranch("hidden", &top);
    ConfigBranch* const inner = new ConfigBranch("inner", hidden);
    ConfigKey const* const key = new ConfigKey("key", QString(), inner);
    ConfigKey const* const outside = new ConfigKey("outside", QString(), &top);
    RecordingAction hides((QVariant(false)));
    RecordingAction shows((QVariant(true)));
    mKit->registerIsVisibleAction("top/hidden", &hides);
    mKit->registerIsVisibleAction("top/hidden/inner/key", &shows);

    QVERIFY(!hidden->isVisible());
    QVERIFY(!inner->isVisible());
    QVERIFY(!key->isVisible());
    QVERIFY(outside->isVisible());
    QVERIFY(top.isVisible());
}

void ConfigEntryTest::keyHiddenByItsOwnActionIsHiddenWhateverItsParentSays()
{
    ConfigBranch top("top", nullptr);
    ConfigKey const* const key = new ConfigKey("key", QString(), &top);
    RecordingAction hides((QVariant(false)));
    RecordingAction shows((QVariant(true)));
    mKit->registerIsVisibleAction("top/key", &hides);
    mKit->registerIsVisibleAction("top", &shows);

    QVERIFY(!key->isVisible());
    // The parent is asked about visible entries only.
    QVERIFY(shows.calls().isEmpty());
    QVERIFY(top.isVisible());
}

void ConfigEntryTest::valueOfAKeyWithoutActionIsNull()
{
    ConfigKey key("key", "default", nullptr);
    key.setBufferValue("buffered");
    mKit->registerValueAction("key", nullptr);

    QVERIFY(key.value().isNull());
}

void ConfigEntryTest::valueOfAKeyWhoseActionFailsIsNull()
{
    ConfigKey key("key", "default", nullptr);
    key.setBufferValue("buffered");
    // No script and no registry key.
    QVERIFY(key.value().isNull());

    RecordingAction action(QVariant(QString("half a value")));
    action.refuse();
    mKit->registerValueAction("key", &action);
    QVERIFY(key.value().isNull());
}

void ConfigEntryTest::valueIsTheTextOfWhatTheActionAnswers_data()
{
    // One element: Qt 4 has no columns of plain variants.
    QTest::addColumn<QVariantList>("answer");
    QTest::addColumn<QString>("value");

    QTest::newRow("text") << (QVariantList() << QVariant(QString(" a\n"))) << " a\n";
    QTest::newRow("number") << (QVariantList() << QVariant(42)) << "42";
    QTest::newRow("bool") << (QVariantList() << QVariant(true)) << "true";
}

void ConfigEntryTest::valueIsTheTextOfWhatTheActionAnswers()
{
    QFETCH(QVariantList, answer);
    QFETCH(QString, value);

    RecordingAction action(answer.first());
    mKit->registerValueAction("key", &action);
    QCOMPARE(ConfigKey("key", "default", nullptr).value(), value);
    QVERIFY(!action.calls().first().data.isValid());
}

void ConfigEntryTest::emptyValueIsNotNull()
{
    RecordingAction action(QVariant(QString("")));
    mKit->registerValueAction("key", &action);
    QString const value = ConfigKey("key", "default", nullptr).value();

    QVERIFY(value.isEmpty());
    QVERIFY(!value.isNull());
}

void ConfigEntryTest::setValueWithoutActionBuffersTheText()
{
    ConfigKey key("key", QString(), nullptr);
    mKit->registerSetValueAction("key", nullptr);

    key.setValue(" as\ngiven ");
    QCOMPARE(key.bufferValue(), QString(" as\ngiven "));
    QCOMPARE(mBackend.calls("set"), QStringList());
}

void ConfigEntryTest::setValueBuffersWhatTheActionMadeOfIt()
{
    RecordingAction action(QVariant(QString("kiosk-7")));
    mKit->registerSetValueAction("key", &action);
    ConfigKey key("key", QString(), nullptr);

    key.setValue("Kiosk-7");
    QCOMPARE(key.bufferValue(), QString("kiosk-7"));
    QCOMPARE(action.calls().first().data, QVariant(QString("Kiosk-7")));
}

void ConfigEntryTest::setValueWhoseActionFailsBuffersTheText()
{
    RecordingAction action(QVariant(QString("half done")));
    action.refuse();
    mKit->registerSetValueAction("key", &action);
    ConfigKey key("key", QString(), nullptr);

    key.setValue("given");
    QCOMPARE(key.bufferValue(), QString("given"));
}

void ConfigEntryTest::emptyValueIsBufferedAsEmpty()
{
    ConfigKey key("key", QString(), nullptr);
    mKit->registerSetValueAction("key", nullptr);

    key.setValue("");
    QVERIFY(!key.bufferValue().isNull());
    QVERIFY(key.bufferValue().isEmpty());
}

void ConfigEntryTest::keyOperationsTellTheirState()
{
    RecordingAction action;
    mKit->registerDelAction("key", &action);
    mKit->registerCommitAction("key", &action);
    mKit->registerApplyAction("key", &action);
    ConfigKey key("key", QString(), nullptr);

    key.del();
    key.commit();
    key.apply();
    QCOMPARE(action.calls().at(0).state, IConfigEntry::ENTRY_DELETING);
    QCOMPARE(action.calls().at(1).state, IConfigEntry::ENTRY_COMMITTING);
    QCOMPARE(action.calls().at(2).state, IConfigEntry::ENTRY_APPLYING);
    QCOMPARE(key.state(), IConfigEntry::ENTRY_IDLE);
}

void ConfigEntryTest::branchOperationsTellTheirState()
{
    RecordingAction action;
    mKit->registerDelAction("branch", &action);
    mKit->registerCommitAction("branch", &action);
    mKit->registerApplyAction("branch", &action);
    ConfigBranch branch("branch", nullptr);

    branch.del();
    branch.commit();
    branch.apply();
    QCOMPARE(action.calls().at(0).state, IConfigEntry::ENTRY_DELETING);
    QCOMPARE(action.calls().at(1).state, IConfigEntry::ENTRY_COMMITTING);
    QCOMPARE(action.calls().at(2).state, IConfigEntry::ENTRY_APPLYING);
    QCOMPARE(branch.state(), IConfigEntry::ENTRY_IDLE);
}

void ConfigEntryTest::commitPassesTheBufferedValue()
{
    RecordingAction action;
    mKit->registerCommitAction("key", &action);
    ConfigKey key("key", "default", nullptr);

    key.setBufferValue("buffered");
    key.commit();
    QCOMPARE(action.calls().first().data, QVariant(QString("buffered")));
    // It stays: who commits a key decides when it goes.
    QCOMPARE(key.bufferValue(), QString("buffered"));

    key.setBufferValue("");
    key.commit();
    QVERIFY(!action.calls().last().data.toString().isNull());
    QVERIFY(action.calls().last().data.toString().isEmpty());
}

void ConfigEntryTest::commitOfAKeyThatWasNotSetPassesNull()
{
    RecordingAction action;
    mKit->registerCommitAction("key", &action);

    ConfigKey("key", "default", nullptr).commit();
    QVERIFY(action.calls().first().data.toString().isNull());
}

void ConfigEntryTest::otherOperationsPassNothing()
{
    RecordingAction action;
    mKit->registerDelAction("key", &action);
    mKit->registerApplyAction("key", &action);
    mKit->registerCommitAction("branch", &action);
    ConfigKey key("key", QString(), nullptr);
    key.setBufferValue("buffered");

    key.del();
    key.apply();
    ConfigBranch("branch", nullptr).commit();
    QCOMPARE(action.calls().size(), 3);
    for (RecordingAction::Call const& call : action.calls())
        QVERIFY(!call.data.isValid());
}

void ConfigEntryTest::childrenGoBeforeTheirBranch()
{
    ConfigBranch top("top", nullptr);
    ConfigBranch* const branch = new ConfigBranch("b", &top);
    new ConfigKey("c", QString(), branch);
    new ConfigKey("a", QString(), branch);
    new ConfigKey("d", QString(), &top);
    QStringList const order = list("top/b/c top/b/a top/b top/d top");
    RecordingAction del;
    RecordingAction commit;
    RecordingAction apply;
    for (QString const& path : order) {
        mKit->registerDelAction(path, &del);
        mKit->registerCommitAction(path, &commit);
        mKit->registerApplyAction(path, &apply);
    }

    top.del();
    top.commit();
    top.apply();
    QCOMPARE(del.paths(), order);
    QCOMPARE(commit.paths(), order);
    QCOMPARE(apply.paths(), order);
    for (RecordingAction::Call const& call : commit.calls())
        QCOMPARE(call.state, IConfigEntry::ENTRY_COMMITTING);
}

void ConfigEntryTest::childrenAddedOrRemovedByAnActionDoNotDisturbTheWalk()
{
    ConfigBranch branch("branch", nullptr);
    new ConfigKey("a", QString(), &branch);
    QScopedPointer<ConfigKey> const leaving(new ConfigKey("b", QString(), &branch));
    new ConfigKey("c", QString(), &branch);
    RestlessAction action(*leaving, new ConfigKey("new", QString(), nullptr));
    QStringList const paths = list("branch/a b branch/c branch branch/new");
    for (QString const& path : paths)
        mKit->registerCommitAction(path, &action);

    branch.commit();
    // Who has left is visited, under the path it has now; who has come is not.
    QStringList const visited = list("branch/a b branch/c branch");
    QStringList const called = action.paths();
    QCOMPARE(called.at(1), visited.at(1));
    QCOMPARE(called.last(), visited.last());
    QCOMPARE(called.size(), visited.size());
    QCOMPARE(childNames(branch), list("a c new"));
}

void ConfigEntryTest::operationsWithoutActionsDoNothing()
{
    ConfigBranch branch("branch", nullptr);
    new ConfigKey("key", "default", &branch);

    branch.del();
    branch.commit();
    branch.apply();
    QCOMPARE(childNames(branch), list("key"));
    QCOMPARE(branch.state(), IConfigEntry::ENTRY_IDLE);
    QCOMPARE(branch.child("key")->state(), IConfigEntry::ENTRY_IDLE);
}

void ConfigEntryTest::clonedKeyHasAllOfTheKey()
{
    ConfigBranch branch("branch", nullptr);
    ConfigKey* const key = new ConfigKey("key", "default", &branch);
    key->setType(REG_TYPE_NUMBER);
    key->setRegExp("[0-9]+");
    key->setBufferValue("42");
    QScopedPointer<ConfigKey> const copy(dynamic_cast<ConfigKey*>(key->clone()));

    QCOMPARE(copy->name(), QString("key"));
    QCOMPARE(copy->defaultValue(), QString("default"));
    QCOMPARE(copy->type(), REG_TYPE_NUMBER);
    QCOMPARE(copy->regExp(), QString("[0-9]+"));
    QCOMPARE(copy->bufferValue(), QString("42"));
    QVERIFY(!copy->parent());
    QCOMPARE(copy->state(), IConfigEntry::ENTRY_IDLE);
    QCOMPARE(key->state(), IConfigEntry::ENTRY_IDLE);
    QCOMPARE(childNames(branch), list("key"));
}

void ConfigEntryTest::clonedBranchIsADeepCopy()
{
    ConfigBranch top("top", nullptr);
    ConfigBranch* const branch = new ConfigBranch("branch", &top);
    ConfigBranch* const inner = new ConfigBranch("inner", branch);
    ConfigKey* const key = new ConfigKey("key", "default", inner);
    key->setBufferValue("42");
    new ConfigKey("last", QString(), branch);
    QScopedPointer<ConfigBranch> const copy(dynamic_cast<ConfigBranch*>(branch->clone()));

    QVERIFY(!copy->parent());
    QCOMPARE(copy->path(), QString("branch"));
    QCOMPARE(childNames(*copy), list("inner/ last"));
    ConfigKey* const copiedKey = dynamic_cast<ConfigKey*>(copy->child("inner")->child("key"));
    QVERIFY(copiedKey != key);
    QCOMPARE(copiedKey->path(), QString("branch/inner/key"));
    copiedKey->setBufferValue("7");
    QCOMPARE(key->bufferValue(), QString("42"));
}

void ConfigEntryTest::branchIsCloningWhileItsChildrenAreCloned()
{
    ConfigBranch branch("branch", nullptr);
    StateKey const* const key = new StateKey("key", &branch);
    QScopedPointer<IConfigEntry> const copy(branch.clone());

    QCOMPARE(key->parentState(), IConfigEntry::ENTRY_CLONING);
    QCOMPARE(branch.state(), IConfigEntry::ENTRY_IDLE);
    QCOMPARE(copy->state(), IConfigEntry::ENTRY_IDLE);
}

void ConfigEntryTest::branchDeletesItsChildrenInOrder()
{
    QStringList deleted;
    {
        ConfigBranch branch("branch", nullptr);
        new WatchedKey("b", &branch, deleted);
        new WatchedKey("inner", new WatchedBranch("a", &branch, deleted), deleted);
        new WatchedKey("c", &branch, deleted);
    }
    QCOMPARE(deleted, list("b a inner c"));
}

void ConfigEntryTest::renamedChildIsFoundByItsNewName()
{
    ConfigBranch branch("branch", nullptr);
    ConfigKey* const key = new ConfigKey("before", QString(), &branch);
    new ConfigKey("other", QString(), &branch);

    key->setName("after");
    QCOMPARE(key->name(), QString("after"));
    QVERIFY(branch.child("after") == key);
    QVERIFY(!branch.child("before"));
    QCOMPARE(childNames(branch), list("after other"));
}

void ConfigEntryTest::bufferHoldsAnyText_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("NUL and control characters") << QString::fromLatin1("a\0\x01\x1b[2J\r\n", 9);
    QTest::newRow("beyond Latin-1") << QString::fromUtf8("\xe2\x82\xac");
    QTest::newRow("sixteen megabytes") << QString(16 << 20, 'x');
}

void ConfigEntryTest::bufferHoldsAnyText()
{
    QFETCH(QString, text);

    ConfigKey key("key", QString(), nullptr);
    mKit->registerSetValueAction("key", nullptr);
    key.setValue(text);
    QVERIFY(key.bufferValue() == text);
}

ZELVO_TEST(ConfigEntryTest)
#include "ConfigEntryTest.moc"
