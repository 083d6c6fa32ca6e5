// SPDX-License-Identifier: MIT

#include "registry/DefaultSettings.h"

#include "support/TestDirectory.h"
#include "support/TestProgram.h"

#include <QScopedPointer>
#include <QStringList>
#include <QtTest>

class DefaultSettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void directoryAnswersItsChildrenInDocumentOrder();
    void valueAnswersItself();
    void valueWithoutAttributesIsAnEmptyStringWithoutExpression();
    void unknownKey_data();
    void unknownKey();
    void severalFilesDeclareOneDirectory();
    void firstComponentMayBeEmpty();
    void faultyFile_data();
    void faultyFile();
    void nothingOfADirectoryWithOneFaultyFileIsAdded();
    void directoryWithoutFilesIsRefused();
    void furtherDirectoryLeavesTheFormerAsTheyWere();
    void emptyExpressionIsNone();
    void deepDocumentIsRefused();
    void shippedRegistryKeys_data();
    void shippedRegistryKeys();
    void shippedViewKeysAreDeclaredInTheOrderOfTheirCommit_data();
    void shippedViewKeysAreDeclaredInTheOrderOfTheirCommit();
};

namespace {

QByteArray const kSample
    = "<registry><dir name='root'>"
      "<key name='zeta' type='number' default='7' regexp='[0-9]+'/>"
      "<dir name='sessions'><dir name='{uuid}'><key name='name' default='x'/></dir></dir>"
      "<key name='alpha'/>"
      "</dir></registry>";

// Names of the nodes, directories with a "/" behind.
QStringList names(Reg::Registry& registry, char const* key)
{
    Reg::NodeSet nodes;
    if (registry.query(QLatin1String(key), nodes, QString()) != 0)
        return QStringList(QLatin1String("unknown"));
    QStringList names;
    QList<Reg::Node*> const list = nodes.list();
    for (Reg::Node const* node : list) {
        bool const isEntry = dynamic_cast<Reg::Entry const*>(node);
        names.append(node->name() + QLatin1String(isEntry ? "" : "/"));
    }
    return names;
}

void loadText(DefaultSettings& settings, QByteArray const& document)
{
    TestDirectory directory;
    directory.write(QLatin1String("sample.xml"), document);
    QString error;
    if (!settings.load(directory.path(), error))
        QFAIL(qPrintable(error));
}

} // namespace

void DefaultSettingsTest::directoryAnswersItsChildrenInDocumentOrder()
{
    DefaultSettings settings;
    loadText(settings, kSample);

    QCOMPARE(names(settings, "root"),
             QStringList() << "zeta"
                           << "sessions/"
                           << "alpha");
    QCOMPARE(names(settings, "root/sessions"), QStringList() << "{uuid}/");
    QCOMPARE(names(settings, "root/sessions/{uuid}"), QStringList() << "name");
    Reg::NodeSet nodes;
    QCOMPARE(settings.query(QLatin1String("root/sessions"), nodes, QString()), 0);
    QCOMPARE(nodes.at(0)->absoluteName(), QString::fromLatin1("root/sessions/{uuid}"));
}

void DefaultSettingsTest::valueAnswersItself()
{
    DefaultSettings settings;
    loadText(settings, kSample);

    Reg::NodeSet nodes;
    QCOMPARE(settings.query(QLatin1String("root/zeta"), nodes, QString()), 0);
    QCOMPARE(nodes.size(), 1);
    Reg::Entry const* const entry = dynamic_cast<Reg::Entry const*>(nodes.at(0));
    QVERIFY(entry);
    QCOMPARE(entry->absoluteName(), QString::fromLatin1("root/zeta"));
    QCOMPARE(entry->value(), QString::fromLatin1("7"));
    QCOMPARE(entry->type(), REG_TYPE_NUMBER);
    QCOMPARE(entry->regExp(), QString::fromLatin1("[0-9]+"));
}

void DefaultSettingsTest::valueWithoutAttributesIsAnEmptyStringWithoutExpression()
{
    DefaultSettings settings;
    loadText(settings, kSample);

    Reg::NodeSet nodes;
    QCOMPARE(settings.query(QLatin1String("root/alpha"), nodes, QString()), 0);
    Reg::Entry const* const entry = dynamic_cast<Reg::Entry const*>(nodes.at(0));
    QVERIFY(entry);
    QCOMPARE(entry->type(), REG_TYPE_STRING);
    QVERIFY(entry->value().isEmpty());
    QVERIFY(!entry->value().isNull());
    QVERIFY(entry->regExp().isNull());
}

void DefaultSettingsTest::unknownKey_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("empty") << "";
    QTest::newRow("null") << QString();
    QTest::newRow("another word") << "root/beta";
    QTest::newRow("part of a name") << "root/alph";
    QTest::newRow("another case") << "ROOT/alpha";
    QTest::newRow("slash in front") << "/root/alpha";
    QTest::newRow("slash behind") << "root/alpha/";
    QTest::newRow("slash behind a directory") << "root/";
    QTest::newRow("doubled slash") << "root//alpha";
    QTest::newRow("below a value") << "root/alpha/more";
    QTest::newRow("NUL behind") << QString::fromLatin1("root/alpha\0", 11);
    QTest::newRow("a concrete session")
        << "root/sessions/{11111111-1111-4111-8111-111111111111}/name";
    QTest::newRow("500 000 components") << QString::fromLatin1("root/").repeated(500000);
    QTest::newRow("a megabyte") << QString(1024 * 1024, QLatin1Char('a'));
}

void DefaultSettingsTest::unknownKey()
{
    QFETCH(QString, key);

    DefaultSettings settings;
    loadText(settings, kSample);
    Reg::NodeSet nodes;
    QVERIFY(settings.query(key, nodes, QString()) != 0);
    QCOMPARE(nodes.size(), 0);
}

void DefaultSettingsTest::severalFilesDeclareOneDirectory()
{
    TestDirectory directory;
    directory.write("b.xml", "<registry><dir name='root'><key name='b'/></dir></registry>");
    directory.write("a.xml",
                    "<registry><dir name='root'><key name='z'/><dir name='d'>"
                    "<key name='1'/></dir></dir></registry>");
    directory.write("c.xml",
                    "<registry><dir name='root'><dir name='d'><key name='0'/></dir>"
                    "</dir></registry>");
    directory.write("ignored.txt", "no document at all");

    DefaultSettings settings;
    QString error;
    QVERIFY2(settings.load(directory.path(), error), qPrintable(error));
    QCOMPARE(names(settings, "root"),
             QStringList() << "z"
                           << "d/"
                           << "b");
    QCOMPARE(names(settings, "root/d"),
             QStringList() << "1"
                           << "0");
}

void DefaultSettingsTest::firstComponentMayBeEmpty()
{
    DefaultSettings settings;
    loadText(settings,
             "<registry><dir name=''><dir name='view'><key name='k'/></dir></dir>"
             "</registry>");

    QCOMPARE(names(settings, "/view"), QStringList() << "k");
    QCOMPARE(names(settings, "/view/k"), QStringList() << "k");
    QCOMPARE(names(settings, "view/k"), QStringList() << "unknown");
}

void DefaultSettingsTest::faultyFile_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("reason");

    QTest::newRow("empty file") << QByteArray() << "line 1";
    QTest::newRow("no XML") << QByteArray("\x89PNG\r\n\x1a\n") << "line 1";
    QTest::newRow("cut off") << QByteArray("<registry>\n<dir name='root'>\n") << "line 3";
    QTest::newRow("another root element") << QByteArray("<html/>") << "no <registry>";
    QTest::newRow("unknown element")
        << QByteArray("<registry><dir name='r'><value/></dir></registry>") << "neither <dir>";
    QTest::newRow("unknown attribute")
        << QByteArray("<registry><dir name='r' type='x'/></registry>") << "\"type\"";
    QTest::newRow("no name") << QByteArray("<registry>\n<dir/></registry>") << "line 2";
    QTest::newRow("empty name below the first level")
        << QByteArray("<registry><dir name='r'><dir name=''/></dir></registry>") << "no name";
    QTest::newRow("slash in a name")
        << QByteArray("<registry><dir name='a/b'/></registry>") << "no name";
    QTest::newRow("text") << QByteArray("<registry>text</registry>") << "text between";
    QTest::newRow("element in a key")
        << QByteArray("<registry><key name='a'><key name='b'/></key></registry>") << "inside";
    QTest::newRow("unknown type") << QByteArray("<registry><key name='a' type='int'/></registry>")
                                  << "no type";
    QTest::newRow("default that breaks its type")
        << QByteArray("<registry><key name='a' type='bool' default='2'/></registry>") << "fit";
    QTest::newRow("broken regular expression")
        << QByteArray("<registry><key name='a' regexp='('/></registry>") << "no regular";
    QTest::newRow("key declared twice")
        << QByteArray("<registry><key name='a'/><key name='a'/></registry>") << "already";
    QTest::newRow("key and directory of one name")
        << QByteArray("<registry><key name='a'/><dir name='a'/></registry>") << "already";
    QTest::newRow("value in default settings")
        << QByteArray("<registry><key name='a' value='1'/></registry>") << "no value";
    QTest::newRow("two templates in one directory")
        << QByteArray("<registry><dir name='{uuid}'/><dir name='{UUID}'/></registry>")
        << "second template";
    QTest::newRow("placeholder as a key")
        << QByteArray("<registry><key name='{uuid}'/></registry>") << "no name";
    QTest::newRow("document type")
        << QByteArray("<!DOCTYPE registry [<!ENTITY a 'aa'>]><registry/>") << "document type";
    QTest::newRow("namespace") << QByteArray("<registry><dir xmlns='urn:a' name='r'/></registry>")
                               << "xmlns";
}

void DefaultSettingsTest::faultyFile()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, reason);

    TestDirectory directory;
    directory.write(QLatin1String("faulty.xml"), document);
    DefaultSettings settings;
    QString error;
    QVERIFY(!settings.load(directory.path(), error));
    QVERIFY2(error.startsWith(directory.file("faulty.xml: line ")), qPrintable(error));
    QVERIFY2(error.contains(reason), qPrintable(error));
}

void DefaultSettingsTest::nothingOfADirectoryWithOneFaultyFileIsAdded()
{
    TestDirectory directory;
    directory.write("a.xml", "<registry><dir name='root'><key name='more'/></dir></registry>");
    directory.write("b.xml", "<registry>");
    DefaultSettings settings;
    loadText(settings, kSample);

    QString error;
    QVERIFY(!settings.load(directory.path(), error));
    QCOMPARE(names(settings, "root"),
             QStringList() << "zeta"
                           << "sessions/"
                           << "alpha");
}

void DefaultSettingsTest::directoryWithoutFilesIsRefused()
{
    TestDirectory directory;
    DefaultSettings settings;
    QString error;
    QVERIFY(!settings.load(directory.path(), error));
    QVERIFY(error.contains(directory.path()));
    QVERIFY(!settings.load(directory.file("missing"), error));
    QVERIFY(error.contains("missing"));
}

void DefaultSettingsTest::furtherDirectoryLeavesTheFormerAsTheyWere()
{
    DefaultSettings settings;
    loadText(settings, kSample);
    loadText(settings, "<registry><dir name='root'><key name='beta'/></dir></registry>");
    QCOMPARE(names(settings, "root"),
             QStringList() << "zeta"
                           << "sessions/"
                           << "alpha"
                           << "beta");
    Reg::NodeSet nodes;
    QCOMPARE(settings.query(QLatin1String("root/zeta"), nodes, QString()), 0);
    Reg::Entry const* const entry = dynamic_cast<Reg::Entry const*>(nodes.at(0));
    QVERIFY(entry);
    QCOMPARE(entry->value(), QString::fromLatin1("7"));
    QCOMPARE(entry->type(), REG_TYPE_NUMBER);
    QCOMPARE(entry->regExp(), QString::fromLatin1("[0-9]+"));
    QCOMPARE(names(settings, "root/sessions/{uuid}"), QStringList() << "name");
}

void DefaultSettingsTest::emptyExpressionIsNone()
{
    DefaultSettings settings;
    loadText(settings, "<registry><dir name='root'><key name='k' regexp=''/></dir></registry>");
    Reg::NodeSet nodes;
    QCOMPARE(settings.query(QLatin1String("root/k"), nodes, QString()), 0);
    Reg::Entry const* const entry = dynamic_cast<Reg::Entry const*>(nodes.at(0));
    QVERIFY(entry && entry->regExp().isNull());
}

void DefaultSettingsTest::deepDocumentIsRefused()
{
    TestDirectory directory;
    directory.write("deep.xml", "<registry>" + QByteArray("<dir name='d'>").repeated(500000));
    DefaultSettings settings;
    QString error;
    QVERIFY(!settings.load(directory.path(), error));
    QVERIFY2(error.contains("too deep"), qPrintable(error));

    int const deepest = 63;
    QByteArray const begin = QByteArray("<dir name='d'>").repeated(deepest);
    QByteArray const end = QByteArray("</dir>").repeated(deepest);
    directory.write("deep.xml", "<registry>" + begin + end + "</registry>");
    QVERIFY2(settings.load(directory.path(), error), qPrintable(error));
    directory.write("deep.xml", "<registry>" + begin + "<dir name='d'/>" + end + "</registry>");
    QVERIFY(!settings.load(directory.path(), error));
}

void DefaultSettingsTest::shippedRegistryKeys_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("value");

    QString const sessions = QLatin1String("root/ConnectionType/%1/connections/{UUID}/%2");
    char const* const sessionKeys[][2] = {
        {"iceweasel", "label"},  {"iceweasel", "address"}, {"ica", "label"},
        {"ica", "address"},      {"ica", "proxyAddress"},  {"rdesktop", "label"},
        {"rdesktop", "address"}, {"vexlink", "label"},     {"vexlink", "ttsName"},
        {"view", "label"},       {"view", "server"},       {"pnagent", "label"},
        {"pnagent", "address"},
    };
    for (char const* const* row : sessionKeys) {
        QString const key = sessions.arg(row[0], row[1]);
        QTest::newRow(key.toLatin1().constData()) << key << int(REG_TYPE_STRING) << "";
    }
    char const* const kinds[] = {"iceweasel", "ica", "rdesktop", "vexlink", "view", "pnagent"};
    for (char const* kind : kinds) {
        QString const key = sessions.arg(kind, "autostart");
        QTest::newRow(key.toLatin1().constData()) << key << int(REG_TYPE_BOOL) << "0";
    }
    QTest::newRow("proxy port") << "root/ConnectionType/ica/connections/{UUID}/proxyPort"
                                << int(REG_TYPE_NUMBER) << "";
    QTest::newRow("USB") << "root/USB/root/mass-storage/allowed" << int(REG_TYPE_BOOL) << "1";
    QTest::newRow("USB, read-only")
        << "root/USB/root/mass-storage/read-only" << int(REG_TYPE_BOOL) << "0";
    QTest::newRow("VNC server") << "root/vncserver/coreSettings/enableVncShadow"
                                << int(REG_TYPE_BOOL) << "0";
    QTest::newRow("auto-update") << "root/auto-update/enableOnBootup" << int(REG_TYPE_BOOL) << "1";
    QTest::newRow("profile label")
        << "root/Display/Profiles/{UUID}/label" << int(REG_TYPE_STRING) << "";
    QTest::newRow("profile width")
        << "root/Display/Profiles/{UUID}/width" << int(REG_TYPE_NUMBER) << "0";
    QTest::newRow("profile height")
        << "root/Display/Profiles/{UUID}/height" << int(REG_TYPE_NUMBER) << "0";
    QTest::newRow("profile refresh")
        << "root/Display/Profiles/{UUID}/refresh" << int(REG_TYPE_NUMBER) << "0";
    QTest::newRow("profile depth")
        << "root/Display/Profiles/{UUID}/depth" << int(REG_TYPE_NUMBER) << "24";
    QTest::newRow("primary profile")
        << "root/Display/Configuration/primaryprofile" << int(REG_TYPE_STRING) << "";
    QTest::newRow("secondary profile")
        << "root/Display/Configuration/secondaryprofile" << int(REG_TYPE_STRING) << "<None>";
    QTest::newRow("secondary mode")
        << "root/Display/Configuration/secondarymode" << int(REG_TYPE_NUMBER) << "0";
    QTest::newRow("swap state") << "root/Display/Configuration/swapstate" << int(REG_TYPE_NUMBER)
                                << "0";
}

void DefaultSettingsTest::shippedRegistryKeys()
{
    QFETCH(QString, key);
    QFETCH(int, type);
    QFETCH(QString, value);

    DefaultSettings settings;
    QString error;
    QVERIFY2(settings.load(QLatin1String(DEFAULTS_DIR), error), qPrintable(error));
    Reg::NodeSet nodes;
    QCOMPARE(settings.query(key, nodes, QString()), 0);
    Reg::Entry const* const entry = dynamic_cast<Reg::Entry const*>(nodes.at(0));
    QVERIFY(entry);
    QCOMPARE(entry->absoluteName(), key);
    QCOMPARE(int(entry->type()), type);
    QCOMPARE(entry->value(), value);
}

void DefaultSettingsTest::shippedViewKeysAreDeclaredInTheOrderOfTheirCommit_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("children");

    QTest::newRow("terminal session, the six that its commit needs")
        << QByteArray("root/zelvo-view/vexlink/sessions/{uuid}")
        << "name emulation transport local_port address port";
    QTest::newRow("wireless, security type before passphrase")
        << QByteArray("root/zelvo-view/wireless") << "security passphrase";
}

void DefaultSettingsTest::shippedViewKeysAreDeclaredInTheOrderOfTheirCommit()
{
    QFETCH(QByteArray, key);
    QFETCH(QString, children);

    DefaultSettings settings;
    QString error;
    QVERIFY2(settings.load(QLatin1String(DEFAULTS_DIR), error), qPrintable(error));
    QStringList const expected = children.split(QLatin1Char(' '));
    QStringList found;
    for (QString const& child : names(settings, key.constData())) {
        if (expected.contains(child))
            found.append(child);
    }
    QCOMPARE(found, expected);
}

ZELVO_TEST(DefaultSettingsTest)
#include "DefaultSettingsTest.moc"
