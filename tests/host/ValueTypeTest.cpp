// SPDX-License-Identifier: MIT

#include "registry/ValueType.h"

#include "support/TestProgram.h"

#include <QtTest>

class ValueTypeTest : public QObject
{
    Q_OBJECT

private slots:
    void word_data();
    void word();
    void unknownWordLeavesTheTypeAlone();
    void admits_data();
    void admits();
    void boolWords_data();
    void boolWords();
};

void ValueTypeTest::word_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("word");

    QTest::newRow("string") << 0 << "string";
    QTest::newRow("rc4") << 1 << "rc4";
    QTest::newRow("uuid") << 2 << "uuid";
    QTest::newRow("char") << 3 << "char";
    QTest::newRow("ipv4") << 4 << "ipv4";
    QTest::newRow("number") << 5 << "number";
    QTest::newRow("float") << 6 << "float";
    QTest::newRow("date") << 7 << "date";
    QTest::newRow("bool") << 8 << "bool";
}

void ValueTypeTest::word()
{
    QFETCH(int, type);
    QFETCH(QString, word);

    QCOMPARE(typeWord(static_cast<_RegEntryType>(type)), word);
    _RegEntryType found = type == 0 ? REG_TYPE_BOOL : REG_TYPE_STRING;
    QVERIFY(typeFromWord(word, found));
    QCOMPARE(static_cast<int>(found), type);
}

void ValueTypeTest::unknownWordLeavesTheTypeAlone()
{
    _RegEntryType type = REG_TYPE_DATE;
    QVERIFY(!typeFromWord(QLatin1String("integer"), type));
    QVERIFY(!typeFromWord(QLatin1String("BOOL"), type));
    QVERIFY(!typeFromWord(QString(), type));
    QCOMPARE(type, REG_TYPE_DATE);
}

void ValueTypeTest::admits_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("expected");

    QString const withNul = QString::fromLatin1("1\0", 2);

    QTest::newRow("string, empty") << int(REG_TYPE_STRING) << "" << true;
    QTest::newRow("string, with NUL") << int(REG_TYPE_STRING) << withNul << true;
    QTest::newRow("rc4, anything") << int(REG_TYPE_RC4) << "\x01 any" << true;

    QTest::newRow("uuid in braces")
        << int(REG_TYPE_UUID) << "{11111111-1111-4111-8111-111111111111}" << true;
    QTest::newRow("uuid without braces")
        << int(REG_TYPE_UUID) << "11111111-1111-4111-8111-111111111111" << true;
    QTest::newRow("uuid, nil") << int(REG_TYPE_UUID) << "{00000000-0000-0000-0000-000000000000}"
                               << false;
    QTest::newRow("uuid, a word") << int(REG_TYPE_UUID) << "uuid" << false;
    QTest::newRow("uuid, empty: none set") << int(REG_TYPE_UUID) << "" << true;

    QTest::newRow("char, one") << int(REG_TYPE_CHAR) << "x" << true;
    QTest::newRow("char, a surrogate pair")
        << int(REG_TYPE_CHAR) << QString::fromUtf8("\xf0\x9f\x98\x80") << true;
    QTest::newRow("char, two") << int(REG_TYPE_CHAR) << "xy" << false;
    QTest::newRow("char, empty") << int(REG_TYPE_CHAR) << "" << false;

    QTest::newRow("ipv4") << int(REG_TYPE_IPV4) << "192.168.0.255" << true;
    QTest::newRow("ipv4, zeros") << int(REG_TYPE_IPV4) << "0.0.0.0" << true;
    QTest::newRow("ipv4, octet of 256") << int(REG_TYPE_IPV4) << "192.168.0.256" << false;
    QTest::newRow("ipv4, three octets") << int(REG_TYPE_IPV4) << "10.0.1" << false;
    QTest::newRow("ipv4, five octets") << int(REG_TYPE_IPV4) << "10.0.0.0.1" << false;
    QTest::newRow("ipv4, empty octet") << int(REG_TYPE_IPV4) << "10..0.1" << false;
    QTest::newRow("ipv4, leading zero") << int(REG_TYPE_IPV4) << "10.0.0.01" << false;
    QTest::newRow("ipv4, blank in front") << int(REG_TYPE_IPV4) << " 10.0.0.1" << false;
    QTest::newRow("ipv4, sign") << int(REG_TYPE_IPV4) << "10.0.0.-1" << false;
    QTest::newRow("ipv4, host name") << int(REG_TYPE_IPV4) << "localhost" << false;
    QTest::newRow("ipv4, empty: none set") << int(REG_TYPE_IPV4) << "" << true;

    QTest::newRow("number") << int(REG_TYPE_NUMBER) << "3389" << true;
    QTest::newRow("number, negative") << int(REG_TYPE_NUMBER) << "-1" << true;
    QTest::newRow("number, with a plus") << int(REG_TYPE_NUMBER) << "+1" << true;
    QTest::newRow("number, largest") << int(REG_TYPE_NUMBER) << "9223372036854775807" << true;
    QTest::newRow("number, too large") << int(REG_TYPE_NUMBER) << "9223372036854775808" << false;
    QTest::newRow("number, empty") << int(REG_TYPE_NUMBER) << "" << false;
    QTest::newRow("number, blank behind") << int(REG_TYPE_NUMBER) << "1 " << false;
    QTest::newRow("number, hexadecimal") << int(REG_TYPE_NUMBER) << "0x10" << false;
    QTest::newRow("number, fraction") << int(REG_TYPE_NUMBER) << "1.5" << false;
    QTest::newRow("number, sign only") << int(REG_TYPE_NUMBER) << "-" << false;
    QTest::newRow("number, NUL behind") << int(REG_TYPE_NUMBER) << withNul << false;
    QTest::newRow("number, digits of another script")
        << int(REG_TYPE_NUMBER) << QString::fromUtf8("\xd9\xa1") << false;

    QTest::newRow("float") << int(REG_TYPE_FLOAT) << "-1.5e3" << true;
    QTest::newRow("float, integer") << int(REG_TYPE_FLOAT) << "2" << true;
    QTest::newRow("float, infinite") << int(REG_TYPE_FLOAT) << "inf" << false;
    QTest::newRow("float, beyond the range") << int(REG_TYPE_FLOAT) << "1e999" << false;
    QTest::newRow("float, comma") << int(REG_TYPE_FLOAT) << "1,5" << false;
    QTest::newRow("float, empty") << int(REG_TYPE_FLOAT) << "" << false;

    QTest::newRow("date") << int(REG_TYPE_DATE) << "2011-02-28" << true;
    QTest::newRow("date, leap day") << int(REG_TYPE_DATE) << "2012-02-29" << true;
    QTest::newRow("date, no such day") << int(REG_TYPE_DATE) << "2011-02-29" << false;
    QTest::newRow("date, short") << int(REG_TYPE_DATE) << "2011-2-28" << false;
    QTest::newRow("date, with time") << int(REG_TYPE_DATE) << "2011-02-28T10:00" << false;
    QTest::newRow("date, empty: none set") << int(REG_TYPE_DATE) << "" << true;
}

void ValueTypeTest::admits()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    QFETCH(bool, expected);

    QCOMPARE(typeAdmits(static_cast<_RegEntryType>(type), text), expected);
}

void ValueTypeTest::boolWords_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("expected");

    QTest::newRow("yes") << "yes" << true;
    QTest::newRow("true") << "true" << true;
    QTest::newRow("on") << "on" << true;
    QTest::newRow("1") << "1" << true;
    QTest::newRow("ok") << "ok" << true;
    QTest::newRow("no") << "no" << true;
    QTest::newRow("false") << "false" << true;
    QTest::newRow("off") << "off" << true;
    QTest::newRow("0") << "0" << true;
    QTest::newRow("ko") << "ko" << true;
    QTest::newRow("capitals") << "TRUE" << false;
    QTest::newRow("another number") << "2" << false;
    QTest::newRow("blank behind") << "yes " << false;
    QTest::newRow("empty") << "" << false;
}

void ValueTypeTest::boolWords()
{
    QFETCH(QString, text);
    QFETCH(bool, expected);

    QCOMPARE(typeAdmits(REG_TYPE_BOOL, text), expected);
}

ZELVO_TEST(ValueTypeTest)
#include "ValueTypeTest.moc"
