// SPDX-License-Identifier: MIT

#include "shell/Command.h"

#include "shell/KeyNames.h"
#include "support/TestProgram.h"

#include <QtTest>

class CommandTest : public QObject
{
    Q_OBJECT

private slots:
    void lineOfInput_data();
    void lineOfInput();
    void emptyWordIsNotNull_data();
    void emptyWordIsNotNull();
    void malformedLineIsRefused_data();
    void malformedLineIsRefused();
    void programArguments_data();
    void programArguments();
    void fullKeyOf_data();
    void fullKeyOf();
};

void CommandTest::lineOfInput_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QStringList>("words");

    QTest::newRow("name alone") << QByteArray("help") << (QStringList() << "help");
    QTest::newRow("words") << QByteArray("get a/b type")
                           << (QStringList() << "get"
                                             << "a/b"
                                             << "type");
    QTest::newRow("blanks around words") << QByteArray("  get \t a/b  ")
                                         << (QStringList() << "get"
                                                           << "a/b");
    QTest::newRow("empty line") << QByteArray("") << QStringList(QString());
    QTest::newRow("blanks alone") << QByteArray(" \t ") << QStringList(QString());
    QTest::newRow("comment") << QByteArray("# get a") << QStringList(QString());
    QTest::newRow("no comment behind a blank") << QByteArray(" # a")
                                               << (QStringList() << "#"
                                                                 << "a");

    QTest::newRow("value") << QByteArray("set a b")
                           << (QStringList() << "set"
                                             << "a"
                                             << "b");
    QTest::newRow("value with blanks inside, in front and behind") << QByteArray("set a   b c  ")
                                                                   << (QStringList() << "set"
                                                                                     << "a"
                                                                                     << "  b c  ");
    QTest::newRow("value of one blank") << QByteArray("set a  ")
                                        << (QStringList() << "set"
                                                          << "a"
                                                          << " ");
    QTest::newRow("empty value") << QByteArray("set a ")
                                 << (QStringList() << "set"
                                                   << "a"
                                                   << "");
    QTest::newRow("no value") << QByteArray("set a")
                              << (QStringList() << "set"
                                                << "a");
    QTest::newRow("no key") << QByteArray("set ") << (QStringList() << "set");
    QTest::newRow("value with a quote inside") << QByteArray("set a b\"c\\n\"")
                                               << (QStringList() << "set"
                                                                 << "a"
                                                                 << "b\"c\\n\"");
    QTest::newRow("value with a quote behind a blank") << QByteArray("set a  \"b\"")
                                                       << (QStringList() << "set"
                                                                         << "a"
                                                                         << " \"b\"");
    QTest::newRow("value that begins like a comment") << QByteArray("set a #b")
                                                      << (QStringList() << "set"
                                                                        << "a"
                                                                        << "#b");
    QTest::newRow("value with a carriage return") << QByteArray("set a b\r")
                                                  << (QStringList() << "set"
                                                                    << "a"
                                                                    << "b\r");
    QTest::newRow("value with a NUL as it stands")
        << QByteArray("set a b\0c", 9)
        << (QStringList() << "set"
                          << "a" << QString::fromLatin1("b\0c", 3));

    QTest::newRow("quoted value") << QByteArray("set a \" b \"")
                                  << (QStringList() << "set"
                                                    << "a"
                                                    << " b ");
    QTest::newRow("quoted empty value") << QByteArray("set a \"\"")
                                        << (QStringList() << "set"
                                                          << "a"
                                                          << "");
    QTest::newRow("blanks behind a quoted value") << QByteArray("set a \"b\"  ")
                                                  << (QStringList() << "set"
                                                                    << "a"
                                                                    << "b");
    QTest::newRow("escapes of one letter")
        << QByteArray("set a \"\\n\\t\\r\\a\\b\\f\\v\\\"\\'\\\\\\?\"")
        << (QStringList() << "set"
                          << "a"
                          << "\n\t\r\a\b\f\v\"'\\?");
    QTest::newRow("NUL") << QByteArray("set a \"b\\0c\"")
                         << (QStringList() << "set"
                                           << "a" << QString::fromLatin1("b\0c", 3));
    QTest::newRow("octal, at most three digits") << QByteArray("set a \"\\101\\0601\"")
                                                 << (QStringList() << "set"
                                                                   << "a"
                                                                   << "A01");
    QTest::newRow("hexadecimal, at most two digits") << QByteArray("set a \"\\x41\\x4a4\\xA\"")
                                                     << (QStringList() << "set"
                                                                       << "a"
                                                                       << "AJ4\n");
    QTest::newRow("bytes of one character")
        << QByteArray("set a \"\\xc3\\xbc\"")
        << (QStringList() << "set"
                          << "a" << QString::fromUtf8("\303\274"));
    QTest::newRow("quoted key") << QByteArray("set \"a b\" c")
                                << (QStringList() << "set"
                                                  << "a b"
                                                  << "c");
    QTest::newRow("quoted word") << QByteArray("import \"a file\"")
                                 << (QStringList() << "import"
                                                   << "a file");
    QTest::newRow("UTF-8") << QByteArray("set a \303\274")
                           << (QStringList() << "set"
                                             << "a" << QString::fromUtf8("\303\274"));
    QTest::newRow("UTF-8 mark at the start of a value")
        << QByteArray("set a \357\273\277b")
        << (QStringList() << "set"
                          << "a" << QString(QChar(0xfeff)) + "b");
}

void CommandTest::lineOfInput()
{
    QFETCH(QByteArray, line);
    QFETCH(QStringList, words);

    Command command;
    QString error;
    QVERIFY2(readCommand(line, command, error), qPrintable(error));
    QCOMPARE(QStringList(command.name) + command.arguments, words);
}

// A null value would be a default one to a plugin.
void CommandTest::emptyWordIsNotNull_data()
{
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("value: nothing behind the blank") << QByteArray("set a ");
    QTest::newRow("value: empty quotes") << QByteArray("set a \"\"");
    QTest::newRow("word: empty quotes") << QByteArray("get \"\"");
}

void CommandTest::emptyWordIsNotNull()
{
    QFETCH(QByteArray, line);

    Command command;
    QString error;
    QVERIFY(readCommand(line, command, error));
    QVERIFY(command.arguments.last().isEmpty());
    QVERIFY(!command.arguments.last().isNull());
}

void CommandTest::malformedLineIsRefused_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("message");

    QTest::newRow("no closing quote") << QByteArray("set a \"b") << "the closing quote is missing";
    QTest::newRow("quote alone") << QByteArray("set a \"") << "the closing quote is missing";
    QTest::newRow("closing quote that is escaped")
        << QByteArray("set a \"b\\\"") << "the closing quote is missing";
    QTest::newRow("backslash at the end")
        << QByteArray("set a \"b\\") << "the closing quote is missing";
    QTest::newRow("text behind a quoted value")
        << QByteArray("set a \"b\" c") << "there is text behind the closing quote";
    QTest::newRow("text right behind a quoted word")
        << QByteArray("get \"a\"b") << "there is text behind the closing quote";
    QTest::newRow("unknown escape")
        << QByteArray("set a \"\\q\"") << "there is an unknown escape behind a backslash";
    QTest::newRow("hexadecimal escape without a digit")
        << QByteArray("set a \"\\xg\"") << "there is an unknown escape behind a backslash";
    QTest::newRow("octal escape beyond a byte")
        << QByteArray("set a \"\\400\"") << "there is an unknown escape behind a backslash";
    QTest::newRow("no UTF-8") << QByteArray("set a \377") << "this is no UTF-8";
    QTest::newRow("half a character") << QByteArray("set a \303") << "this is no UTF-8";
    QTest::newRow("escapes that make no UTF-8")
        << QByteArray("set a \"\\xff\"") << "this is no UTF-8";
    QTest::newRow("key that is no UTF-8") << QByteArray("get \377") << "this is no UTF-8";
}

void CommandTest::malformedLineIsRefused()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, message);

    Command command;
    QString error;
    QVERIFY(!readCommand(line, command, error));
    QCOMPARE(error, message);
}

void CommandTest::programArguments_data()
{
    QTest::addColumn<QStringList>("arguments");
    // One text a command, its words between brackets.
    QTest::addColumn<QStringList>("commands");

    QTest::newRow("one command") << (QStringList() << "get"
                                                   << "a")
                                 << (QStringList() << "[get][a]");
    QTest::newRow("two commands") << (QStringList() << "get"
                                                    << "a"
                                                    << ";"
                                                    << "help")
                                  << (QStringList() << "[get][a]"
                                                    << "[help]");
    QTest::newRow("value as it stands") << (QStringList() << "set"
                                                          << "a"
                                                          << " \"b\\n\" ;")
                                        << (QStringList() << "[set][a][ \"b\\n\" ;]");
    QTest::newRow("empty value") << (QStringList() << "set"
                                                   << "a"
                                                   << "")
                                 << (QStringList() << "[set][a][]");
    QTest::newRow("separator at the end") << (QStringList() << "help"
                                                            << ";")
                                          << (QStringList() << "[help]"
                                                            << "[]");
}

void CommandTest::programArguments()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, commands);

    QStringList found;
    QList<Command> const read = commandsFromArguments(arguments);
    for (Command const& command : read) {
        QStringList const words = QStringList(command.name) + command.arguments;
        found.append(QLatin1Char('[') + words.join(QLatin1String("][")) + QLatin1Char(']'));
    }
    QCOMPARE(found, commands);
}

void CommandTest::fullKeyOf_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("key");

    QTest::newRow("bare key") << "a/b"
                              << "root/a/b";
    QTest::newRow("key under root") << "root/a"
                                    << "root/a";
    QTest::newRow("key under tmp") << "tmp/a"
                                   << "tmp/a";
    QTest::newRow("root") << "root"
                          << "root";
    QTest::newRow("tmp") << "tmp"
                         << "tmp";
    QTest::newRow("name that begins with root") << "rooted/a"
                                                << "root/rooted/a";
    QTest::newRow("root further down") << "a/root/b"
                                       << "root/a/root/b";
    QTest::newRow("empty") << ""
                           << "root/";
}

void CommandTest::fullKeyOf()
{
    QFETCH(QString, typed);
    QFETCH(QString, key);

    QCOMPARE(fullKey(typed), key);
}

ZELVO_TEST(CommandTest)

#include "CommandTest.moc"
