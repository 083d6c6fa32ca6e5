// SPDX-License-Identifier: MIT

#include "host/OpenRegistry.h"
#include "support/TestDirectory.h"
#include "support/TestProgram.h"

#include <vantora/abstractplugin.h>

#include <QScopedPointer>
#include <QSystemSemaphore>

#include <atomic>
#include <functional>
#include <thread>

typedef void (*Request)(OpenRegistry& registry);
Q_DECLARE_METATYPE(Request)

namespace {

int const kTurnMs = 50;

QString const kUsb = QLatin1String("root/USB/root/mass-storage/allowed");

// Writes down every request. It answers 0 at and under its root and 1 elsewhere, and enters its
// root into the listing of the directory above it.
class NotingPlugin : public AbstractPlugin
{
public:
    explicit NotingPlugin(QString const& root)
        : mIsHidden(false)
        , mRoot(root)
    {
        setName(root.mid(root.lastIndexOf(QLatin1Char('/')) + 1));
    }

    QStringList mNotes;
    QStringList mPendingAtCommit;
    std::function<void()> mWhileAsked;
    bool mIsHidden;

    QString rootDir() const override { return mRoot; }

    int set(QString const& key, QString const& value, _RegEntryParam const& param) override
    {
        return note(QString::fromLatin1("set %1 %2 %3").arg(key, value).arg(param), key);
    }

    int get(QString const& key, QMap<QString, _RegNodeType>& result, _RegEntryParam const& param,
            QString const& extra) override
    {
        if (key + QLatin1Char('/') + name() == mRoot && !mIsHidden)
            result.insert(mRoot, REG_NODE_DIR);
        if (key == mRoot)
            result.insert(mRoot + QLatin1String("/own"), REG_NODE_KEY);
        return note(QString::fromLatin1("get %1 %2 %3").arg(key).arg(param).arg(extra), key);
    }

    int contains(QString const& key) override
    {
        if (mWhileAsked)
            mWhileAsked();
        return note(QLatin1String("contains ") + key, key);
    }

    int commit(QString const& key) override
    {
        // As a plugin does that stands for keys of the registry.
        if (mBackend) {
            QMap<QString, _RegEntryChange> changes;
            mBackend->changes(changes);
            mPendingAtCommit = changes.keys();
            mBackend->set(kUsb, QLatin1String("off"), REG_PARAM_VALUE);
            mBackend->commit(kUsb);
        }
        return note(QLatin1String("commit ") + key, key);
    }

    int apply(QString const& key, QString const& command) override
    {
        return note(QString::fromLatin1("apply %1 %2").arg(key, command), key);
    }

    int clone(QString const& source, QString const& target) override
    {
        return note(QString::fromLatin1("clone %1 %2").arg(source, target), source);
    }

    int rollback(QString const& key) override
    {
        return note(QLatin1String("rollback ") + key, key);
    }

    int changes(QMap<QString, _RegEntryChange>& changes) override
    {
        changes.insert(mRoot + QLatin1String("/own"), REG_CHANGE_MODIFIED);
        return 0;
    }

    int create(QString const& key, _RegEntryType const& type) override
    {
        return note(QString::fromLatin1("create %1 %2").arg(key).arg(type), key);
    }

    int del(QString const& key) override { return note(QLatin1String("del ") + key, key); }

    int importRegistry(QByteArray& data) override
    {
        mNotes.append(QString::fromLatin1("import of %1 bytes").arg(data.size()));
        return 0;
    }

    int exportRegistry(QString const& key, QByteArray& data) override
    {
        mNotes.append(QLatin1String("export ") + key
                      + QLatin1String(data.isEmpty() ? ", no data" : ", data"));
        return 0;
    }

private:
    int note(QString const& request, QString const& key)
    {
        mNotes.append(request);
        return key.startsWith(mRoot) ? 0 : 1;
    }

    QString mRoot;
};

} // namespace

class RegistryRoutingTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void keysUnderTheRootGoToThePlugin();
    void otherKeysDoNot_data();
    void otherKeysDoNot();
    void containsOfTheTemporaryRootGoesToThePlugin();
    void listingAboveTheRootAsksThePlugin();
    void hiddenRootIsLeftOut();
    void parameterOfAnAncestorIsNotThePluginsBusiness();
    void commitOfAnAncestorGoesToAll();
    void commitOfAnAncestorComesAfterThePlugins();
    void rollbackOfAnAncestorGoesToAll();
    void changesAsksAll();
    void exportLeavesThePluginsTreeOut();
    void importOfThePluginsTreeIsRefused();
    void acceptedImportReachesThePlugin();
    void applyOfARegistryKeySignalsItsEnd();
    void applyOfAnUnknownKeyIsRefused();
    void otherPlacesOfTheRoot_data();
    void otherPlacesOfTheRoot();
    void twoPlugins();
    void requestsTakeTurns_data();
    void requestsTakeTurns();

private:
    QScopedPointer<OpenRegistry> mRegistry;
    QScopedPointer<NotingPlugin> mPlugin;
};

void RegistryRoutingTest::init()
{
    mRegistry.reset(new OpenRegistry);
    mPlugin.reset(new NotingPlugin("root/zelvo-view"));
    mRegistry->addPlugin(*mPlugin);
}

void RegistryRoutingTest::cleanup()
{
    mRegistry.reset();
    mPlugin.reset();
}

void RegistryRoutingTest::keysUnderTheRootGoToThePlugin()
{
    QString const key = "root/zelvo-view/a//b/";
    QMap<QString, _RegNodeType> result;
    QByteArray data;
    QCOMPARE(mRegistry->set(key, "v", REG_PARAM_REGEXP), 0);
    QCOMPARE(mRegistry->get(key, result, REG_PARAM_TYPE, "extra"), 0);
    QCOMPARE(mRegistry->contains(key), 0);
    QCOMPARE(mRegistry->commit("root/zelvo-view"), 0);
    QCOMPARE(mRegistry->apply(key, "tmp/apply/1"), 0);
    QCOMPARE(mRegistry->clone(key, "target"), 0);
    QCOMPARE(mRegistry->rollback(key), 0);
    QCOMPARE(mRegistry->RegistryHost::create(key, REG_TYPE_BOOL), 0);
    QCOMPARE(mRegistry->del(key), 0);
    QCOMPARE(mRegistry->exportRegistry(key, data), 0);
    QCOMPARE(mPlugin->mNotes,
             QStringList() << "set root/zelvo-view/a//b/ v 2"
                           << "get root/zelvo-view/a//b/ 1 extra"
                           << "contains root/zelvo-view/a//b/"
                           << "commit root/zelvo-view"
                           << "apply root/zelvo-view/a//b/ tmp/apply/1"
                           << "clone root/zelvo-view/a//b/ target"
                           << "rollback root/zelvo-view/a//b/"
                           << "create root/zelvo-view/a//b/ 8"
                           << "del root/zelvo-view/a//b/"
                           << "export root/zelvo-view/a//b/, no data");
}

void RegistryRoutingTest::otherKeysDoNot_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("registry key") << kUsb;
    QTest::newRow("longer name") << "root/zelvo-viewer";
    QTest::newRow("other case") << "root/Zelvo-View/a";
    QTest::newRow("temporary") << "tmp/zelvo-view/a";
    QTest::newRow("without its first component") << "zelvo-view/a";
    QTest::newRow("slash in front") << "/root/zelvo-view/a";
}

void RegistryRoutingTest::otherKeysDoNot()
{
    QFETCH(QString, key);

    QMap<QString, _RegNodeType> result;
    mRegistry->set(key, "1");
    mRegistry->get(key, result, REG_PARAM_VALUE, QString());
    mRegistry->commit(key);
    mRegistry->create(key);
    mRegistry->del(key);
    mRegistry->rollback(key);
    mRegistry->apply(key, QString());
    QCOMPARE(mPlugin->mNotes, QStringList());
}

void RegistryRoutingTest::containsOfTheTemporaryRootGoesToThePlugin()
{
    mRegistry->contains("tmp/zelvo-view/a");
    mRegistry->contains("tmp/zelvo-viewer");
    mRegistry->contains("tmp");
    QCOMPARE(mPlugin->mNotes, QStringList() << "contains tmp/zelvo-view/a");
}

void RegistryRoutingTest::listingAboveTheRootAsksThePlugin()
{
    QCOMPARE(mRegistry->answers("root"),
             QStringList() << "0 root/ConnectionType"
                           << "0 root/Display"
                           << "0 root/USB"
                           << "0 root/auto-update"
                           << "0 root/vncserver"
                           << "0 root/zelvo-view");
    QCOMPARE(mPlugin->mNotes, QStringList() << "get root 0 ");
    QCOMPARE(mRegistry->answers("root/zelvo-view"), QStringList() << "1 root/zelvo-view/own");
}

void RegistryRoutingTest::hiddenRootIsLeftOut()
{
    mPlugin->mIsHidden = true;
    QVERIFY(!mRegistry->answers("root").contains("0 root/zelvo-view"));
    QVERIFY(mRegistry->answers("root").contains("0 root/USB"));
}

void RegistryRoutingTest::parameterOfAnAncestorIsNotThePluginsBusiness()
{
    QCOMPARE(mRegistry->answer("root", REG_PARAM_TYPE), QString::fromLatin1("code 1"));
    QCOMPARE(mPlugin->mNotes, QStringList());
}

void RegistryRoutingTest::commitOfAnAncestorGoesToAll()
{
    QCOMPARE(mRegistry->set(kUsb, "0"), 0);
    QCOMPARE(mRegistry->commit("root"), 0);
    QCOMPARE(mPlugin->mNotes, QStringList() << "commit root");
    QCOMPARE(mRegistry->answer(kUsb), QString::fromLatin1("2 0"));
}

void RegistryRoutingTest::commitOfAnAncestorComesAfterThePlugins()
{
    mPlugin->pluginIsLoaded(*mRegistry, mRegistry->defaultSettings(), QString(), QString());
    QString const other = "root/USB/root/mass-storage/read-only";
    QCOMPARE(mRegistry->set(other, "1"), 0);
    QCOMPARE(mRegistry->commit("root"), 0);
    QCOMPARE(mRegistry->answer(kUsb), QString::fromLatin1("2 off"));
    QCOMPARE(mRegistry->answer(other), QString::fromLatin1("2 1"));
    QVERIFY(mPlugin->mPendingAtCommit.contains(other));
}

void RegistryRoutingTest::rollbackOfAnAncestorGoesToAll()
{
    QCOMPARE(mRegistry->set(kUsb, "0"), 0);
    QCOMPARE(mRegistry->rollback("root"), 0);
    QCOMPARE(mPlugin->mNotes, QStringList() << "rollback root");
    QMap<QString, _RegEntryChange> changes;
    QCOMPARE(mRegistry->changes(changes), 0);
    QVERIFY(!changes.contains(kUsb));
}

void RegistryRoutingTest::changesAsksAll()
{
    QCOMPARE(mRegistry->set(kUsb, "0"), 0);
    QCOMPARE(mRegistry->set("tmp/a", "1"), 0);
    QCOMPARE(mRegistry->pending(),
             QStringList() << "0 " + kUsb << "0 root/zelvo-view/own"
                           << "1 tmp/a");
}

void RegistryRoutingTest::exportLeavesThePluginsTreeOut()
{
    QByteArray data;
    QCOMPARE(mRegistry->exportRegistry("root", data), 0);
    QVERIFY(data.contains("\"USB\""));
    QVERIFY(!data.contains("zelvo-view"));
    QCOMPARE(mPlugin->mNotes, QStringList() << "export root, data");
}

void RegistryRoutingTest::importOfThePluginsTreeIsRefused()
{
    QByteArray data = "<registry><dir name='root'><dir name='zelvo-view'/></dir></registry>";
    QTest::ignoreMessage(QtWarningMsg, "import refused: line 1: \"root/zelvo-view\" is unknown");
    QVERIFY(mRegistry->importRegistry(data) != 0);
    QCOMPARE(mPlugin->mNotes, QStringList());
}

void RegistryRoutingTest::acceptedImportReachesThePlugin()
{
    QByteArray data = "<registry/>";
    QCOMPARE(mRegistry->importRegistry(data), 0);
    QCOMPARE(mPlugin->mNotes, QStringList() << "import of 11 bytes");
}

void RegistryRoutingTest::applyOfARegistryKeySignalsItsEnd()
{
    QString const command
        = QString::fromLatin1("tmp/apply/RegistryRoutingTest-%1").arg(qApp->applicationPid());
    QSystemSemaphore semaphore(command, 0, QSystemSemaphore::Create);
    QCOMPARE(mRegistry->set(command, "1"), 0);
    QCOMPARE(mRegistry->commit(command), 0);
    QCOMPARE(mRegistry->apply("root/USB", command), 0);
    QVERIFY(semaphore.acquire());
    QCOMPARE(mRegistry->answer(command), QString::fromLatin1("2 0"));
    QCOMPARE(mRegistry->apply("root/USB", QString()), 0);
}

void RegistryRoutingTest::applyOfAnUnknownKeyIsRefused()
{
    QVERIFY(mRegistry->apply("root/more", "tmp/apply/x") != 0);
    QVERIFY(mRegistry->apply("", QString()) != 0);
    QCOMPARE(mRegistry->answer("tmp/apply/x"), QString::fromLatin1("code 1"));
}

void RegistryRoutingTest::otherPlacesOfTheRoot_data()
{
    QTest::addColumn<QString>("root");
    QTest::addColumn<QString>("parent");

    QTest::newRow("slash in front") << "/zelvo-view"
                                    << "";
    QTest::newRow("two directories above") << "a/b/zelvo-view"
                                           << "a/b";
}

void RegistryRoutingTest::otherPlacesOfTheRoot()
{
    QFETCH(QString, root);
    QFETCH(QString, parent);

    OpenRegistry registry;
    NotingPlugin plugin(root);
    registry.addPlugin(plugin);
    QCOMPARE(registry.answers(root), QStringList() << "1 " + root + "/own");
    QCOMPARE(registry.answers(parent), QStringList() << "0 " + root);
    QCOMPARE(registry.set(root + "/own", "v"), 0);
    QCOMPARE(plugin.mNotes.last(), "set " + root + "/own v 0");
}

void RegistryRoutingTest::twoPlugins()
{
    NotingPlugin second("root/second");
    mRegistry->addPlugin(second);
    QCOMPARE(mRegistry->del("root/second/x"), 0);
    QCOMPARE(mRegistry->commit("root"), 0);
    QCOMPARE(mPlugin->mNotes, QStringList() << "commit root");
    QCOMPARE(second.mNotes,
             QStringList() << "del root/second/x"
                           << "commit root");
    QVERIFY(mRegistry->answers("root").contains("0 root/second"));
}

void RegistryRoutingTest::requestsTakeTurns_data()
{
    QTest::addColumn<Request>("request");

    QTest::newRow("set") << Request([](OpenRegistry& registry) { registry.set(kUsb, "0"); });
    QTest::newRow("get") << Request([](OpenRegistry& registry) { registry.answer(kUsb); });
    QTest::newRow("contains") << Request([](OpenRegistry& registry) { registry.contains(kUsb); });
    QTest::newRow("commit") << Request([](OpenRegistry& registry) { registry.commit(kUsb); });
    QTest::newRow("apply") << Request([](OpenRegistry& registry) { registry.apply(kUsb, ""); });
    QTest::newRow("clone") << Request([](OpenRegistry& registry) { registry.clone(kUsb, kUsb); });
    QTest::newRow("rollback") << Request([](OpenRegistry& registry) { registry.rollback(kUsb); });
    QTest::newRow("changes") << Request([](OpenRegistry& registry) { registry.pending(); });
    QTest::newRow("create") << Request([](OpenRegistry& registry) { registry.create(kUsb); });
    QTest::newRow("del") << Request([](OpenRegistry& registry) { registry.del(kUsb); });
    QTest::newRow("import") << Request([](OpenRegistry& registry) {
        QByteArray nothing;
        registry.importRegistry(nothing);
    });
    QTest::newRow("export") << Request([](OpenRegistry& registry) {
        QByteArray data;
        registry.exportRegistry(kUsb, data);
    });
}

// Another thread's request is only carried out when the one under way has ended.
void RegistryRoutingTest::requestsTakeTurns()
{
    QFETCH(Request, request);

    std::atomic<bool> isDone(false);
    bool wasDoneMeanwhile = false;
    std::thread other;
    // The function is forgotten before the thread is.
    // cppcheck-suppress danglingLifetime
    mPlugin->mWhileAsked = [&] {
        other = std::thread([&] {
            request(*mRegistry);
            isDone = true;
        });
        QTest::qSleep(kTurnMs);
        wasDoneMeanwhile = isDone;
    };
    mRegistry->contains("root/zelvo-view");
    mPlugin->mWhileAsked = nullptr;
    other.join();
    QVERIFY(!wasDoneMeanwhile);
    QVERIFY(isDone);
}

ZELVO_TEST(RegistryRoutingTest)
#include "RegistryRoutingTest.moc"
