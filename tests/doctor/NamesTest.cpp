// SPDX-License-Identifier: MIT

#include "doctor/Names.h"

#include "support/TestProgram.h"

#include <QtTest>

class NamesTest : public QObject
{
    Q_OBJECT

private slots:
    void likelyMeantOf_data();
    void likelyMeantOf();
};

void NamesTest::likelyMeantOf_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("meant");

    QString const none;
    QTest::newRow("a known name is meant as it stands") << "get.sh" << none;
    QTest::newRow("other case") << "Get.sh"
                                << "get.sh";
    QTest::newRow("other case of all letters") << "ISVISIBLE.SH"
                                               << "isVisible.sh";
    QTest::newRow("an underscore") << "is_visible.sh"
                                   << "isVisible.sh";
    QTest::newRow("a blank behind it") << "get.sh "
                                       << "get.sh";
    QTest::newRow("a dot missing") << "getsh"
                                   << "get.sh";
    QTest::newRow("two letters swapped") << "gte.sh"
                                         << "get.sh";
    QTest::newRow("a letter missing") << "comit.sh"
                                      << "commit.sh";
    QTest::newRow("a letter too many") << "applly.sh"
                                       << "apply.sh";
    QTest::newRow("another letter") << "creete.sh"
                                    << "create.sh";
    QTest::newRow("two other letters") << "creete.s" << none;
    QTest::newRow("two other letters beside each other") << "creoue.sh" << none;
    QTest::newRow("a short name of its own") << "net.sh" << none;
    QTest::newRow("a word of its own") << "functions.sh" << none;
    QTest::newRow("empty") << "" << none;
}

void NamesTest::likelyMeantOf()
{
    QFETCH(QString, name);
    QFETCH(QString, meant);

    QStringList const known = QStringList() << "isVisible.sh"
                                            << "get.sh"
                                            << "create.sh"
                                            << "commit.sh"
                                            << "apply.sh";
    QCOMPARE(likelyMeant(name, known), meant);
    QCOMPARE(likelyMeant(name, known).isNull(), meant.isNull());
}

ZELVO_TEST(NamesTest)
#include "NamesTest.moc"
