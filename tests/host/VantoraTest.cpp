// SPDX-License-Identifier: MIT

#include "support/TestProgram.h"

#include <vantora/vantora.h>

#include <QtTest>

namespace {

// Answers every `get` with what it was told to.
class AnsweringBackend : public Vantora
{
public:
    AnsweringBackend()
        : mCode(0)
        , mAskedParam(REG_PARAM_VALUE)
    {
    }

    using Vantora::get;

    int mCode;
    QMap<QString, _RegNodeType> mAnswers;
    QString mAskedKey;
    QString mAskedExtra;
    _RegEntryParam mAskedParam;

    int get(QString const& key, QMap<QString, _RegNodeType>& result, _RegEntryParam const& param,
            QString const& extra) override
    {
        mAskedKey = key;
        mAskedParam = param;
        mAskedExtra = extra;
        result = mAnswers;
        return mCode;
    }

    int set(QString const&, QString const&, _RegEntryParam const&) override { return 1; }
    int contains(QString const&) override { return 1; }
    int commit(QString const&) override { return 1; }
    int apply(QString const&, QString const&) override { return 1; }
    int clone(QString const&, QString const&) override { return 1; }
    int rollback(QString const&) override { return 1; }
    int watch(QStringList const&, int) override { return 1; }
    int changes(QMap<QString, _RegEntryChange>&) override { return 1; }
    int create(QString const&, _RegEntryType const&) override { return 1; }
    int del(QString const&) override { return 1; }
    int importRegistry(QByteArray&) override { return 1; }
    int exportRegistry(QString const&, QByteArray&) override { return 1; }
};

} // namespace

class VantoraTest : public QObject
{
    Q_OBJECT

private slots:
    void text_data();
    void text();
    void number_data();
    void number();
    void requestIsPassedOn();
    void severalAnswersAreNoValue();
    void noAnswerIsNoValue();
};

void VantoraTest::text_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("expectedCode");
    QTest::addColumn<QString>("expected");

    QTest::newRow("value") << 0 << "on" << int(REG_NODE_VALUE) << 0 << "on";
    QTest::newRow("default") << 0 << "off" << int(REG_NODE_DEFAULT) << 0 << "off";
    QTest::newRow("empty value") << 0 << "" << int(REG_NODE_VALUE) << 0 << "";
    QTest::newRow("directory with one key") << 0 << "a/b" << int(REG_NODE_KEY) << 1 << "before";
    QTest::newRow("directory with one directory")
        << 0 << "a/b" << int(REG_NODE_DIR) << 1 << "before";
    QTest::newRow("failure keeps its code") << 6 << "x" << int(REG_NODE_VALUE) << 6 << "before";
}

void VantoraTest::text()
{
    QFETCH(int, code);
    QFETCH(QString, answer);
    QFETCH(int, type);
    QFETCH(int, expectedCode);
    QFETCH(QString, expected);

    AnsweringBackend backend;
    backend.mCode = code;
    backend.mAnswers.insert(answer, static_cast<_RegNodeType>(type));
    QString out = QLatin1String("before");
    QCOMPARE(backend.get(QLatin1String("a"), out, REG_PARAM_VALUE, QString()), expectedCode);
    QCOMPARE(out, expected);
}

void VantoraTest::number_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("expectedCode");
    QTest::addColumn<int>("expected");

    QTest::newRow("value") << "24" << int(REG_NODE_VALUE) << 0 << 24;
    QTest::newRow("default") << "-1" << int(REG_NODE_DEFAULT) << 0 << -1;
    QTest::newRow("word") << "on" << int(REG_NODE_VALUE) << 1 << 7;
    QTest::newRow("empty") << "" << int(REG_NODE_VALUE) << 1 << 7;
    QTest::newRow("hexadecimal") << "0x10" << int(REG_NODE_VALUE) << 1 << 7;
    QTest::newRow("beyond 32 bits") << "4294967296" << int(REG_NODE_VALUE) << 1 << 7;
    QTest::newRow("directory named by a number") << "24" << int(REG_NODE_DIR) << 1 << 7;
}

void VantoraTest::number()
{
    QFETCH(QString, answer);
    QFETCH(int, type);
    QFETCH(int, expectedCode);
    QFETCH(int, expected);

    AnsweringBackend backend;
    backend.mAnswers.insert(answer, static_cast<_RegNodeType>(type));
    int out = 7;
    QCOMPARE(backend.get(QLatin1String("a"), out, REG_PARAM_VALUE, QString()), expectedCode);
    QCOMPARE(out, expected);
}

void VantoraTest::requestIsPassedOn()
{
    AnsweringBackend backend;
    QString out;
    backend.get(QLatin1String("a/b"), out, REG_PARAM_TYPE, QLatin1String("extra"));
    QCOMPARE(backend.mAskedKey, QString::fromLatin1("a/b"));
    QCOMPARE(backend.mAskedParam, REG_PARAM_TYPE);
    QCOMPARE(backend.mAskedExtra, QString::fromLatin1("extra"));
}

void VantoraTest::severalAnswersAreNoValue()
{
    AnsweringBackend backend;
    backend.mAnswers.insert(QLatin1String("1"), REG_NODE_VALUE);
    backend.mAnswers.insert(QLatin1String("2"), REG_NODE_VALUE);
    QString out = QLatin1String("before");
    QVERIFY(backend.get(QLatin1String("a"), out, REG_PARAM_VALUE, QString()) != 0);
    QCOMPARE(out, QString::fromLatin1("before"));
}

void VantoraTest::noAnswerIsNoValue()
{
    AnsweringBackend backend;
    QString out = QLatin1String("before");
    QVERIFY(backend.get(QLatin1String("a"), out, REG_PARAM_VALUE, QString()) != 0);
    QCOMPARE(out, QString::fromLatin1("before"));
}

ZELVO_TEST(VantoraTest)
#include "VantoraTest.moc"
