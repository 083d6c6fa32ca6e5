// SPDX-License-Identifier: MIT

#include "host/OpenRegistry.h"
#include "support/TestDirectory.h"
#include "support/TestProgram.h"

#include <initializer_list>

class RegistryXmlTest : public QObject
{
    Q_OBJECT

private slots:
    void exportOfAValue();
    void exportOfASession();
    void exportListsSessionsInOrderOfCreation();
    void sessionsOfEarlierHostsAreOlder();
    void exportOfUnknownKeyLeavesTheDataAlone_data();
    void exportOfUnknownKeyLeavesTheDataAlone();
    void importOfAnExport_data();
    void importOfAnExport();
    void importedSessionsKeepTheirOrder();
    void importIsCommittedAtOnce();
    void importSetsWhatItListsAndLeavesTheRest();
    void importTakesTheLaterOfTwo();
    void importNamesANewSessionTwice();
    void importSettlesWhatWasPending();
    void importBringsBackADeletedSession();
    void refusedImportChangesNothing_data();
    void refusedImportChangesNothing();
    void importWithoutADatabaseChangesNothing();
    void largeExport();
};

namespace {

QString const kUsb = QLatin1String("root/USB/root/mass-storage/allowed");
QString const kSession = kRdp + QLatin1Char('/') + kFirst;
QString const kLabel = kSession + QLatin1String("/label");

QByteArray inRoot(QByteArray const& contents)
{
    return "<registry><dir name='root'>" + contents + "</dir></registry>";
}

QByteArray inRdp(QByteArray const& contents)
{
    return inRoot("<dir name='ConnectionType'><dir name='rdesktop'><dir name='connections'>"
                  + contents + "</dir></dir></dir>");
}

QByteArray session(QByteArray const& contents)
{
    return inRdp("<dir name='" + kFirst.toLatin1() + "'>" + contents + "</dir>");
}

QByteArray usb(QByteArray const& attributes)
{
    return "<dir name='USB'><dir name='root'><dir name='mass-storage'><key name='allowed' "
        + attributes + "/></dir></dir></dir>";
}

} // namespace

void RegistryXmlTest::exportOfAValue()
{
    OpenRegistry registry;
    QByteArray data("before");
    QCOMPARE(registry.exportRegistry(kUsb, data), 0);
    QCOMPARE(data,
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<registry>\n"
                        "    <dir name=\"root\">\n"
                        "        <dir name=\"USB\">\n"
                        "            <dir name=\"root\">\n"
                        "                <dir name=\"mass-storage\">\n"
                        "                    <key name=\"allowed\" type=\"bool\" default=\"1\"/>\n"
                        "                </dir>\n"
                        "            </dir>\n"
                        "        </dir>\n"
                        "    </dir>\n"
                        "</registry>\n"));
}

void RegistryXmlTest::exportOfASession()
{
    OpenRegistry registry;
    QString const ica = "root/ConnectionType/ica/connections/" + kFirst;
    registry.addSession(ica, "a<b>\"&'");
    QCOMPARE(registry.set(ica + "/address", QString::fromLatin1("a\0b", 3)), 0);
    QCOMPARE(registry.set(ica + "/proxyAddress", ""), 0);
    QCOMPARE(registry.commit(ica), 0);
    QCOMPARE(registry.set(ica + "/proxyPort", "8080"), 0);

    QByteArray data;
    QCOMPARE(registry.exportRegistry(ica, data), 0);
    QString const text = QString::fromUtf8(data);
    QStringList keys = text.split("\n").filter("<key ");
    for (int i = 0; i < keys.size(); ++i)
        keys[i] = keys.at(i).trimmed();
    QCOMPARE(keys,
             QStringList() << "<key name=\"label\" type=\"string\" default=\"\""
                              " value=\"a&lt;b&gt;&quot;&amp;'\"/>"
                           << "<key name=\"autostart\" type=\"bool\" default=\"0\"/>"
                           << "<key name=\"address\" type=\"string\" default=\"\""
                              " value=\"YQAAAGIA\" encoding=\"base64\"/>"
                           << "<key name=\"proxyAddress\" type=\"string\" default=\"\" value=\"\"/>"
                           << "<key name=\"proxyPort\" type=\"number\" default=\"\""
                              " regexp=\"[1-9][0-9]{0,4}\"/>");
    QVERIFY(text.contains("<dir name=\"" + kFirst + "\">"));
}

void RegistryXmlTest::exportListsSessionsInOrderOfCreation()
{
    TestDirectory scratch;
    {
        OpenRegistry registry(scratch.file("registry.db"));
        // Both are committed at once, and the one created first sorts behind the other.
        QCOMPARE(registry.create(kRdp + "/" + kSecond), 0);
        QCOMPARE(registry.create(kSession), 0);
        QCOMPARE(registry.commit("root"), 0);
    }
    OpenRegistry registry(scratch.file("registry.db"));
    QByteArray data;
    QCOMPARE(registry.exportRegistry(kRdp, data), 0);
    int const first = data.indexOf(kSecond.toLatin1());
    int const second = data.indexOf(kFirst.toLatin1());
    QVERIFY(first > 0 && second > first);
    QVERIFY(!data.contains("{UUID}"));
}

void RegistryXmlTest::sessionsOfEarlierHostsAreOlder()
{
    TestDirectory scratch;
    // The one created first sorts behind the other.
    for (QString const& session : {kSecond, kFirst}) {
        OpenRegistry registry(scratch.file("registry.db"));
        registry.addSession(kRdp + "/" + session, "a session");
    }
    OpenRegistry registry(scratch.file("registry.db"));
    QByteArray data;
    QCOMPARE(registry.exportRegistry(kRdp, data), 0);
    int const first = data.indexOf(kSecond.toLatin1());
    QVERIFY(first > 0 && data.indexOf(kFirst.toLatin1()) > first);
}

void RegistryXmlTest::exportOfUnknownKeyLeavesTheDataAlone_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("empty") << "";
    QTest::newRow("unknown") << "root/more";
    QTest::newRow("session that is not there") << kSession;
    QTest::newRow("template") << kRdp + "/{UUID}";
    QTest::newRow("temporary") << "tmp/a";
    QTest::newRow("slash behind") << "root/";
}

void RegistryXmlTest::exportOfUnknownKeyLeavesTheDataAlone()
{
    QFETCH(QString, key);

    OpenRegistry registry;
    QByteArray data("before");
    QCOMPARE(registry.set("tmp/a", "1"), 0);
    QCOMPARE(registry.commit("tmp/a"), 0);
    QVERIFY(registry.exportRegistry(key, data) != 0);
    QCOMPARE(data, QByteArray("before"));
}

void RegistryXmlTest::importOfAnExport_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("plain") << "host.example";
    QTest::newRow("empty") << "";
    QTest::newRow("markup") << "<a b=\"c\">&amp;'</a>]]>";
    QTest::newRow("blanks at both ends") << "  a  b  ";
    QTest::newRow("tabs and newlines") << "\ta\nb\r\nc\r";
    QTest::newRow("NUL and control characters") << QString::fromLatin1("\0\x01\x1f\x7f\x85\xa0", 6);
    QTest::newRow("half surrogate pairs") << QString(QChar(0xdc00)) + QChar(0xd800) + "x";
    QTest::newRow("outside the basic plane")
        << QString::fromUtf8("\xf0\x9f\x98\x80\xf4\x8f\xbf\xbf");
    QTest::newRow("no characters") << QString(QChar(0xfffe)) + QChar(0xffff);
    QTest::newRow("first that is no character") << QString(QChar(0xfffe));
    QTest::newRow("last that is one") << QString(QChar(0xfffd));
    QTest::newRow("byte order mark") << QString(QChar(0xfeff)) + "a";
    QTest::newRow("line separator") << QString(QChar(0x2028)) + QChar(0x2029);
    QTest::newRow("many megabytes") << QString(4 * 1024 * 1024, QLatin1Char('x'));
}

void RegistryXmlTest::importOfAnExport()
{
    QFETCH(QString, text);

    OpenRegistry source;
    source.addSession(kSession, text);
    QByteArray data;
    QCOMPARE(source.exportRegistry("root", data), 0);

    OpenRegistry target;
    QCOMPARE(target.importRegistry(data), 0);
    QCOMPARE(target.answers(kRdp), QStringList() << "0 " + kSession);
    QVERIFY(target.answer(kLabel) == "2 " + text);
    QByteArray again;
    QCOMPARE(target.exportRegistry("root", again), 0);
    QVERIFY(again == data);
}

void RegistryXmlTest::importedSessionsKeepTheirOrder()
{
    OpenRegistry source;
    source.addSession(kRdp + "/" + kSecond, "older");
    source.addSession(kSession, "younger");
    QByteArray data;
    QCOMPARE(source.exportRegistry("root", data), 0);

    OpenRegistry target;
    QCOMPARE(target.importRegistry(data), 0);
    QByteArray again;
    QCOMPARE(target.exportRegistry("root", again), 0);
    QCOMPARE(again, data);
}

void RegistryXmlTest::importIsCommittedAtOnce()
{
    TestDirectory scratch;
    {
        OpenRegistry registry(scratch.file("registry.db"));
        QByteArray data = session("<key name='label' value='one'/>");
        QCOMPARE(registry.importRegistry(data), 0);
        QCOMPARE(registry.pending(), QStringList());
    }
    OpenRegistry registry(scratch.file("registry.db"));
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 one"));
}

void RegistryXmlTest::importSetsWhatItListsAndLeavesTheRest()
{
    OpenRegistry registry;
    registry.addSession(kSession, "one");
    registry.addSession(kRdp + "/" + kSecond, "two");
    QCOMPARE(registry.set(kSession + "/address", "host"), 0);
    QCOMPARE(registry.set(kSession + "/autostart", "on"), 0);
    QCOMPARE(registry.commit(kSession), 0);

    QByteArray data = session("<key name='label'/><key name='autostart' value='off'/>");
    QCOMPARE(registry.importRegistry(data), 0);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("3 "));
    QCOMPARE(registry.answer(kSession + "/autostart"), QString::fromLatin1("2 off"));
    QCOMPARE(registry.answer(kSession + "/address"), QString::fromLatin1("2 host"));
    QCOMPARE(registry.answer(kRdp + "/" + kSecond + "/label"), QString::fromLatin1("2 two"));
}

void RegistryXmlTest::importTakesTheLaterOfTwo()
{
    OpenRegistry registry;
    QByteArray data = session("<key name='label' value='one'/><key name='label' value='two'/>");
    QCOMPARE(registry.importRegistry(data), 0);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 two"));
    data = session("<key name='label' value='three'/><key name='label'/>");
    QCOMPARE(registry.importRegistry(data), 0);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("3 "));
}

void RegistryXmlTest::importNamesANewSessionTwice()
{
    TestDirectory scratch;
    {
        OpenRegistry registry(scratch.file("registry.db"));
        QByteArray const rdp = "<dir name='ConnectionType'><dir name='rdesktop'>"
                               "<dir name='connections'><dir name='"
            + kFirst.toLatin1() + "'>%</dir></dir></dir></dir>";
        QByteArray const label = QByteArray(rdp).replace("%", "<key name='label' value='one'/>");
        QByteArray const address = QByteArray(rdp).replace("%", "<key name='address' value='a'/>");
        // In two directories of one name, and twice in one directory.
        QByteArray data = "<registry><dir name='root'>" + label + "</dir><dir name='root'>"
            + address + address + "</dir></registry>";
        QCOMPARE(registry.importRegistry(data), 0);
        QCOMPARE(registry.answers(kRdp), QStringList() << "0 " + kSession);
        registry.addSession(kRdp + "/" + kSecond, "two");
    }
    OpenRegistry registry(scratch.file("registry.db"));
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 one"));
    QCOMPARE(registry.answer(kSession + "/address"), QString::fromLatin1("2 a"));
    QCOMPARE(registry.answers(kRdp),
             QStringList() << "0 " + kSession << "0 " + kRdp + "/" + kSecond);
}

void RegistryXmlTest::importSettlesWhatWasPending()
{
    OpenRegistry registry;
    QCOMPARE(registry.create(kSession), 0);
    QCOMPARE(registry.set(kLabel, "pending"), 0);
    QCOMPARE(registry.set(kSession + "/address", "pending"), 0);
    QCOMPARE(registry.set(kUsb, "0"), 0);

    QByteArray data = session("<key name='label' value='imported'/>");
    QCOMPARE(registry.importRegistry(data), 0);
    QCOMPARE(registry.pending(),
             QStringList() << "0 " + kSession + "/address"
                           << "0 " + kUsb);
    QCOMPARE(registry.commit("root"), 0);
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 imported"));
    QCOMPARE(registry.answer(kSession + "/address"), QString::fromLatin1("2 pending"));
}

void RegistryXmlTest::importBringsBackADeletedSession()
{
    OpenRegistry registry;
    registry.addSession(kSession, "one");
    QCOMPARE(registry.del(kSession), 0);
    QByteArray data = session("");
    QCOMPARE(registry.importRegistry(data), 0);
    QCOMPARE(registry.pending(), QStringList());
    QCOMPARE(registry.answer(kLabel), QString::fromLatin1("2 one"));
}

void RegistryXmlTest::refusedImportChangesNothing_data()
{
    QTest::addColumn<QByteArray>("faulty");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no XML") << QByteArray("label=one");
    QTest::newRow("random bytes") << QByteArray("\x00\xff\xfe\x13", 4);
    QTest::newRow("cut off") << session("<key name='label' value='x'/>").left(150);
    QTest::newRow("another document") << QByteArray("<html/>");
    QTest::newRow("unknown key") << session("<key name='label' value='x'/><key name='more'/>");
    QTest::newRow("unknown directory") << inRoot("<dir name='more'/>");
    QTest::newRow("unknown root") << QByteArray("<registry><dir name='boot'/></registry>");
    QTest::newRow("temporary keys")
        << QByteArray("<registry><dir name='tmp'><key name='a' value='1'/></dir></registry>");
    QTest::newRow("value outside a directory")
        << QByteArray("<registry><key name='root' value='1'/></registry>");
    QTest::newRow("value that breaks its type") << inRoot(usb("value='2'"));
    QTest::newRow("value that breaks its regular expression") << inRoot(
        "<dir name='ConnectionType'><dir name='ica'><dir name='connections'><dir name='"
        + kFirst.toLatin1() + "'><key name='proxyPort' value='0'/></dir></dir></dir></dir>");
    QTest::newRow("template") << inRdp("<dir name='{UUID}'/>");
    QTest::newRow("directory as a key") << inRoot("<key name='USB' value='1'/>");
    QTest::newRow("key as a directory") << session("<dir name='label'/>");
    QTest::newRow("slashes in a name") << inRoot("<dir name='USB/root'/>");
    QTest::newRow("session that is no UUID") << inRdp("<dir name='first'/>");
    QTest::newRow("encoding that is none")
        << session("<key name='label' value='YQA=' encoding='hex'/>");
    QTest::newRow("encoded value that is cut off")
        << session("<key name='label' value='YQA' encoding='base64'/>");
    QTest::newRow("encoded value of an odd length")
        << session("<key name='label' value='YQ==' encoding='base64'/>");
    QTest::newRow("encoding without a value") << session("<key name='label' encoding='base64'/>");
    QTest::newRow("entities") << QByteArray("<!DOCTYPE r [<!ENTITY a 'b'>]><registry/>");
    QTest::newRow("500 000 directories")
        << "<registry>" + QByteArray("<dir name='root'>").repeated(500000);
}

void RegistryXmlTest::refusedImportChangesNothing()
{
    QFETCH(QByteArray, faulty);

    OpenRegistry registry;
    registry.addSession(kSession, "one");
    QCOMPARE(registry.set(kLabel, "pending"), 0);
    QByteArray before;
    QCOMPARE(registry.exportRegistry("root", before), 0);

    // A document that begins well and ends with the fault.
    QByteArray data = faulty;
    int const begin = data.indexOf("<dir name='root'>");
    if (begin > 0)
        data.insert(begin, "<dir name='root'>" + usb("value='0'") + "</dir>");
    QVERIFY(registry.importRegistry(data) != 0);
    QByteArray after;
    QCOMPARE(registry.exportRegistry("root", after), 0);
    QCOMPARE(after, before);
    QCOMPARE(registry.pending(), QStringList() << "0 " + kLabel);
}

void RegistryXmlTest::importWithoutADatabaseChangesNothing()
{
    RegistryHost registry;
    QString error;
    QVERIFY2(registry.loadDefaults(DEFAULTS_DIR, error), qPrintable(error));
    QByteArray data = session("<key name='label' value='one'/>");
    QVERIFY(registry.importRegistry(data) != 0);
    QVERIFY(registry.contains(kSession) != 0);
}

void RegistryXmlTest::largeExport()
{
    int const sessions = 10000;
    QString const name = "{11111111-1111-4111-8111-%1}";
    OpenRegistry source;
    for (int i = 0; i < sessions; ++i)
        QCOMPARE(source.create(kRdp + "/" + name.arg(i, 12, 16, QLatin1Char('0'))), 0);
    QCOMPARE(source.commit("root"), 0);
    QByteArray data;
    QCOMPARE(source.exportRegistry("root", data), 0);

    OpenRegistry target;
    QCOMPARE(target.importRegistry(data), 0);
    QCOMPARE(target.answers(kRdp).size(), sessions);
}

ZELVO_TEST(RegistryXmlTest)
#include "RegistryXmlTest.moc"
