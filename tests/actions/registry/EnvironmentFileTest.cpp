// SPDX-License-Identifier: MIT

#include "actions/registry/EnvironmentFile.h"

#include "support/TestDirectory.h"
#include "support/TestProgram.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryFile>
#include <QtTest>

#include <random>

#include <sys/stat.h>
#include <unistd.h>

namespace {

// What one read takes at most.
int const kPieceSize = 1023;

uid_t const kNobody = 65534;

/// The bytes of a literal with NULs in it.
template <int Size> QByteArray bytes(char const (&text)[Size])
{
    return QByteArray(text, Size - 1);
}

/// `head` and as many times "x" as it takes to make `size` bytes.
QByteArray filled(QByteArray const& head, int size)
{
    return head + QByteArray(size - head.size(), 'x');
}

/// A line for each declaration: the name, " <- ", the registry key.
QStringList described(QList<EnvironmentDeclaration> const& declarations)
{
    QStringList lines;
    for (EnvironmentDeclaration const& declaration : declarations)
        lines << declaration.name + " <- " + declaration.registryKey;
    return lines;
}

QStringList readBytes(QByteArray const& content)
{
    QTemporaryFile file;
    if (!file.open() || file.write(content) != content.size() || !file.flush())
        return QStringList() << "the file could not be written";
    return described(readEnvironmentFile(file.fileName()));
}

/// Root reads everything: it becomes somebody else for as long as this lives.
class OrdinaryUser
{
public:
    OrdinaryUser()
        : mIsRoot(::geteuid() == 0)
        , mIsOrdinary(!mIsRoot || ::seteuid(kNobody) == 0)
    {
    }

    ~OrdinaryUser()
    {
        if (mIsRoot)
            static_cast<void>(::seteuid(0));
    }

    bool isOrdinary() const { return mIsOrdinary; }

private:
    bool mIsRoot;
    bool mIsOrdinary;
};

} // namespace

class EnvironmentFileTest : public QObject
{
    Q_OBJECT

private slots:
    void lines_data();
    void lines();
    void longLines_data();
    void longLines();
    void missingFileDeclaresNothing();
    void directoryDeclaresNothing();
    void pipeDeclaresNothingAndIsNotWaitedFor();
    void fileThatMayNotBeReadDeclaresNothing();
    void linkToItselfDeclaresNothing();
    void fileBelowAFileDeclaresNothing();
    void randomBytesGiveOnlyNamedDeclarations();
};

void EnvironmentFileTest::lines_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("expected");

    QStringList const none;
    QStringList const one = QStringList() << "A <- root/a";
    QStringList const two = QStringList() << "A <- root/a"
                                          << "B <- root/b";

    QTest::newRow("a declaration a line, in order") << bytes("A=root/a\nB=root/b\n") << two;
    QTest::newRow("no newline at the end") << bytes("A=root/a\nB=root/b") << two;
    QTest::newRow("CRLF ends") << bytes("A=root/a\r\nB=root/b\r\n") << two;
    QTest::newRow("CR at the end of the file") << bytes("A=root/a\r") << one;
    QTest::newRow("CR alone ends no line")
        << bytes("A=root/a\rB=root/b\n") << (QStringList() << "A <- root/a\rB=root/b");
    QTest::newRow("blanks and tabs at both ends go") << bytes(" \t A=root/a \t \n") << one;
    QTest::newRow("blanks within stay")
        << bytes("A B = root/a b\n") << (QStringList() << "A B  <-  root/a b");
    QTest::newRow("only the first = divides")
        << bytes("A=root/a=b=\n") << (QStringList() << "A <- root/a=b=");
    QTest::newRow("nothing behind the =") << bytes("A=\n") << (QStringList() << "A <- ");
    QTest::newRow("the same name twice: both") << bytes("A=root/a\nA=root/b\n")
                                               << (QStringList() << "A <- root/a"
                                                                 << "A <- root/b");
    QTest::newRow("REG_SET is a name like others")
        << bytes("REG_SET=root/{UUID}/a\n") << (QStringList() << "REG_SET <- root/{UUID}/a");
    QTest::newRow("# and quotes mean nothing")
        << bytes("#A=\"root/a\"\n") << (QStringList() << "#A <- \"root/a\"");

    QTest::newRow("empty file: nothing") << QByteArray() << none;
    QTest::newRow("empty lines are passed over")
        << bytes("\n\nA=root/a\n\n \n\r\nB=root/b\n") << two;
    QTest::newRow("a line without = is passed over")
        << bytes("A=root/a\nroot/c\nB=root/b\n") << two;
    QTest::newRow("a line with = first is passed over") << bytes("=root/c\nA=root/a\n") << one;
    QTest::newRow("= first behind blanks, the same") << bytes("  =root/c\nA=root/a\n") << one;
    QTest::newRow("= first, another = later, the same") << bytes("=B=root/c\nA=root/a\n") << one;
    QTest::newRow("= alone") << bytes("=\n") << none;

    QTest::newRow("NUL in the key: up to it") << bytes("A=root/a\0/x\nB=root/b\n") << two;
    QTest::newRow("blanks before the NUL go") << bytes("A=root/a \0x\n") << one;
    QTest::newRow("NUL before the =: no declaration") << bytes("C\0=root/c\nA=root/a\n") << one;
    QTest::newRow("NUL first: no declaration") << bytes("\0C=root/c\nA=root/a\n") << one;
    QTest::newRow("a second = behind the NUL") << bytes("A=root/a\0B=root/b\n") << one;

    QTest::newRow("bytes above 127 are Latin-1")
        << bytes("N\xe4me=root/\xfc\xff\n")
        << (QStringList() << QString::fromLatin1("N\xe4me <- root/\xfc\xff"));
    QTest::newRow("UTF-8 reads as two Latin-1 characters")
        << bytes("A=root/\xc3\xa9\n")
        << (QStringList() << QString::fromLatin1("A <- root/\xc3\xa9"));
}

void EnvironmentFileTest::lines()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, expected);

    QCOMPARE(readBytes(content), expected);
}

void EnvironmentFileTest::longLines_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("expected");

    QString const longest = filled("A=", kPieceSize).mid(2);
    QString const first = "A <- " + longest;

    QTest::newRow("1022 bytes and a newline: one line")
        << filled("A=", kPieceSize - 1) + "\nB=b\n"
        << (QStringList() << "A <- " + longest.left(longest.size() - 1) << "B <- b");
    QTest::newRow("1023 bytes: one line, the newline a line of its own") << filled("A=", kPieceSize)
            + "\nB=b\n" << (QStringList() << first << "B <- b");
    QTest::newRow("1024 bytes: the last one is a line without =") << filled("A=", kPieceSize)
            + "y\nB=b\n" << (QStringList() << first << "B <- b");
    QTest::newRow("what begins a piece can be a declaration") << filled("A=", kPieceSize)
            + "B=b\n" << (QStringList() << first << "B <- b");
    QTest::newRow("a name cut in two counts from the cut") << filled("", kPieceSize - 1)
            + "NAME=b\n" << (QStringList() << "AME <- b");
    QTest::newRow("a cut right before the =: no declaration") << filled("", kPieceSize)
            + "=b\nB=b\n" << (QStringList() << "B <- b");
    QTest::newRow("each piece is trimmed")
        << filled("A=", kPieceSize - 1) + "  B=b\n"
        << (QStringList() << "A <- " + longest.left(longest.size() - 1) << "B <- b");
    QTest::newRow("a NUL hides the rest of its piece only")
        << filled(bytes("A=a\0"), kPieceSize) + "B=b\n"
        << (QStringList() << "A <- a"
                          << "B <- b");
    QTest::newRow("three pieces, no newline at the end") << filled("A=", kPieceSize)
            + filled("", kPieceSize) + "B=b" << (QStringList() << first << "B <- b");
}

void EnvironmentFileTest::longLines()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, expected);

    QCOMPARE(readBytes(content), expected);
}

void EnvironmentFileTest::missingFileDeclaresNothing()
{
    QCOMPARE(described(readEnvironmentFile("/nonexistent/set.env")), QStringList());
    QCOMPARE(described(readEnvironmentFile(QString())), QStringList());
}

void EnvironmentFileTest::directoryDeclaresNothing()
{
    QCOMPARE(described(readEnvironmentFile(QDir::tempPath())), QStringList());
}

void EnvironmentFileTest::pipeDeclaresNothingAndIsNotWaitedFor()
{
    TestDirectory const directory;
    QString const pipe = directory.file("get.env");
    QVERIFY(::mkfifo(QFile::encodeName(pipe).constData(), 0600) == 0);
    QCOMPARE(described(readEnvironmentFile(pipe)), QStringList());
}

void EnvironmentFileTest::fileThatMayNotBeReadDeclaresNothing()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write("A=root/a\n");
    QVERIFY(file.flush());
    QCOMPARE(described(readEnvironmentFile(file.fileName())).size(), 1);

    QVERIFY(::chmod(QFile::encodeName(file.fileName()).constData(), 0) == 0);
    OrdinaryUser const user;
    QVERIFY(user.isOrdinary());
    QCOMPARE(described(readEnvironmentFile(file.fileName())), QStringList());
}

void EnvironmentFileTest::linkToItselfDeclaresNothing()
{
    QString const link = QDir::temp().filePath("link-to-itself.env");
    QVERIFY(QFile::link(link, link));
    QCOMPARE(described(readEnvironmentFile(link)), QStringList());
    QVERIFY(QFile::remove(link));
}

void EnvironmentFileTest::fileBelowAFileDeclaresNothing()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    QCOMPARE(described(readEnvironmentFile(file.fileName() + "/set.env")), QStringList());
}

void EnvironmentFileTest::randomBytesGiveOnlyNamedDeclarations()
{
    std::mt19937 random(20101);
    int found = 0;
    for (int round = 0; round < 50; ++round) {
        QByteArray content(64 * 1024, '\0');
        for (char& byte : content)
            byte = static_cast<char>(random());
        QTemporaryFile file;
        QVERIFY(file.open());
        QCOMPARE(file.write(content), qint64(content.size()));
        QVERIFY(file.flush());

        QList<EnvironmentDeclaration> const declarations = readEnvironmentFile(file.fileName());
        found += declarations.size();
        for (EnvironmentDeclaration const& declaration : declarations) {
            QVERIFY(!declaration.name.isEmpty());
            QVERIFY(!declaration.name.contains('='));
            QString const line = declaration.name + '=' + declaration.registryKey;
            QVERIFY(line.size() <= kPieceSize);
            QVERIFY(!line.contains(QChar(0)));
            QVERIFY(!line.contains('\n'));
        }
    }
    QVERIFY(found > 0);
}

ZELVO_TEST(EnvironmentFileTest)
#include "EnvironmentFileTest.moc"
