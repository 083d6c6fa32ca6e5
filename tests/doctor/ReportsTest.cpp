// SPDX-License-Identifier: MIT

#include "doctor/Reports.h"

#include "support/TestProgram.h"

#include <QtTest>

class ReportsTest : public QObject
{
    Q_OBJECT

private slots:
    void quotedValue_data();
    void quotedValue();
    void lineOfAFinding_data();
    void lineOfAFinding();
    void documentKeepsItsTable();
};

void ReportsTest::quotedValue_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");

    QTest::newRow("empty") << ""
                           << "\"\"";
    QTest::newRow("null") << QString() << "\"\"";
    QTest::newRow("a word") << "word"
                            << "\"word\"";
    QTest::newRow("not ASCII") << QString::fromUtf8("gr\303\274n")
                               << QString::fromUtf8("\"gr\303\274n\"");
    QTest::newRow("a quote and a backslash") << "a\"b\\"
                                             << "\"a\\\"b\\\\\"";
    QTest::newRow("a newline") << "a\nb\n"
                               << "\"a\\nb\\n\"";
    QTest::newRow("an escape sequence") << "\033[31m"
                                        << "\"\\x1b[31m\"";
    QTest::newRow("a control character of Latin-1") << QString(QChar(0x9b)) << "\"\\x9b\"";
}

void ReportsTest::quotedValue()
{
    QFETCH(QString, value);
    QFETCH(QString, expected);

    QCOMPARE(quoted(value), expected);
}

void ReportsTest::lineOfAFinding_data()
{
    QTest::addColumn<bool>("isNote");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("hasColours");
    QTest::addColumn<QString>("expected");

    QTest::newRow("of a line and a key") << false << 3 << "a/b" << false << "/f:3: wrong (a/b)\n";
    QTest::newRow("of a file") << false << 0 << "a/b" << false << "/f: wrong (a/b)\n";
    QTest::newRow("of no key") << false << 0 << "" << false << "/f: wrong\n";
    QTest::newRow("in colour") << false << 3 << "a/b" << true
                               << "\033[31m/f:3\033[0m: wrong (a/b)\n";
    QTest::newRow("a note") << true << 3 << "a/b" << false << "/f:3: note: wrong (a/b)\n";
    QTest::newRow("a note in colour")
        << true << 0 << "" << true << "\033[1m/f\033[0m: note: wrong\n";
}

void ReportsTest::lineOfAFinding()
{
    QFETCH(bool, isNote);
    QFETCH(int, line);
    QFETCH(QString, key);
    QFETCH(bool, hasColours);
    QFETCH(QString, expected);

    Finding const finding = {isNote ? Note : Fault, "/f", line, key, "wrong"};
    QCOMPARE(textOf(finding, Style(hasColours)), expected);
}

void ReportsTest::documentKeepsItsTable()
{
    BackEnd const registry = {"registry", nullptr, "the registry"};
    MapRow const row = {"zelvo-view/area/key",
                        ValueKey,
                        REG_TYPE_STRING,
                        "a|b",
                        &registry,
                        QStringList("root/key"),
                        QStringList() << "get"
                                      << "set"};
    QString const document = markdownOf(QList<MapRow>() << row);
    QVERIFY(document.contains("\n## area\n"));
    QVERIFY(document.contains("\n| `area/key` | string | `a\\|b` | `root/key` | get, set |\n"));
}

ZELVO_TEST(ReportsTest)
#include "ReportsTest.moc"
