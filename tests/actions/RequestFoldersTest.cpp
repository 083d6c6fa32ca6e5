// SPDX-License-Identifier: MIT

#include "actions/default/RequestContext.h"
#include "plugin/PluginScene.h"
#include "support/TestProgram.h"
#include "tree/ConfigBranch.h"
#include "tree/ConfigKey.h"

#include <QtTest>

namespace {

char const kEnable[] = "usb/enable";
char const kUuid[] = "{c0ffee00-1234-4321-abcd-0123456789ab}";

} // namespace

/// What a request remembers of the folders of the scripts, and that nobody notices: scripts come
/// and go between requests, and during one.
class RequestFoldersTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void areaThatIsThereIsNotMissing();
    void eachAreaIsAskedAbout();
    void topIsNeverMissing();
    void areaNamedByAUuidHasTheFolderOfAllSessions();

    void scriptInANewFolderIsServedFromTheNextRequestOn();
    void removedFolderIsMissedFromTheNextRequestOn();
    void newSetAndCommitScriptsAreServedFromTheNextRequestOn();
    void folderThatAScriptMakesIsSeenInTheSameRequest();
    void folderThatAScriptRemovesIsMissedInTheSameRequest();

private:
    void makeFolder(QString const& viewKey) const { mScene->wrappers.directory().mkpath(viewKey); }

    QStringList get() const
    {
        QStringList answer;
        mScene->get(mScene->at(kEnable), &answer);
        return answer;
    }

    QScopedPointer<PluginScene> mScene;
    QScopedPointer<ConfigBranch> mTop;
    ConfigBranch* mUsb;
    IConfigEntry* mKey;
};

void RequestFoldersTest::init()
{
    mTop.reset();
    mScene.reset();
    mScene.reset(new PluginScene("root/zelvo-view"));
    mTop.reset(new ConfigBranch("zelvo-view", nullptr));
    mUsb = new ConfigBranch("usb", mTop.data());
    mKey = new ConfigKey("enable", QString(), mUsb);
}

void RequestFoldersTest::areaThatIsThereIsNotMissing()
{
    makeFolder("zelvo-view/usb");
    RequestContext const request(RequestContext::Get, kEnable);
    QVERIFY(!RequestContext::sAreFoldersMissing(*mKey));
    QVERIFY(!RequestContext::sAreFoldersMissing(*mUsb));
}

void RequestFoldersTest::eachAreaIsAskedAbout()
{
    makeFolder("zelvo-view/usb");
    ConfigBranch const* const rdp = new ConfigBranch("rdp", mTop.data());
    RequestContext const request(RequestContext::Get, kEnable);
    QVERIFY(!RequestContext::sAreFoldersMissing(*mKey));
    QVERIFY(RequestContext::sAreFoldersMissing(*rdp));
    QVERIFY(!RequestContext::sAreFoldersMissing(*mKey));
}

void RequestFoldersTest::topIsNeverMissing()
{
    RequestContext const request(RequestContext::Get, kEnable);
    QVERIFY(!RequestContext::sAreFoldersMissing(*mTop));
}

void RequestFoldersTest::areaNamedByAUuidHasTheFolderOfAllSessions()
{
    makeFolder("zelvo-view/{uuid}");
    ConfigBranch* const session = new ConfigBranch(kUuid, mTop.data());
    RequestContext const request(RequestContext::Get, kEnable);
    QVERIFY(!RequestContext::sAreFoldersMissing(*session));
}

void RequestFoldersTest::scriptInANewFolderIsServedFromTheNextRequestOn()
{
    QStringList const before = get();
    mScene->wrappers.addScript("zelvo-view/usb/enable", "get.sh", "printf script");
    QVERIFY(before != get());
    QCOMPARE(get(), QStringList("value script"));
}

void RequestFoldersTest::removedFolderIsMissedFromTheNextRequestOn()
{
    QStringList const before = get();
    mScene->wrappers.addScript("zelvo-view/usb/enable", "get.sh", "printf script");
    QCOMPARE(get(), QStringList("value script"));
    QVERIFY(QFile::remove(mScene->wrappers.folder("zelvo-view/usb/enable") + "/get.sh"));
    QVERIFY(mScene->wrappers.directory().rmpath("zelvo-view/usb/enable"));
    QCOMPARE(get(), before);
}

void RequestFoldersTest::newSetAndCommitScriptsAreServedFromTheNextRequestOn()
{
    QString const key = mScene->at("radio/ssid");
    QCOMPARE(mScene->set(key, "first"), 0);
    mScene->logRadioCommits();
    QCOMPARE(mScene->commit(key), 0);
    QCOMPARE(mScene->commits(), QStringList("ssid=first"));
    mScene->wrappers.addScript("zelvo-view/radio/ssid", "set.sh", "printf %s \"of the script\"");
    QCOMPARE(mScene->set(key, "second"), 0);
    QCOMPARE(mScene->commit(key), 0);
    QCOMPARE(mScene->commits(),
             QStringList() << "ssid=first"
                           << "ssid=of the script");
}

void RequestFoldersTest::folderThatAScriptMakesIsSeenInTheSameRequest()
{
    // The view's own script is the last to be asked whether the key is shown.
    mScene->wrappers.addScript("zelvo-view", "isVisible.sh",
                               "mkdir -p usb/enable\n"
                               "printf '#!/bin/sh\\nprintf made' > usb/enable/get.sh\n"
                               "chmod +x usb/enable/get.sh");
    QCOMPARE(get(), QStringList("value made"));
}

void RequestFoldersTest::folderThatAScriptRemovesIsMissedInTheSameRequest()
{
    QStringList const before = get();
    mScene->wrappers.addScript("zelvo-view/usb/enable", "get.sh", "printf script");
    QCOMPARE(get(), QStringList("value script"));
    mScene->wrappers.addScript("zelvo-view", "isVisible.sh", "rm -r usb");
    QCOMPARE(get(), before);
}

ZELVO_TEST(RequestFoldersTest)

#include "RequestFoldersTest.moc"
