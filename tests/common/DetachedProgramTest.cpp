// SPDX-License-Identifier: MIT

#include "common/DetachedProgram.h"

#include "support/TestDirectory.h"
#include "support/TestProgram.h"
#include "support/Waiting.h"

#include <QFile>
#include <QtTest>

#include <unistd.h>

class DetachedProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void noWordsAreNoProgram();
    void programThatIsNotThereCountsAsStarted();
    void argumentsArriveAsTheyAre();
    void programIsInASessionThatIsNotTheCallers();
};

namespace {

/// What `script` writes to its standard output, detached; "$@" are `arguments`.
QByteArray told(QString const& script, QStringList const& arguments = QStringList())
{
    TestDirectory const directory;
    QString const output = directory.file("output");
    QString const body = QString("{ %1; } >'%2.new'; mv '%2.new' '%2'").arg(script, output);
    if (!startDetachedProgram(QStringList() << "sh"
                                            << "-c" << body << "sh" << arguments))
        return "not started";
    bool const hasOutput = waitUntil([&output] { return QFile::exists(output); });
    return hasOutput ? directory.read("output") : "no output";
}

} // namespace

void DetachedProgramTest::noWordsAreNoProgram()
{
    QVERIFY(!startDetachedProgram(QStringList()));
}

void DetachedProgramTest::programThatIsNotThereCountsAsStarted()
{
    QVERIFY(startDetachedProgram(QStringList("/nonexistent/program")));
}

void DetachedProgramTest::argumentsArriveAsTheyAre()
{
    QCOMPARE(told("printf '<%s>' \"$@\"",
                  QStringList() << "a b"
                                << "" << QString::fromUtf8("caf\xc3\xa9 $(id)")),
             QByteArray("<a b><><caf\xc3\xa9 $(id)>"));
}

void DetachedProgramTest::programIsInASessionThatIsNotTheCallers()
{
    QByteArray const session = told("cut -d ' ' -f 6 /proc/$$/stat").trimmed();
    QVERIFY(session.toInt() > 0);
    QVERIFY(session.toInt() != ::getsid(0));
}

ZELVO_TEST(DetachedProgramTest)
#include "DetachedProgramTest.moc"
