// SPDX-License-Identifier: MIT

#include "plugin/ZelvoView.h"
#include "registry/RegistryHost.h"
#include "support/TestBackend.h"
#include "support/TestDirectory.h"
#include "support/TestKit.h"
#include "support/TestProgram.h"
#include "support/TestWrappers.h"
#include "tree/ConfigTree.h"

#include <QScopedPointer>
#include <QtTest>

/// The files of a key may name keys of the view, and so lead from one request into another. The
/// host is the real one: it routes what the actions ask of it back to the plugin.
class NestedRequestTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void committedSiblingIsWrittenOnceAndNotTouchedAgain();
    void setIntoItselfEnds_data();
    void setIntoItselfEnds();
    void readingIntoItselfAnswersTheRegistry();
    void twoKeysThatNameEachOtherEnd();
    void branchesThatLedToACommittedKeyAreNotCommittedLater();
    void sessionThatWasCreatedWaitsThoughItsKeyIsCommitted();
    void commitOfAllAmidACommitOfAllLeavesNothing();
    void whatANestedCommitHasTakenOutIsNotCommittedUnderItsBareName_data();
    void whatANestedCommitHasTakenOutIsNotCommittedUnderItsBareName();
    void keyIsNotCommittedAgainForWhatItsRegistryKeyHasPending();
    void refusedValueThatTheRegistryWroteAfterAllIsForgotten();
    void valueThatIsSetAgainAfterARefusalWaits();
    void commitOfAllIsOneTransaction();

private:
    int set(QString const& key, QString const& value)
    {
        return mHost->set(key, value, REG_PARAM_VALUE);
    }

    QString value(QString const& key)
    {
        QString text;
        return mHost->get(key, text, REG_PARAM_VALUE, QString()) == 0 ? text : "(none)";
    }

    QScopedPointer<TestWrappers> mWrappers;
    QScopedPointer<RegistryHost> mHost;
    QScopedPointer<ZelvoView> mView;
};

namespace {

QString const kEnable = QLatin1String("root/zelvo-view/usb/enable");
QString const kReadOnly = QLatin1String("root/zelvo-view/usb/read_only");
QString const kUsb = QLatin1String("root/zelvo-view/usb");
QString const kRoot = QLatin1String("root/zelvo-view");
QString const kTerminal
    = QLatin1String("root/zelvo-view/vexlink/sessions/{11111111-1111-4111-8111-111111111111}");
char const kTerminalFolder[] = "zelvo-view/vexlink/sessions/{uuid}";

/// A host that commits all that there is as soon as something is committed.
class CommittingHost : public TestBackend
{
public:
    explicit CommittingHost(ZelvoView& view)
        : mView(view)
        , mCommits(0)
    {
    }

    int commit(QString const& key) override
    {
        if (mCommits++ == 0)
            mView.commit("root");
        return TestBackend::commit(key);
    }

    int commits() const { return mCommits; }

private:
    ZelvoView& mView;
    int mCommits;
};

} // namespace

void NestedRequestTest::init()
{
    mWrappers.reset(new TestWrappers);
    mHost.reset(new RegistryHost);
    QString error;
    QVERIFY2(mHost->loadDefaults(DEFAULTS_DIR, error), qPrintable(error));
    QVERIFY2(mHost->open(":memory:", error), qPrintable(error));
    mView.reset(new ZelvoView);
    mHost->addPlugin(*mView);
    QString const wrappers = mWrappers->directory().path();
    mView->pluginIsLoaded(*mHost, mHost->defaultSettings(), QString(),
                          wrappers.left(wrappers.lastIndexOf('/')));
    keepInstanceKnown();
}

void NestedRequestTest::cleanup()
{
    mView.reset();
    mHost.reset();
    mWrappers.reset();
}

// The commit of the one key takes the other out of the set buffer while the branch walks over both.
void NestedRequestTest::committedSiblingIsWrittenOnceAndNotTouchedAgain()
{
    mWrappers->addFile("zelvo-view/usb/enable", "set.env",
                       "REG_SET=root/zelvo-view/usb/read_only\n");
    QCOMPARE(set(kEnable, "true"), 0);
    QCOMPARE(mHost->commit(kUsb), 0);
    QCOMPARE(value(kReadOnly), QString("true"));
    QVERIFY(!mView->setBuffer()->entry(kUsb));
    QCOMPARE(mHost->commit(kUsb), 0);
}

void NestedRequestTest::setIntoItselfEnds_data()
{
    QTest::addColumn<QByteArray>("target");

    QTest::newRow("the key itself") << QByteArray("root/zelvo-view/usb/enable");
    QTest::newRow("its branch") << QByteArray("root/zelvo-view/usb");
    QTest::newRow("the plugin's root") << QByteArray("root/zelvo-view");
    QTest::newRow("an ancestor of the plugin's root") << QByteArray("root");
}

void NestedRequestTest::setIntoItselfEnds()
{
    QFETCH(QByteArray, target);

    mWrappers->addFile("zelvo-view/usb/enable", "set.env", "REG_SET=" + target + "\n");
    QCOMPARE(set(kEnable, "false"), 0);
    QCOMPARE(set(kReadOnly, "true"), 0);
    QCOMPARE(mHost->commit(kEnable), 0);
    QCOMPARE(mHost->commit(kUsb), 0);
    QCOMPARE(mView->commit(kRoot), 0);
    QCOMPARE(mView->setBuffer()->children().size(), 0);
    QCOMPARE(value(kReadOnly), QString("true"));
}

void NestedRequestTest::readingIntoItselfAnswersTheRegistry()
{
    mWrappers->addFile("zelvo-view/usb/enable", "get.env", "SELF=root/zelvo-view/usb/enable\n");
    mWrappers->addScript("zelvo-view/usb/enable", "get.sh", "printf %s \"${SELF-unset}\"");
    QCOMPARE(value(kEnable), QString("unset"));
}

void NestedRequestTest::twoKeysThatNameEachOtherEnd()
{
    mWrappers->addFile("zelvo-view/usb/enable", "set.env",
                       "REG_SET=root/zelvo-view/usb/read_only\n");
    mWrappers->addFile("zelvo-view/usb/read_only", "set.env",
                       "REG_SET=root/zelvo-view/usb/enable\n");
    QCOMPARE(set(kEnable, "false"), 0);
    QCOMPARE(mHost->commit(kUsb), 0);
    QCOMPARE(mView->commit(kRoot), 0);
    QVERIFY(mView->setBuffer()->children().isEmpty());
}

void NestedRequestTest::branchesThatLedToACommittedKeyAreNotCommittedLater()
{
    QCOMPARE(mHost->create(kTerminal, REG_TYPE_STRING), 0);
    QCOMPARE(mHost->commit(kTerminal), 0);
    mWrappers->addScript(kTerminalFolder, "commit.sh", "echo run >>runs");
    QCOMPARE(set(kTerminal + "/name", "one"), 0);
    QCOMPARE(mHost->commit(kTerminal + "/name"), 0);
    QCOMPARE(mView->commit(kRoot), 0);
    QVERIFY(!mWrappers->exists(kTerminalFolder, "runs"));
    QCOMPARE(value(kTerminal + "/name"), QString("one"));
}

void NestedRequestTest::sessionThatWasCreatedWaitsThoughItsKeyIsCommitted()
{
    mWrappers->addScript(kTerminalFolder, "commit.sh", "echo run >>runs");
    QCOMPARE(mHost->create(kTerminal, REG_TYPE_STRING), 0);
    QCOMPARE(set(kTerminal + "/name", "one"), 0);
    QCOMPARE(mHost->commit(kTerminal + "/name"), 0);
    QVERIFY(mView->setBuffer()->entry(kTerminal));
    QCOMPARE(mView->commit(kRoot), 0);
    QCOMPARE(mWrappers->read(kTerminalFolder, "runs"), QByteArray("run\n"));
}

// The outer one finds the set buffer gone that it has walked over.
void NestedRequestTest::commitOfAllAmidACommitOfAllLeavesNothing()
{
    CommittingHost host(*mView);
    mView->pluginIsLoaded(host, mHost->defaultSettings(), QString(), "/nonexistent");
    keepInstanceKnown();
    QCOMPARE(set(kReadOnly, "true"), 0);
    QCOMPARE(mView->commit(kRoot), 0);
    // The inner one commits what the outer one has not done with.
    QCOMPARE(host.commits(), 2);
    QVERIFY(mView->setBuffer()->children().isEmpty());
}

void NestedRequestTest::whatANestedCommitHasTakenOutIsNotCommittedUnderItsBareName_data()
{
    QTest::addColumn<QString>("committed");
    QTest::addColumn<QByteArray>("target");

    QTest::newRow("the next key, from its branch")
        << kUsb << QByteArray("root/zelvo-view/usb/read_only");
    QTest::newRow("the branch, from the root") << kRoot << QByteArray("root/zelvo-view/usb");
    QTest::newRow("all, from the branch") << kUsb << QByteArray("root/zelvo-view");
}

void NestedRequestTest::whatANestedCommitHasTakenOutIsNotCommittedUnderItsBareName()
{
    QFETCH(QString, committed);
    QFETCH(QByteArray, target);

    mWrappers->addFile("zelvo-view/usb/enable", "set.env", "REG_SET=" + target + "\n");
    // Whatever is run here has lost its place in the view.
    QStringList const bareNames = QStringList() << "enable"
                                                << "read_only"
                                                << "usb"
                                                << "usb/enable"
                                                << "usb/read_only";
    for (QString const& name : bareNames)
        mWrappers->addScript(name, "commit.sh", "echo run >>runs");
    mWrappers->addScript("zelvo-view/usb/read_only", "commit.sh", "echo run >>runs; exit 1");
    QCOMPARE(set(kEnable, "false"), 0);
    QCOMPARE(set(kReadOnly, "true"), 0);
    QCOMPARE(mView->commit(committed), 0);

    for (QString const& name : bareNames)
        QVERIFY2(!mWrappers->exists(name, "runs"), qPrintable(name));
    QCOMPARE(mWrappers->read("zelvo-view/usb/read_only", "runs"), QByteArray("run\n"));
    QVERIFY(mView->setBuffer()->children().isEmpty());
    QCOMPARE(value(kReadOnly), QString("true"));
}

void NestedRequestTest::keyIsNotCommittedAgainForWhatItsRegistryKeyHasPending()
{
    mWrappers->addFile("zelvo-view/usb/enable", "set.env", "REG_SET=root/zelvo-view/usb\n");
    mWrappers->addScript("zelvo-view/usb/enable", "commit.sh", "echo run >>runs; exit 1");
    QCOMPARE(mHost->set("root/USB/root/mass-storage/allowed", "0", REG_PARAM_VALUE), 0);
    QCOMPARE(mHost->commit(kEnable), 0);
    QCOMPARE(mWrappers->read("zelvo-view/usb/enable", "runs"), QByteArray("run\n"));
}

void NestedRequestTest::refusedValueThatTheRegistryWroteAfterAllIsForgotten()
{
    // It leaves the registry's value pending, which the commit of all then writes.
    mWrappers->addScript("zelvo-view/usb/enable", "commit.sh", "echo run >>runs");
    QCOMPARE(set(kEnable, "false"), 0);
    QCOMPARE(mHost->commit("root"), 0);
    QCOMPARE(value(kEnable), QString("false"));
    QCOMPARE(mHost->commit(kUsb), 0);
    QCOMPARE(mWrappers->read("zelvo-view/usb/enable", "runs"), QByteArray("run\n"));
    QVERIFY(mView->setBuffer()->children().isEmpty());
}

void NestedRequestTest::valueThatIsSetAgainAfterARefusalWaits()
{
    mWrappers->addScript("zelvo-view/usb/enable", "commit.sh", "cat \"$1\" >>values");
    QCOMPARE(set(kEnable, "false"), 0);
    QCOMPARE(mHost->commit(kEnable), 0);
    QCOMPARE(mHost->commit("root/USB"), 0);
    mWrappers->addScript("zelvo-view/usb/enable", "set.sh", "cat \"$1\"");
    QCOMPARE(set(kEnable, "true"), 0);
    QCOMPARE(mHost->commit(kUsb), 0);
    QCOMPARE(mWrappers->read("zelvo-view/usb/enable", "values"), QByteArray("falsetrue"));
}

// What the plugin commits by the way can be read at once, and reaches the disk with the rest.
void NestedRequestTest::commitOfAllIsOneTransaction()
{
    TestDirectory directory;
    QString const file = directory.file("registry.db");
    QString error;
    mHost.reset(new RegistryHost);
    QVERIFY2(mHost->loadDefaults(DEFAULTS_DIR, error), qPrintable(error));
    QVERIFY2(mHost->open(file, error), qPrintable(error));
    mView.reset(new ZelvoView);
    mHost->addPlugin(*mView);
    QString const wrappers = mWrappers->directory().path();
    mView->pluginIsLoaded(*mHost, mHost->defaultSettings(), QString(),
                          wrappers.left(wrappers.lastIndexOf('/')));
    keepInstanceKnown();
    mWrappers->addFile("zelvo-view/usb", "commit.env",
                       "ALLOWED=root/USB/root/mass-storage/allowed\n");
    mWrappers->addScript("zelvo-view/usb", "commit.sh",
                         "cp " + file.toLocal8Bit()
                             + "-wal journal; echo \"$ALLOWED\" >allowed; exit 1");
    QCOMPARE(set(kEnable, "false"), 0);
    QCOMPARE(mHost->commit("root"), 0);
    QCOMPARE(mWrappers->read("zelvo-view/usb", "allowed"), QByteArray("0\n"));
    QCOMPARE(mWrappers->read("zelvo-view/usb", "journal"), QByteArray());
    QVERIFY(!directory.read("registry.db-wal").isEmpty());
}

ZELVO_TEST(NestedRequestTest)
#include "NestedRequestTest.moc"
