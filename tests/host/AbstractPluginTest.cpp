// SPDX-License-Identifier: MIT

#include "support/TestProgram.h"

#include <vantora/abstractplugin.h>
#include <vantora/registry.h>
#include <vantora/vantora.h>

#include <QObject>
#include <QtTest>

namespace {

QString const kTyped = QLatin1String("root/type-");

// Knows one number, one directory with one value in it, an empty directory, and a value of each
// type by the number of the type.
class SmallRegistry : public Reg::Registry
{
public:
    int query(QString const& key, Reg::NodeSet& nodes, QString const&) override
    {
        if (key == QLatin1String("root/port")) {
            nodes.append(
                new Reg::Entry(key, QLatin1String("80"), REG_TYPE_NUMBER, QLatin1String("[0-9]+")));
            return 0;
        }
        if (key == QLatin1String("root/directory")) {
            nodes.append(new Reg::Entry(key + QLatin1String("/only"), QLatin1String("x")));
            return 0;
        }
        if (key.startsWith(kTyped)) {
            int const type = key.mid(kTyped.size()).toInt();
            nodes.append(new Reg::Entry(key, QString(), static_cast<_RegEntryType>(type)));
            return 0;
        }
        return key == QLatin1String("root/empty") ? 0 : 1;
    }
};

class PlainPlugin : public QObject, public AbstractPlugin
{
    Q_OBJECT
    Q_INTERFACES(AbstractPlugin)

public:
    Vantora* keptBackend() const { return mBackend; }

    QString keptText() const { return mText; }

    QString keptBaseDir() const { return mBaseDir; }
};

class NoBackend : public Vantora
{
public:
    using Vantora::get;
    int set(QString const&, QString const&, _RegEntryParam const&) override { return 1; }
    int get(QString const&, QMap<QString, _RegNodeType>&, _RegEntryParam const&,
            QString const&) override
    {
        return 1;
    }
    int contains(QString const&) override { return 1; }
    int commit(QString const&) override { return 1; }
    int apply(QString const&, QString const&) override { return 1; }
    int clone(QString const&, QString const&) override { return 1; }
    int rollback(QString const&) override { return 1; }
    int watch(QStringList const&, int) override { return 1; }
    int changes(QMap<QString, _RegEntryChange>&) override { return 1; }
    int create(QString const&, _RegEntryType const&) override { return 1; }
    int del(QString const&) override { return 1; }
    int importRegistry(QByteArray&) override { return 1; }
    int exportRegistry(QString const&, QByteArray&) override { return 1; }
};

QString const kKey = QLatin1String("root/port");

} // namespace

class AbstractPluginTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void castByInterfaceId();
    void rootsFollowTheName();
    void startKeepsItsArguments();
    void noDefaultSettingsBeforeTheStart();
    void unsupportedOperationsAnswerOne();
    void changesAnswersNoneAndSucceeds();
    void getOfAParameter_data();
    void getOfAParameter();
    void typesInWords();
    void getAddsToTheResult();
    void contains_data();
    void contains();
    void containsBeforeTheStart();

private:
    SmallRegistry mRegistry;
    NoBackend mBackend;
    PlainPlugin* mPlugin;
};

void AbstractPluginTest::init()
{
    mPlugin = new PlainPlugin;
    mPlugin->pluginIsLoaded(mBackend, mRegistry, QLatin1String("text"), QLatin1String("/base"));
}

void AbstractPluginTest::cleanup()
{
    delete mPlugin;
}

void AbstractPluginTest::castByInterfaceId()
{
    QObject* const object = mPlugin;
    QCOMPARE(qobject_cast<AbstractPlugin*>(object), static_cast<AbstractPlugin*>(mPlugin));
    QCOMPARE(object->qt_metacast("com.orbelt.vantora.ConfigPlugin/1.1"),
             static_cast<void*>(static_cast<AbstractPlugin*>(mPlugin)));
    QVERIFY(!qobject_cast<AbstractPlugin*>(this));
}

void AbstractPluginTest::rootsFollowTheName()
{
    mPlugin->setName(QLatin1String("sample"));
    QCOMPARE(mPlugin->name(), QString::fromLatin1("sample"));
    QCOMPARE(mPlugin->rootDir(), QString::fromLatin1("root/sample"));
    QCOMPARE(mPlugin->tmpRootDir(), QString::fromLatin1("tmp/sample"));
}

void AbstractPluginTest::startKeepsItsArguments()
{
    QCOMPARE(mPlugin->keptBackend(), static_cast<Vantora*>(&mBackend));
    QCOMPARE(mPlugin->getDefaultSettings(), static_cast<Reg::Registry*>(&mRegistry));
    QCOMPARE(mPlugin->keptText(), QString::fromLatin1("text"));
    QCOMPARE(mPlugin->keptBaseDir(), QString::fromLatin1("/base"));
}

void AbstractPluginTest::noDefaultSettingsBeforeTheStart()
{
    PlainPlugin fresh;
    QVERIFY(!fresh.getDefaultSettings());
    QVERIFY(!fresh.keptBackend());
}

void AbstractPluginTest::unsupportedOperationsAnswerOne()
{
    QByteArray data("data");
    QMap<QString, _RegNodeType> result;
    QCOMPARE(mPlugin->set(kKey, QString(), REG_PARAM_VALUE), 1);
    QCOMPARE(mPlugin->get(kKey, result, REG_PARAM_VALUE, QString()), 1);
    QVERIFY(result.isEmpty());
    QCOMPARE(mPlugin->commit(kKey), 1);
    QCOMPARE(mPlugin->apply(kKey, QString()), 1);
    QCOMPARE(mPlugin->clone(kKey, kKey), 1);
    QCOMPARE(mPlugin->rollback(kKey), 1);
    QCOMPARE(mPlugin->create(kKey, REG_TYPE_STRING), 1);
    QCOMPARE(mPlugin->del(kKey), 1);
    QCOMPARE(mPlugin->trySet(kKey, QString()), 1);
    QCOMPARE(mPlugin->importRegistry(data), 1);
    QCOMPARE(mPlugin->exportRegistry(kKey, data), 1);
    QCOMPARE(data, QByteArray("data"));
}

void AbstractPluginTest::changesAnswersNoneAndSucceeds()
{
    QMap<QString, _RegEntryChange> changes;
    changes.insert(kKey, REG_CHANGE_CREATED);
    QCOMPARE(mPlugin->changes(changes), 0);
    QCOMPARE(changes.size(), 1);
}

void AbstractPluginTest::getOfAParameter_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("param");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");

    QTest::newRow("type") << "root/port" << int(REG_PARAM_TYPE) << 0 << "number";
    QTest::newRow("regular expression") << "root/port" << int(REG_PARAM_REGEXP) << 0 << "[0-9]+";
    QTest::newRow("type in a directory of one value")
        << "root/directory" << int(REG_PARAM_TYPE) << 1 << "";
    QTest::newRow("type of an empty directory") << "root/empty" << int(REG_PARAM_TYPE) << 1 << "";
    QTest::newRow("type of an unknown key") << "root/more" << int(REG_PARAM_TYPE) << 1 << "";
}

void AbstractPluginTest::getOfAParameter()
{
    QFETCH(QString, key);
    QFETCH(int, param);
    QFETCH(int, code);
    QFETCH(QString, text);

    QMap<QString, _RegNodeType> result;
    QCOMPARE(mPlugin->get(key, result, static_cast<_RegEntryParam>(param), QString()), code);
    QCOMPARE(result.size(), code == 0 ? 1 : 0);
    if (code == 0) {
        QCOMPARE(result.keys().first(), text);
        QCOMPARE(result.value(text), REG_NODE_VALUE);
    }
}

void AbstractPluginTest::typesInWords()
{
    QString words;
    for (int type = REG_TYPE_STRING; type <= REG_TYPE_BOOL; ++type) {
        QMap<QString, _RegNodeType> result;
        QString const key = kTyped + QString::number(type);
        QCOMPARE(mPlugin->get(key, result, REG_PARAM_TYPE, QString()), 0);
        words += result.keys().first() + " ";
    }
    QCOMPARE(words, QString("string rc4 uuid char ipv4 number float date bool "));
}

void AbstractPluginTest::getAddsToTheResult()
{
    QMap<QString, _RegNodeType> result;
    result.insert(QLatin1String("earlier"), REG_NODE_DIR);
    QCOMPARE(mPlugin->get(kKey, result, REG_PARAM_TYPE, QString()), 0);
    QCOMPARE(result.size(), 2);
    QCOMPARE(result.value(QLatin1String("earlier")), REG_NODE_DIR);
}

void AbstractPluginTest::contains_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("code");

    QTest::newRow("value") << "root/port" << 0;
    QTest::newRow("directory") << "root/directory" << 0;
    QTest::newRow("empty directory") << "root/empty" << 0;
    QTest::newRow("unknown") << "root/more" << 1;
    QTest::newRow("empty key") << "" << 1;
}

void AbstractPluginTest::contains()
{
    QFETCH(QString, key);
    QFETCH(int, code);

    QCOMPARE(mPlugin->contains(key), code);
}

void AbstractPluginTest::containsBeforeTheStart()
{
    PlainPlugin fresh;
    QCOMPARE(fresh.contains(kKey), 1);
}

ZELVO_TEST(AbstractPluginTest)
#include "AbstractPluginTest.moc"
