// SPDX-License-Identifier: MIT

#include "host/OpenRegistry.h"
#include "support/TestDirectory.h"
#include "support/TestProgram.h"

class RegistryTest : public QObject
{
    Q_OBJECT

private slots:
    void getOfValue();
    void getOfEmptyValueIsNoDefault();
    void getOfDirectory();
    void getAddsToTheResult();
    void getOfUnknownKeyLeavesTheResultAlone();
    void getOfAParameter_data();
    void getOfAParameter();
    void templateKey_data();
    void templateKey();
    void listingShowsNoTemplate();

    void setIsPendingUntilCommit();
    void setTwiceKeepsTheLater();
    void setIsRefused_data();
    void setIsRefused();
    void setOfAParameterIsRefused();
    void valueTypes_data();
    void valueTypes();
    void regularExpressionMatchesTheWholeValue();
    void defaultIsNeverRefused_data();
    void defaultIsNeverRefused();
    void firstComponentMayBeAValue();

    void createdSessionShowsItsLeavesOnceCommitted();
    void setBelowAPendingSession();
    void keyBelowACreationIsWrittenWithIt();
    void commitOfADirectoryCommitsWhatIsUnderIt();
    void commitOfAKeyLeavesItsNeighbours();
    void commitWithNothingPending();
    void commitOfUnknownKey_data();
    void commitOfUnknownKey();
    void commitWithoutADatabaseFails();
    void createIsRefused_data();
    void createIsRefused();
    void createTwice();
    void createOfACommittedSession();

    void delOfAValueIsItsDefault();
    void delOfAValueAtItsDefaultIsNoChange();
    void delOfAPendingValueDropsIt();
    void setAfterDelOfAValue();
    void delOfASession();
    void delOfASessionTakesNestedSessionsAlong();
    void delOfAPendingSessionDropsItAndWhatIsUnderIt();
    void delOfASessionDropsWhatIsPendingUnderIt();
    void setUnderADeletedSessionIsRefused();
    void createAfterDelReplacesTheSession();
    void delAfterCreateAfterDel();
    void delIsRefused_data();
    void delIsRefused();

    void rollbackDropsWhatIsUnderTheKey();
    void rollbackOfADeletion();
    void rollbackOfUnknownKeyIsRefused();
    void changesListsEachKind();
    void namesThatDifferInFormAreDifferentSessions();
    void contains_data();
    void contains();
    void cloneAndWatchAreNotSupported();
};

namespace {

QString const kUsb = QLatin1String("root/USB/root/mass-storage/allowed");
QString const kLabel = kRdp + QLatin1Char('/') + kFirst + QLatin1String("/label");
QString const kSession = kRdp + QLatin1Char('/') + kFirst;
QString const kOther = kRdp + QLatin1Char('/') + kSecond;

void badKeys()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("empty") << "";
    QTest::newRow("null") << QString();
    QTest::newRow("unknown word") << "root/USB/more";
    QTest::newRow("another root") << "boot/USB";
    QTest::newRow("slash in front") << "/root/USB";
    QTest::newRow("slash behind") << "root/USB/";
    QTest::newRow("doubled slash") << "root//USB";
    QTest::newRow("below a value") << "root/USB/root/mass-storage/allowed/more";
    QTest::newRow("dots") << "root/USB/../USB";
    QTest::newRow("NUL behind") << QString::fromLatin1("root/USB\0", 9);
    QTest::newRow("newline") << "root/USB\n";
    QTest::newRow("session of no kind") << "root/USB/{11111111-1111-4111-8111-111111111111}";
    QTest::newRow("nil UUID") << kRdp + "/{00000000-0000-0000-0000-000000000000}";
    QTest::newRow("no UUID") << kRdp + "/first";
    QTest::newRow("UUID with a control character behind") << kSession + QChar(7);
    QTest::newRow("UUID with half a surrogate pair behind") << kSession + QChar(0xd800);
    QTest::newRow("session that is not there") << kSession;
    QTest::newRow("value of a session that is not there") << kLabel;
    QTest::newRow("literal placeholder") << kRdp + "/{UUID}";
}

} // namespace

void RegistryTest::getOfValue()
{
    OpenRegistry registry;
    QCOMPARE(registry.answer(kUsb), QString::fromLatin1("3 1"));
    QCOMPARE(registry.set(kUsb, "off"), 0);
    QCOMPARE(registry.commit(kUsb), 0);
    QCOMPARE(registry.answer(kUsb), QString::fromLatin1("2 off"));

    QString text;
    QCOMPARE(registry.get(kUsb, text, REG_PARAM_VALUE, QString()), 0);
    QCOMPARE(text, QString::fromLatin1("off"));
    int number = 0;
    QCOMPARE(
        registry.get("root/Display/Configuration/swapstate", number, REG_PARAM_VALUE, QString()),
        0);
}

void RegistryTest::getOfEmptyValueIsNoDefault()
{
    OpenRegistry registry;
    QString const key = "root/Display/Configuration/secondaryprofile";
    QCOMPARE(registry.answer(key), QString::fromLatin1("3 <None>"));
    QCOMPARE(registry.set(key, ""), 0);
    QCOMPARE(registry.commit(key), 0);
    QCOMPARE(registry.answer(key), QString::fromLatin1("2 "));
}

void RegistryTest::getOfDirectory()
{
    OpenRegistry registry;
    QCOMPARE(registry.answers("root/USB/root/mass-storage"),
             QStringList() << "1 root/USB/root/mass-storage/allowed"
                           << "1 root/USB/root/mass-storage/read-only");
    QCOMPARE(registry.answers("root/USB"), QStringList() << "0 root/USB/root");
    QCOMPARE(registry.answers("root"),
             QStringList() << "0 root/ConnectionType"
                           << "0 root/Display"
                           << "0 root/USB"
                           << "0 root/auto-update"
                           << "0 root/vncserver"
                           << "0 root/zelvo-view");
}

void RegistryTest::getAddsToTheResult()
{
    OpenRegistry registry;
    QMap<QString, _RegNodeType> result;
    result.insert("earlier", REG_NODE_KEY);
    QCOMPARE(registry.get(kUsb, result, REG_PARAM_VALUE, QString()), 0);
    QCOMPARE(result.size(), 2);
    QCOMPARE(result.value("earlier"), REG_NODE_KEY);
}

void RegistryTest::getOfUnknownKeyLeavesTheResultAlone()
{
    OpenRegistry registry;
    QMap<QString, _RegNodeType> result;
    result.insert("earlier", REG_NODE_KEY);
    QVERIFY(registry.get("root/more", result, REG_PARAM_VALUE, QString()) != 0);
    QVERIFY(registry.get(kLabel, result, REG_PARAM_VALUE, QString()) != 0);
    QVERIFY(registry.get("root/USB", result, REG_PARAM_TYPE, QString()) != 0);
    QCOMPARE(result.size(), 1);

    QString text = "before";
    QVERIFY(registry.get("root/USB", text, REG_PARAM_VALUE, QString()) != 0);
    QCOMPARE(text, QString::fromLatin1("before"));
}

void RegistryTest::getOfAParameter_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("param");
    QTest::addColumn<QString>("expected");

    QString const port = "root/ConnectionType/ica/connections/{UUID}/proxyPort";
    QTest::newRow("type") << kUsb << int(REG_PARAM_TYPE) << "2 bool";
    QTest::newRow("no regular expression") << kUsb << int(REG_PARAM_REGEXP) << "2 ";
    QTest::newRow("type through a template") << port << int(REG_PARAM_TYPE) << "2 number";
    QTest::newRow("regular expression through a template")
        << port << int(REG_PARAM_REGEXP) << "2 [1-9][0-9]{0,4}";
    QTest::newRow("type of a directory") << "root/USB" << int(REG_PARAM_TYPE) << "code 1";
    QTest::newRow("type in a session that is not there")
        << kLabel << int(REG_PARAM_TYPE) << "code 1";
    QTest::newRow("no such parameter") << kUsb << 3 << "code 1";
}

void RegistryTest::getOfAParameter()
{
    QFETCH(QString, key);
    QFETCH(int, param);
    QFETCH(QString, expected);

    OpenRegistry registry;
    QCOMPARE(registry.answer(key, static_cast<_RegEntryParam>(param)), expected);
}

void RegistryTest::templateKey_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("registry placeholder") << kRdp + "/{UUID}/autostart";
    QTest::newRow("view placeholder") << "root/zelvo-view/rdp/sessions/{uuid}/autostart";
}

void RegistryTest::templateKey()
{
    QFETCH(QString, key);

    OpenRegistry registry;
    bool const isView = key.contains("{uuid}");
    QCOMPARE(registry.answer(key), QString::fromLatin1(isView ? "3 false" : "3 0"));
    QCOMPARE(registry.answer(key, REG_PARAM_TYPE), QString::fromLatin1("2 bool"));
    QString const directory = key.left(key.lastIndexOf('/'));
    QCOMPARE(registry.answer(directory), QString::fromLatin1("code 1"));
    QVERIFY(registry.set(key, "1") != 0);
    QVERIFY(registry.create(directory) != 0);
    QVERIFY(registry.del(key) != 0);
    QVERIFY(registry.del(directory) != 0);
    QVERIFY(registry.commit(key) != 0);
    QVERIFY(registry.commit(directory) != 0);
    QVERIFY(registry.contains(key) != 0);
    QVERIFY(registry.pending().isEmpty());
}

void RegistryTest::listingShowsNoTemplate()
{
    OpenRegistry registry;
    QCOMPARE(registry.answers(kRdp), QStringList());
    QCOMPARE(registry.answers("root/zelvo-view/rdp/sessions"), QStringList());
}

void RegistryTest::setIsPendingUntilCommit()
{
    OpenRegistry registry;
    QCOMPARE(registry.set(kUsb, "0"), 0);
    QCOMPARE(registry.answer(kUsb), QString::fromLatin1("3 1"));
    QCOMPARE(registry.pending(), QStringList() << "0 " + kUsb);
    QCOMPARE(registry.commit(kUsb), 0);
    QCOMPARE(registry.answer(kUsb), QString::fromLatin1("2 0"));
    QCOMPARE(registry.pending(), QStringList());
}

void RegistryTest::setTwiceKeepsTheLater()
{
    OpenRegistry registry;
    QCOMPARE(registry.set(kUsb, "0"), 0);
    QCOMPARE(registry.set(kUsb, "off"), 0);
    QCOMPARE(registry.commit("root"), 0);
    QCOMPARE(registry.answer(kUsb), QString::fromLatin1("2 off"));
}

void RegistryTest::setIsRefused_data()
{
    badKeys();
    QTest::newRow("directory") << "root/USB";
    QTest::newRow("value that breaks its type") << kUsb;
}

void RegistryTest::setIsRefused()
{
    QFETCH(QString, key);

    OpenRegistry registry;
    QVERIFY(registry.set(key, "2") != 0);
    QCOMPARE(registry.pending(), QStringList());
}

void RegistryTest::setOfAParameterIsRefused()
{
    OpenRegistry registry;
    QVERIFY(registry.set(kUsb, "0", REG_PARAM_TYPE) != 0);
    QVERIFY(registry.set(kUsb, "0", REG_PARAM_REGEXP) != 0);
    QCOMPARE(registry.pending(), QStringList());
}

void RegistryTest::valueTypes_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("good");
    QTest::addColumn<QString>("bad");

    QTest::newRow("uuid") << "uuid" << kFirst << "first";
    QTest::newRow("char") << "char"
                          << "a"
                          << "ab";
    QTest::newRow("ipv4") << "ipv4"
                          << "10.0.0.1"
                          << "10.0.0.256";
    QTest::newRow("number") << "number"
                            << "-12"
                            << "twelve";
    QTest::newRow("float") << "float"
                           << "1.5"
                           << "1,5";
    QTest::newRow("date") << "date"
                          << "2011-03-31"
                          << "2011-04-31";
    QTest::newRow("bool") << "bool"
                          << "ko"
                          << "maybe";
}

void RegistryTest::valueTypes()
{
    QFETCH(QString, type);
    QFETCH(QString, good);
    QFETCH(QString, bad);

    TestDirectory defaults;
    QString const document
        = "<registry><dir name='root'><key name='k' type='%1'/></dir></registry>";
    defaults.write("defaults.xml", document.arg(type).toLatin1());
    OpenRegistry registry(":memory:", defaults.path());
    QCOMPARE(registry.set("root/k", good), 0);
    QVERIFY(registry.set("root/k", bad) != 0);
    QCOMPARE(registry.commit("root/k"), 0);
    QCOMPARE(registry.answer("root/k"), "2 " + good);
}

void RegistryTest::regularExpressionMatchesTheWholeValue()
{
    TestDirectory defaults;
    defaults.write("defaults.xml",
                   "<registry><dir name='root'>"
                   "<key name='k' regexp='[a-c]+' default='a'/></dir></registry>");
    OpenRegistry registry(":memory:", defaults.path());
    QCOMPARE(registry.set("root/k", "abc"), 0);
    QVERIFY(registry.set("root/k", "abcd") != 0);
    QVERIFY(registry.set("root/k", "xabc") != 0);
    QVERIFY(registry.set("root/k", "abc\n") != 0);
    QVERIFY(registry.set("root/k", "") != 0);
    QCOMPARE(registry.commit("root/k"), 0);
    QCOMPARE(registry.answer("root/k"), QString::fromLatin1("2 abc"));
    QCOMPARE(registry.answer("root/k", REG_PARAM_REGEXP), QString::fromLatin1("2 [a-c]+"));
}

void RegistryTest::defaultIsNeverRefused_data()
{
    QTest::addColumn<QString>("attributes");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("near");

    QTest::newRow("empty number") << "type='number'"
                                  << ""
                                  << " ";
    QTest::newRow("empty truth value") << "type='bool'"
                                       << ""
                                       << "maybe";
    QTest::newRow("empty, with an expression") << "regexp='[a-c]+'"
                                               << ""
                                               << "d";
    QTest::newRow("one that breaks the expression") << "regexp='[a-c]+' default='d'"
                                                    << "d"
                                                    << "e";
    QTest::newRow("one of a type and an expression") << "type='number' regexp='[1-9]+' default='0'"
                                                     << "0"
                                                     << "00";
}

void RegistryTest::defaultIsNeverRefused()
{
    QFETCH(QString, attributes);
    QFETCH(QString, value);
    QFETCH(QString, near);

    TestDirectory defaults;
    QString const document = "<registry><dir name='root'><key name='k' %1/></dir></registry>";
    defaults.write("defaults.xml", document.arg(attributes).toLatin1());
    OpenRegistry registry(":memory:", defaults.path());
    QVERIFY(registry.set("root/k", near) != 0);
    QCOMPARE(registry.set("root/k", value), 0);
    QCOMPARE(registry.commit("root/k"), 0);
    QCOMPARE(registry.answer("root/k"), "2 " + value);

    QByteArray data = "<registry><dir name='root'><key name='k' value='" + value.toLatin1()
        + "'/></dir></registry>";
    QCOMPARE(registry.importRegistry(data), 0);
}

void RegistryTest::firstComponentMayBeAValue()
{
    TestDirectory scratch;
    scratch.write("defaults.xml", "<registry><key name='k' default='d'/></registry>");
    OpenRegistry registry(scratch.file("registry.db"), scratch.path());
    QCOMPARE(registry.set("k", "v"), 0);
    QCOMPARE(registry.commit("k"), 0);
    QCOMPARE(registry.answer("k"), QString::fromLatin1("2 v"));
    QCOMPARE(registry.del("k"), 0);
    QCOMPARE(registry.commit("k"), 0);
    QCOMPARE(registry.answer("k"), QString::fromLatin1("3 d"));
}

void RegistryTest::createdSessionShowsItsLeavesOnceCommitted()
{
    OpenRegistry registry;
    QCOMPARE(registry.create(kSession), 0);
    QCOMPARE(registry.answers(kRdp), QStringList());
    QCOMPARE(registry.answer(kSession), QString::fromLatin1("code 1"));
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("code 1"));
    QCOMPARE(registry.pending(), QStringList() << "1 " + kSession);

    QCOMPARE(registry.commit(kSession), 0);
    QCOMPARE(registry.answers(kRdp), QStringList() << "0 " + kSession);
    QStringList const leaves = registry.answers(kSession);
    QVERIFY(leaves.contains("1 " + kLabel));
    QVERIFY(leaves.contains("1 " + kSession + "/autostart"));
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("3 "));
    QCOMPARE(registry.answer(kSession + "/autostart"), QString::fromLatin1("3 0"));
}

void RegistryTest::setBelowAPendingSession()
{
    OpenRegistry registry;
    QCOMPARE(registry.create(kSession), 0);
    QCOMPARE(registry.set(kLabel, "one"), 0);
    QCOMPARE(registry.answer(kLabel, REG_PARAM_TYPE), QString::fromLatin1("2 string"));
    QCOMPARE(registry.pending(), QStringList() << "1 " + kSession << "0 " + kLabel);
    QCOMPARE(registry.commit(kSession), 0);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 one"));
}

void RegistryTest::keyBelowACreationIsWrittenWithIt()
{
    OpenRegistry registry;
    QCOMPARE(registry.create(kSession), 0);
    QCOMPARE(registry.set(kLabel, "one"), 0);
    QVERIFY(registry.commit(kLabel) != 0);
    // A key that was not set neither.
    QVERIFY(registry.commit(kSession + "/address") != 0);
    QCOMPARE(registry.answers(kRdp), QStringList());
    QCOMPARE(registry.pending(), QStringList() << "1 " + kSession << "0 " + kLabel);

    QCOMPARE(registry.commit(kSession), 0);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 one"));
    QCOMPARE(registry.pending(), QStringList());
}

void RegistryTest::commitOfADirectoryCommitsWhatIsUnderIt()
{
    OpenRegistry registry;
    QCOMPARE(registry.create(kSession), 0);
    QCOMPARE(registry.create(kOther), 0);
    QCOMPARE(registry.set(kLabel, "one"), 0);
    QCOMPARE(registry.set(kUsb, "0"), 0);
    QCOMPARE(registry.commit("root/ConnectionType"), 0);
    QCOMPARE(registry.answers(kRdp), QStringList() << "0 " + kSession << "0 " + kOther);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 one"));
    QCOMPARE(registry.pending(), QStringList() << "0 " + kUsb);
}

void RegistryTest::commitOfAKeyLeavesItsNeighbours()
{
    TestDirectory defaults;
    defaults.write("defaults.xml",
                   "<registry><dir name='root'><dir name='a'><key name='k'/></dir>"
                   "<dir name='ab'><key name='k'/></dir><key name='a-k'/>"
                   "</dir></registry>");
    OpenRegistry registry(":memory:", defaults.path());
    QCOMPARE(registry.set("root/a/k", "1"), 0);
    QCOMPARE(registry.set("root/ab/k", "2"), 0);
    QCOMPARE(registry.set("root/a-k", "3"), 0);
    QCOMPARE(registry.commit("root/a"), 0);
    QCOMPARE(registry.answer("root/a/k"), QString::fromLatin1("2 1"));
    QCOMPARE(registry.pending(),
             QStringList() << "0 root/a-k"
                           << "0 root/ab/k");
}

void RegistryTest::commitWithNothingPending()
{
    OpenRegistry registry;
    QCOMPARE(registry.commit("root"), 0);
    QCOMPARE(registry.commit("root/USB"), 0);
    QCOMPARE(registry.commit(kUsb), 0);
    QCOMPARE(registry.commit(kRdp), 0);
}

void RegistryTest::commitOfUnknownKey_data()
{
    badKeys();
}

void RegistryTest::commitOfUnknownKey()
{
    QFETCH(QString, key);

    OpenRegistry registry;
    QCOMPARE(registry.set(kUsb, "0"), 0);
    QVERIFY(registry.commit(key) != 0);
    QCOMPARE(registry.pending(), QStringList() << "0 " + kUsb);
}

void RegistryTest::commitWithoutADatabaseFails()
{
    RegistryHost registry;
    QString error;
    QVERIFY2(registry.loadDefaults(DEFAULTS_DIR, error), qPrintable(error));
    QCOMPARE(registry.set(kUsb, "0", REG_PARAM_VALUE), 0);
    QVERIFY(registry.commit(kUsb) != 0);
    QMap<QString, _RegEntryChange> changes;
    QCOMPARE(registry.changes(changes), 0);
    QCOMPARE(QStringList(changes.keys()), QStringList() << kUsb);
}

void RegistryTest::createIsRefused_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("empty") << "";
    QTest::newRow("declared directory") << "root/USB";
    QTest::newRow("declared value") << kUsb;
    QTest::newRow("directory that is not declared") << "root/more";
    QTest::newRow("value of a session that is not there") << kLabel;
    QTest::newRow("session under a value") << kUsb + "/" + kFirst;
    QTest::newRow("session where there are none") << "root/USB/" + kFirst;
    QTest::newRow("nil UUID") << kRdp + "/{00000000-0000-0000-0000-000000000000}";
    QTest::newRow("no UUID") << kRdp + "/first";
    QTest::newRow("slash behind") << kSession + "/";
    QTest::newRow("doubled slash") << kRdp + "//" + kFirst;
    QTest::newRow("UUID with a control character behind") << kSession + QChar(7);
    QTest::newRow("UUID with half a surrogate pair behind") << kSession + QChar(0xd800);
    QTest::newRow("UUID with no character behind") << kSession + QChar(0xfffe);
    QTest::newRow("literal placeholder") << kRdp + "/{UUID}";
    QTest::newRow("session under a literal placeholder") << kRdp + "/{UUID}/" + kFirst;
}

void RegistryTest::createIsRefused()
{
    QFETCH(QString, key);

    OpenRegistry registry;
    QVERIFY(registry.create(key) != 0);
    QCOMPARE(registry.pending(), QStringList());
}

void RegistryTest::createTwice()
{
    OpenRegistry registry;
    QCOMPARE(registry.create(kSession), 0);
    QCOMPARE(registry.set(kLabel, "one"), 0);
    QVERIFY(registry.create(kSession) != 0);
    QCOMPARE(registry.commit(kSession), 0);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 one"));
}

void RegistryTest::createOfACommittedSession()
{
    OpenRegistry registry;
    registry.addSession(kSession, "one");
    QVERIFY(registry.create(kSession) != 0);
    QCOMPARE(registry.pending(), QStringList());
}

void RegistryTest::delOfAValueIsItsDefault()
{
    OpenRegistry registry;
    QCOMPARE(registry.set(kUsb, "0"), 0);
    QCOMPARE(registry.commit(kUsb), 0);
    QCOMPARE(registry.del(kUsb), 0);
    QCOMPARE(registry.answer(kUsb), QString::fromLatin1("2 0"));
    QCOMPARE(registry.pending(), QStringList() << "2 " + kUsb);
    QCOMPARE(registry.commit(kUsb), 0);
    QCOMPARE(registry.answer(kUsb), QString::fromLatin1("3 1"));
}

void RegistryTest::delOfAValueAtItsDefaultIsNoChange()
{
    OpenRegistry registry;
    QCOMPARE(registry.del(kUsb), 0);
    QCOMPARE(registry.pending(), QStringList());
}

void RegistryTest::delOfAPendingValueDropsIt()
{
    OpenRegistry registry;
    QCOMPARE(registry.set(kUsb, "0"), 0);
    QCOMPARE(registry.del(kUsb), 0);
    QCOMPARE(registry.pending(), QStringList());
    QCOMPARE(registry.commit(kUsb), 0);
    QCOMPARE(registry.answer(kUsb), QString::fromLatin1("3 1"));
}

void RegistryTest::setAfterDelOfAValue()
{
    OpenRegistry registry;
    QCOMPARE(registry.set(kUsb, "0"), 0);
    QCOMPARE(registry.commit(kUsb), 0);
    QCOMPARE(registry.del(kUsb), 0);
    QCOMPARE(registry.set(kUsb, "off"), 0);
    QCOMPARE(registry.pending(), QStringList() << "0 " + kUsb);
    QCOMPARE(registry.commit(kUsb), 0);
    QCOMPARE(registry.answer(kUsb), QString::fromLatin1("2 off"));
}

void RegistryTest::delOfASession()
{
    OpenRegistry registry;
    registry.addSession(kSession, "one");
    registry.addSession(kOther, "two");
    QCOMPARE(registry.del(kSession), 0);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 one"));
    QCOMPARE(registry.pending(), QStringList() << "2 " + kSession);
    QCOMPARE(registry.commit(kSession), 0);
    QCOMPARE(registry.answers(kRdp), QStringList() << "0 " + kOther);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("code 1"));
    QVERIFY(registry.commit(kSession) != 0);
    QVERIFY(registry.del(kSession) != 0);
}

void RegistryTest::delOfASessionTakesNestedSessionsAlong()
{
    TestDirectory scratch;
    scratch.write("defaults.xml",
                  "<registry><dir name='root'><dir name='{UUID}'><dir name='parts'>"
                  "<dir name='{UUID}'><key name='k'/></dir></dir></dir></dir></registry>");
    QString const outer = "root/" + kFirst;
    QString const inner = outer + "/parts/" + kSecond;
    QString const database = scratch.file("registry.db");
    {
        OpenRegistry registry(database, scratch.path());
        QVERIFY(registry.create(inner) != 0);
        QCOMPARE(registry.create(outer), 0);
        QCOMPARE(registry.create(inner), 0);
        QCOMPARE(registry.set(inner + "/k", "v"), 0);
        QVERIFY(registry.commit(inner) != 0);
        QCOMPARE(registry.commit(outer), 0);
        QCOMPARE(registry.answers("root"), QStringList() << "0 " + outer);
        QVERIFY(registry.del(outer + "/parts") != 0);
        QVERIFY(registry.create(outer + "/parts") != 0);
        QCOMPARE(registry.del(outer), 0);
        QCOMPARE(registry.create(outer), 0);
        QVERIFY(registry.set(inner + "/k", "w") != 0);
        QCOMPARE(registry.commit(outer), 0);
        QCOMPARE(registry.answers(outer + "/parts"), QStringList());
        QCOMPARE(registry.create(inner), 0);
        QCOMPARE(registry.commit(inner), 0);
    }
    OpenRegistry reopened(database, scratch.path());
    QCOMPARE(reopened.answers(outer + "/parts"), QStringList() << "0 " + inner);
    QCOMPARE(reopened.answer(inner + "/k"), QString::fromLatin1("3 "));
}

void RegistryTest::delOfAPendingSessionDropsItAndWhatIsUnderIt()
{
    OpenRegistry registry;
    QCOMPARE(registry.create(kSession), 0);
    QCOMPARE(registry.set(kLabel, "one"), 0);
    QCOMPARE(registry.del(kSession), 0);
    QCOMPARE(registry.pending(), QStringList());
    QVERIFY(registry.commit(kSession) != 0);
    QVERIFY(registry.del(kSession) != 0);
    QCOMPARE(registry.answers(kRdp), QStringList());
}

void RegistryTest::delOfASessionDropsWhatIsPendingUnderIt()
{
    OpenRegistry registry;
    registry.addSession(kSession, "one");
    QCOMPARE(registry.set(kLabel, "two"), 0);
    QCOMPARE(registry.del(kSession), 0);
    QCOMPARE(registry.pending(), QStringList() << "2 " + kSession);
}

void RegistryTest::setUnderADeletedSessionIsRefused()
{
    OpenRegistry registry;
    registry.addSession(kSession, "one");
    QCOMPARE(registry.del(kSession), 0);
    QVERIFY(registry.set(kLabel, "two") != 0);
    QVERIFY(registry.del(kLabel) != 0);
    QVERIFY(registry.del(kSession) != 0);
    // The plugin commits the keys of a session before the session itself.
    QCOMPARE(registry.commit(kLabel), 0);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 one"));
    QCOMPARE(registry.pending(), QStringList() << "2 " + kSession);
}

void RegistryTest::createAfterDelReplacesTheSession()
{
    OpenRegistry registry;
    registry.addSession(kSession, "one");
    QCOMPARE(registry.set(kSession + "/address", "host"), 0);
    QCOMPARE(registry.commit(kSession), 0);
    QCOMPARE(registry.del(kSession), 0);
    QCOMPARE(registry.create(kSession), 0);
    QVERIFY(registry.create(kSession) != 0);
    QCOMPARE(registry.set(kLabel, "two"), 0);
    QCOMPARE(registry.pending(), QStringList() << "0 " + kSession << "0 " + kLabel);
    QCOMPARE(registry.del(kSession + "/address"), 0);
    QVERIFY(registry.commit(kLabel) != 0);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 one"));
    QCOMPARE(registry.commit(kSession), 0);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 two"));
    QCOMPARE(registry.answer(kSession + "/address"), QString::fromLatin1("3 "));
    QCOMPARE(registry.pending(), QStringList());
}

void RegistryTest::delAfterCreateAfterDel()
{
    OpenRegistry registry;
    registry.addSession(kSession, "one");
    QCOMPARE(registry.del(kSession), 0);
    QCOMPARE(registry.create(kSession), 0);
    QCOMPARE(registry.del(kSession), 0);
    QCOMPARE(registry.pending(), QStringList() << "2 " + kSession);
    QCOMPARE(registry.commit("root"), 0);
    QCOMPARE(registry.answers(kRdp), QStringList());
}

void RegistryTest::delIsRefused_data()
{
    badKeys();
    QTest::newRow("declared directory") << "root/USB";
    QTest::newRow("root") << "root";
}

void RegistryTest::delIsRefused()
{
    QFETCH(QString, key);

    OpenRegistry registry;
    QVERIFY(registry.del(key) != 0);
    QCOMPARE(registry.pending(), QStringList());
}

void RegistryTest::rollbackDropsWhatIsUnderTheKey()
{
    OpenRegistry registry;
    QCOMPARE(registry.create(kSession), 0);
    QCOMPARE(registry.set(kLabel, "one"), 0);
    QCOMPARE(registry.create(kOther), 0);
    QCOMPARE(registry.set(kUsb, "0"), 0);
    QCOMPARE(registry.rollback(kLabel), 0);
    QCOMPARE(registry.pending(), QStringList() << "1 " + kSession << "1 " + kOther << "0 " + kUsb);
    QCOMPARE(registry.rollback(kRdp), 0);
    QCOMPARE(registry.pending(), QStringList() << "0 " + kUsb);
    QCOMPARE(registry.commit("root"), 0);
    QCOMPARE(registry.answers(kRdp), QStringList());
}

void RegistryTest::rollbackOfADeletion()
{
    OpenRegistry registry;
    registry.addSession(kSession, "one");
    QCOMPARE(registry.del(kSession), 0);
    QCOMPARE(registry.rollback(kSession), 0);
    QCOMPARE(registry.commit(kSession), 0);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 one"));
    QCOMPARE(registry.set(kLabel, "two"), 0);
}

void RegistryTest::rollbackOfUnknownKeyIsRefused()
{
    OpenRegistry registry;
    QVERIFY(registry.rollback("root/more") != 0);
    QVERIFY(registry.rollback(kSession) != 0);
    QVERIFY(registry.rollback("") != 0);
    QVERIFY(registry.rollback(kRdp + "/{UUID}") != 0);
    QCOMPARE(registry.rollback(kUsb), 0);
}

void RegistryTest::changesListsEachKind()
{
    OpenRegistry registry;
    registry.addSession(kOther, "two");
    QCOMPARE(registry.create(kSession), 0);
    QCOMPARE(registry.del(kOther), 0);
    QCOMPARE(registry.set(kUsb, "0"), 0);

    QMap<QString, _RegEntryChange> changes;
    QCOMPARE(registry.changes(changes), 0);
    QCOMPARE(changes.size(), 3);
    QCOMPARE(changes.value(kSession), REG_CHANGE_CREATED);
    QCOMPARE(changes.value(kOther), REG_CHANGE_DELETED);
    QCOMPARE(changes.value(kUsb), REG_CHANGE_MODIFIED);
}

void RegistryTest::namesThatDifferInFormAreDifferentSessions()
{
    OpenRegistry registry;
    QString const bare = kRdp + "/" + kFirst.mid(1, kFirst.size() - 2);
    registry.addSession(kSession, "braces");
    registry.addSession(bare, "bare");
    QCOMPARE(registry.answers(kRdp), QStringList() << "0 " + bare << "0 " + kSession);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 braces"));
    QCOMPARE(registry.answer(bare + "/label"), QString::fromLatin1("2 bare"));
}

void RegistryTest::contains_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("expected");

    QTest::newRow("root") << "root" << true;
    QTest::newRow("directory without children") << kRdp << true;
    QTest::newRow("value") << kUsb << true;
    QTest::newRow("session, committed") << kOther << true;
    QTest::newRow("value of it") << kOther + "/label" << true;
    QTest::newRow("session, pending") << kSession << false;
    QTest::newRow("value of it, pending") << kLabel << false;
    QTest::newRow("template") << kRdp + "/{UUID}" << false;
    QTest::newRow("unknown") << "root/more" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("slash behind") << "root/" << false;
}

void RegistryTest::contains()
{
    QFETCH(QString, key);
    QFETCH(bool, expected);

    OpenRegistry registry;
    registry.addSession(kOther, "two");
    QCOMPARE(registry.create(kSession), 0);
    QCOMPARE(registry.contains(key) == 0, expected);
}

void RegistryTest::cloneAndWatchAreNotSupported()
{
    OpenRegistry registry;
    registry.addSession(kSession, "one");
    QCOMPARE(registry.clone(kSession, kOther), 1);
    QCOMPARE(registry.watch(QStringList() << kUsb, 1), 1);
    QCOMPARE(registry.pending(), QStringList());
}

ZELVO_TEST(RegistryTest)
#include "RegistryTest.moc"
