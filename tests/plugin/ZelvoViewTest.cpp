// SPDX-License-Identifier: MIT

#include "plugin/ZelvoView.h"

#include "actions/IConfigAction.h"
#include "plugin/PluginScene.h"
#include "support/Footprint.h"
#include "support/TestProgram.h"
#include "support/Waiting.h"
#include "tree/ConfigTree.h"

#include <QtTest>

namespace {

char const kUuid[] = "{c0ffee00-1234-4321-abcd-0123456789ab}";
char const kOtherUuid[] = "{deadbeef-1234-4321-abcd-0123456789ab}";
char const kSession[] = "root/ConnectionType/rdesktop/connections/"
                        "{c0ffee00-1234-4321-abcd-0123456789ab}";

// Told of the end of an apply request.
char const kCommand[] = "tmp/apply/1";

/// An entry that is neither a branch nor a key, as a registered template may hold one.
class OddEntry : public AbstractConfigEntry
{
public:
    OddEntry()
        : AbstractConfigEntry("odd", nullptr)
    {
    }

    bool addChild(IConfigEntry*) override { return false; }
    IConfigEntry* child(QString const&) const override { return nullptr; }
    void del() override { }
    void commit() override { }
    void apply() override { }
    IConfigEntry* clone() override { return new OddEntry; }
};

/// Hides one session.
class HidingAction : public IConfigAction
{
public:
    bool execute(IConfigEntry const& entry, QVariant& data) override
    {
        data = entry.name() != kUuid;
        return true;
    }
};

/// Default settings in which a session template stands beside the key "odd" that is asked for.
class OddRegistry : public Reg::Registry
{
public:
    explicit OddRegistry(QString const& root)
        : mArea(root + "/notes")
    {
    }

    int query(QString const& key, Reg::NodeSet& nodes, QString const&) override
    {
        if (key != mArea + "/odd")
            return 1;
        nodes.append(new Reg::Entry(mArea + "/odd", QString()));
        nodes.append(new Reg::Node(mArea + "/{uuid}"));
        return 0;
    }

private:
    QString mArea;
};

/// Leads each request into itself.
class RepeatingAction : public IConfigAction
{
public:
    RepeatingAction(PluginScene const& scene, QString const& operation, QString const& key)
        : mScene(scene)
        , mOperation(operation)
        , mKey(key)
    {
    }

    bool execute(IConfigEntry const&, QVariant&) override
    {
        mCodes << request();
        return true;
    }

    int request() const
    {
        if (mOperation == "get")
            return mScene.get(mKey);
        if (mOperation == "set")
            return mScene.set(mKey, "value");
        if (mOperation == "create")
            return mScene.create(mKey);
        if (mOperation == "del")
            return mScene.del(mKey);
        return mOperation == "commit" ? mScene.commit(mKey) : mScene.apply(mKey);
    }

    QList<int> codes() const { return mCodes; }

private:
    PluginScene const& mScene;
    QString mOperation;
    QString mKey;
    QList<int> mCodes;
};

} // namespace

class ZelvoViewTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addRoots(); }

    void newPluginHasItsNameAndNothingElse();
    void loadedPluginKeepsWhatItWasGiven();
    void wrappersLieUnderTheBaseDirectory();
    void baseDirectoryIsTakenAsItStands();
    void relativeBaseDirectoryIsTakenFromTheWorkingDirectoryOfTheStart_data();
    void relativeBaseDirectoryIsTakenFromTheWorkingDirectoryOfTheStart();
    void importAndExportSucceedAndDoNothing();
    void baseAnswersWhatIsNotOverridden();

    void getValue_data();
    void getValue();
    void getBooleanOfTheRegistry();
    void getValueOfTheRegistryWithItsDefault();
    void getBranch_data();
    void getBranch();
    void getKeepsWhatTheResultHolds();
    void getSessions();
    void getSessionsThatCannotBeListed();
    void getOfTheParentShowsTheRoot();
    void getOfAHiddenRootsParentShowsNothing();
    void getOfOtherKeysAnswersOne_data();
    void getOfOtherKeysAnswersOne();
    void getOfATypeIsTheBases_data();
    void getOfATypeIsTheBases();
    void getNeverSeesTheSetBuffer();
    void getOfAnEntryOfAnotherKind();

    void setOfAnythingButAValueAnswersOne();
    void setOfABranchAnswersOne();
    void requestThatLeadsIntoItselfIsNotHandled_data();
    void requestThatLeadsIntoItselfIsNotHandled();
    void createFollowsItsAction();
    void createNeedsAPlaceholder_data();
    void createNeedsAPlaceholder();
    void sessionBelowASessionIsNotCreated();
    void delRunsTheActionsWhateverTheyAnswer();
    void delOfASessionDeletesItAndItsKeys();
    void delReachesOneLevelBelowTheKey_data();
    void delReachesOneLevelBelowTheKey();

    void hiddenKeyIsNotHandled_data();
    void hiddenKeyIsNotHandled();
    void hiddenChildIsNotListed();
    void registeredActionIsAskedForEachSession();
    void hiddenKeyIsHandledAgainWhenItIsShown();

    void contains_data();
    void contains();
    void containsOutsideTheRootsAsksNobody();
    void containsUnderTheTemporaryRoot_data();
    void containsUnderTheTemporaryRoot();
    void containsFollowsTheListingOfTheHost();
    void containsAsksTheBaseWhenTheHostFails();

    void applyRunsTheScriptsAtAndUnderTheKey();
    void applyOfASessionReachesAllItsKeys();
    void applyReturnsBeforeItsScriptsHaveRun();
    void applyTellsItsEnd();
    void applyWithoutCommandTellsNobody();
    void applyLeavesNoPoolAndNoKeeperBehind();
    void applyOfTheUsbAreaIsTheRegistrys();
    void applyOfAnUnknownKeyTellsNobody();
    void destroyingThePluginWaitsForItsApplies();
    void destroyingAnUnusedPluginDeletesNothingElse();

    void oneSessionOfManyIsNotLookedFor();
};

void ZelvoViewTest::newPluginHasItsNameAndNothingElse()
{
    ZelvoView view;
    QCOMPARE(view.name(), QString("zelvo-view"));
    QCOMPARE(view.rootDir(), QString("root/zelvo-view"));
    QVERIFY(!view.getDefaultSettings());
    QVERIFY(!view.parent());
    QVERIFY(view.children().isEmpty());
}

void ZelvoViewTest::loadedPluginKeepsWhatItWasGiven()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QVERIFY(scene.plugin->getDefaultSettings() == &scene.defaults);
    QVERIFY(ActionKit::instance()->vantoraBackend() == &scene.backend);
    QCOMPARE(scene.backend.calls(), QStringList());
    QCOMPARE(scene.defaults.queries(), QStringList());
}

void ZelvoViewTest::wrappersLieUnderTheBaseDirectory()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(ActionKit::instance()->wrappersDirectory().path(), scene.baseDir() + "/wrappers");
}

void ZelvoViewTest::relativeBaseDirectoryIsTakenFromTheWorkingDirectoryOfTheStart_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("relative");

    QTest::newRow("below") << ".."
                           << "%1";
    QTest::newRow("below, with a slash") << ".."
                                         << "%1/";
    QTest::newRow("here") << "."
                          << ".";
    QTest::newRow("beside") << "wrappers"
                            << "..";
    QTest::newRow("nothing") << "."
                             << "";
}

void ZelvoViewTest::relativeBaseDirectoryIsTakenFromTheWorkingDirectoryOfTheStart()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, start);
    QFETCH(QString, relative);

    PluginScene scene(root);
    scene.wrappers.addScript("zelvo-view/radio/ssid", "get.sh", "printf home");
    QString const before = QDir::currentPath();
    QString const name = QFileInfo(scene.baseDir()).fileName();
    QVERIFY(QDir::setCurrent(scene.baseDir() + "/" + start));
    scene.load(scene.defaults, relative.contains("%1") ? relative.arg(name) : relative);
    QVERIFY(QDir::setCurrent(before));

    QVERIFY(ActionKit::instance()->wrappersDirectory().isAbsolute());
    QStringList answer;
    QCOMPARE(scene.get(scene.at("radio/ssid"), &answer), 0);
    QCOMPARE(answer, QStringList("value home"));
}

void ZelvoViewTest::baseDirectoryIsTakenAsItStands()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.wrappers.addScript("zelvo-view/usb/enable", "get.sh", "printf 'of a script'");
    scene.load(scene.defaults, scene.baseDir() + "/");
    QCOMPARE(ActionKit::instance()->wrappersDirectory().path(), scene.baseDir() + "//wrappers");
    QStringList answer;
    QCOMPARE(scene.get(scene.at("usb/enable"), &answer), 0);
    QCOMPARE(answer, QStringList() << "value of a script");

    scene.load(scene.defaults, scene.baseDir() + "/missing");
    QCOMPARE(scene.get(scene.at("usb/enable"), &answer), 0);
    QCOMPARE(answer, QStringList() << "default true");
}

void ZelvoViewTest::importAndExportSucceedAndDoNothing()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QByteArray data("as it was");
    QCOMPARE(scene.plugin->importRegistry(data), 0);
    QCOMPARE(scene.plugin->exportRegistry(root, data), 0);
    QCOMPARE(data, QByteArray("as it was"));
    QCOMPARE(scene.backend.calls(), QStringList());
}

void ZelvoViewTest::baseAnswersWhatIsNotOverridden()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    QMap<QString, _RegEntryChange> changes;
    QCOMPARE(scene.plugin->changes(changes), 0);
    QVERIFY(changes.isEmpty());
    QCOMPARE(scene.plugin->clone(scene.at("usb"), scene.at("radio")), 1);
    QCOMPARE(scene.plugin->rollback(root), 1);
    QCOMPARE(scene.plugin->trySet(scene.at("radio/ssid"), "x"), 1);
}

void ZelvoViewTest::getValue_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("answer");

    QTest::newRow("no value: the default") << QByteArray() << "default open";
    QTest::newRow("a value") << QByteArray("printf wpa") << "value wpa";
    QTest::newRow("an empty value is no default") << QByteArray(":") << "value ";
    QTest::newRow("a script that fails gives no value")
        << QByteArray("printf wpa; exit 1") << "default open";
    QTest::newRow("the script's newline is part of the value")
        << QByteArray("echo wpa") << "value wpa\n";
}

void ZelvoViewTest::getValue()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QByteArray, script);
    QFETCH(QString, answer);

    PluginScene scene(root);
    if (!script.isEmpty())
        scene.wrappers.addScript("zelvo-view/radio/security", "get.sh", script);
    QStringList lines;
    QCOMPARE(scene.get(scene.at("radio/security"), &lines), 0);
    QCOMPARE(lines, QStringList() << answer);
}

void ZelvoViewTest::getBooleanOfTheRegistry()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.backend.addType("root/USB/root/mass-storage/allowed", "bool");
    scene.backend.addValue("root/USB/root/mass-storage/allowed", "ko");
    QStringList answer;
    QCOMPARE(scene.get(scene.at("usb/enable"), &answer), 0);
    QCOMPARE(answer, QStringList() << "value false");
}

void ZelvoViewTest::getValueOfTheRegistryWithItsDefault()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.backend.addDefault("root/USB/root/mass-storage/allowed", "");
    QStringList answer;
    QCOMPARE(scene.get(scene.at("usb/enable"), &answer), 0);
    QCOMPARE(answer, QStringList() << "value ");
}

void ZelvoViewTest::getBranch_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("answer");

    QTest::newRow("keys") << "/usb"
                          << (QStringList() << "key /usb/enable"
                                            << "key /usb/read_only");
    QTest::newRow("branches") << "/rdp" << (QStringList() << "dir /rdp/sessions");
    QTest::newRow("keys and branches of a session")
        << QString("/ica/sessions/") + kUuid
        << (QStringList() << QString("key /ica/sessions/") + kUuid + "/name"
                          << QString("dir /ica/sessions/") + kUuid + "/proxy");
    QTest::newRow("no sessions yet") << "/rdp/sessions" << QStringList();
    QTest::newRow("the root") << ""
                              << (QStringList() << "dir /empty"
                                                << "dir /ica"
                                                << "dir /radio"
                                                << "dir /rdp"
                                                << "dir /usb");
}

void ZelvoViewTest::getBranch()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, key);
    QFETCH(QStringList, answer);

    PluginScene scene(root);
    scene.addSessions("ica", QStringList() << kUuid);
    QStringList lines;
    QCOMPARE(scene.get(root + key, &lines), 0);
    QCOMPARE(lines, answer.replaceInStrings(" /", " " + root + "/"));
}

void ZelvoViewTest::getKeepsWhatTheResultHolds()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QMap<QString, _RegNodeType> result;
    result.insert("another plugin's", REG_NODE_KEY);
    result.insert(scene.at("usb/enable"), REG_NODE_DIR);
    QCOMPARE(scene.plugin->get(scene.at("usb"), result, REG_PARAM_VALUE, ""), 0);
    QCOMPARE(PluginScene::described(result).size(), 3);
    QCOMPARE(int(result.value("another plugin's")), int(REG_NODE_KEY));
    QCOMPARE(int(result.value(scene.at("usb/enable"))), int(REG_NODE_KEY));
    QVERIFY(result.contains(scene.at("usb/read_only")));
}

void ZelvoViewTest::getSessions()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QString const sessions = scene.at("rdp/sessions");
    QStringList answer;
    QCOMPARE(scene.get(sessions, &answer), 0);
    QCOMPARE(answer, QStringList());

    scene.addSessions("rdesktop", QStringList() << kUuid << kOtherUuid);
    QCOMPARE(scene.get(sessions, &answer), 0);
    QCOMPARE(answer,
             QStringList() << "dir " + sessions + "/" + kUuid
                           << "dir " + sessions + "/" + kOtherUuid);
}

void ZelvoViewTest::getSessionsThatCannotBeListed()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.backend.failOn("get", "root/ConnectionType/rdesktop/connections");
    QStringList answer;
    QCOMPARE(scene.get(scene.at("rdp/sessions"), &answer), 1);
    QCOMPARE(answer, QStringList());
}

void ZelvoViewTest::getOfTheParentShowsTheRoot()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QStringList answer;
    QCOMPARE(scene.get(root.section('/', 0, -2), &answer), 1);
    QCOMPARE(answer, QStringList() << "dir " + root);
}

void ZelvoViewTest::getOfAHiddenRootsParentShowsNothing()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.hide("");
    QStringList answer;
    QCOMPARE(scene.get(root.section('/', 0, -2), &answer), 1);
    QCOMPARE(answer, QStringList());
}

void ZelvoViewTest::getOfOtherKeysAnswersOne_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("the parent's parent") << "a";
    QTest::newRow("a neighbour of the root") << "root/zelvo-views";
    QTest::newRow("another root") << "root/ConnectionType";
    QTest::newRow("the name alone") << "zelvo-view";
    QTest::newRow("an unknown key of the view") << "ROOT/radio/colour";
    QTest::newRow("a key below a value") << "ROOT/radio/ssid/x";
    QTest::newRow("a key of a session without the session") << "ROOT/rdp/sessions/name";
    QTest::newRow("a directory without a single key in the default settings") << "ROOT/empty";
}

void ZelvoViewTest::getOfOtherKeysAnswersOne()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, key);

    PluginScene scene(root);
    QStringList answer;
    QCOMPARE(scene.get(key.replace("ROOT", root), &answer), 1);
    QCOMPARE(answer, QStringList());
}

void ZelvoViewTest::getOfATypeIsTheBases_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("param");
    QTest::addColumn<int>("code");
    QTest::addColumn<QStringList>("answer");

    QTest::newRow("the type of a key")
        << "typed/number" << int(REG_PARAM_TYPE) << 0 << (QStringList() << "value number");
    QTest::newRow("its regular expression")
        << "typed/number" << int(REG_PARAM_REGEXP) << 0 << (QStringList() << "value [0-9]+");
    QTest::newRow("the type of a session's key, by its template") << QString("rdp/sessions/")
            + kUuid + "/name" << int(REG_PARAM_TYPE) << 0 << (QStringList() << "value string");
    QTest::newRow("a branch has none") << "usb" << int(REG_PARAM_TYPE) << 1 << QStringList();
    QTest::newRow("an unknown key has none")
        << "usb/colour" << int(REG_PARAM_TYPE) << 1 << QStringList();
}

void ZelvoViewTest::getOfATypeIsTheBases()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, key);
    QFETCH(int, param);
    QFETCH(int, code);
    QFETCH(QStringList, answer);

    PluginScene scene(root);
    scene.defaults.addValue(scene.at("typed/number"), "1", REG_TYPE_NUMBER, "[0-9]+");
    QMap<QString, _RegNodeType> result;
    QCOMPARE(scene.plugin->get(scene.at(key), result, static_cast<_RegEntryParam>(param), ""),
             code);
    QCOMPARE(PluginScene::described(result), answer);
}

void ZelvoViewTest::getNeverSeesTheSetBuffer()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.backend.addValue("root/USB/root/mass-storage/allowed", "true");
    QCOMPARE(scene.set(scene.at("usb/enable"), "false"), 0);
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    QCOMPARE(scene.create(scene.at(QString("rdp/sessions/") + kUuid)), 0);
    QStringList answer;
    QCOMPARE(scene.get(scene.at("usb/enable"), &answer), 0);
    QCOMPARE(answer, QStringList() << "value true");
    QCOMPARE(scene.get(scene.at("radio/ssid"), &answer), 0);
    QCOMPARE(answer, QStringList() << "default ");
    QCOMPARE(scene.get(scene.at("rdp/sessions"), &answer), 0);
    QCOMPARE(answer, QStringList());

    QCOMPARE(scene.commit(scene.at("usb/enable")), 0);
    QCOMPARE(scene.get(scene.at("usb/enable"), &answer), 0);
    QCOMPARE(answer, QStringList() << "value false");
}

void ZelvoViewTest::getOfAnEntryOfAnotherKind()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    OddRegistry registry(root);
    scene.load(registry, scene.baseDir());
    ConfigBranch notes("notes", nullptr);
    notes.addChild(new OddEntry);
    ActionKit::instance()->registerConfigBranch("zelvo-view/notes", &notes);

    QString const key = scene.at("notes/odd");
    QStringList answer;
    QCOMPARE(scene.get(key, &answer), 6);
    QCOMPARE(answer, QStringList());
    QCOMPARE(scene.set(key, "x"), 1);
    QCOMPARE(scene.commit(key), 0);
    QCOMPARE(scene.del(key), 0);
    QCOMPARE(scene.apply(key), 0);
}

void ZelvoViewTest::setOfAnythingButAValueAnswersOne()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.plugin->set(scene.at("radio/ssid"), "string", REG_PARAM_TYPE), 1);
    QCOMPARE(scene.plugin->set(scene.at("radio/ssid"), ".*", REG_PARAM_REGEXP), 1);
    QVERIFY(!scene.plugin->setBuffer()->entry(scene.at("radio/ssid")));
}

void ZelvoViewTest::setOfABranchAnswersOne()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.set(scene.at("radio"), "x"), 1);
    QCOMPARE(scene.set(root, "x"), 1);
    QCOMPARE(scene.set(scene.at(QString("rdp/sessions/") + kUuid), "x"), 1);
    QCOMPARE(scene.backend.calls("set"), QStringList());
}

void ZelvoViewTest::requestThatLeadsIntoItselfIsNotHandled_data()
{
    QTest::addColumn<QString>("operation");
    QStringList const operations = QStringList() << "get"
                                                 << "set"
                                                 << "create"
                                                 << "del"
                                                 << "commit"
                                                 << "apply";
    for (QString const& operation : operations)
        QTest::newRow(qPrintable(operation)) << operation;
}

void ZelvoViewTest::requestThatLeadsIntoItselfIsNotHandled()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, operation);

    PluginScene scene(root);
    QString const viewKey = operation == "create" ? "rdp/sessions/{uuid}" : "radio/ssid";
    QString const key = viewKey.endsWith("}") ? "rdp/sessions/" + QString(kUuid) : viewKey;
    RepeatingAction action(scene, operation, scene.at(key));
    ActionKit& kit = *ActionKit::instance();
    kit.registerValueAction("zelvo-view/" + viewKey, &action);
    kit.registerSetValueAction("zelvo-view/" + viewKey, &action);
    kit.registerCreateAction("zelvo-view/" + viewKey, &action);
    kit.registerDelAction("zelvo-view/" + viewKey, &action);
    kit.registerCommitAction("zelvo-view/" + viewKey, &action);
    kit.registerApplyAction("zelvo-view/" + viewKey, &action);
    QCOMPARE(action.request(), 0);
    QCOMPARE(action.codes(), QList<int>() << 1);
    QCOMPARE(action.request(), 0);
    QCOMPARE(action.codes(), QList<int>() << 1 << 1);
}

void ZelvoViewTest::createFollowsItsAction()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QString const key = scene.at(QString("rdp/sessions/") + kUuid);
    scene.backend.fail("create");
    QCOMPARE(scene.create(key), 1);

    scene.wrappers.addScript("zelvo-view/rdp/sessions/{uuid}", "create.sh", "exit 0");
    QCOMPARE(scene.create(key), 0);

    scene.wrappers.addScript("zelvo-view/rdp/sessions/{uuid}", "create.sh", "exit 1");
    QCOMPARE(scene.create(key), 1);
    QCOMPARE(scene.backend.calls("create").size(), 2);
}

void ZelvoViewTest::createNeedsAPlaceholder_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("a key") << "usb/enable";
    QTest::newRow("a branch") << "rdp/sessions";
    QTest::newRow("a key of a session")
        << "rdp/sessions/{c0ffee00-1234-4321-abcd-0123456789ab}/name";
    QTest::newRow("a UUID where there are no sessions")
        << "usb/{c0ffee00-1234-4321-abcd-0123456789ab}";
    QTest::newRow("a name that is no UUID") << "rdp/sessions/desk";
    QTest::newRow("the nil UUID") << "rdp/sessions/{00000000-0000-0000-0000-000000000000}";
    QTest::newRow("the placeholder itself") << "rdp/sessions/{uuid}";
}

void ZelvoViewTest::createNeedsAPlaceholder()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, key);

    PluginScene scene(root);
    QCOMPARE(scene.create(scene.at(key)), 1);
    QCOMPARE(scene.create(root), 1);
    QCOMPARE(scene.backend.calls("create"), QStringList());
}

void ZelvoViewTest::sessionBelowASessionIsNotCreated()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.defaults.addValue(scene.at("rdp/sessions/{uuid}/disks/{uuid}/path"), "/");
    QCOMPARE(scene.create(scene.at(QString("rdp/sessions/%1/disks/%1").arg(kUuid))), 1);
    QCOMPARE(scene.backend.calls("create"), QStringList());
    QVERIFY(scene.plugin->setBuffer()->children().isEmpty());
}

void ZelvoViewTest::delRunsTheActionsWhateverTheyAnswer()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.backend.fail("del");
    QCOMPARE(scene.del(scene.at("usb/enable")), 0);
    QCOMPARE(scene.backend.calls("del"), QStringList() << "del root/USB/root/mass-storage/allowed");

    scene.wrappers.addScript("zelvo-view/radio/ssid", "del.sh", "echo gone > seen; exit 1");
    QCOMPARE(scene.del(scene.at("radio/ssid")), 0);
    QCOMPARE(scene.wrappers.read("zelvo-view/radio/ssid", "seen"), QByteArray("gone\n"));
    QCOMPARE(scene.del(scene.at("radio/security")), 0);
    QCOMPARE(scene.del(scene.at("radio/colour")), 1);
}

void ZelvoViewTest::delOfASessionDeletesItAndItsKeys()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.del(scene.at(QString("rdp/sessions/") + kUuid)), 0);
    QStringList const calls = scene.backend.calls("del");
    QCOMPARE(calls,
             QStringList() << QString("del ") + kSession + "/label"
                           << QString("del ") + kSession + "/autostart"
                           << QString("del ") + kSession + "/address"
                           << QString("del ") + kSession);
}

void ZelvoViewTest::delReachesOneLevelBelowTheKey_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("deleted");
    QTest::addColumn<QStringList>("scripts");

    QString const allowed = "del root/USB/root/mass-storage/allowed";
    QString const readOnly = "del root/USB/root/mass-storage/read-only";
    QString const icaSession = QString("root/ConnectionType/ica/connections/") + kUuid;
    QTest::newRow("an area") << "/usb" << (QStringList() << allowed << readOnly)
                             << QStringList("usb");
    QTest::newRow("an area of scripts") << "/radio" << QStringList()
                                        << (QStringList() << "radio/ssid"
                                                          << "radio/security"
                                                          << "radio/passphrase"
                                                          << "radio");
    QTest::newRow("the root") << "" << QStringList()
                              << (QStringList() << "usb"
                                                << "radio"
                                                << "rdp"
                                                << "ica"
                                                << "empty"
                                                << "");
    QTest::newRow("a session with a branch in it")
        << QString("/ica/sessions/") + kUuid
        << (QStringList() << "del " + icaSession + "/label"
                          << "del " + icaSession)
        << QStringList("ica/sessions/{uuid}/proxy");
    QTest::newRow("a branch in a session")
        << QString("/ica/sessions/") + kUuid + "/proxy"
        << (QStringList() << "del " + icaSession + "/proxyAddress"
                          << "del " + icaSession + "/proxyPort")
        << QStringList("ica/sessions/{uuid}/proxy");
    QTest::newRow("all sessions") << "/ica/sessions" << QStringList("del " + icaSession)
                                  << QStringList("ica/sessions");
    QTest::newRow("a kind, and no session") << "/ica" << QStringList()
                                            << (QStringList() << "ica/sessions"
                                                              << "ica");
}

void ZelvoViewTest::delReachesOneLevelBelowTheKey()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, key);
    QFETCH(QStringList, deleted);
    QFETCH(QStringList, scripts);

    PluginScene scene(root);
    scene.addSessions("ica", QStringList() << kUuid);
    // A key that the registry deletes has no script here: it would take the registry's place.
    QStringList const folders = QStringList() << "usb"
                                              << "radio"
                                              << "radio/ssid"
                                              << "radio/security"
                                              << "radio/passphrase"
                                              << "rdp"
                                              << "rdp/sessions"
                                              << "ica"
                                              << "ica/sessions"
                                              << "ica/sessions/{uuid}/proxy"
                                              << "empty";
    QByteArray const logFile = scene.wrappers.folder("log").toLocal8Bit();
    for (QString const& folder : folders)
        scene.wrappers.addScript("zelvo-view/" + folder, "del.sh",
                                 "echo " + folder.toLatin1() + " >>" + logFile);
    scene.wrappers.addScript("zelvo-view", "del.sh", "echo >>" + logFile);

    QCOMPARE(scene.del(root + key), 0);
    QCOMPARE(scene.backend.calls("del"), deleted);
    QCOMPARE(QString(scene.wrappers.read("", "log")), scripts.join("\n") + "\n");
}

void ZelvoViewTest::hiddenKeyIsNotHandled_data()
{
    QTest::addColumn<QString>("hidden");
    QTest::addColumn<QString>("key");

    QTest::newRow("a key") << "/radio/ssid"
                           << "/radio/ssid";
    QTest::newRow("a key of a hidden branch") << "/radio"
                                              << "/radio/ssid";
    QTest::newRow("a hidden branch") << "/radio"
                                     << "/radio";
    QTest::newRow("a key of a hidden root") << ""
                                            << "/radio/ssid";
    QTest::newRow("the hidden root") << ""
                                     << "";
    QTest::newRow("a session") << "/rdp/sessions/{uuid}"
                               << "/rdp/sessions/{c0ffee00-1234-4321-abcd-0123456789ab}";
    QTest::newRow("a key of a session")
        << "/rdp/sessions/{uuid}/name"
        << "/rdp/sessions/{c0ffee00-1234-4321-abcd-0123456789ab}/name";
}

void ZelvoViewTest::hiddenKeyIsNotHandled()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, hidden);
    QFETCH(QString, key);

    PluginScene scene(root);
    scene.logRadioCommits();
    scene.addSessions("rdesktop", QStringList() << kUuid);
    scene.hide(hidden);
    QString const hiddenKey = root + key;
    QStringList answer;
    QCOMPARE(scene.get(hiddenKey, &answer), 1);
    QCOMPARE(answer, QStringList());
    QMap<QString, _RegNodeType> result;
    QCOMPARE(scene.plugin->get(hiddenKey, result, REG_PARAM_TYPE, ""), 1);
    QVERIFY(result.isEmpty());
    QCOMPARE(scene.set(hiddenKey, "x"), 1);
    QCOMPARE(scene.create(hiddenKey), 1);
    QCOMPARE(scene.del(hiddenKey), 1);
    QCOMPARE(scene.commit(hiddenKey), 1);
    QCOMPARE(scene.plugin->apply(hiddenKey, kCommand), 1);
    QCOMPARE(scene.commits(), QStringList());
    QCOMPARE(scene.backend.calls("set") + scene.backend.calls("create") + scene.backend.calls("del")
                 + scene.backend.calls("commit"),
             QStringList());
}

void ZelvoViewTest::hiddenChildIsNotListed()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.hide("/usb/read_only");
    scene.hide("/radio");
    QStringList answer;
    QCOMPARE(scene.get(scene.at("usb"), &answer), 0);
    QCOMPARE(answer, QStringList() << "key " + scene.at("usb/enable"));
    QCOMPARE(scene.get(root, &answer), 0);
    QVERIFY(!answer.contains("dir " + scene.at("radio")));
    QCOMPARE(answer.size(), 4);

    scene.addSessions("rdesktop", QStringList() << kUuid);
    scene.hide("/rdp/sessions/{uuid}");
    QCOMPARE(scene.get(scene.at("rdp/sessions"), &answer), 0);
    QCOMPARE(answer, QStringList());
}

void ZelvoViewTest::registeredActionIsAskedForEachSession()
{
    PluginScene scene("root/zelvo-view");
    scene.addSessions("rdesktop", QStringList() << kUuid << kOtherUuid);
    HidingAction action;
    ActionKit::instance()->registerIsVisibleAction("zelvo-view/rdp/sessions/{uuid}", &action);
    QString const sessions = scene.at("rdp/sessions");
    QStringList answer;
    QCOMPARE(scene.get(sessions, &answer), 0);
    QCOMPARE(answer, QStringList() << "dir " + sessions + "/" + kOtherUuid);
}

void ZelvoViewTest::hiddenKeyIsHandledAgainWhenItIsShown()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    scene.hide("/radio/ssid");
    QCOMPARE(scene.commit(scene.at("radio/ssid")), 1);
    QCOMPARE(scene.commits(), QStringList());
    scene.wrappers.addScript("zelvo-view/radio/ssid", "isVisible.sh", "exit 0");
    QCOMPARE(scene.commit(scene.at("radio/ssid")), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
}

void ZelvoViewTest::contains_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("code");

    QString const known = QString("/rdp/sessions/") + kUuid;
    QString const unknown = QString("/rdp/sessions/") + kOtherUuid;

    QTest::newRow("a key") << "/radio/ssid" << 0;
    QTest::newRow("a branch") << "/radio" << 0;
    QTest::newRow("the root") << "" << 0;
    QTest::newRow("an unknown key") << "/radio/colour" << 1;
    QTest::newRow("a session") << known << 0;
    QTest::newRow("a key of a session") << known + "/name" << 0;
    QTest::newRow("a session that the registry has not") << unknown << 1;
    QTest::newRow("a key of a session that the registry has not") << unknown + "/name" << 1;
    QTest::newRow("two UUIDs, the second unknown") << known + "/" + kOtherUuid << 1;
    QTest::newRow("a list of sessions that is empty") << "/ica/sessions" << 1;
    QTest::newRow("a list of sessions") << "/rdp/sessions" << 0;
    // The base knows the default settings only.
    QTest::newRow("a hidden key, as the default settings know it") << "/usb/read_only" << 0;
    QTest::newRow("a longer name than the root's") << "s" << 1;
    QTest::newRow("a name that is no UUID") << "/rdp/sessions/desk" << 1;
    QTest::newRow("the nil UUID") << "/rdp/sessions/{00000000-0000-0000-0000-000000000000}" << 1;
}

void ZelvoViewTest::contains()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, key);
    QFETCH(int, code);

    PluginScene scene(root);
    scene.addSessions("rdesktop", QStringList() << kUuid);
    scene.hide("/usb/read_only");
    QCOMPARE(scene.contains(root + key), code);
}

void ZelvoViewTest::containsOutsideTheRootsAsksNobody()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    // Its own answers would not show among the backend's calls.
    scene.backend.serve(nullptr);
    QStringList const keys = QStringList()
        << "root/USB/root/mass-storage/allowed"
        << "zelvo-view/usb" << root.toUpper() + "/usb"
        << "tmp/other/x"
        << "tmp" << QString("root/other/") + kUuid << " " + root << QString();
    for (QString const& key : keys)
        QCOMPARE(scene.contains(key), 1);
    QCOMPARE(scene.backend.calls(), QStringList());
}

void ZelvoViewTest::containsUnderTheTemporaryRoot_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("code");

    QTest::newRow("a key that is there") << "tmp/zelvo-view/a/b" << 0;
    QTest::newRow("a key that is not") << "tmp/zelvo-view/a/c" << 1;
    QTest::newRow("the root itself, not there") << "tmp/zelvo-view" << 1;
    QTest::newRow("a UUID that is there")
        << "tmp/zelvo-view/{c0ffee00-1234-4321-abcd-0123456789ab}/b" << 0;
    QTest::newRow("a UUID that is not")
        << "tmp/zelvo-view/{deadbeef-1234-4321-abcd-0123456789ab}/b" << 1;
    QTest::newRow("separators alone behind it") << "tmp/zelvo-view////" << 1;
}

void ZelvoViewTest::containsUnderTheTemporaryRoot()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, key);
    QFETCH(int, code);

    PluginScene scene(root);
    scene.backend.addValue("tmp/zelvo-view/a/b", "x");
    scene.backend.addDirectory("tmp/zelvo-view", QStringList() << QString(kUuid) + "/");
    scene.backend.addValue(QString("tmp/zelvo-view/") + kUuid + "/b", "x");
    scene.backend.addValue(QString("tmp/zelvo-view/") + kOtherUuid + "/b", "x");
    scene.backend.failOn("get", "tmp/zelvo-view////");
    if (key == "tmp/zelvo-view")
        scene.backend.failOn("get", key);
    QCOMPARE(scene.contains(key), code);
}

void ZelvoViewTest::containsFollowsTheListingOfTheHost()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.backend.serve(nullptr);
    // The base would answer the contrary for each of them.
    scene.backend.addDirectory(scene.at("radio"), QStringList());
    scene.backend.addDirectory(scene.at("unknown"), QStringList() << "key");
    QCOMPARE(scene.contains(scene.at("radio")), 1);
    QCOMPARE(scene.contains(scene.at("unknown")), 0);
}

void ZelvoViewTest::containsAsksTheBaseWhenTheHostFails()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.backend.serve(nullptr);
    QCOMPARE(scene.contains(scene.at("radio/ssid")), 0);
    QCOMPARE(scene.contains(scene.at("radio/colour")), 1);
    QCOMPARE(scene.backend.calls(),
             QStringList() << "get " + scene.at("radio/ssid") << "get " + scene.at("radio/colour"));
}

void ZelvoViewTest::applyRunsTheScriptsAtAndUnderTheKey()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QStringList const folders = QStringList() << "zelvo-view/radio"
                                              << "zelvo-view/radio/ssid"
                                              << "zelvo-view/radio/passphrase"
                                              << "zelvo-view/usb/enable";
    for (QString const& folder : folders)
        scene.wrappers.addScript(folder, "apply.sh", "echo applied >> seen");
    QCOMPARE(scene.plugin->apply(scene.at("radio"), kCommand), 0);
    QVERIFY(waitUntil([&] { return scene.backend.value(kCommand) == "0"; }));
    for (QString const& folder : folders.mid(0, 3))
        QCOMPARE(scene.wrappers.read(folder, "seen"), QByteArray("applied\n"));
    QVERIFY(!scene.wrappers.exists("zelvo-view/usb/enable", "seen"));

    QCOMPARE(scene.plugin->apply(scene.at("usb/enable"), "tmp/apply/2"), 0);
    QVERIFY(waitUntil([&] { return scene.backend.value("tmp/apply/2") == "0"; }));
    QCOMPARE(scene.wrappers.read("zelvo-view/usb/enable", "seen"), QByteArray("applied\n"));
}

void ZelvoViewTest::applyOfASessionReachesAllItsKeys()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.addSessions("ica", QStringList() << kUuid << kOtherUuid);
    QString const session = "zelvo-view/ica/sessions/{uuid}";
    QStringList const folders = QStringList()
        << session << session + "/name" << session + "/proxy" << session + "/proxy/address"
        << session + "/proxy/port";
    for (QString const& folder : folders)
        scene.wrappers.addScript(folder, "apply.sh", "echo applied >> seen");
    QCOMPARE(scene.plugin->apply(scene.at(QString("ica/sessions/") + kUuid), kCommand), 0);
    QVERIFY(waitUntil([&] { return scene.backend.value(kCommand) == "0"; }));
    for (QString const& folder : folders)
        QCOMPARE(scene.wrappers.read(folder, "seen"), QByteArray("applied\n"));
}

void ZelvoViewTest::applyReturnsBeforeItsScriptsHaveRun()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    // It waits for what comes after the request.
    scene.wrappers.addScript("zelvo-view/radio/ssid", "apply.sh",
                             "while [ ! -e go ]; do sleep 0.01; done; echo applied > seen");
    QCOMPARE(scene.plugin->apply(scene.at("radio/ssid"), kCommand), 0);
    QVERIFY(!scene.wrappers.exists("zelvo-view/radio/ssid", "seen"));
    QCOMPARE(scene.backend.calls("commit"), QStringList());
    // Other requests are served meanwhile.
    QCOMPARE(scene.get(scene.at("radio/ssid")), 0);
    QCOMPARE(scene.plugin->apply(scene.at("usb"), "tmp/apply/2"), 0);
    QVERIFY(waitUntil([&] { return scene.backend.value("tmp/apply/2") == "0"; }));
    QVERIFY(scene.backend.value(kCommand).isNull());

    scene.wrappers.addFile("zelvo-view/radio/ssid", "go", "");
    QVERIFY(waitUntil([&] { return scene.backend.value(kCommand) == "0"; }));
    QCOMPARE(scene.wrappers.read("zelvo-view/radio/ssid", "seen"), QByteArray("applied\n"));
}

void ZelvoViewTest::applyTellsItsEnd()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.plugin->apply(scene.at("radio"), kCommand), 0);
    QVERIFY(waitUntil([&] { return scene.backend.value(kCommand) == "0"; }));
    QCOMPARE(scene.backend.calls("set") + scene.backend.calls("commit"),
             QStringList() << QString("set %1 0").arg(kCommand)
                           << QString("commit %1").arg(kCommand));
}

void ZelvoViewTest::applyWithoutCommandTellsNobody()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.wrappers.addScript("zelvo-view/radio/ssid", "apply.sh", "echo applied > seen");
    QCOMPARE(scene.apply(scene.at("radio")), 0);
    // With the plugin all its threads have come to their end.
    scene.plugin.reset();
    QCOMPARE(scene.wrappers.read("zelvo-view/radio/ssid", "seen"), QByteArray("applied\n"));
    QCOMPARE(scene.backend.calls(), QStringList());
}

void ZelvoViewTest::applyLeavesNoPoolAndNoKeeperBehind()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.wrappers.addScript("zelvo-view/radio/ssid", "apply.sh", "echo applied >> seen");
    for (int i = 0; i < 3; ++i)
        QCOMPARE(scene.apply(scene.at("radio")), 0);
    QVERIFY(waitUntil([&] { return scene.plugin->children().isEmpty(); }));
    QCOMPARE(scene.wrappers.read("zelvo-view/radio/ssid", "seen"),
             QByteArray("applied\napplied\napplied\n"));
}

void ZelvoViewTest::applyOfTheUsbAreaIsTheRegistrys()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.apply(scene.at("usb")), 0);
    QCOMPARE(scene.apply(scene.at("usb/enable")), 0);
    QCOMPARE(scene.backend.calls("apply"), QStringList() << "apply root/USB/root/mass-storage ");
}

void ZelvoViewTest::applyOfAnUnknownKeyTellsNobody()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.plugin->apply(scene.at("radio/colour"), kCommand), 1);
    QCOMPARE(scene.plugin->apply("root/other", kCommand), 1);
    scene.plugin.reset();
    QCOMPARE(scene.backend.calls(), QStringList());
}

void ZelvoViewTest::destroyingThePluginWaitsForItsApplies()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QStringList const names = QStringList() << "ssid"
                                            << "security"
                                            << "passphrase";
    for (QString const& name : names)
        scene.wrappers.addScript("zelvo-view/radio/" + name, "apply.sh",
                                 "sleep 0.2; echo applied >> seen");
    Footprint const before;
    QCOMPARE(scene.set(scene.at("radio/ssid"), "never committed"), 0);
    QCOMPARE(scene.plugin->apply(scene.at("radio"), kCommand), 0);
    QCOMPARE(scene.plugin->apply(scene.at("radio/ssid"), "tmp/apply/2"), 0);
    QCOMPARE(scene.apply(scene.at("radio/security")), 0);
    scene.plugin.reset();

    QCOMPARE(scene.wrappers.read("zelvo-view/radio/ssid", "seen"),
             QByteArray("applied\napplied\n"));
    QCOMPARE(scene.wrappers.read("zelvo-view/radio/security", "seen"),
             QByteArray("applied\napplied\n"));
    QCOMPARE(scene.wrappers.read("zelvo-view/radio/passphrase", "seen"), QByteArray("applied\n"));
    QCOMPARE(scene.backend.value(kCommand), QString("0"));
    QCOMPARE(scene.backend.value("tmp/apply/2"), QString("0"));
    QCOMPARE(Footprint().newSince(before), QStringList());
    // What the threads left for the event loop.
    QCoreApplication::processEvents();
}

void ZelvoViewTest::destroyingAnUnusedPluginDeletesNothingElse()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    ActionKit* const kit = ActionKit::instance();
    scene.plugin.reset();
    QVERIFY(ActionKit::instance() == kit);
    QVERIFY(kit->vantoraBackend() == &scene.backend);
    QCOMPARE(scene.backend.calls(), QStringList());
}

void ZelvoViewTest::oneSessionOfManyIsNotLookedFor()
{
    QFETCH_GLOBAL(QString, root);

    int const kSessions = 10000;
    QString const uuid = "{c0ffee00-1234-4321-abcd-0123456%1}";
    QStringList uuids;
    for (int i = 0; i < kSessions; ++i)
        uuids << uuid.arg(i, 5, 10, QChar('0'));
    PluginScene scene(root);
    scene.addSessions("rdesktop", uuids);
    QString const name = scene.at("rdp/sessions/" + uuids.at(5000) + "/name");
    QCOMPARE(scene.get(name), 0);
    QCOMPARE(scene.set(name, "Desk"), 0);
    QCOMPARE(scene.commit(name), 0);
    QCOMPARE(scene.create(scene.at(QString("rdp/sessions/") + kUuid)), 0);
    QCOMPARE(scene.commit(scene.at(QString("rdp/sessions/") + kUuid)), 0);
    QVERIFY(!scene.backend.calls().contains("get root/ConnectionType/rdesktop/connections"));

    QStringList answer;
    QCOMPARE(scene.get(scene.at("rdp/sessions"), &answer), 0);
    QCOMPARE(answer.size(), kSessions);
    QCOMPARE(scene.backend.calls().count("get root/ConnectionType/rdesktop/connections"), 1);
}

ZELVO_TEST(ZelvoViewTest)
#include "ZelvoViewTest.moc"
