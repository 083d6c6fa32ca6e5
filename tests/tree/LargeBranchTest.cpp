// SPDX-License-Identifier: MIT

#include "support/TestBackend.h"
#include "support/TestKit.h"
#include "support/TestProgram.h"
#include "tree/ConfigBranch.h"
#include "tree/ConfigKey.h"

#include <QtTest>

namespace {

int const kChildren = 100000;

QString nameOf(int number)
{
    return "child-" + QString::number(number);
}

} // namespace

/// A branch has the same order and the same answers however many children it has.
class LargeBranchTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void childrenKeepTheOrderOfTheirAdding();
    void eachChildIsFoundByItsName();
    void replacingChildGoesToTheEnd();
    void renamedChildIsFoundByItsNewNameAtItsPlace();
    void firstOfSeveralNamesakesIsFound();
    void detachedChildLeavesTheOthersInOrder();
    void everySecondChildDetached();
    void allChildrenDetachedAndAddedAgain();
    void detachingWhileSomebodyLooks();
    void cloneHasTheSameChildren();

private:
    QStringList names() const;
    ConfigKey* childAt(int number) const;

    TestBackend mBackend;
    QScopedPointer<ConfigBranch> mBranch;
    QList<ConfigKey*> mKeys;
};

void LargeBranchTest::init()
{
    freshKit(mBackend, QDir("/nonexistent"));
    mBranch.reset(new ConfigBranch("branch", nullptr));
    for (int number = 0; number < kChildren; ++number)
        mKeys.append(new ConfigKey(nameOf(number), QString(), mBranch.data()));
}

void LargeBranchTest::cleanup()
{
    mBranch.reset();
    mKeys.clear();
}

QStringList LargeBranchTest::names() const
{
    QStringList names;
    for (IConfigEntry const* const child : mBranch->children())
        names.append(child->name());
    return names;
}

ConfigKey* LargeBranchTest::childAt(int number) const
{
    return dynamic_cast<ConfigKey*>(mBranch->children().at(number));
}

void LargeBranchTest::childrenKeepTheOrderOfTheirAdding()
{
    QCOMPARE(mBranch->children().size(), kChildren);
    for (int number = 0; number < kChildren; ++number)
        QVERIFY(childAt(number) == mKeys.at(number));
}

void LargeBranchTest::eachChildIsFoundByItsName()
{
    for (int number = 0; number < kChildren; ++number)
        QVERIFY(mBranch->child(nameOf(number)) == mKeys.at(number));
    QVERIFY(!mBranch->child(nameOf(kChildren)));
    QVERIFY(!mBranch->child("CHILD-1"));
    QVERIFY(!mBranch->child(QString()));
}

void LargeBranchTest::replacingChildGoesToTheEnd()
{
    ConfigKey* const second = new ConfigKey(nameOf(17), QString(), mBranch.data());

    QCOMPARE(mBranch->children().size(), kChildren);
    QVERIFY(mBranch->child(nameOf(17)) == second);
    QVERIFY(mBranch->children().last() == second);
    QVERIFY(childAt(17) == mKeys.at(18));
}

void LargeBranchTest::renamedChildIsFoundByItsNewNameAtItsPlace()
{
    for (int number = 0; number < kChildren; number += 2)
        mKeys.at(number)->setName("renamed-" + QString::number(number));

    for (int number = 0; number < kChildren; ++number) {
        bool const isRenamed = number % 2 == 0;
        QString const renamed = "renamed-" + QString::number(number);
        QVERIFY(childAt(number) == mKeys.at(number));
        QVERIFY(mBranch->child(nameOf(number)) == (isRenamed ? nullptr : mKeys.at(number)));
        QVERIFY(mBranch->child(renamed) == (isRenamed ? mKeys.at(number) : nullptr));
    }
}

void LargeBranchTest::firstOfSeveralNamesakesIsFound()
{
    mKeys.at(70000)->setName("same");
    QVERIFY(mBranch->child("same") == mKeys.at(70000));
    mKeys.at(500)->setName("same");
    QVERIFY(mBranch->child("same") == mKeys.at(500));
    mKeys.at(90000)->setName("same");
    QVERIFY(mBranch->child("same") == mKeys.at(500));

    QScopedPointer<ConfigKey> const detached(mKeys.at(500));
    QVERIFY(mBranch->detachChild(*detached));
    QVERIFY(mBranch->child("same") == mKeys.at(70000));
}

void LargeBranchTest::detachedChildLeavesTheOthersInOrder()
{
    QScopedPointer<ConfigKey> const detached(mKeys.at(40000));

    QVERIFY(mBranch->detachChild(*detached));
    QVERIFY(!detached->parent());
    QVERIFY(!mBranch->detachChild(*detached));
    QVERIFY(!mBranch->child(nameOf(40000)));
    QCOMPARE(mBranch->children().size(), kChildren - 1);
    QVERIFY(childAt(39999) == mKeys.at(39999));
    QVERIFY(childAt(40000) == mKeys.at(40001));
}

void LargeBranchTest::everySecondChildDetached()
{
    QStringList expected;
    for (int number = 0; number < kChildren; ++number) {
        if (number % 2 == 1) {
            expected.append(nameOf(number));
            continue;
        }
        QVERIFY(mBranch->detachChild(*mKeys.at(number)));
        delete mKeys.at(number);
    }

    QVERIFY(names() == expected);
    for (int number = 0; number < kChildren; ++number)
        QVERIFY((mBranch->child(nameOf(number)) != nullptr) == (number % 2 == 1));
}

void LargeBranchTest::allChildrenDetachedAndAddedAgain()
{
    for (int number = 0; number < kChildren; ++number) {
        QVERIFY(mBranch->detachChild(*mKeys.at(number)));
        QVERIFY(mBranch->addChild(mKeys.at(number)));
    }
    QCOMPARE(mBranch->children().size(), kChildren);
    for (int number = 0; number < kChildren; ++number)
        QVERIFY(childAt(number) == mKeys.at(number));

    for (int number = kChildren - 1; number >= 0; --number)
        QVERIFY(mBranch->detachChild(*mKeys.at(number)));
    QVERIFY(mBranch->children().isEmpty());
    QVERIFY(!mBranch->child(nameOf(0)));
    for (int number = kChildren - 1; number >= 0; --number)
        QVERIFY(mBranch->addChild(mKeys.at(number)));
    for (int number = 0; number < kChildren; ++number)
        QVERIFY(childAt(number) == mKeys.at(kChildren - 1 - number));
}

void LargeBranchTest::detachingWhileSomebodyLooks()
{
    for (int round = 0; round < 50; ++round) {
        QScopedPointer<IConfigEntry> const first(mBranch->children().first());
        QVERIFY(mBranch->detachChild(*first));
        QVERIFY(!mBranch->children().contains(first.data()));
        QVERIFY(mBranch->children().first() == mKeys.at(round + 1));
        QVERIFY(mBranch->child(nameOf(round + 1)) == mKeys.at(round + 1));
    }
}

void LargeBranchTest::cloneHasTheSameChildren()
{
    mKeys.at(3)->setBufferValue("kept");
    QScopedPointer<ConfigBranch> const copy(dynamic_cast<ConfigBranch*>(mBranch->clone()));

    QCOMPARE(copy->children().size(), kChildren);
    for (int number = 0; number < kChildren; ++number)
        QCOMPARE(copy->children().at(number)->name(), nameOf(number));
    ConfigKey const* const third = dynamic_cast<ConfigKey*>(copy->child(nameOf(3)));
    QVERIFY(third && third != mKeys.at(3));
    QCOMPARE(third->bufferValue(), QString("kept"));
}

ZELVO_TEST(LargeBranchTest)
#include "LargeBranchTest.moc"
