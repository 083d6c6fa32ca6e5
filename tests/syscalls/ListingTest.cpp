// SPDX-License-Identifier: MIT

// Whom a listing of sessions asks whether they are visible.

#include "actions/ActionKit.h"
#include "actions/IConfigAction.h"
#include "plugin/PluginScene.h"
#include "support/TestProgram.h"
#include "tree/IConfigEntry.h"

#include <QtTest>

namespace {

char const kShown[] = "{c0ffee00-1234-4321-abcd-0123456789ab}";
char const kHidden[] = "{deadbeef-1234-4321-abcd-0123456789ab}";
char const kSessionKey[] = "zelvo-view/rdp/sessions/{uuid}";

class HidesOneSession : public IConfigAction
{
public:
    bool execute(IConfigEntry const& entry, QVariant& data) override
    {
        data = entry.name() != kHidden;
        return true;
    }
};

} // namespace

class ListingTest : public QObject
{
    Q_OBJECT

private slots:
    void scriptRunsOnceForAllSessions();
    void hidingScriptHidesAllSessions();
    void actionIsAskedForEachSession();
};

void ListingTest::scriptRunsOnceForAllSessions()
{
    PluginScene scene("root/zelvo-view");
    scene.addSessions("rdesktop", QStringList() << kShown << kHidden);
    scene.wrappers.addScript(kSessionKey, "isVisible.sh", "echo asked >> log");
    QStringList answer;
    QCOMPARE(scene.get(scene.at("rdp/sessions"), &answer), 0);
    QCOMPARE(answer.size(), 2);
    QCOMPARE(scene.wrappers.read(kSessionKey, "log"), QByteArray("asked\n"));
}

void ListingTest::hidingScriptHidesAllSessions()
{
    PluginScene scene("root/zelvo-view");
    scene.addSessions("rdesktop", QStringList() << kShown << kHidden);
    scene.wrappers.addScript(kSessionKey, "isVisible.sh", "echo asked >> log; exit 1");
    QStringList answer;
    QCOMPARE(scene.get(scene.at("rdp/sessions"), &answer), 0);
    QCOMPARE(answer, QStringList());
    QCOMPARE(scene.wrappers.read(kSessionKey, "log"), QByteArray("asked\n"));
}

void ListingTest::actionIsAskedForEachSession()
{
    PluginScene scene("root/zelvo-view");
    scene.addSessions("rdesktop", QStringList() << kShown << kHidden);
    HidesOneSession action;
    ActionKit::instance()->registerIsVisibleAction(kSessionKey, &action);
    QStringList answer;
    QCOMPARE(scene.get(scene.at("rdp/sessions"), &answer), 0);
    QCOMPARE(answer, QStringList() << "dir " + scene.at("rdp/sessions/") + kShown);
}

ZELVO_TEST(ListingTest)

#include "ListingTest.moc"
