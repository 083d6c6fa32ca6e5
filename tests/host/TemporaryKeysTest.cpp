// SPDX-License-Identifier: MIT

#include "host/OpenRegistry.h"
#include "support/TestDirectory.h"
#include "support/TestProgram.h"

class TemporaryKeysTest : public QObject
{
    Q_OBJECT

private slots:
    void setIsPendingUntilCommit();
    void anyNameIsTaken_data();
    void anyNameIsTaken();
    void setIsRefused_data();
    void setIsRefused();
    void directoriesAreImplied();
    void valueHidesTheDirectoryOfItsKey();
    void parameters();
    void createMakesAnEmptyValue();
    void delOfAValue();
    void delOfADirectory();
    void rollback();
    void changes();
    void commitOfUnknownKeyIsRefused();
    void commitLeavesItsNeighbours();
    void nothingIsKept();
};

void TemporaryKeysTest::setIsPendingUntilCommit()
{
    OpenRegistry registry;
    QCOMPARE(registry.set("tmp/apply/x", "0"), 0);
    QCOMPARE(registry.answer("tmp/apply/x"), QString::fromLatin1("code 1"));
    QCOMPARE(registry.commit("tmp/apply/x"), 0);
    QCOMPARE(registry.answer("tmp/apply/x"), QString::fromLatin1("2 0"));
}

void TemporaryKeysTest::anyNameIsTaken_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("one level") << "tmp/x";
    QTest::newRow("blanks and signs") << "tmp/a b/{UUID}/\"$";
    QTest::newRow("literal placeholder") << "tmp/{UUID}";
    QTest::newRow("NUL") << QString::fromLatin1("tmp/a\0b", 7);
    QTest::newRow("half a surrogate pair") << "tmp/" + QString(QChar(0xdc00));
    QTest::newRow("a megabyte") << "tmp/" + QString(1024 * 1024, QLatin1Char('a'));
    QTest::newRow("500 000 components") << "tmp" + QString::fromLatin1("/a").repeated(500000);
}

void TemporaryKeysTest::anyNameIsTaken()
{
    QFETCH(QString, key);

    OpenRegistry registry;
    QCOMPARE(registry.set(key, "value"), 0);
    QCOMPARE(registry.commit(key), 0);
    QCOMPARE(registry.contains(key), 0);
    QCOMPARE(registry.answer(key), QString::fromLatin1("2 value"));
    QCOMPARE(registry.answers("tmp").size(), 1);
    QCOMPARE(registry.del(key), 0);
    QCOMPARE(registry.commit("tmp"), 0);
    QCOMPARE(registry.answers("tmp"), QStringList());
}

void TemporaryKeysTest::setIsRefused_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("tmp itself") << "tmp";
    QTest::newRow("slash behind") << "tmp/";
    QTest::newRow("slash behind a key") << "tmp/a/";
    QTest::newRow("doubled slash") << "tmp//a";
    QTest::newRow("another root") << "tmpx/a";
}

void TemporaryKeysTest::setIsRefused()
{
    QFETCH(QString, key);

    OpenRegistry registry;
    QVERIFY(registry.set(key, "value") != 0);
    QVERIFY(registry.create(key) != 0);
    QCOMPARE(registry.pending(), QStringList());
}

void TemporaryKeysTest::directoriesAreImplied()
{
    OpenRegistry registry;
    QCOMPARE(registry.answers("tmp"), QStringList());
    QCOMPARE(registry.set("tmp/a/b/c", "1"), 0);
    QCOMPARE(registry.set("tmp/a/b/d", "2"), 0);
    QCOMPARE(registry.set("tmp/a-b", "3"), 0);
    QCOMPARE(registry.set("tmp/a/e", "4"), 0);
    QCOMPARE(registry.commit("tmp"), 0);
    QCOMPARE(registry.answers("tmp"),
             QStringList() << "0 tmp/a"
                           << "1 tmp/a-b");
    QCOMPARE(registry.answers("tmp/a"),
             QStringList() << "0 tmp/a/b"
                           << "1 tmp/a/e");
    QCOMPARE(registry.contains("tmp/a/b"), 0);
    QVERIFY(registry.contains("tmp/a/") != 0);
    QVERIFY(registry.contains("tmp/b") != 0);
}

void TemporaryKeysTest::valueHidesTheDirectoryOfItsKey()
{
    OpenRegistry registry;
    QCOMPARE(registry.set("tmp/a", "1"), 0);
    QCOMPARE(registry.set("tmp/a/b", "2"), 0);
    QCOMPARE(registry.commit("tmp"), 0);
    QCOMPARE(registry.answers("tmp"), QStringList() << "1 tmp/a");
    QCOMPARE(registry.answer("tmp/a"), QString::fromLatin1("2 1"));
    QCOMPARE(registry.answer("tmp/a/b"), QString::fromLatin1("2 2"));
}

void TemporaryKeysTest::parameters()
{
    OpenRegistry registry;
    QCOMPARE(registry.set("tmp/a", "1"), 0);
    QCOMPARE(registry.commit("tmp/a"), 0);
    QCOMPARE(registry.answer("tmp/a", REG_PARAM_TYPE), QString::fromLatin1("2 string"));
    QCOMPARE(registry.answer("tmp/a", REG_PARAM_REGEXP), QString::fromLatin1("2 "));
    QCOMPARE(registry.answer("tmp", REG_PARAM_TYPE), QString::fromLatin1("code 1"));
    QVERIFY(registry.set("tmp/a", "1", REG_PARAM_TYPE) != 0);
}

void TemporaryKeysTest::createMakesAnEmptyValue()
{
    OpenRegistry registry;
    QCOMPARE(registry.create("tmp/a"), 0);
    QVERIFY(registry.create("tmp/a") != 0);
    QCOMPARE(registry.commit("tmp/a"), 0);
    QCOMPARE(registry.answer("tmp/a"), QString::fromLatin1("2 "));
    QVERIFY(registry.create("tmp/a") != 0);
    QCOMPARE(registry.del("tmp/a"), 0);
    QCOMPARE(registry.create("tmp/a"), 0);
}

void TemporaryKeysTest::delOfAValue()
{
    OpenRegistry registry;
    QVERIFY(registry.del("tmp/a") != 0);
    QVERIFY(registry.del("tmp") != 0);
    QCOMPARE(registry.set("tmp/a", "1"), 0);
    QCOMPARE(registry.del("tmp/a"), 0);
    QCOMPARE(registry.pending(), QStringList());
    QCOMPARE(registry.set("tmp/a", "1"), 0);
    QCOMPARE(registry.commit("tmp/a"), 0);
    QCOMPARE(registry.del("tmp/a"), 0);
    QCOMPARE(registry.answer("tmp/a"), QString::fromLatin1("2 1"));
    QCOMPARE(registry.commit("tmp/a"), 0);
    QCOMPARE(registry.answer("tmp/a"), QString::fromLatin1("code 1"));
}

void TemporaryKeysTest::delOfADirectory()
{
    OpenRegistry registry;
    QCOMPARE(registry.set("tmp/a/b", "1"), 0);
    QCOMPARE(registry.set("tmp/a/c", "2"), 0);
    QCOMPARE(registry.set("tmp/ab", "3"), 0);
    QCOMPARE(registry.commit("tmp"), 0);
    QCOMPARE(registry.set("tmp/a/d", "4"), 0);
    QCOMPARE(registry.del("tmp/a"), 0);
    QCOMPARE(registry.commit("tmp/a"), 0);
    QCOMPARE(registry.answers("tmp"), QStringList() << "1 tmp/ab");
    QVERIFY(registry.commit("tmp/a") != 0);
}

void TemporaryKeysTest::rollback()
{
    OpenRegistry registry;
    QCOMPARE(registry.set("tmp/a/b", "1"), 0);
    QCOMPARE(registry.set("tmp/c", "2"), 0);
    QCOMPARE(registry.rollback("tmp/a"), 0);
    QVERIFY(registry.rollback("tmp/a") != 0);
    QCOMPARE(registry.commit("tmp"), 0);
    QCOMPARE(registry.answers("tmp"), QStringList() << "1 tmp/c");
}

void TemporaryKeysTest::changes()
{
    OpenRegistry registry;
    QCOMPARE(registry.set("tmp/a", "1"), 0);
    QCOMPARE(registry.set("tmp/b", "1"), 0);
    QCOMPARE(registry.commit("tmp"), 0);
    QCOMPARE(registry.set("tmp/a", "2"), 0);
    QCOMPARE(registry.del("tmp/b"), 0);
    QCOMPARE(registry.set("tmp/c", "3"), 0);
    QCOMPARE(registry.pending(),
             QStringList() << "0 tmp/a"
                           << "2 tmp/b"
                           << "1 tmp/c");
}

void TemporaryKeysTest::commitOfUnknownKeyIsRefused()
{
    OpenRegistry registry;
    QVERIFY(registry.commit("tmp/a") != 0);
    QCOMPARE(registry.commit("tmp"), 0);
}

void TemporaryKeysTest::commitLeavesItsNeighbours()
{
    OpenRegistry registry;
    QCOMPARE(registry.set("tmp/a", "1"), 0);
    QCOMPARE(registry.set("tmp/ab", "2"), 0);
    QCOMPARE(registry.set("root/USB/root/mass-storage/allowed", "0"), 0);
    QCOMPARE(registry.commit("tmp/a"), 0);
    QCOMPARE(registry.pending(),
             QStringList() << "0 root/USB/root/mass-storage/allowed"
                           << "1 tmp/ab");
    QCOMPARE(registry.commit("root"), 0);
    QCOMPARE(registry.pending(), QStringList() << "1 tmp/ab");
}

void TemporaryKeysTest::nothingIsKept()
{
    TestDirectory scratch;
    QString const database = scratch.file("registry.db");
    {
        OpenRegistry registry(database);
        QCOMPARE(registry.set("tmp/a", "1"), 0);
        QCOMPARE(registry.commit("tmp/a"), 0);
    }
    OpenRegistry reopened(database);
    QCOMPARE(reopened.answers("tmp"), QStringList());
}

ZELVO_TEST(TemporaryKeysTest)
#include "TemporaryKeysTest.moc"
