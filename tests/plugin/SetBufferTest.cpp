// SPDX-License-Identifier: MIT

// What is set or created waits for its commit, and nothing else does.

#include "plugin/PluginScene.h"
#include "support/RecordingAction.h"
#include "support/TestProgram.h"
#include "tree/ConfigKey.h"
#include "tree/ConfigTree.h"

#include <QtTest>

#include <algorithm>
#include <initializer_list>

namespace {

char const kUuid[] = "{c0ffee00-1234-4321-abcd-0123456789ab}";
char const kOtherUuid[] = "{deadbeef-1234-4321-abcd-0123456789ab}";

QString registrySession(QString const& uuid = kUuid)
{
    return "root/ConnectionType/rdesktop/connections/" + uuid;
}

QString viewSession(QString const& uuid = kUuid)
{
    return "rdp/sessions/" + uuid;
}

/// One of up to 100000.
QString numberedSession(int number)
{
    QString const uuid = "{c0ffee00-1234-4321-abcd-0123456%1}";
    return uuid.arg(number, 5, 10, QChar('0'));
}

} // namespace

class SetBufferTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addRoots(); }

    void isMadeOnFirstUseAndRootedAtTheRoot();
    void deletingItForgetsWhatWasSet();

    void valueSurvivesEverythingButItsCommit_data();
    void valueSurvivesEverythingButItsCommit();
    void valueIsCommittedOnce();
    void secondValueReplacesTheFirst();
    void emptyValueIsCommittedAsAValue();
    void whatTheScriptMadeOfAValueIsCommitted();
    void committedKeyTakesPartThoughItWasNotSet();
    void valueSetAgainAfterTheCommitWaitsForTheNext();

    void branchCommitsWhatWasSetAlone();
    void branchCommitsInTheOrderOfTheDefaultSettings_data();
    void branchCommitsInTheOrderOfTheDefaultSettings();
    void branchWithoutSetKeysCommitsItselfAlone();
    void keyThatAListingShowedIsNotCommitted();
    void keyThatACommitLookedUpIsNotLeftBehind();

    void rootCommitsEverythingAndForgetsIt();
    void committedValueIsNotKept_data();
    void committedValueIsNotKept();
    void rootUnknownToTheDefaultSettingsAnswersOneAllTheSame();
    void ancestorsCommitEverythingAndAnswerOne();
    void strangersKeysCommitNothing_data();
    void strangersKeysCommitNothing();

    void sessionsThatCannotBeListedCommitNothing();
    void failedRequestsLeaveItAlone_data();
    void failedRequestsLeaveItAlone();

    void createdSessionIsCommittedWithoutItsKeys();
    void createdSessionCommitsTheKeysThatWereSet();
    void createdSessionOutlastsTheCommitOfItsKeys();
    void sessionCreatedByAScriptOutlastsTheCommitOfItsKeys();
    void branchIsCommittingWhileItsActionRuns();
    void committedSessionGoesWithItsLastKey();
    void sessionAtThePlaceOfACommittedOneGoesWithItsLastKey();
    void whatAppearsBelowAPendingKeyIsRefused();
    void creatingTwiceCommitsOnce();
    void creationThatFailsLeavesNothing();
    void creationThatFailsLeavesWhatWasSet();
    void createdSessionThatIsDeletedIsForgotten();
    void deletedSessionIsCommittedAloneAtAnyHeight_data();
    void deletedSessionIsCommittedAloneAtAnyHeight();
    void deletedValueIsCommittedAtAnyHeight_data();
    void deletedValueIsCommittedAtAnyHeight();
    void hiddenKeyStaysPending();
    void refusedValueIsCommittedAgainWithItsBranch();
    void refusedTargetOfSettingIsCommittedAgain();
    void refusedDisplayValueIsCommittedAgain();
    void valueWithoutARegistryKeyIsNotKept();
    void deletingDoesNotDropAValue();
    void applyingDoesNotDropAValue();
    void keyOfASessionNeverCreatedIsCommitted();
    void sessionsCommitTheirOwn();
    void commitsInAnyOrder();
    void manySessionsStayPending();
};

void SetBufferTest::isMadeOnFirstUseAndRootedAtTheRoot()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    ConfigTree* const buffer = scene.plugin->setBuffer();
    QVERIFY(buffer);
    QVERIFY(scene.plugin->setBuffer() == buffer);
    QCOMPARE(buffer->rootDir(), root);
    QVERIFY(buffer->children().isEmpty());

    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    ConfigKey const* const pending
        = dynamic_cast<ConfigKey*>(scene.plugin->setBuffer()->entry(scene.at("radio/ssid")));
    QVERIFY(pending);
    QCOMPARE(pending->bufferValue(), QString("Home"));
}

void SetBufferTest::deletingItForgetsWhatWasSet()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    scene.plugin->deleteSetBuffer();
    scene.plugin->deleteSetBuffer();
    QVERIFY(scene.plugin->setBuffer()->children().isEmpty());
    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.commits(), QStringList());
}

void SetBufferTest::valueSurvivesEverythingButItsCommit_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("key");

    QTest::newRow("reading it") << "get"
                                << "radio/ssid";
    QTest::newRow("listing its branch") << "get"
                                        << "radio";
    QTest::newRow("listing the root") << "get"
                                      << "";
    QTest::newRow("asking for it") << "contains"
                                   << "radio/ssid";
    QTest::newRow("setting its neighbour") << "set"
                                           << "radio/security";
    QTest::newRow("setting a key elsewhere") << "set"
                                             << "usb/enable";
    QTest::newRow("committing its neighbour") << "commit"
                                              << "radio/security";
    QTest::newRow("committing a key elsewhere") << "commit"
                                                << "usb/enable";
    QTest::newRow("committing a branch elsewhere") << "commit"
                                                   << "usb";
    QTest::newRow("deleting it") << "del"
                                 << "radio/ssid";
    QTest::newRow("deleting its branch") << "del"
                                         << "radio";
    QTest::newRow("applying its branch") << "apply"
                                         << "radio";
    QTest::newRow("creating a session") << "create"
                                        << "rdp/sessions/{c0ffee00-1234-4321-abcd-0123456789ab}";
}

void SetBufferTest::valueSurvivesEverythingButItsCommit()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, operation);
    QFETCH(QString, key);

    PluginScene scene(root);
    scene.logRadioCommits();
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    QString const other = key.isEmpty() ? root : scene.at(key);
    int code = 1;
    if (operation == "get")
        code = scene.get(other);
    else if (operation == "contains")
        code = scene.contains(other);
    else if (operation == "set")
        code = scene.set(other, "x");
    else if (operation == "commit")
        code = scene.commit(other);
    else if (operation == "del")
        code = scene.del(other);
    else if (operation == "apply")
        code = scene.apply(other);
    else if (operation == "create")
        code = scene.create(other);
    QCOMPARE(code, 0);

    QCOMPARE(scene.commit(scene.at("radio/ssid")), 0);
    QCOMPARE(scene.commits().last(), QString("ssid=Home"));
}

void SetBufferTest::valueIsCommittedOnce()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    QCOMPARE(scene.commit(scene.at("radio/ssid")), 0);
    QCOMPARE(scene.commit(scene.at("radio")), 0);
    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
}

void SetBufferTest::secondValueReplacesTheFirst()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Office"), 0);
    QCOMPARE(scene.commit(scene.at("radio")), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Office");
}

void SetBufferTest::emptyValueIsCommittedAsAValue()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    QCOMPARE(scene.set(scene.at("radio/ssid"), ""), 0);
    ConfigKey const* const pending
        = dynamic_cast<ConfigKey*>(scene.plugin->setBuffer()->entry(scene.at("radio/ssid")));
    QVERIFY(pending && !pending->bufferValue().isNull());
    QCOMPARE(scene.commit(scene.at("radio")), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=");
}

void SetBufferTest::whatTheScriptMadeOfAValueIsCommitted()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    scene.wrappers.addScript("zelvo-view/radio/ssid", "set.sh", "tr -d ' ' < \"$1\"");
    QCOMPARE(scene.set(scene.at("radio/ssid"), "  My Home "), 0);
    QCOMPARE(scene.set(scene.at("radio/security"), "wpa"), 0);
    QCOMPARE(scene.commit(scene.at("radio")), 0);
    QCOMPARE(scene.commits(),
             QStringList() << "ssid=MyHome"
                           << "security=wpa");
}

void SetBufferTest::committedKeyTakesPartThoughItWasNotSet()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    QCOMPARE(scene.commit(scene.at("radio/ssid")), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=");
    QCOMPARE(scene.commit(scene.at("usb/enable")), 0);
    QCOMPARE(scene.backend.calls("commit"),
             QStringList() << "commit root/USB/root/mass-storage/allowed");
}

void SetBufferTest::valueSetAgainAfterTheCommitWaitsForTheNext()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    QCOMPARE(scene.commit(scene.at("radio/ssid")), 0);
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Office"), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
    QCOMPARE(scene.commit(scene.at("radio/ssid")), 0);
    QCOMPARE(scene.commits(),
             QStringList() << "ssid=Home"
                           << "ssid=Office");
}

void SetBufferTest::branchCommitsWhatWasSetAlone()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    QCOMPARE(scene.get(scene.at("radio")), 0);
    QCOMPARE(scene.commit(scene.at("radio")), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
}

void SetBufferTest::branchCommitsInTheOrderOfTheDefaultSettings_data()
{
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("committed");

    QStringList const all = QStringList() << "ssid"
                                          << "security"
                                          << "passphrase";
    QStringList const reverse = QStringList() << "passphrase"
                                              << "security"
                                              << "ssid";
    QStringList const again = QStringList() << "passphrase"
                                            << "ssid"
                                            << "security"
                                            << "ssid";

    QTest::newRow("set in that order, the branch") << all << "radio";
    QTest::newRow("set in reverse, the branch") << reverse << "radio";
    QTest::newRow("one set twice, the branch") << again << "radio";
    QTest::newRow("set in reverse, the root") << reverse << "";
}

void SetBufferTest::branchCommitsInTheOrderOfTheDefaultSettings()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QStringList, keys);
    QFETCH(QString, committed);

    PluginScene scene(root);
    scene.logRadioCommits();
    QStringList const order = keys;
    for (QString const& key : order) {
        QCOMPARE(scene.set(scene.at("radio/" + key), key.toUpper()), 0);
        QCOMPARE(scene.set(scene.at("usb/enable"), "true"), 0);
    }
    QCOMPARE(scene.commit(committed.isEmpty() ? root : scene.at(committed)), 0);
    QCOMPARE(scene.commits(),
             QStringList() << "ssid=SSID"
                           << "security=SECURITY"
                           << "passphrase=PASSPHRASE");
}

void SetBufferTest::branchWithoutSetKeysCommitsItselfAlone()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    scene.wrappers.addScript("zelvo-view/radio", "commit.sh", "echo itself >> log");
    QCOMPARE(scene.commit(scene.at("radio")), 0);
    QCOMPARE(scene.commits(), QStringList() << "itself");
}

void SetBufferTest::keyThatAListingShowedIsNotCommitted()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    QCOMPARE(scene.get(scene.at("radio")), 0);
    QCOMPARE(scene.get(scene.at("radio/ssid")), 0);
    QCOMPARE(scene.contains(scene.at("radio/ssid")), 0);
    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.commits(), QStringList());
}

void SetBufferTest::keyThatACommitLookedUpIsNotLeftBehind()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    scene.addSessions("rdesktop", QStringList() << kUuid);
    QCOMPARE(scene.commit(scene.at("radio/ssid")), 0);
    QCOMPARE(scene.commit(scene.at("radio")), 0);
    QCOMPARE(scene.commit(scene.at("rdp")), 0);
    QCOMPARE(scene.commit(scene.at("rdp/sessions")), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=");
    QVERIFY(!scene.plugin->setBuffer()->entry(scene.at("radio/ssid")));
    QVERIFY(!scene.plugin->setBuffer()->entry(scene.at("rdp")));
    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=");
    QCOMPARE(scene.backend.calls("commit"), QStringList());
}

void SetBufferTest::rootCommitsEverythingAndForgetsIt()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
    QVERIFY(scene.backend.calls("commit").contains("commit " + registrySession() + "/label"));
    scene.backend.forgetCalls();

    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
    QCOMPARE(scene.backend.calls("commit"), QStringList());
}

void SetBufferTest::committedValueIsNotKept_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("with its key") << "/radio/ssid";
    QTest::newRow("with its branch") << "/radio";
    QTest::newRow("with the root") << "";
}

void SetBufferTest::committedValueIsNotKept()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, key);

    PluginScene scene(root);
    QString const value(100, QLatin1Char('x'));
    QCOMPARE(scene.set(scene.at("radio/ssid"), value), 0);
    // Whoever keeps a text shares it.
    QVERIFY(!value.isDetached());
    QCOMPARE(scene.commit(root + key), 0);
    QVERIFY(value.isDetached());
}

void SetBufferTest::rootUnknownToTheDefaultSettingsAnswersOneAllTheSame()
{
    QFETCH_GLOBAL(QString, root);

    /// Knows all but the root.
    class RootlessRegistry : public Reg::Registry
    {
    public:
        RootlessRegistry(Reg::Registry& registry, QString const& unknown)
            : mRegistry(registry)
            , mUnknown(unknown)
        {
        }

        int query(QString const& key, Reg::NodeSet& nodes, QString const& extra) override
        {
            return key == mUnknown ? 1 : mRegistry.query(key, nodes, extra);
        }

    private:
        Reg::Registry& mRegistry;
        QString mUnknown;
    };

    PluginScene scene(root);
    scene.logRadioCommits();
    RootlessRegistry rootless(scene.defaults, root);
    scene.load(rootless, scene.baseDir());
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    QCOMPARE(scene.set(scene.at("usb/enable"), "true"), 0);
    QCOMPARE(scene.commit(root), 1);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
    QCOMPARE(scene.backend.calls("commit"),
             QStringList() << "commit root/USB/root/mass-storage/allowed");
    QCOMPARE(scene.commit(root), 1);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
}

void SetBufferTest::ancestorsCommitEverythingAndAnswerOne()
{
    QFETCH_GLOBAL(QString, root);

    QString ancestor = root;
    while (ancestor.contains('/')) {
        ancestor = ancestor.section('/', 0, -2);
        PluginScene scene(root);
        scene.logRadioCommits();
        QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
        QCOMPARE(scene.set(scene.at("usb/enable"), "true"), 0);
        QCOMPARE(scene.commit(ancestor), 1);
        QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
        QCOMPARE(scene.backend.calls("commit"),
                 QStringList() << "commit root/USB/root/mass-storage/allowed");

        QCOMPARE(scene.commit(ancestor), 1);
        QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
    }
}

void SetBufferTest::strangersKeysCommitNothing_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("a key elsewhere") << "root/other/key";
    QTest::newRow("a longer name than the root's") << "ROOT-too";
    QTest::newRow("an unknown key of the view") << "ROOT/radio/colour";
    QTest::newRow("a key below a value") << "ROOT/radio/ssid/x";
    QTest::newRow("the root and a slash") << "ROOT/";
    QTest::newRow("the name alone") << "zelvo-view";
}

void SetBufferTest::strangersKeysCommitNothing()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, key);

    PluginScene scene(root);
    scene.logRadioCommits();
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    QCOMPARE(scene.commit(key.replace("ROOT", root)), 1);
    QCOMPARE(scene.commits(), QStringList());
    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
}

void SetBufferTest::sessionsThatCannotBeListedCommitNothing()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
    scene.backend.failOn("get", "root/ConnectionType/rdesktop/connections");
    QCOMPARE(scene.commit(scene.at("rdp/sessions")), 1);
    QCOMPARE(scene.backend.calls("commit"), QStringList());
    QCOMPARE(scene.commit(scene.at(viewSession() + "/name")), 0);
    QCOMPARE(scene.backend.value(registrySession() + "/label"), QString("Desk"));
}

void SetBufferTest::failedRequestsLeaveItAlone_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("key");

    QTest::newRow("setting an unknown key") << "set"
                                            << "radio/colour";
    QTest::newRow("setting a branch") << "set"
                                      << "radio";
    QTest::newRow("setting a hidden key") << "set"
                                          << "usb/read_only";
    QTest::newRow("setting a type") << "type"
                                    << "radio/security";
    QTest::newRow("setting below a placeholder") << "set"
                                                 << "rdp/sessions/{uuid}/name";
    QTest::newRow("creating a key") << "create"
                                    << "radio/security";
    QTest::newRow("creating an unknown key") << "create"
                                             << "radio/colour";
    QTest::newRow("creating a session of no UUID") << "create"
                                                   << "rdp/sessions/first";
    QTest::newRow("creating a session of the nil UUID")
        << "create"
        << "rdp/sessions/{00000000-0000-0000-0000-000000000000}";
    QTest::newRow("committing an unknown key") << "commit"
                                               << "radio/colour";
    QTest::newRow("committing a hidden key") << "commit"
                                             << "usb/read_only";
    QTest::newRow("deleting an unknown key") << "del"
                                             << "radio/colour";
    QTest::newRow("applying an unknown key") << "apply"
                                             << "radio/colour";
}

void SetBufferTest::failedRequestsLeaveItAlone()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, operation);
    QFETCH(QString, key);

    PluginScene scene(root);
    scene.logRadioCommits();
    scene.hide("/usb/read_only");
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    scene.backend.forgetCalls();
    int code = 0;
    if (operation == "set")
        code = scene.set(scene.at(key), "x");
    else if (operation == "type")
        code = scene.plugin->set(scene.at(key), "bool", REG_PARAM_TYPE);
    else if (operation == "create")
        code = scene.create(scene.at(key));
    else if (operation == "commit")
        code = scene.commit(scene.at(key));
    else if (operation == "del")
        code = scene.del(scene.at(key));
    else if (operation == "apply")
        code = scene.apply(scene.at(key));
    QCOMPARE(code, 1);

    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
    QCOMPARE(scene.backend.calls("set") + scene.backend.calls("create")
                 + scene.backend.calls("commit") + scene.backend.calls("del"),
             QStringList());
}

void SetBufferTest::createdSessionIsCommittedWithoutItsKeys()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.create(scene.at(viewSession())), 0);
    QCOMPARE(scene.backend.calls(), QStringList() << "create " + registrySession());
    scene.backend.forgetCalls();
    QVERIFY(scene.plugin->setBuffer()->entry(scene.at(viewSession())));

    QCOMPARE(scene.commit(scene.at(viewSession())), 0);
    QCOMPARE(scene.backend.calls("commit"), QStringList() << "commit " + registrySession());
    scene.backend.forgetCalls();
    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.backend.calls("commit"), QStringList());
}

void SetBufferTest::createdSessionCommitsTheKeysThatWereSet()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QStringList const committed = QStringList() << viewSession() << "rdp/sessions"
                                                << "rdp";
    for (QString const& key : committed) {
        QCOMPARE(scene.create(scene.at(viewSession())), 0);
        QCOMPARE(scene.set(scene.at(viewSession() + "/address"), "10.0.0.1"), 0);
        QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
        scene.backend.forgetCalls();

        QCOMPARE(scene.commit(scene.at(key)), 0);
        QCOMPARE(scene.backend.calls("commit"),
                 QStringList() << "commit " + registrySession() + "/label"
                               << "commit " + registrySession() + "/address"
                               << "commit " + registrySession());
    }
}

void SetBufferTest::createdSessionOutlastsTheCommitOfItsKeys()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.create(scene.at(viewSession())), 0);
    QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
    QCOMPARE(scene.commit(scene.at(viewSession() + "/name")), 0);
    scene.backend.forgetCalls();

    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.backend.calls("commit"), QStringList() << "commit " + registrySession());
}

// Nothing is pending in the backend that would tell of it.
void SetBufferTest::sessionCreatedByAScriptOutlastsTheCommitOfItsKeys()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.wrappers.addScript("zelvo-view/rdp/sessions/{uuid}", "create.sh", "exit 0");
    QCOMPARE(scene.create(scene.at(viewSession())), 0);
    QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
    QCOMPARE(scene.commit(scene.at(viewSession() + "/name")), 0);
    QVERIFY(scene.plugin->setBuffer()->entry(scene.at(viewSession())));
    scene.backend.forgetCalls();

    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.backend.calls("commit"), QStringList() << "commit " + registrySession());
}

void SetBufferTest::branchIsCommittingWhileItsActionRuns()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    RecordingAction action;
    ActionKit::instance()->registerCommitAction("zelvo-view/usb", &action);
    QCOMPARE(scene.set(scene.at("usb/enable"), "true"), 0);
    QCOMPARE(scene.commit(scene.at("usb")), 0);
    QCOMPARE(action.calls().size(), 1);
    QCOMPARE(action.calls().first().state, IConfigEntry::ENTRY_COMMITTING);
}

// Otherwise it would be committed once more, though nothing is pending: a terminal session's script
// would be told of empty settings.
void SetBufferTest::committedSessionGoesWithItsLastKey()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QStringList const committed = QStringList()
        << root << scene.at("rdp/sessions") << scene.at(viewSession());
    for (QString const& key : committed) {
        QCOMPARE(scene.create(scene.at(viewSession())), 0);
        QCOMPARE(scene.commit(key), 0);
        QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
        QCOMPARE(scene.commit(scene.at(viewSession() + "/name")), 0);
        scene.backend.forgetCalls();

        QCOMPARE(scene.commit(root), 0);
        QCOMPARE(scene.backend.calls("commit"), QStringList());
    }
}

// The memory of the entries of committed sessions is used again.
void SetBufferTest::sessionAtThePlaceOfACommittedOneGoesWithItsLastKey()
{
    QFETCH_GLOBAL(QString, root);

    int const kSessions = 100;
    PluginScene scene(root);
    QStringList const committed = QStringList() << root << scene.at("rdp/sessions");
    for (QString const& key : committed) {
        for (int i = 0; i < kSessions; ++i)
            QCOMPARE(scene.create(scene.at(viewSession(numberedSession(i)))), 0);
        QCOMPARE(scene.commit(key), 0);
        for (int i = 0; i < kSessions; ++i) {
            QString const name = scene.at(viewSession(numberedSession(i)) + "/name");
            QCOMPARE(scene.set(name, "Desk"), 0);
            QCOMPARE(scene.commit(name), 0);
            QCOMPARE(scene.plugin->setBuffer()->children().size(), 0);
        }
    }
}

// Default settings that change while a value is pending.
void SetBufferTest::whatAppearsBelowAPendingKeyIsRefused()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QString const pending = scene.at("usb/enable");
    QCOMPARE(scene.set(pending, "false"), 0);
    scene.defaults.addValue(pending + "/since", "");
    scene.defaults.addValue(pending + "/{uuid}/name", "");

    QCOMPARE(scene.set(pending + "/since", "now"), 1);
    QCOMPARE(scene.create(pending + "/" + kUuid), 1);
    QVERIFY(scene.plugin->setBuffer()->entry(pending));
    QVERIFY(!scene.plugin->setBuffer()->entry(pending + "/since"));
}

void SetBufferTest::creatingTwiceCommitsOnce()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.create(scene.at(viewSession())), 0);
    QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
    QCOMPARE(scene.create(scene.at(viewSession())), 0);
    scene.backend.fail("create");
    QCOMPARE(scene.create(scene.at(viewSession())), 1);
    scene.backend.forgetCalls();

    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.backend.calls("commit"),
             QStringList() << "commit " + registrySession() + "/label"
                           << "commit " + registrySession());
    QCOMPARE(scene.backend.value(registrySession() + "/label"), QString("Desk"));
}

void SetBufferTest::creationThatFailsLeavesNothing()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.backend.fail("create");
    QCOMPARE(scene.create(scene.at(viewSession())), 1);
    QVERIFY(scene.plugin->setBuffer()->children().isEmpty());
    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.backend.calls("commit"), QStringList());
}

void SetBufferTest::creationThatFailsLeavesWhatWasSet()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.backend.fail("create");
    QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
    QCOMPARE(scene.create(scene.at(viewSession())), 1);
    QVERIFY(scene.plugin->setBuffer()->entry(scene.at(viewSession() + "/name")));
    QCOMPARE(scene.commit(scene.at(viewSession() + "/name")), 0);
    // The session did not become one that waits for its own commit.
    QVERIFY(!scene.plugin->setBuffer()->entry(scene.at(viewSession())));
}

void SetBufferTest::createdSessionThatIsDeletedIsForgotten()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.create(scene.at(viewSession())), 0);
    QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
    QCOMPARE(scene.set(scene.at(viewSession(kOtherUuid) + "/name"), "Lab"), 0);
    QCOMPARE(scene.del(scene.at(viewSession())), 0);
    QVERIFY(scene.backend.calls("del").contains("del " + registrySession()));
    QVERIFY(!scene.plugin->setBuffer()->entry(scene.at(viewSession())));
    QVERIFY(scene.plugin->setBuffer()->entry(scene.at(viewSession(kOtherUuid) + "/name")));

    // As a registry drops the two.
    QCOMPARE(scene.backend.rollback(registrySession()), 0);
    QCOMPARE(scene.commit(scene.at("rdp")), 0);
    QCOMPARE(scene.backend.calls("commit"),
             QStringList() << "commit " + registrySession(kOtherUuid) + "/label"
                           << "commit " + registrySession(kOtherUuid));
}

void SetBufferTest::deletedSessionIsCommittedAloneAtAnyHeight_data()
{
    QTest::addColumn<QString>("height");

    QTest::newRow("the session") << "/rdp/sessions/{c0ffee00-1234-4321-abcd-0123456789ab}";
    QTest::newRow("all sessions") << "/rdp/sessions";
    QTest::newRow("the kind") << "/rdp";
    QTest::newRow("the root") << "";
}

void SetBufferTest::deletedSessionIsCommittedAloneAtAnyHeight()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, height);

    for (bool const wasSet : {false, true}) {
        PluginScene scene(root);
        scene.addSessions("rdesktop", QStringList() << kUuid);
        if (wasSet)
            QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
        QCOMPARE(scene.del(scene.at(viewSession())), 0);
        QCOMPARE(scene.commit(root + height), 0);
        QCOMPARE(scene.backend.calls("commit"), QStringList() << "commit " + registrySession());
        QVERIFY(scene.plugin->setBuffer()->children().isEmpty());
        QCOMPARE(scene.commit(root), 0);
        QCOMPARE(scene.backend.calls("commit"), QStringList() << "commit " + registrySession());
    }
}

void SetBufferTest::deletedValueIsCommittedAtAnyHeight_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("registryKey");
    QTest::addColumn<QString>("height");

    QString const name = viewSession() + "/name";
    QString const label = registrySession() + "/label";
    char const allowed[] = "root/USB/root/mass-storage/allowed";
    QTest::newRow("the key itself") << "usb/enable" << allowed << "/usb/enable";
    QTest::newRow("its area") << "usb/enable" << allowed << "/usb";
    QTest::newRow("the root") << "usb/enable" << allowed << "";
    QTest::newRow("of a session, all sessions") << name << label << "/rdp/sessions";
    QTest::newRow("of a session, the kind") << name << label << "/rdp";
    QTest::newRow("of a session, the root") << name << label << "";
}

void SetBufferTest::deletedValueIsCommittedAtAnyHeight()
{
    QFETCH_GLOBAL(QString, root);
    QFETCH(QString, key);
    QFETCH(QString, registryKey);
    QFETCH(QString, height);

    PluginScene scene(root);
    scene.addSessions("rdesktop", QStringList() << kUuid);
    QCOMPARE(scene.del(scene.at(key)), 0);
    // Elsewhere, and so left alone.
    QCOMPARE(scene.commit(scene.at("ica")), 0);
    QCOMPARE(scene.backend.calls("commit"), QStringList());
    QCOMPARE(scene.commit(root + height), 0);
    QCOMPARE(scene.backend.calls("commit"), QStringList() << "commit " + registryKey);
    QCOMPARE(scene.commit(root), 0);
    QCOMPARE(scene.backend.calls("commit"), QStringList() << "commit " + registryKey);
}

void SetBufferTest::hiddenKeyStaysPending()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.del(scene.at("usb/enable")), 0);
    scene.hide("/usb/enable");
    QCOMPARE(scene.commit(scene.at("usb")), 0);
    QCOMPARE(scene.backend.calls("commit"), QStringList());
}

void SetBufferTest::refusedValueIsCommittedAgainWithItsBranch()
{
    QFETCH_GLOBAL(QString, root);

    QString const asked = "commit root/USB/root/mass-storage/allowed";
    QStringList const heights = QStringList() << "/usb/enable"
                                              << "/usb"
                                              << "";
    for (QString const& height : heights) {
        PluginScene scene(root);
        scene.wrappers.addScript("zelvo-view/usb/enable", "commit.sh",
                                 "cat \"$1\" >>../log; echo >>../log; exit 1");
        QCOMPARE(scene.set(scene.at("usb/enable"), "false"), 0);
        QCOMPARE(scene.set(scene.at("usb/read_only"), "true"), 0);
        scene.backend.failOn("commit", "root/USB/root/mass-storage/allowed");
        QCOMPARE(scene.commit(root + height), 0);
        QVERIFY(scene.plugin->setBuffer()->entry(scene.at("usb/enable")));
        if (height != "/usb/enable")
            QVERIFY(!scene.plugin->setBuffer()->entry(scene.at("usb/read_only")));
        QCOMPARE(scene.commit(scene.at("usb/read_only")), 0);
        scene.backend.forgetCalls();

        QCOMPARE(scene.commit(scene.at("usb")), 0);
        QCOMPARE(scene.backend.calls("commit"), QStringList() << asked);
        QCOMPARE(scene.wrappers.read("zelvo-view/usb", "log"), QByteArray("false\nfalse\n"));
    }
}

void SetBufferTest::refusedTargetOfSettingIsCommittedAgain()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.wrappers.addFile("zelvo-view/usb/enable", "set.env", "REG_SET=root/other/key\n");
    QCOMPARE(scene.set(scene.at("usb/enable"), "false"), 0);
    scene.backend.fail("commit", 1);
    QCOMPARE(scene.commit(scene.at("usb")), 0);
    QVERIFY(scene.plugin->setBuffer()->entry(scene.at("usb/enable")));
    QCOMPARE(scene.commit(scene.at("usb")), 0);
    QCOMPARE(scene.backend.value("root/other/key"), QString("false"));
    QVERIFY(scene.plugin->setBuffer()->children().isEmpty());
}

void SetBufferTest::refusedDisplayValueIsCommittedAgain()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QString const registryKey = "root/Display/Configuration/swapstate";
    scene.defaults.addValue(scene.at("display/primary_monitor"), "1");
    scene.backend.addValue(registryKey, "0");
    QCOMPARE(scene.set(scene.at("display/primary_monitor"), "2"), 0);
    scene.backend.fail("commit", 1);
    QCOMPARE(scene.commit(scene.at("display")), 0);
    QVERIFY(scene.plugin->setBuffer()->entry(scene.at("display/primary_monitor")));
    QCOMPARE(scene.commit(scene.at("display")), 0);
    QCOMPARE(scene.backend.value(registryKey), QString("1"));
    QVERIFY(scene.plugin->setBuffer()->children().isEmpty());
}

void SetBufferTest::valueWithoutARegistryKeyIsNotKept()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.wrappers.addScript("zelvo-view/radio/ssid", "commit.sh", "exit 1");
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    // Something is pending, but not behind this key.
    QCOMPARE(scene.set(scene.at("usb/enable"), "true"), 0);
    QCOMPARE(scene.commit(scene.at("radio")), 0);
    QVERIFY(!scene.plugin->setBuffer()->entry(scene.at("radio")));
}

void SetBufferTest::deletingDoesNotDropAValue()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
    QCOMPARE(scene.del(scene.at(viewSession() + "/name")), 0);
    QCOMPARE(scene.del(scene.at(viewSession())), 0);
    ConfigKey const* const pending = dynamic_cast<ConfigKey*>(
        scene.plugin->setBuffer()->entry(scene.at(viewSession() + "/name")));
    QVERIFY(pending);
    QCOMPARE(pending->bufferValue(), QString("Desk"));
}

void SetBufferTest::applyingDoesNotDropAValue()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    scene.logRadioCommits();
    scene.wrappers.addScript("zelvo-view/radio/ssid", "apply.sh", "echo applied > seen");
    QCOMPARE(scene.set(scene.at("radio/ssid"), "Home"), 0);
    QCOMPARE(scene.apply(scene.at("radio")), 0);
    QCOMPARE(scene.commits(), QStringList());
    QCOMPARE(scene.commit(scene.at("radio")), 0);
    QCOMPARE(scene.commits(), QStringList() << "ssid=Home");
}

void SetBufferTest::keyOfASessionNeverCreatedIsCommitted()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
    QCOMPARE(scene.commit(scene.at(viewSession() + "/name")), 0);
    QCOMPARE(scene.backend.calls("commit"),
             QStringList() << "commit " + registrySession() + "/label");
    QCOMPARE(scene.backend.calls("create"), QStringList());
}

void SetBufferTest::sessionsCommitTheirOwn()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
    QCOMPARE(scene.create(scene.at(viewSession(kOtherUuid))), 0);
    QCOMPARE(scene.set(scene.at(viewSession(kOtherUuid) + "/name"), "Lab"), 0);
    QCOMPARE(scene.set(scene.at(viewSession() + "/address"), "10.0.0.1"), 0);
    scene.backend.forgetCalls();

    QCOMPARE(scene.commit(scene.at(viewSession(kOtherUuid))), 0);
    QCOMPARE(scene.backend.calls("commit"),
             QStringList() << "commit " + registrySession(kOtherUuid) + "/label"
                           << "commit " + registrySession(kOtherUuid));
    scene.backend.forgetCalls();

    QCOMPARE(scene.commit(scene.at(viewSession())), 0);
    QCOMPARE(scene.backend.calls("commit"),
             QStringList() << "commit " + registrySession() + "/label"
                           << "commit " + registrySession() + "/address"
                           << "commit " + registrySession());
    QCOMPARE(scene.backend.value(registrySession() + "/label"), QString("Desk"));
    QCOMPARE(scene.backend.value(registrySession(kOtherUuid) + "/label"), QString("Lab"));
}

void SetBufferTest::commitsInAnyOrder()
{
    QFETCH_GLOBAL(QString, root);

    PluginScene scene(root);
    QStringList keys = QStringList() << viewSession() + "/name" << viewSession() << "rdp/sessions"
                                     << "rdp"
                                     << "radio/ssid";
    std::sort(keys.begin(), keys.end());
    do {
        QCOMPARE(scene.create(scene.at(viewSession())), 0);
        QCOMPARE(scene.set(scene.at(viewSession() + "/name"), "Desk"), 0);
        QCOMPARE(scene.set(scene.at(viewSession(kOtherUuid) + "/name"), "Lab"), 0);
        scene.backend.forgetCalls();
        QStringList const order = keys;
        for (QString const& key : order)
            QCOMPARE(scene.commit(scene.at(key)), 0);
        QStringList const commits = scene.backend.calls("commit");
        QCOMPARE(commits.count("commit " + registrySession(kOtherUuid) + "/label"), 1);
        QVERIFY(commits.contains("commit " + registrySession() + "/label"));
        QVERIFY(commits.contains("commit " + registrySession()));
        QCOMPARE(scene.commit(root), 0);
        QCOMPARE(scene.backend.calls("commit"), commits);
    } while (std::next_permutation(keys.begin(), keys.end()));
}

void SetBufferTest::manySessionsStayPending()
{
    QFETCH_GLOBAL(QString, root);

    int const kSessions = 200;
    PluginScene scene(root);
    for (int i = 0; i < kSessions; ++i)
        QCOMPARE(scene.set(scene.at(viewSession(numberedSession(i)) + "/name"), QString::number(i)),
                 0);
    QCOMPARE(scene.commit(scene.at(viewSession(numberedSession(100)))), 0);
    scene.backend.forgetCalls();
    QCOMPARE(scene.commit(root), 0);
    QStringList const commits = scene.backend.calls("commit");
    QCOMPARE(commits.filter("/label").size(), kSessions - 1);
    QCOMPARE(scene.backend.value(registrySession(numberedSession(199)) + "/label"), QString("199"));
}

ZELVO_TEST(SetBufferTest)
#include "SetBufferTest.moc"
