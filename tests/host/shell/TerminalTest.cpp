// SPDX-License-Identifier: MIT

#include "shell/Terminal.h"

#include "support/TestProgram.h"

#include <QtTest>

namespace {

QString inBrackets(QString const& name)
{
    return "<" + name + ">";
}

QString plain(QString const& name)
{
    return name;
}

} // namespace

class TerminalTest : public QObject
{
    Q_OBJECT

private slots:
    void columns_data();
    void columns();
    void styleDoesNotCountAsWidth();
};

void TerminalTest::columns_data()
{
    QTest::addColumn<QString>("names");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("expected");

    QTest::newRow("no names") << "" << 80 << "";
    QTest::newRow("one name") << "one" << 80 << "one\n";
    QTest::newRow("one that is too long") << "abcdefgh" << 4 << "abcdefgh\n";
    QTest::newRow("all in a row") << "a b c" << 7 << "a  b  c\n";
    QTest::newRow("one character too few: two rows, sorted downwards")
        << "a b c" << 6 << "a  c\nb\n";
    QTest::newRow("columns as wide as their longest") << "a bbb c d" << 8 << "a    c\nbbb  d\n";
    QTest::newRow("one column") << "aaa bbb" << 5 << "aaa\nbbb\n";
    QTest::newRow("too narrow for any") << "aaa bbb" << 1 << "aaa\nbbb\n";
}

void TerminalTest::columns()
{
    QFETCH(QString, names);
    QFETCH(int, width);
    QFETCH(QString, expected);

    QStringList words = names.split(" ");
    words.removeAll(QString());
    QCOMPARE(columnsOf(words, width, plain), expected);
}

void TerminalTest::styleDoesNotCountAsWidth()
{
    QStringList const names = QStringList() << "a"
                                            << "b"
                                            << "c";
    QCOMPARE(columnsOf(names, 7, inBrackets), QString("<a>  <b>  <c>\n"));
}

ZELVO_TEST(TerminalTest)
#include "TerminalTest.moc"
