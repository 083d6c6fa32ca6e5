// SPDX-License-Identifier: MIT

#include "common/RegistryVocabulary.h"

#include "support/TestProgram.h"

#include <vantora/registry.h>

#include <QtTest>

using namespace RegistryVocabulary;

class RegistryVocabularyTest : public QObject
{
    Q_OBJECT

private slots:
    void listHasTheWordsOfThePlatform_data();
    void listHasTheWordsOfThePlatform();
    void placeholdersDifferInCase();
    void wordsAreNumberedLikeTheHosts();
};

void RegistryVocabularyTest::listHasTheWordsOfThePlatform_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QString>("words");

    QTest::newRow("node kinds") << nodeKinds() << "dir,key,value,default";
    QTest::newRow("entry parameters") << entryParams() << "value,type,regexp";
    QTest::newRow("entry types") << entryTypes()
                                 << "string,rc4,uuid,char,ipv4,number,float,date,bool";
    QTest::newRow("kinds of change") << changeKinds() << "modified,created,deleted,nothing";
    QTest::newRow("true words") << trueWords() << "yes,true,on,1,ok";
    QTest::newRow("false words") << falseWords() << "no,false,off,0,ko";
}

void RegistryVocabularyTest::listHasTheWordsOfThePlatform()
{
    QFETCH(QStringList, list);
    QFETCH(QString, words);

    QCOMPARE(list.join(","), words);
}

void RegistryVocabularyTest::placeholdersDifferInCase()
{
    QCOMPARE(viewPlaceholder(), QString("{uuid}"));
    QCOMPARE(registryPlaceholder(), QString("{UUID}"));
    QCOMPARE(rootWord(), QString("root"));
}

void RegistryVocabularyTest::wordsAreNumberedLikeTheHosts()
{
    QCOMPARE(nodeKinds().value(REG_NODE_DIR), QString("dir"));
    QCOMPARE(nodeKinds().value(REG_NODE_DEFAULT), QString("default"));
    QCOMPARE(entryParams().value(REG_PARAM_TYPE), QString("type"));
    QCOMPARE(entryTypes().value(REG_TYPE_STRING), QString("string"));
    QCOMPARE(changeKinds().value(REG_CHANGE_CREATED), QString("created"));
}

ZELVO_TEST(RegistryVocabularyTest)
#include "RegistryVocabularyTest.moc"
