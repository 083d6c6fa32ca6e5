// SPDX-License-Identifier: MIT

#include "actions/default/RequestContext.h"

#include "support/TestBackend.h"
#include "support/TestKit.h"
#include "support/TestProgram.h"
#include "support/TestWrappers.h"
#include "tree/ConfigBranch.h"

#include <QtTest>

#include <thread>

namespace {

QString const kKey = QLatin1String("root/zelvo-view/usb/enable");

/// What another thread sees of the folders of an area.
bool areMissingElsewhere(IConfigEntry const& entry)
{
    bool areMissing = false;
    std::thread([&] { areMissing = RequestContext::sAreFoldersMissing(entry); }).join();
    return areMissing;
}

} // namespace

class RequestContextTest : public QObject
{
    Q_OBJECT

private slots:
    void isThereBeforeTheKit();
    void init();

    void sameRequestWithinIsRepeated();
    void sameRequestFurtherOutIsRepeated();
    void anotherRequestIsNotRepeated_data();
    void anotherRequestIsNotRepeated();
    void requestThatHasEndedIsNotRepeated();
    void requestOfAnotherThreadIsNotRepeated();
    void onlyTheFirstIsOutermost();

    void foldersAreRememberedForItsTime();
    void foldersAreAskedForAnewAfterAScript();
    void foldersAreAskedForAnewAfterARequestWithin();
    void otherThreadsSeeNothingOfIt();
    void scriptOfAnotherThreadLeavesItAlone();

private:
    void makeFolder() const { mWrappers->directory().mkpath("zelvo-view/usb"); }

    TestBackend mBackend;
    QScopedPointer<TestWrappers> mWrappers;
    QScopedPointer<ConfigBranch> mTop;
    ConfigBranch* mUsb;
};

// The first, so that no kit has been made.
void RequestContextTest::isThereBeforeTheKit()
{
    ConfigBranch const top("zelvo-view", nullptr);
    RequestContext const request(RequestContext::Get, kKey);
    QVERIFY(request.isOutermost());
    QVERIFY(!request.isRepeated());
    QVERIFY(!RequestContext::sAreFoldersMissing(top));
    RequestContext::sForgetFolders();
}

void RequestContextTest::init()
{
    if (QByteArray(QTest::currentTestFunction()) == "isThereBeforeTheKit")
        return;
    mWrappers.reset(new TestWrappers);
    freshKit(mBackend, mWrappers->directory());
    mTop.reset(new ConfigBranch("zelvo-view", nullptr));
    mUsb = new ConfigBranch("usb", mTop.data());
}

void RequestContextTest::sameRequestWithinIsRepeated()
{
    RequestContext const outer(RequestContext::Set, kKey);
    QVERIFY(!outer.isRepeated());
    RequestContext const inner(RequestContext::Set, kKey);
    QVERIFY(inner.isRepeated());
    QVERIFY(!outer.isRepeated());
}

void RequestContextTest::sameRequestFurtherOutIsRepeated()
{
    RequestContext const outer(RequestContext::Set, kKey);
    RequestContext const between(RequestContext::Set, "root/zelvo-view/usb/read_only");
    RequestContext const inner(RequestContext::Set, kKey);
    QVERIFY(!between.isRepeated());
    QVERIFY(inner.isRepeated());
}

void RequestContextTest::anotherRequestIsNotRepeated_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<QString>("key");

    QTest::newRow("another operation") << int(RequestContext::Commit) << kKey;
    QTest::newRow("another key") << int(RequestContext::Set) << kKey + "d";
}

void RequestContextTest::anotherRequestIsNotRepeated()
{
    QFETCH(int, operation);
    QFETCH(QString, key);

    RequestContext const outer(RequestContext::Set, kKey);
    RequestContext const inner(static_cast<RequestContext::Operation>(operation), key);
    QVERIFY(!inner.isRepeated());
}

void RequestContextTest::requestThatHasEndedIsNotRepeated()
{
    RequestContext const outer(RequestContext::Get, "root/zelvo-view");
    {
        RequestContext const inner(RequestContext::Set, kKey);
    }
    RequestContext const next(RequestContext::Set, kKey);
    QVERIFY(!next.isRepeated());
}

void RequestContextTest::requestOfAnotherThreadIsNotRepeated()
{
    {
        RequestContext const ended(RequestContext::Set, kKey);
    }
    bool isRepeated = true;
    bool isOutermost = false;
    std::thread([&] {
        RequestContext const request(RequestContext::Set, kKey);
        isRepeated = request.isRepeated();
        isOutermost = request.isOutermost();
    }).join();
    QVERIFY(!isRepeated);
    QVERIFY(isOutermost);
}

void RequestContextTest::onlyTheFirstIsOutermost()
{
    RequestContext const outer(RequestContext::Get, kKey);
    {
        RequestContext const inner(RequestContext::Get, "root/zelvo-view");
        QVERIFY(!inner.isOutermost());
    }
    QVERIFY(outer.isOutermost());
}

void RequestContextTest::foldersAreRememberedForItsTime()
{
    QVERIFY(!RequestContext::sAreFoldersMissing(*mUsb));
    {
        RequestContext const request(RequestContext::Get, kKey);
        QVERIFY(RequestContext::sAreFoldersMissing(*mUsb));
        makeFolder();
        QVERIFY(RequestContext::sAreFoldersMissing(*mUsb));
    }
    QVERIFY(!RequestContext::sAreFoldersMissing(*mUsb));
    RequestContext const next(RequestContext::Get, kKey);
    QVERIFY(!RequestContext::sAreFoldersMissing(*mUsb));
}

void RequestContextTest::foldersAreAskedForAnewAfterAScript()
{
    RequestContext const request(RequestContext::Get, kKey);
    QVERIFY(RequestContext::sAreFoldersMissing(*mUsb));
    makeFolder();
    RequestContext::sForgetFolders();
    QVERIFY(!RequestContext::sAreFoldersMissing(*mUsb));
}

void RequestContextTest::foldersAreAskedForAnewAfterARequestWithin()
{
    RequestContext const outer(RequestContext::Get, kKey);
    QVERIFY(RequestContext::sAreFoldersMissing(*mUsb));
    {
        RequestContext const inner(RequestContext::Get, "root/zelvo-view");
        makeFolder();
        QVERIFY(!RequestContext::sAreFoldersMissing(*mUsb));
    }
    QVERIFY(!RequestContext::sAreFoldersMissing(*mUsb));
}

void RequestContextTest::otherThreadsSeeNothingOfIt()
{
    RequestContext const request(RequestContext::Apply, kKey);
    QVERIFY(RequestContext::sAreFoldersMissing(*mUsb));
    QVERIFY(!areMissingElsewhere(*mUsb));
}

void RequestContextTest::scriptOfAnotherThreadLeavesItAlone()
{
    RequestContext const request(RequestContext::Apply, kKey);
    QVERIFY(RequestContext::sAreFoldersMissing(*mUsb));
    makeFolder();
    std::thread(RequestContext::sForgetFolders).join();
    QVERIFY(RequestContext::sAreFoldersMissing(*mUsb));
}

ZELVO_TEST(RequestContextTest)
#include "RequestContextTest.moc"
