// SPDX-License-Identifier: MIT

#include "host/OpenRegistry.h"
#include "shell/ReplyText.h"
#include "shell/commands/Watch.h"
#include "support/TestProgram.h"

class KeyWatchTest : public QObject
{
    Q_OBJECT

private slots:
    void valueIsToldOnce();
    void childrenThatComeAndGo();
    void keyThatTurnsIntoAnother();
    void keyThatIsNotThere();
};

namespace {

void put(OpenRegistry& registry, QString const& key, QString const& value)
{
    QCOMPARE(registry.set(key, value), 0);
    QCOMPARE(registry.commit(key), 0);
}

void remove(OpenRegistry& registry, QString const& key)
{
    QCOMPARE(registry.del(key), 0);
    QCOMPARE(registry.commit(key), 0);
}

/// What a look shows; "unchanged" if that is what it is.
QString look(KeyWatch& watch)
{
    Reply reply;
    return watch.hasChanged(reply) ? replyText(reply) : QString::fromLatin1("unchanged");
}

} // namespace

void KeyWatchTest::valueIsToldOnce()
{
    OpenRegistry registry;
    put(registry, "tmp/a", "1");
    KeyWatch watch(registry, "tmp/a");
    QCOMPARE(watch.code(), 0);
    QCOMPARE(look(watch), QString("unchanged"));
    put(registry, "tmp/a", "two\nlines");
    QCOMPARE(look(watch), QString("two\\nlines\n"));
    QCOMPARE(look(watch), QString("unchanged"));
}

void KeyWatchTest::childrenThatComeAndGo()
{
    OpenRegistry registry;
    put(registry, "tmp/a/b", "1");
    put(registry, "tmp/a/c/d", "1");
    KeyWatch watch(registry, "tmp/a");
    put(registry, "tmp/a/b", "2");
    QCOMPARE(look(watch), QString("unchanged"));
    put(registry, "tmp/a/e", "1");
    remove(registry, "tmp/a/c");
    QCOMPARE(look(watch), QString("- c/\n+ e\n"));
    QCOMPARE(look(watch), QString("unchanged"));
}

void KeyWatchTest::keyThatTurnsIntoAnother()
{
    OpenRegistry registry;
    put(registry, "tmp/a/b", "1");
    KeyWatch watch(registry, "tmp/a");
    put(registry, "tmp/a", "value");
    QCOMPARE(look(watch), QString("value\n"));
    remove(registry, "tmp/a");
    put(registry, "tmp/a/b", "1");
    QCOMPARE(look(watch), QString("+ b\n"));
    put(registry, "tmp/a", "value");
    QCOMPARE(look(watch), QString("value\n"));
    remove(registry, "tmp/a");
    QCOMPARE(look(watch), QString("(none)\n"));
}

void KeyWatchTest::keyThatIsNotThere()
{
    OpenRegistry registry;
    KeyWatch watch(registry, "tmp/a");
    QCOMPARE(watch.code(), 1);
}

ZELVO_TEST(KeyWatchTest)

#include "KeyWatchTest.moc"
