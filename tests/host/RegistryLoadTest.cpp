// SPDX-License-Identifier: MIT

#include "host/OpenRegistry.h"
#include "support/TestDirectory.h"
#include "support/TestProgram.h"

#include <QElapsedTimer>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

// Many sessions, many threads, and input that is meant to be too much.
class RegistryLoadTest : public QObject
{
    Q_OBJECT

private slots:
    void manySessions();
    void oneKeyAmongManySessions();
    void threadsAtOnce();
    void temporaryKeyIsCommittedByAnotherThread();
    void oversizedKeys_data();
    void oversizedKeys();
    void oversizedValue();
    void oversizedValueAgainstARegularExpression();
};

namespace {

QString const kUsb = QLatin1String("root/USB/root/mass-storage/allowed");

QString sessionNumber(int number)
{
    QString const name = QLatin1String("{11111111-1111-4111-8111-%1}");
    return kRdp + QLatin1Char('/') + name.arg(number, 12, 16, QLatin1Char('0'));
}

void addSessions(OpenRegistry& registry, int from, int count)
{
    for (int number = from; number < from + count; ++number) {
        QCOMPARE(registry.create(sessionNumber(number)), 0);
        QCOMPARE(registry.set(sessionNumber(number) + "/label", QString::number(number)), 0);
    }
    QCOMPARE(registry.commit(kRdp), 0);
}

// Nanoseconds that a get, a set and a commit of one key take together, the least of many rounds.
qint64 leastTimeOfOneKey(OpenRegistry& registry, QString const& key)
{
    int const rounds = 300;
    qint64 least = -1;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        QString text;
        registry.get(key, text, REG_PARAM_VALUE, QString());
        registry.set(key, QString::number(round));
        registry.commit(key);
        qint64 const time = timer.nsecsElapsed();
        least = least < 0 ? time : qMin(least, time);
    }
    return least;
}

// Works on sessions of its own; counts in `faults` what does not turn out as it must.
void work(OpenRegistry& registry, int number, std::atomic<int>& faults)
{
    for (int i = 0; i < 100; ++i) {
        QString const session = sessionNumber(1000 * number + i);
        QString const label = session + "/label";
        bool const holds = registry.create(session) == 0 && registry.set(label, session) == 0
            && registry.commit(session) == 0 && registry.answer(label) == "2 " + session
            && registry.set(label, "rolled back") == 0 && registry.rollback(label) == 0
            && registry.answers(kRdp).contains("0 " + session)
            && (i % 2 == 0 || (registry.del(session) == 0 && registry.commit(session) == 0));
        if (!holds)
            ++faults;
    }
}

void finishApply(OpenRegistry& registry)
{
    registry.set("tmp/apply/x", "0");
    registry.commit("tmp/apply/x");
}

} // namespace

void RegistryLoadTest::manySessions()
{
    TestDirectory scratch;
    int const count = 10000;
    {
        OpenRegistry registry(scratch.file("registry.db"));
        addSessions(registry, 0, count);
    }
    OpenRegistry registry(scratch.file("registry.db"));
    QCOMPARE(registry.answers(kRdp).size(), count);
    QCOMPARE(registry.answer(sessionNumber(count - 1) + "/label"), QString::fromLatin1("2 9999"));
    QCOMPARE(registry.answer(sessionNumber(count - 1) + "/address"), QString::fromLatin1("3 "));
    QVERIFY(registry.contains(sessionNumber(count)) != 0);
    for (int number = 0; number < count; ++number)
        QCOMPARE(registry.del(sessionNumber(number)), 0);
    QCOMPARE(registry.commit("root"), 0);
    QCOMPARE(registry.answers(kRdp), QStringList());
}

void RegistryLoadTest::oneKeyAmongManySessions()
{
    OpenRegistry registry;
    addSessions(registry, 0, 10);
    qint64 const amongFew = leastTimeOfOneKey(registry, sessionNumber(5) + "/label");
    addSessions(registry, 10, 20000);
    qint64 const amongMany = leastTimeOfOneKey(registry, sessionNumber(15005) + "/label");
    qDebug("get, set and commit of one key: %lld ns among 10 sessions, %lld ns among 20010",
           static_cast<long long>(amongFew), static_cast<long long>(amongMany));
    // A walk over all sessions would take hundreds of times as long.
    QVERIFY(amongMany < 10 * amongFew);
}

void RegistryLoadTest::threadsAtOnce()
{
    OpenRegistry registry;
    std::atomic<int> faults(0);
    std::vector<std::thread> workers;
    for (int number = 0; number < 4; ++number)
        workers.emplace_back(work, std::ref(registry), number, std::ref(faults));
    for (std::thread& worker : workers)
        worker.join();
    QCOMPARE(faults.load(), 0);
    QCOMPARE(registry.answers(kRdp).size(), 4 * 50);
    QCOMPARE(registry.pending(), QStringList());
}

void RegistryLoadTest::temporaryKeyIsCommittedByAnotherThread()
{
    OpenRegistry registry;
    QCOMPARE(registry.set("tmp/apply/x", "1"), 0);
    QCOMPARE(registry.commit("tmp/apply/x"), 0);
    std::thread(finishApply, std::ref(registry)).join();
    QCOMPARE(registry.answer("tmp/apply/x"), QString::fromLatin1("2 0"));
}

void RegistryLoadTest::oversizedKeys_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("a megabyte") << QString(1024 * 1024, QLatin1Char('a'));
    QTest::newRow("a megabyte in one component")
        << "root/" + QString(1024 * 1024, QLatin1Char('a'));
    QTest::newRow("500 000 components") << QString::fromLatin1("root/").repeated(500000) + "a";
    QTest::newRow("500 000 empty components") << QString(500000, QLatin1Char('/'));
    QTest::newRow("500 000 sessions in one another") << kRdp + ("/" + kFirst).repeated(500000);
    QTest::newRow("500 000 placeholders") << kRdp + QString::fromLatin1("/{UUID}").repeated(500000);
    QTest::newRow("UUID with a megabyte of NUL behind")
        << kRdp + "/" + kFirst + QString(1024 * 1024, QChar(0));
}

void RegistryLoadTest::oversizedKeys()
{
    QFETCH(QString, key);

    OpenRegistry registry;
    QMap<QString, _RegNodeType> result;
    QByteArray data;
    QVERIFY(registry.set(key, "1") != 0);
    QVERIFY(registry.get(key, result, REG_PARAM_VALUE, QString()) != 0);
    QVERIFY(registry.get(key, result, REG_PARAM_TYPE, QString()) != 0);
    QVERIFY(registry.contains(key) != 0);
    QVERIFY(registry.commit(key) != 0);
    QVERIFY(registry.apply(key, QString()) != 0);
    QVERIFY(registry.rollback(key) != 0);
    QVERIFY(registry.create(key) != 0);
    QVERIFY(registry.del(key) != 0);
    QVERIFY(registry.exportRegistry(key, data) != 0);
    QCOMPARE(registry.clone(key, key), 1);
    QVERIFY(result.isEmpty());
    QCOMPARE(registry.pending(), QStringList());
}

void RegistryLoadTest::oversizedValue()
{
    OpenRegistry registry;
    QString const huge(32 * 1024 * 1024, QLatin1Char('1'));
    QVERIFY(registry.set(kUsb, huge) != 0);
    QVERIFY(registry.set("root/Display/Configuration/swapstate", huge) != 0);
    QCOMPARE(registry.set("root/Display/Configuration/primaryprofile", huge), 0);
    QCOMPARE(registry.commit("root"), 0);
    QString text;
    QCOMPARE(
        registry.get("root/Display/Configuration/primaryprofile", text, REG_PARAM_VALUE, QString()),
        0);
    QVERIFY(text == huge);
}

void RegistryLoadTest::oversizedValueAgainstARegularExpression()
{
    TestDirectory defaults;
    defaults.write("defaults.xml",
                   "<registry><dir name='root'><key name='k' regexp='(a*)*b'/>"
                   "</dir></registry>");
    OpenRegistry registry(":memory:", defaults.path());
    QString const huge(8 * 1024 * 1024, QLatin1Char('a'));
    QVERIFY(registry.set("root/k", huge) != 0);
    QCOMPARE(registry.set("root/k", huge + "b"), 0);
}

ZELVO_TEST(RegistryLoadTest)
#include "RegistryLoadTest.moc"
