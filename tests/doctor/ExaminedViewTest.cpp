// SPDX-License-Identifier: MIT

#include "doctor/ExaminedView.h"

#include "TestView.h"
#include "doctor/Explanation.h"
#include "support/TestProgram.h"

#include <QtTest>

class ExaminedViewTest : public QObject
{
    Q_OBJECT

private slots:
    void uuidIsPutIntoTheRegistryKey();
    void keyThatTheViewDoesNotHave_data();
    void keyThatTheViewDoesNotHave();
};

void ExaminedViewTest::uuidIsPutIntoTheRegistryKey()
{
    TestView scene;
    QString const uuid("{01234567-89ab-cdef-0123-456789abcdef}");
    ExaminedEntry const entry(scene.view, "root/zelvo-view/ica/sessions/" + uuid + "/proxy/port");
    QVERIFY(entry.isKnown());
    QCOMPARE(entry.viewKey(), QString("zelvo-view/ica/sessions/{uuid}/proxy/port"));
    Explanation const explanation = explain(scene.view, entry);
    QCOMPARE(explanation.operations.at(1).registryKeys,
             QStringList("root/ConnectionType/ica/connections/" + uuid + "/proxyPort"));
    QCOMPARE(explanation.folder,
             scene.wrappers.folder("zelvo-view/ica/sessions/{uuid}/proxy/port"));
}

void ExaminedViewTest::keyThatTheViewDoesNotHave_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("unknown") << "root/zelvo-view/nothing";
    QTest::newRow("above the view") << "root";
    QTest::newRow("beside the view") << "root/USB/root/mass-storage/allowed";
    QTest::newRow("a name that only begins like the view") << "root/zelvo-viewer";
    QTest::newRow("below a value") << "root/zelvo-view/usb/enable/x";
    QTest::newRow("the registry's placeholder") << "root/zelvo-view/rdp/sessions/{UUID}/name";
    QTest::newRow("no UUID") << "root/zelvo-view/rdp/sessions/x/name";
    QTest::newRow("empty") << "";
}

void ExaminedViewTest::keyThatTheViewDoesNotHave()
{
    QFETCH(QString, key);

    TestView scene;
    QVERIFY(!ExaminedEntry(scene.view, key).isKnown());
}

ZELVO_TEST(ExaminedViewTest)
#include "ExaminedViewTest.moc"
