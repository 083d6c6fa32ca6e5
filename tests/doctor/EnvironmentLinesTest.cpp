// SPDX-License-Identifier: MIT

#include "doctor/EnvironmentLines.h"

#include "support/TestDirectory.h"
#include "support/TestProgram.h"

#include <QtTest>

#include <initializer_list>

namespace {

EnvironmentLines read(QByteArray const& content)
{
    TestDirectory const directory;
    return readEnvironmentLines(directory.write("get.env", content));
}

} // namespace

class EnvironmentLinesTest : public QObject
{
    Q_OBJECT

private slots:
    void declarationsStandWhereTheyAre();
    void problemsOfLines_data();
    void problemsOfLines();
    void declarationAtTheLimitIsWhole();
    void unreadableNameDeclaresNothing();
    void missingFileHasNone();
};

void EnvironmentLinesTest::declarationsStandWhereTheyAre()
{
    EnvironmentLines const lines
        = read("A comment.\n\nALLOWED=root/USB/allowed\n  REG_SET=root/USB/read-only  \n");
    QCOMPARE(lines.declarations.size(), 2);
    QCOMPARE(lines.declarations.at(0).line, 3);
    QCOMPARE(lines.declarations.at(0).declaration.name, QString("ALLOWED"));
    QCOMPARE(lines.declarations.at(0).declaration.registryKey, QString("root/USB/allowed"));
    QVERIFY(!lines.declarations.at(0).isTarget());
    QCOMPARE(lines.declarations.at(1).line, 4);
    QCOMPARE(lines.declarations.at(1).declaration.registryKey, QString("root/USB/read-only"));
    QVERIFY(lines.declarations.at(1).isTarget());
}

void EnvironmentLinesTest::problemsOfLines_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("problems");

    QStringList const none;
    QString const ignored("the line is ignored: there is no \"=\" in it");
    QString const tooLong(
        "the line is too long: what stands behind its first 1023 bytes is read as "
        "a line of its own");
    QByteArray const declaration("A=root/a\n");
    QTest::newRow("a declaration") << declaration << none;
    QTest::newRow("no newline at the end") << QByteArray("A=root/a") << none;
    QTest::newRow("a comment") << QByteArray("Reads root/a and root/b.\n") << none;
    QTest::newRow("a comment of one word") << QByteArray("Nothing.\n") << none;
    QTest::newRow("empty file") << QByteArray() << none;
    QTest::newRow("nothing before the =") << declaration
            + "=root/a\n" << QStringList("2: the line is ignored: no name stands before its \"=\"");
    QTest::newRow("a blank for the =") << QByteArray("A root/a\n") << QStringList("1: " + ignored);
    QTest::newRow("a colon for the =") << QByteArray("A: root/a\n") << QStringList("1: " + ignored);
    QTest::newRow("a key alone") << QByteArray("root/a\n") << QStringList("1: " + ignored);
    QTest::newRow("export, and a blank for the =")
        << QByteArray("export A root/a\n") << QStringList("1: " + ignored);
    QTest::newRow("blanks around the =")
        << QByteArray("A = root/a\n")
        << QStringList("1: no script can read a variable named \"A \"");
    QTest::newRow("export") << QByteArray("export A=root/a\n")
                            << QStringList("1: no script can read a variable named \"export A\"");
    QTest::newRow("what is no comment")
        << QByteArray("#A=root/a\n")
        << QStringList("1: no script can read a variable named \"#A\"");
    QTest::newRow("a digit first") << QByteArray("1A=root/a\n")
                                   << QStringList("1: no script can read a variable named \"1A\"");
    QTest::newRow("CRLF, told once")
        << QByteArray("A=root/a\r\nB=root/b\r\n")
        << QStringList("1: the line ends in CRLF; the CR is dropped here, but not in a script");
    QTest::newRow("a NUL") << QByteArray("A=root/a\0b\n", 11)
                           << QStringList("1: everything after the NUL byte is ignored");
    QTest::newRow("a long line") << QByteArray(1023, 'x') + "y\n" + declaration
                                 << QStringList("1: " + tooLong);
    QTest::newRow("a line behind a long one keeps its number")
        << QByteArray(1030, 'x') + "\nexport B=root/b\n"
        << (QStringList() << "1: " + tooLong
                          << "2: no script can read a variable named \"export B\"");
    // Its newline is read as a line of its own, in which nothing stands.
    QTest::newRow("a line of exactly what is read at once")
        << QByteArray(1023, 'x') + "\nexport B=root/b\n"
        << QStringList("2: no script can read a variable named \"export B\"");
    QTest::newRow("a line of exactly what is read at once, and blanks")
        << QByteArray(1023, 'x') + " \t\nexport B=root/b\n"
        << QStringList("2: no script can read a variable named \"export B\"");
    QTest::newRow("a last line of exactly what is read at once") << QByteArray(1023, 'x') << none;
    QTest::newRow("three lines in one")
        << QByteArray(2047, 'x') + "\nexport B=root/b\n"
        << (QStringList() << "1: " + tooLong << "1: " + tooLong
                          << "2: no script can read a variable named \"export B\"");
    QTest::newRow("CRLF and an unreadable name")
        << QByteArray("A=root/a\n=b\r\n")
        << (QStringList() << "2: the line ends in CRLF; the CR is dropped here, but not in a script"
                          << "2: the line is ignored: no name stands before its \"=\"");
    QTest::newRow("a temporary key for a registry key")
        << QByteArray("A tmp/a\n") << QStringList("1: " + ignored);
    QTest::newRow("a path that is no registry key") << QByteArray("A etc/a\n") << none;
    QTest::newRow("a comment that ends in a key") << QByteArray("See also root/a\n") << none;
    QTest::newRow("a name of all letters, digits and underscores")
        << QByteArray("_aZ09=root/a\n") << none;
    QTest::newRow("a line that just fits") << QByteArray(1022, 'x') + "\n" << none;
}

void EnvironmentLinesTest::problemsOfLines()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, problems);

    QStringList found;
    for (Problem const& problem : read(content).problems)
        found.append(QString::number(problem.line) + ": " + problem.message);
    QCOMPARE(found, problems);
}

void EnvironmentLinesTest::declarationAtTheLimitIsWhole()
{
    // What is read at once, without and with its newline.
    for (int const length : {1022, 1023}) {
        QByteArray const key = "root/" + QByteArray(length - 7, 'a');
        EnvironmentLines const lines = read("A=" + key + "\nB=root/b\n");
        QCOMPARE(lines.problems.size(), 0);
        QCOMPARE(lines.declarations.size(), 2);
        QCOMPARE(lines.declarations.at(0).declaration.registryKey, QString::fromLatin1(key));
        QCOMPARE(lines.declarations.at(1).line, 2);
    }
    EnvironmentLines const lines = read("A=root/" + QByteArray(1017, 'a') + "\nB=root/b\n");
    QCOMPARE(lines.problems.size(), 1);
    QCOMPARE(lines.declarations.at(0).declaration.registryKey.size(), 1021);
}

void EnvironmentLinesTest::unreadableNameDeclaresNothing()
{
    EnvironmentLines const lines = read("A B=root/a\n");
    QCOMPARE(lines.declarations.size(), 0);
    QCOMPARE(lines.problems.size(), 1);
    QCOMPARE(lines.problems.first().severity, Fault);
}

void EnvironmentLinesTest::missingFileHasNone()
{
    TestDirectory const directory;
    EnvironmentLines const lines = readEnvironmentLines(directory.file("get.env"));
    QVERIFY(lines.declarations.isEmpty());
    QVERIFY(lines.problems.isEmpty());
}

ZELVO_TEST(EnvironmentLinesTest)
#include "EnvironmentLinesTest.moc"
