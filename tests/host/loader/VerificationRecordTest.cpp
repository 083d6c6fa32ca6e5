// SPDX-License-Identifier: MIT

#include "loader/VerificationRecord.h"

#include "support/TestProgram.h"

#include <QtTest>

class VerificationRecordTest : public QObject
{
    Q_OBJECT

private slots:
    void fields();
    void fieldThatIsMissingIsNull();
    void firstOfARepeatedFieldCounts();
    void mismatch_data();
    void mismatch();
};

void VerificationRecordTest::fields()
{
    VerificationRecord const record("pattern=P\nversion=4.6.2\ndebug=false\nbuildkey=a b=c");
    QCOMPARE(record.pattern(), QString::fromLatin1("P"));
    QCOMPARE(record.version(), QString::fromLatin1("4.6.2"));
    QCOMPARE(record.debug(), QString::fromLatin1("false"));
    QCOMPARE(record.buildKey(), QString::fromLatin1("a b=c"));
}

void VerificationRecordTest::fieldThatIsMissingIsNull()
{
    VerificationRecord const record("pattern=\nVersion=4.6.2\n debug=false\n");
    QVERIFY(!record.pattern().isNull());
    QVERIFY(record.pattern().isEmpty());
    QVERIFY(record.version().isNull());
    QVERIFY(record.debug().isNull());
    QVERIFY(record.buildKey().isNull());
}

void VerificationRecordTest::firstOfARepeatedFieldCounts()
{
    QCOMPARE(VerificationRecord("version=4.6.2\nversion=5.0.0").version(),
             QString::fromLatin1("4.6.2"));
}

void VerificationRecordTest::mismatch_data()
{
    QTest::addColumn<QByteArray>("text");
    // A part of the message; null where the module may be loaded.
    QTest::addColumn<QString>("message");

    QByteArray const pattern = "pattern=QT_PLUGIN_VERIFICATION_DATA\n";
    QByteArray const version = "version=4.6.2\n";
    QByteArray const debug = "debug=false\n";
    QByteArray const key = "buildkey=arm linux g++-4 full-config";

    QTest::newRow("the platform's own build") << pattern + version + debug + key << QString();
    QTest::newRow("other order") << key + "\n" + debug + version + pattern << QString();
    QTest::newRow("newline at the end") << pattern + version + debug + key + "\n" << QString();
    QTest::newRow("lines that are no field")
        << "\n\n=\nmore=1\n" + pattern + version + debug + key << QString();
    QTest::newRow("first version") << pattern + "version=4.0.0\n" + debug + key << QString();
    QTest::newRow("highest minor version")
        << pattern + "version=4.8.7\n" + debug + key << QString();
    QTest::newRow("no patch level") << pattern + "version=4.8\n" + debug + key << QString();
    QTest::newRow("minor version above")
        << pattern + "version=4.9.0\n" + debug + key << "its Qt version is \"4.9.0\"";
    QTest::newRow("major version above")
        << pattern + "version=5.15.2\n" + debug + key << "its Qt version is \"5.15.2\"";
    QTest::newRow("major version below")
        << pattern + "version=3.3.8\n" + debug + key << "its Qt version is \"3.3.8\"";
    QTest::newRow("negative minor version")
        << pattern + "version=4.-1.0\n" + debug + key << "its Qt version is \"4.-1.0\"";
    QTest::newRow("version without a minor one")
        << pattern + "version=4\n" + debug + key << "its Qt version is \"4\"";
    QTest::newRow("version in words")
        << pattern + "version=four.six\n" + debug + key << "its Qt version is \"four.six\"";
    QTest::newRow("version beyond any number")
        << pattern + "version=4.99999999999999999999\n" + debug + key << "its Qt version is";
    QTest::newRow("no version") << pattern + debug + key << "its Qt version is nothing";
    QTest::newRow("other pattern")
        << "pattern=qt\n" + version + debug + key << "its verification pattern is \"qt\"";
    QTest::newRow("no pattern") << version + debug + key << "its verification pattern is nothing";
    QTest::newRow("debug build") << pattern + version + "debug=true\n" + key
                                 << "its debug flag is \"true\"";
    QTest::newRow("no debug flag") << pattern + version + key << "its debug flag is nothing";
    QTest::newRow("other build key") << pattern + version + debug + "buildkey=x86"
                                     << "its build key is \"x86\"";
    QTest::newRow("build key with a blank behind it") << pattern + version + debug + key + " "
                                                      << "its build key is";
    QTest::newRow("no build key") << pattern + version + debug << "its build key is nothing";
    QTest::newRow("carriage returns")
        << QByteArray(pattern + version + debug + key).replace("\n", "\r\n")
        << "its verification pattern is";
    QTest::newRow("empty") << QByteArray() << "its verification pattern is nothing";
    QTest::newRow("a megabyte of nothing")
        << QByteArray(1 << 20, '=') << "its verification pattern is nothing";
    QTest::newRow("a value of a megabyte")
        << "pattern=" + QByteArray(1 << 20, 'x') << "its verification pattern is \"xxx";
}

void VerificationRecordTest::mismatch()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    int const aLine = 200;

    QString const mismatch = VerificationRecord(text).mismatch();
    QCOMPARE(mismatch.isNull(), message.isNull());
    QVERIFY2(mismatch.contains(message), qPrintable(mismatch));
    QVERIFY(mismatch.size() < aLine);
}

ZELVO_TEST(VerificationRecordTest)

#include "VerificationRecordTest.moc"
