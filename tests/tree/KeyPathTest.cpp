// SPDX-License-Identifier: MIT

#include "tree/KeyPath.h"

#include "support/TestProgram.h"

#include <QtTest>

class KeyPathTest : public QObject
{
    Q_OBJECT

private slots:
    void textIsKeptAsGiven_data();
    void textIsKeptAsGiven();
    void latin1TextIsDecodedAsLatin1();
    void plainTextIsLatin1UpToItsNul();
    void nullAndEmptyPathBehaveAlike();

    void basename_data();
    void basename();
    void dirname_data();
    void dirname();
    void splitEntryNames_data();
    void splitEntryNames();
    void isRootOf_data();
    void isRootOf();
    void removeRoot_data();
    void removeRoot();
    void removeRootAnswersThePathItself();
    void derivedPathIsDeletedThroughItsBase();
    void pathOfAMegabyteIsTakenApart();
};

void KeyPathTest::textIsKeptAsGiven_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("plain") << "a/b";
    QTest::newRow("leading separator") << "/a";
    QTest::newRow("trailing separator") << "a/";
    QTest::newRow("doubled separators") << "a//b";
    QTest::newRow("separators alone") << "///";
    QTest::newRow("blanks") << " a / b ";
    QTest::newRow("dots are names like any other") << "a/../b/.";
    QTest::newRow("beyond Latin-1") << QString::fromUtf8("\xce\xb1/\xe2\x82\xac");
    QTest::newRow("NUL inside") << QString::fromLatin1("a\0/b", 4);
}

void KeyPathTest::textIsKeptAsGiven()
{
    QFETCH(QString, text);

    QCOMPARE(KeyPath(text).toString(), text);
}

void KeyPathTest::latin1TextIsDecodedAsLatin1()
{
    QCOMPARE(KeyPath(QLatin1String("caf\xe9/x")).toString(), QString::fromUtf8("caf\xc3\xa9/x"));
}

void KeyPathTest::plainTextIsLatin1UpToItsNul()
{
    QCOMPARE(KeyPath("caf\xe9\0/x").toString(), QString::fromUtf8("caf\xc3\xa9"));
}

void KeyPathTest::nullAndEmptyPathBehaveAlike()
{
    KeyPath const paths[] = {KeyPath(), KeyPath(QString()), KeyPath("")};
    for (KeyPath const& path : paths) {
        QCOMPARE(path.toString(), QString(""));
        QCOMPARE(path.basename(), QString(""));
        QCOMPARE(path.dirname().toString(), QString(""));
        QCOMPARE(path.splitEntryNames(), QStringList());
        QVERIFY(path.isRootOf(""));
        QVERIFY(path.isRootOf(QString()));
        QVERIFY(path.isRootOf("/a"));
        QVERIFY(!path.isRootOf("a"));
    }
}

void KeyPathTest::basename_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");

    QTest::newRow("text behind the last slash") << "a/b/c"
                                                << "c";
    QTest::newRow("no slash: the whole path") << "a"
                                              << "a";
    QTest::newRow("ends in a slash: empty") << "a/b/"
                                            << "";
    QTest::newRow("leading slash alone") << "/a"
                                         << "a";
    QTest::newRow("doubled slash") << "a//b"
                                   << "b";
    QTest::newRow("a slash and nothing else: empty") << "/"
                                                     << "";
}

void KeyPathTest::basename()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);

    QCOMPARE(KeyPath(path).basename(), expected);
}

void KeyPathTest::dirname_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");

    QTest::newRow("text before the last slash") << "a/b/c"
                                                << "a/b";
    QTest::newRow("no slash: empty") << "a"
                                     << "";
    QTest::newRow("nothing before the slash: empty") << "/a"
                                                     << "";
    QTest::newRow("ends in a slash: all before it") << "a/b/"
                                                    << "a/b";
    QTest::newRow("doubled slash: the first one stays") << "a//b"
                                                        << "a/";
}

void KeyPathTest::dirname()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);

    QCOMPARE(KeyPath(path).dirname().toString(), expected);
}

void KeyPathTest::splitEntryNames_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("empty path: no names") << "" << QStringList();
    QTest::newRow("one name") << "a" << (QStringList() << "a");
    QTest::newRow("names in order") << "b/a/c"
                                    << (QStringList() << "b"
                                                      << "a"
                                                      << "c");
    QTest::newRow("empty pieces are dropped") << "/a//b/"
                                              << (QStringList() << "a"
                                                                << "b");
    QTest::newRow("separators alone: no names") << "///" << QStringList();
    QTest::newRow("the same name twice stays twice") << "a/a"
                                                     << (QStringList() << "a"
                                                                       << "a");
    QTest::newRow("a blank is a name") << "a/ /b"
                                       << (QStringList() << "a"
                                                         << " "
                                                         << "b");
}

void KeyPathTest::splitEntryNames()
{
    QFETCH(QString, path);
    QFETCH(QStringList, expected);

    QCOMPARE(KeyPath(path).splitEntryNames(), expected);
}

void KeyPathTest::isRootOf_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("other");
    QTest::addColumn<bool>("expected");

    QTest::newRow("of itself") << "a/b"
                               << "a/b" << true;
    QTest::newRow("of a path below") << "a/b"
                                     << "a/b/c" << true;
    QTest::newRow("of a path far below") << "a"
                                         << "a/b/c/d" << true;
    QTest::newRow("of itself with a trailing slash") << "a/b"
                                                     << "a/b/" << true;
    QTest::newRow("not of a longer name") << "a/b"
                                          << "a/bc" << false;
    QTest::newRow("not in another case") << "a/b"
                                         << "A/b/c" << false;
    QTest::newRow("not of itself in another case") << "a/b"
                                                   << "a/B" << false;
    QTest::newRow("not of the path above") << "a/b"
                                           << "a" << false;
    QTest::newRow("not of a path that ends with it") << "a/b"
                                                     << "x/a/b" << false;
    QTest::newRow("empty path: of the empty path") << ""
                                                   << "" << true;
    QTest::newRow("empty path: of what begins with a slash") << ""
                                                             << "/a" << true;
    QTest::newRow("empty path: of nothing else") << ""
                                                 << "a" << false;
    QTest::newRow("path with a trailing slash: not of a path below") << "a/"
                                                                     << "a/b" << false;
    QTest::newRow("path with a trailing slash: of a doubled one") << "a/"
                                                                  << "a//b" << true;
}

void KeyPathTest::isRootOf()
{
    QFETCH(QString, path);
    QFETCH(QString, other);
    QFETCH(bool, expected);

    QCOMPARE(KeyPath(path).isRootOf(other), expected);
}

void KeyPathTest::removeRoot_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("root");
    QTest::addColumn<QString>("expected");

    QTest::newRow("root goes, its separator stays") << "x/a/b"
                                                    << "x"
                                                    << "/a/b";
    QTest::newRow("another root: unchanged") << "x/a/b"
                                             << "y"
                                             << "x/a/b";
    QTest::newRow("root of several names") << "root/zelvo-view/a"
                                           << "root/zelvo-view"
                                           << "/a";
    QTest::newRow("from itself: empty") << "x/a"
                                        << "x/a"
                                        << "";
    QTest::newRow("part of a name: unchanged") << "xy/a"
                                               << "x"
                                               << "xy/a";
    QTest::newRow("another case: unchanged") << "x/a"
                                             << "X"
                                             << "x/a";
    QTest::newRow("empty root: unchanged") << "/a"
                                           << ""
                                           << "/a";
    QTest::newRow("longer than the path: unchanged") << "x"
                                                     << "x/a"
                                                     << "x";
    QTest::newRow("from the front alone") << "x/x/a"
                                          << "x"
                                          << "/x/a";
}

void KeyPathTest::removeRoot()
{
    QFETCH(QString, path);
    QFETCH(QString, root);
    QFETCH(QString, expected);

    KeyPath keyPath(path);
    keyPath.removeRoot(root);
    QCOMPARE(keyPath.toString(), expected);
}

void KeyPathTest::removeRootAnswersThePathItself()
{
    KeyPath path("x/a");
    QCOMPARE(&path.removeRoot("x"), &path);
    QCOMPARE(&path.removeRoot("y"), &path);
}

void KeyPathTest::derivedPathIsDeletedThroughItsBase()
{
    struct DerivedPath : KeyPath
    {
        explicit DerivedPath(bool& isGone)
            : mIsGone(isGone)
        {
        }
        ~DerivedPath() override { mIsGone = true; }
        bool& mIsGone;
    };

    bool isGone = false;
    KeyPath* const path = new DerivedPath(isGone);
    delete path;
    QVERIFY(isGone);
}

void KeyPathTest::pathOfAMegabyteIsTakenApart()
{
    int const kNames = 1 << 19;
    KeyPath const path(QString("a/").repeated(kNames));

    QCOMPARE(path.splitEntryNames().size(), kNames);
    QCOMPARE(path.basename(), QString(""));
    QCOMPARE(path.dirname().toString().size(), 2 * kNames - 1);
    QVERIFY(KeyPath("a").isRootOf(path.toString()));
}

ZELVO_TEST(KeyPathTest)
#include "KeyPathTest.moc"
