// SPDX-License-Identifier: MIT

#include "tree/ConfigTree.h"

#include "support/RecordingAction.h"
#include "support/TestBackend.h"
#include "support/TestKit.h"
#include "support/TestProgram.h"
#include "support/TestRegistry.h"
#include "support/WatchedEntries.h"

#include <vantora/registry.h>

#include <QtTest>

namespace {

char const kUuidA[] = "{11111111-1111-1111-1111-111111111111}";
char const kUuidB[] = "{22222222-2222-2222-2222-222222222222}";
char const kUuidC[] = "{33333333-3333-3333-3333-333333333333}";

QStringList list(char const* blankSeparated)
{
    return QString(blankSeparated).split(' ');
}

QString session(char const* uuid, char const* rest = "")
{
    return QString("root/zelvo-view/ica/sessions/") + uuid + rest;
}

/// A session template that counts how often it was told to bring itself up to date.
class TemplateBranch : public ConfigBranch
{
public:
    TemplateBranch()
        : ConfigBranch("template", nullptr)
        , mValidations(0)
    {
    }

    void validateDescendants() override { ++mValidations; }
    int validations() const { return mValidations; }

private:
    int mValidations;
};

/// Default settings that name the tree's root whatever they are asked for.
class CircularRegistry : public TestRegistry
{
public:
    explicit CircularRegistry(QStringList const& keys)
        : TestRegistry(keys)
    {
    }

    int query(QString const& key, Reg::NodeSet& nodes, QString const& extra) override
    {
        return TestRegistry::query("root", nodes, extra) + TestRegistry::query(key, nodes, extra);
    }
};

/// What a branch holds, a line an entry: its path below the branch, behind it "/" for a branch and
/// "=DEFAULT" for a key.
QStringList lines(ConfigBranch const& branch, QString const& prefix = QString())
{
    QStringList found;
    for (IConfigEntry const* const child : branch.children()) {
        QString const path = prefix + child->name();
        if (ConfigKey const* const key = dynamic_cast<ConfigKey const*>(child)) {
            found.append(path + "=" + key->defaultValue());
            continue;
        }
        found.append(path + "/");
        found += lines(*dynamic_cast<ConfigBranch const*>(child), path + "/");
    }
    return found;
}

} // namespace

class ConfigTreeTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void treeIsNamedByItsRoot_data();
    void treeIsNamedByItsRoot();

    void entryOfAKey_data();
    void entryOfAKey();
    void entryOfTheRootIsTheTree();

    void keyIsHandledByItsEntry();
    void rootIsHandledByTheTree();
    void keyThatIsNotHandled_data();
    void keyThatIsNotHandled();
    void nothingIsHandledWithoutDefaultSettings();
    void hiddenKeyIsNotHandled();
    void keyBelowAHiddenBranchIsNotHandled();
    void keyIsHandledUnderAnyRoot_data();
    void keyIsHandledUnderAnyRoot();
    void lookUpOfADirectoryMakesItsChildren();

    void rootAmongItsOwnChildrenIsPassedOver();
    void nodeWithoutValueBecomesABranch();
    void valueReplacesABranchOfItsName();
    void keyThatIsThereIsMadeAnewWithItsBufferedValue();
    void branchThatIsThereKeepsItsChildren();

    void populateTakesInAllBelow();
    void populateAsksForTheTemplate();
    void populateWithoutAnswerAddsNothing();
    void populateKeepsWhatIsBuffered();

    void sortBringsChildrenIntoTheOrderOfTheDefaultSettings();

    void completeAddsWhatIsMissing();
    void completeNeverReplaces();
    void completeLeavesTheSourceAlone();

    void newUuidTakesThePlaceholder();
    void knownUuidIsCompletedAndThePlaceholderGoes();
    void knownUuidThatIsAKeyStays();
    void sessionsOfTheRegistryReplaceThePlaceholder();
    void sessionsThatAreThereStayAsTheyAre();
    void onlyDirectoriesAreSessions();
    void failedListingAnswersNull();
    void placeholderThatIsAKeyAnswersNull();
    void templateIsAddedBesideTheSessions();
    void templateReplacesItsNamesakes();
    void templateIsAddedWithoutARegistryDirectory();
    void placeholderOfATemplateGoesToo();
    void placeholderWithNothingBehindItGoes();
    void nilUuidIsNoSession();
    void firstUuidAloneTakesAPlaceholder();
    void keyThatTheTreeLacksAnswersNull();
    void keyOutsideTheRootAnswersNull();
    void uuidsAreResolvedUnderAnyRoot_data();
    void uuidsAreResolvedUnderAnyRoot();

private:
    /// A tree with an ICA session template of two keys.
    void addPlaceholder(ConfigTree& tree) const;
    ConfigBranch* sessions(ConfigTree& tree) const;

    QScopedPointer<TestBackend> mBackend;
    ActionKit* mKit;
};

void ConfigTreeTest::init()
{
    mBackend.reset(new TestBackend);
    mKit = &freshKit(*mBackend, QDir("/nonexistent"));
}

void ConfigTreeTest::addPlaceholder(ConfigTree& tree) const
{
    ConfigBranch* const placeholder = sessions(tree)->branch("{uuid}");
    new ConfigKey("name", "unnamed", placeholder);
    new ConfigKey("port", "80", placeholder->branch("proxy"));
}

ConfigBranch* ConfigTreeTest::sessions(ConfigTree& tree) const
{
    return tree.branch("ica")->branch("sessions");
}

void ConfigTreeTest::treeIsNamedByItsRoot_data()
{
    QTest::addColumn<QString>("root");
    QTest::addColumn<QString>("name");

    QTest::newRow("one name") << "zelvo-view"
                              << "zelvo-view";
    QTest::newRow("below root") << "root/zelvo-view"
                                << "zelvo-view";
    QTest::newRow("leading slash") << "/zelvo-view"
                                   << "zelvo-view";
    QTest::newRow("far below") << "a/b/zelvo-view"
                               << "zelvo-view";
}

void ConfigTreeTest::treeIsNamedByItsRoot()
{
    QFETCH(QString, root);
    QFETCH(QString, name);

    ConfigTree tree(root);
    QCOMPARE(tree.rootDir(), root);
    QCOMPARE(tree.name(), name);
    QVERIFY(!tree.parent());
    QCOMPARE(tree.branch("usb")->path(), name + "/usb");
}

void ConfigTreeTest::entryOfAKey_data()
{
    QTest::addColumn<QString>("key");
    // Empty: there is none.
    QTest::addColumn<QString>("path");

    QTest::newRow("key") << "root/zelvo-view/usb/enable"
                         << "zelvo-view/usb/enable";
    QTest::newRow("branch") << "root/zelvo-view/usb"
                            << "zelvo-view/usb";
    QTest::newRow("root") << "root/zelvo-view"
                          << "zelvo-view";
    QTest::newRow("doubled and trailing slashes") << "root/zelvo-view//usb//enable/"
                                                  << "zelvo-view/usb/enable";
    QTest::newRow("unknown") << "root/zelvo-view/usb/disable"
                             << "";
    QTest::newRow("another case") << "root/zelvo-view/USB"
                                  << "";
    QTest::newRow("outside the root") << "root/USB/enable"
                                      << "";
    QTest::newRow("longer name than the root's") << "root/zelvo-viewer/usb"
                                                 << "";
    QTest::newRow("directory above the root") << "root"
                                              << "";
    QTest::newRow("without the root") << "zelvo-view/usb"
                                      << "";
    QTest::newRow("through a key") << "root/zelvo-view/usb/enable/more"
                                   << "";
    QTest::newRow("dots do not climb") << "root/zelvo-view/usb/../usb"
                                       << "";
    QTest::newRow("NUL in the name") << QString::fromLatin1("root/zelvo-view/usb\0", 20) << "";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("megabyte") << "root/zelvo-view/" + QString(1 << 20, 'x') << "";
}

void ConfigTreeTest::entryOfAKey()
{
    QFETCH(QString, key);
    QFETCH(QString, path);

    ConfigTree tree("root/zelvo-view");
    new ConfigKey("enable", QString(), tree.branch("usb"));
    IConfigEntry const* const entry = tree.entry(key);
    QCOMPARE(entry ? entry->path() : QString(""), path);
}

void ConfigTreeTest::entryOfTheRootIsTheTree()
{
    ConfigTree tree("root/zelvo-view");
    QVERIFY(tree.entry("root/zelvo-view") == &tree);
}

void ConfigTreeTest::keyIsHandledByItsEntry()
{
    TestRegistry registry(list("root/zelvo-view/usb/enable=true"));
    ConfigTree tree("root/zelvo-view");
    IConfigEntry const* const entry = tree.handlesKey("root/zelvo-view/usb/enable", &registry);

    QVERIFY(entry && entry == tree.entry("root/zelvo-view/usb/enable"));
    QCOMPARE(lines(tree), list("usb/ usb/enable=true"));
    QCOMPARE(registry.queries(), list("root/zelvo-view/usb/enable"));
}

void ConfigTreeTest::rootIsHandledByTheTree()
{
    TestRegistry registry(list("root/zelvo-view/usb/enable=true root/zelvo-view/b/"));
    ConfigTree tree("root/zelvo-view");

    QVERIFY(tree.handlesKey("root/zelvo-view", &registry) == &tree);
    QCOMPARE(lines(tree), list("usb/ b/"));
}

void ConfigTreeTest::keyThatIsNotHandled_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("strict prefix of the root") << "root";
    QTest::newRow("prefix of the root's name") << "root/zelvo";
    QTest::newRow("outside the root") << "root/USB/enable";
    QTest::newRow("unknown to the default settings") << "root/zelvo-view/usb/disable";
    QTest::newRow("empty") << "";
    QTest::newRow("slash") << "/";
    QTest::newRow("NUL") << QString::fromLatin1("root/zelvo-view/\0", 17);
    QTest::newRow("megabyte") << "root/zelvo-view/" + QString("x/").repeated(1 << 19);
}

void ConfigTreeTest::keyThatIsNotHandled()
{
    QFETCH(QString, key);

    TestRegistry registry(list("root/zelvo-view/usb/enable=true root/USB/enable=1"));
    ConfigTree tree("root/zelvo-view");
    QVERIFY(!tree.handlesKey(key, &registry));
    QVERIFY(tree.children().isEmpty());
}

void ConfigTreeTest::nothingIsHandledWithoutDefaultSettings()
{
    ConfigTree tree("root/zelvo-view");

    QVERIFY(!tree.handlesKey("root/zelvo-view", nullptr));
    QVERIFY(!tree.handlesKey("root/zelvo-view/usb", nullptr));
}

void ConfigTreeTest::hiddenKeyIsNotHandled()
{
    RecordingAction hides((QVariant(false)));
    mKit->registerIsVisibleAction("zelvo-view/usb/enable", &hides);
    TestRegistry registry(list("root/zelvo-view/usb/enable=true root/zelvo-view/usb/other=1"));
    ConfigTree tree("root/zelvo-view");

    QVERIFY(!tree.handlesKey("root/zelvo-view/usb/enable", &registry));
    QVERIFY(tree.handlesKey("root/zelvo-view/usb/other", &registry));
}

void ConfigTreeTest::keyBelowAHiddenBranchIsNotHandled()
{
    RecordingAction hides((QVariant(false)));
    mKit->registerIsVisibleAction("zelvo-view/usb", &hides);
    TestRegistry registry(list("root/zelvo-view/usb/enable=true"));
    ConfigTree tree("root/zelvo-view");

    QVERIFY(!tree.handlesKey("root/zelvo-view/usb/enable", &registry));
    QVERIFY(!tree.handlesKey("root/zelvo-view/usb", &registry));
    QVERIFY(tree.handlesKey("root/zelvo-view", &registry));
}

void ConfigTreeTest::keyIsHandledUnderAnyRoot_data()
{
    QTest::addColumn<QString>("root");

    QTest::newRow("below root") << "root/zelvo-view";
    QTest::newRow("leading slash") << "/zelvo-view";
    QTest::newRow("far below") << "a/b/zelvo-view";
}

void ConfigTreeTest::keyIsHandledUnderAnyRoot()
{
    QFETCH(QString, root);

    TestRegistry registry(QStringList() << root + "/usb/enable=true");
    ConfigTree tree(root);
    IConfigEntry const* const entry = tree.handlesKey(root + "/usb/enable", &registry);
    QVERIFY(entry);
    QCOMPARE(entry->path(), QString("zelvo-view/usb/enable"));
    QVERIFY(!tree.handlesKey("other/zelvo-view/usb/enable", &registry));
}

void ConfigTreeTest::lookUpOfADirectoryMakesItsChildren()
{
    TestRegistry registry(
        list("root/zelvo-view/usb/b=1 root/zelvo-view/usb/a=2 root/zelvo-view/usb/more/deep=3"));
    ConfigTree tree("root/zelvo-view");

    QVERIFY(tree.handlesKey("root/zelvo-view/usb", &registry));
    QCOMPARE(lines(tree), list("usb/ usb/b=1 usb/a=2 usb/more/"));
}

void ConfigTreeTest::rootAmongItsOwnChildrenIsPassedOver()
{
    CircularRegistry registry(list("root/zelvo-view/usb/enable=true"));
    ConfigTree tree("root/zelvo-view");

    QVERIFY(tree.handlesKey("root/zelvo-view/usb", &registry));
    QCOMPARE(lines(tree), list("usb/ usb/enable=true"));
}

void ConfigTreeTest::nodeWithoutValueBecomesABranch()
{
    ConfigTree tree("root/zelvo-view");
    Reg::NodeSet nodes;
    nodes.append(new Reg::Node("root/zelvo-view/usb/ports"));
    IConfigEntry const* const entry = tree.constructEntries("root/zelvo-view/usb/ports", nodes);

    QVERIFY(dynamic_cast<ConfigBranch const*>(entry));
    QCOMPARE(lines(tree), list("usb/ usb/ports/"));
}

void ConfigTreeTest::valueReplacesABranchOfItsName()
{
    ConfigTree tree("root/zelvo-view");
    new ConfigKey("inner", QString(), tree.branch("usb")->branch("enable"));
    Reg::NodeSet nodes;
    nodes.append(new Reg::Entry("root/zelvo-view/usb/enable", "true"));

    QVERIFY(tree.constructEntries("root/zelvo-view/usb/enable", nodes));
    QCOMPARE(lines(tree), list("usb/ usb/enable=true"));
}

void ConfigTreeTest::keyThatIsThereIsMadeAnewWithItsBufferedValue()
{
    ConfigTree tree("root/zelvo-view");
    ConfigBranch* const usb = tree.branch("usb");
    (new ConfigKey("a", "old", usb))->setBufferValue("pending");
    (new ConfigKey("b", "old", usb))->setBufferValue("");
    new ConfigKey("c", "old", usb);
    new ConfigKey("d", "old", usb);
    Reg::NodeSet nodes;
    nodes.append(new Reg::Entry("root/zelvo-view/usb/a", "new"));
    nodes.append(new Reg::Entry("root/zelvo-view/usb/b", "new"));
    nodes.append(new Reg::Entry("root/zelvo-view/usb/c", "new"));
    ConfigKey const* const a
        = dynamic_cast<ConfigKey*>(tree.constructEntries("root/zelvo-view/usb/a", nodes));

    QCOMPARE(lines(*usb), list("d=old a=new b=new c=new"));
    QCOMPARE(a->bufferValue(), QString("pending"));
    ConfigKey const* const b = dynamic_cast<ConfigKey*>(usb->child("b"));
    QVERIFY(b->bufferValue().isEmpty() && !b->bufferValue().isNull());
    QVERIFY(dynamic_cast<ConfigKey*>(usb->child("c"))->bufferValue().isNull());
}

void ConfigTreeTest::branchThatIsThereKeepsItsChildren()
{
    ConfigTree tree("root/zelvo-view");
    ConfigBranch* const usb = tree.branch("usb");
    new ConfigKey("a", "1", usb);
    Reg::NodeSet nodes;
    nodes.append(new Reg::Node("root/zelvo-view/usb"));

    QVERIFY(tree.constructEntries("root/zelvo-view/usb", nodes) == usb);
    QCOMPARE(lines(*usb), list("a=1"));
}

void ConfigTreeTest::populateTakesInAllBelow()
{
    TestRegistry registry(list("root/zelvo-view/usb/b=1 root/zelvo-view/usb/more/deep/key=2 "
                               "root/zelvo-view/usb/a=3 root/zelvo-view/usb/empty/"));
    ConfigTree tree("root/zelvo-view");
    ConfigBranch* const usb = tree.branch("usb");

    tree.populateEntryWithAllDescendants(*usb, &registry, "root/zelvo-view/usb");
    QCOMPARE(lines(*usb), list("b=1 more/ more/deep/ more/deep/key=2 a=3 empty/"));
}

void ConfigTreeTest::populateAsksForTheTemplate()
{
    TestRegistry registry(list("root/zelvo-view/ica/sessions/{uuid}/name=unnamed "
                               "root/zelvo-view/ica/sessions/{uuid}/proxy/port=80"));
    ConfigTree tree("root/zelvo-view");
    ConfigBranch* const branch = sessions(tree)->branch(kUuidA);

    tree.populateEntryWithAllDescendants(*branch, &registry, session(kUuidA));
    QCOMPARE(lines(*branch), list("name=unnamed proxy/ proxy/port=80"));
    QCOMPARE(registry.queries(),
             list("root/zelvo-view/ica/sessions/{uuid} root/zelvo-view/ica/sessions/{uuid}/proxy"));
}

void ConfigTreeTest::populateWithoutAnswerAddsNothing()
{
    TestRegistry registry;
    ConfigTree tree("root/zelvo-view");

    tree.populateEntryWithAllDescendants(tree, &registry, "root/zelvo-view");
    tree.populateEntryWithAllDescendants(tree, nullptr, "root/zelvo-view");
    QVERIFY(tree.children().isEmpty());
}

void ConfigTreeTest::populateKeepsWhatIsBuffered()
{
    TestRegistry registry(list("root/zelvo-view/a=1"));
    ConfigTree tree("root/zelvo-view");
    (new ConfigKey("a", "old", &tree))->setBufferValue("pending");

    tree.populateEntryWithAllDescendants(tree, &registry, "root/zelvo-view");
    QCOMPARE(dynamic_cast<ConfigKey*>(tree.child("a"))->bufferValue(), QString("pending"));
}

void ConfigTreeTest::sortBringsChildrenIntoTheOrderOfTheDefaultSettings()
{
    TestRegistry registry(list("root/zelvo-view/w/enable=0 root/zelvo-view/w/ssid= "
                               "root/zelvo-view/w/deep/one=1 root/zelvo-view/w/deep/two=2 "
                               "root/zelvo-view/w/security="));
    ConfigTree tree("root/zelvo-view");
    ConfigBranch* const branch = tree.branch("w");
    new ConfigKey("security", "", branch);
    new ConfigKey("two", "2", branch->branch("deep"));
    new ConfigKey("one", "1", branch->branch("deep"));
    new ConfigKey("unknown", "", branch);
    new ConfigKey("ssid", "", branch);

    tree.sortLikeDefaultSettings(*branch, &registry, "root/zelvo-view/w");
    QCOMPARE(lines(*branch), list("unknown= ssid= deep/ deep/one=1 deep/two=2 security="));
}

void ConfigTreeTest::completeAddsWhatIsMissing()
{
    ConfigBranch source("source", nullptr);
    new ConfigKey("a", "1", &source);
    new ConfigKey("c", "3", source.branch("b"));
    new ConfigKey("d", "4", source.branch("both"));
    new ConfigKey("e", "5", source.branch("both"));
    ConfigBranch target("target", nullptr);
    new ConfigKey("own", "0", &target);
    new ConfigKey("d", "mine", target.branch("both"));

    ConfigTree::completeTree(source, target);
    QCOMPARE(lines(target), list("own=0 both/ both/d=mine both/e=5 a=1 b/ b/c=3"));
}

void ConfigTreeTest::completeNeverReplaces()
{
    ConfigBranch source("source", nullptr);
    new ConfigKey("key", "theirs", &source);
    new ConfigKey("inner", "1", source.branch("keyHere"));
    new ConfigKey("branchHere", "2", &source);
    QStringList deleted;
    ConfigBranch target("target", nullptr);
    (new WatchedKey("key", &target, deleted))->setBufferValue("mine");
    new WatchedKey("keyHere", &target, deleted);
    new WatchedBranch("branchHere", &target, deleted);

    ConfigTree::completeTree(source, target);
    QCOMPARE(lines(target), list("key= keyHere= branchHere/"));
    QCOMPARE(dynamic_cast<ConfigKey*>(target.child("key"))->bufferValue(), QString("mine"));
    QVERIFY(deleted.isEmpty());
}

void ConfigTreeTest::completeLeavesTheSourceAlone()
{
    ConfigBranch source("source", nullptr);
    new ConfigKey("a", "1", source.branch("b"));
    ConfigBranch target("target", nullptr);
    new ConfigKey("own", "0", &target);

    ConfigTree::completeTree(source, target);
    QCOMPARE(lines(source), list("b/ b/a=1"));
    QVERIFY(target.child("b") != source.child("b"));
    QVERIFY(source.child("b")->parent() == &source);
}

void ConfigTreeTest::newUuidTakesThePlaceholder()
{
    ConfigTree tree("root/zelvo-view");
    addPlaceholder(tree);
    IConfigEntry* const placeholder = sessions(tree)->child("{uuid}");
    IConfigEntry* const entry = tree.resolveUuids(session(kUuidA, "/name"));

    QVERIFY(entry);
    QCOMPARE(entry->path(), QString("zelvo-view/ica/sessions/") + kUuidA + "/name");
    QVERIFY(entry->parent() == placeholder);
    QCOMPARE(lines(*sessions(tree)),
             QStringList() << QString(kUuidA) + "/" << QString(kUuidA) + "/name=unnamed"
                           << QString(kUuidA) + "/proxy/" << QString(kUuidA) + "/proxy/port=80");
    QVERIFY(mBackend->calls().isEmpty());
}

void ConfigTreeTest::knownUuidIsCompletedAndThePlaceholderGoes()
{
    ConfigTree tree("root/zelvo-view");
    ConfigBranch* const known = sessions(tree)->branch(kUuidA);
    (new ConfigKey("name", "mine", known))->setBufferValue("pending");
    addPlaceholder(tree);

    QVERIFY(tree.resolveUuids(session(kUuidA)) == known);
    QCOMPARE(childNames(*sessions(tree)), QStringList() << QString(kUuidA) + "/");
    QCOMPARE(lines(*known), list("name=mine proxy/ proxy/port=80"));
    QCOMPARE(dynamic_cast<ConfigKey*>(known->child("name"))->bufferValue(), QString("pending"));
}

void ConfigTreeTest::knownUuidThatIsAKeyStays()
{
    ConfigTree tree("root/zelvo-view");
    ConfigKey* const known = new ConfigKey(kUuidA, "odd", sessions(tree));
    addPlaceholder(tree);

    QVERIFY(tree.resolveUuids(session(kUuidA)) == known);
    QCOMPARE(childNames(*sessions(tree)), QStringList() << kUuidA);
    QVERIFY(!tree.resolveUuids(session(kUuidA, "/name")));
}

void ConfigTreeTest::sessionsOfTheRegistryReplaceThePlaceholder()
{
    mKit->setRegistryUuidDir("zelvo-view/ica/sessions", "root/ConnectionType/ica");
    mBackend->addDirectory("root/ConnectionType/ica",
                           QStringList() << QString(kUuidB) + "/" << QString(kUuidA) + "/"
                                         << QString(kUuidC) + "/");
    ConfigTree tree("root/zelvo-view");
    addPlaceholder(tree);

    QVERIFY(tree.resolveUuids("root/zelvo-view/ica/sessions") == sessions(tree));
    QCOMPARE(mBackend->calls(), QStringList() << "get root/ConnectionType/ica");
    QStringList const names = childNames(*sessions(tree));
    QCOMPARE(names.size(), 3);
    char const* const uuids[] = {kUuidA, kUuidB, kUuidC};
    for (char const* const uuid : uuids) {
        ConfigBranch const* const branch = dynamic_cast<ConfigBranch*>(sessions(tree)->child(uuid));
        QVERIFY(branch);
        QCOMPARE(lines(*branch), list("name=unnamed proxy/ proxy/port=80"));
    }
}

void ConfigTreeTest::sessionsThatAreThereStayAsTheyAre()
{
    mKit->setRegistryUuidDir("zelvo-view/ica/sessions", "root/ConnectionType/ica");
    mBackend->addDirectory("root/ConnectionType/ica",
                           QStringList() << QString(kUuidA) + "/" << QString(kUuidB) + "/");
    ConfigTree tree("root/zelvo-view");
    ConfigBranch* const known = sessions(tree)->branch(kUuidA);
    new ConfigKey("name", "mine", known);
    addPlaceholder(tree);

    QVERIFY(tree.resolveUuids("root/zelvo-view/ica"));
    QCOMPARE(childNames(*sessions(tree)),
             QStringList() << QString(kUuidA) + "/" << QString(kUuidB) + "/");
    QVERIFY(sessions(tree)->child(kUuidA) == known);
    QCOMPARE(lines(*known), list("name=mine"));
}

void ConfigTreeTest::onlyDirectoriesAreSessions()
{
    mKit->setRegistryUuidDir("zelvo-view/ica/sessions", "root/ConnectionType/ica");
    mBackend->addDirectory("root/ConnectionType/ica",
                           QStringList() << QString(kUuidA) + "/" << kUuidB << "value");
    ConfigTree tree("root/zelvo-view");
    addPlaceholder(tree);

    QVERIFY(tree.resolveUuids("root/zelvo-view"));
    QCOMPARE(childNames(*sessions(tree)), QStringList() << QString(kUuidA) + "/");
}

void ConfigTreeTest::failedListingAnswersNull()
{
    mKit->setRegistryUuidDir("zelvo-view/ica/sessions", "root/ConnectionType/ica");
    ConfigTree tree("root/zelvo-view");
    addPlaceholder(tree);

    mBackend->fail("get");
    QVERIFY(!tree.resolveUuids("root/zelvo-view/ica/sessions"));
    QVERIFY(!tree.resolveUuids("root/zelvo-view"));
}

void ConfigTreeTest::placeholderThatIsAKeyAnswersNull()
{
    ConfigTree tree("root/zelvo-view");
    new ConfigKey("{uuid}", "typed by hand", sessions(tree));

    QVERIFY(!tree.resolveUuids(session(kUuidA)));
    QVERIFY(!tree.resolveUuids("root/zelvo-view"));
}

void ConfigTreeTest::templateIsAddedBesideTheSessions()
{
    mKit->setRegistryUuidDir("zelvo-view/ica/sessions", "root/ConnectionType/ica");
    mBackend->addDirectory("root/ConnectionType/ica", QStringList() << QString(kUuidA) + "/");
    TemplateBranch registered;
    new ConfigKey("extra", "1", &registered);
    mKit->registerConfigBranch("zelvo-view/ica/sessions", &registered);
    ConfigTree tree("root/zelvo-view");
    addPlaceholder(tree);

    QVERIFY(tree.resolveUuids("root/zelvo-view/ica/sessions"));
    QCOMPARE(registered.validations(), 1);
    QCOMPARE(childNames(*sessions(tree)),
             QStringList() << QString(kUuidA) + "/"
                           << "extra");
    QVERIFY(sessions(tree)->child("extra") != registered.child("extra"));
}

void ConfigTreeTest::templateReplacesItsNamesakes()
{
    TemplateBranch registered;
    new ConfigKey("extra", "new", &registered);
    mKit->registerConfigBranch("zelvo-view/ica/sessions", &registered);
    ConfigTree tree("root/zelvo-view");
    new ConfigKey("extra", "old", sessions(tree));
    addPlaceholder(tree);

    QVERIFY(tree.resolveUuids("root/zelvo-view/ica/sessions"));
    QCOMPARE(lines(*sessions(tree)), list("extra=new"));
}

void ConfigTreeTest::templateIsAddedWithoutARegistryDirectory()
{
    TemplateBranch registered;
    new ConfigKey("extra", "1", &registered);
    mKit->registerConfigBranch("zelvo-view/ica/sessions", &registered);
    ConfigTree tree("root/zelvo-view");
    addPlaceholder(tree);

    QVERIFY(tree.resolveUuids("root/zelvo-view/ica/sessions"));
    QCOMPARE(lines(*sessions(tree)), list("extra=1"));
    QVERIFY(mBackend->calls().isEmpty());
}

void ConfigTreeTest::placeholderOfATemplateGoesToo()
{
    TemplateBranch registered;
    new ConfigKey("name", "1", registered.branch("{uuid}"));
    new ConfigKey("extra", "1", &registered);
    mKit->registerConfigBranch("zelvo-view/ica/sessions", &registered);
    ConfigTree tree("root/zelvo-view");
    addPlaceholder(tree);

    QVERIFY(tree.resolveUuids("root/zelvo-view/ica/sessions"));
    QCOMPARE(lines(*sessions(tree)), list("extra=1"));
    QCOMPARE(childNames(registered), list("{uuid}/ extra"));
}

void ConfigTreeTest::placeholderWithNothingBehindItGoes()
{
    ConfigTree tree("root/zelvo-view");
    addPlaceholder(tree);

    QVERIFY(tree.resolveUuids("root/zelvo-view") == &tree);
    QVERIFY(sessions(tree)->children().isEmpty());
    QVERIFY(mBackend->calls().isEmpty());
}

void ConfigTreeTest::nilUuidIsNoSession()
{
    ConfigTree tree("root/zelvo-view");
    addPlaceholder(tree);

    QVERIFY(!tree.resolveUuids(session("{00000000-0000-0000-0000-000000000000}")));
    QVERIFY(sessions(tree)->children().isEmpty());
}

void ConfigTreeTest::firstUuidAloneTakesAPlaceholder()
{
    ConfigTree tree("root/zelvo-view");
    ConfigBranch* const outer = sessions(tree)->branch("{uuid}");
    new ConfigKey("name", "1", outer->branch("{uuid}"));
    QString const inner = QString("/") + kUuidB;

    QVERIFY(!tree.resolveUuids(session(kUuidA, inner.toLatin1().constData())));
    QCOMPARE(childNames(*sessions(tree)), QStringList() << QString(kUuidA) + "/");
}

void ConfigTreeTest::keyThatTheTreeLacksAnswersNull()
{
    ConfigTree tree("root/zelvo-view");
    addPlaceholder(tree);

    QVERIFY(!tree.resolveUuids(session(kUuidA, "/unknown")));
    QVERIFY(!tree.resolveUuids("root/zelvo-view/usb"));
}

void ConfigTreeTest::keyOutsideTheRootAnswersNull()
{
    ConfigTree tree("root/zelvo-view");
    addPlaceholder(tree);

    QVERIFY(!tree.resolveUuids("root/other"));
    QVERIFY(!tree.resolveUuids(QString()));
    QVERIFY(!tree.resolveUuids("/"));
}

void ConfigTreeTest::uuidsAreResolvedUnderAnyRoot_data()
{
    keyIsHandledUnderAnyRoot_data();
}

void ConfigTreeTest::uuidsAreResolvedUnderAnyRoot()
{
    QFETCH(QString, root);

    ConfigTree tree(root);
    addPlaceholder(tree);
    IConfigEntry const* const entry = tree.resolveUuids(root + "/ica/sessions/" + kUuidA + "/name");
    QVERIFY(entry);
    QCOMPARE(entry->path(), QString("zelvo-view/ica/sessions/") + kUuidA + "/name");
}

ZELVO_TEST(ConfigTreeTest)
#include "ConfigTreeTest.moc"
