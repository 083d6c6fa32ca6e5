// SPDX-License-Identifier: MIT

#include "display/ConfigActions.h"

#include "DisplayBackend.h"
#include "support/TestProgram.h"

#include <QtTest>

namespace {

/// Shows what derived classes may call.
class Actions : public ConfigActions
{
public:
    explicit Actions(Vantora& backend)
        : ConfigActions(backend)
    {
    }

    using ConfigActions::ensurePrimaryProfile;

    bool execute(IConfigEntry const&, QVariant&) override { return false; }
};

QString profile(QString const& name)
{
    return "root/Display/Profiles/" + name;
}

} // namespace

class ConfigActionsTest : public QObject
{
    Q_OBJECT

private slots:
    void startsWithVisibility();
    void keepsTheLastCurrentAction();

    void findsTheProfileByItsLabel();
    void firstOfTwoEqualLabelsWins();
    void labelsDifferByCase();
    void emptyLabelIsALabel();
    void noProfileOfTheLabel();
    void noProfileAtAll();
    void unreadableLabelInUseIsAnEmptyOne();
    void unreadableListing();
    void profileWithoutALabelIsPassedOver();
    void unreadableLabelOfAProfileIsAnEmptyOne();
    void unreadableLabelsAreEqual();

    void keepsAProfileInUse();
    void createsAProfile();
    void secondProfileIsNotCreated();
    void failedStepsOfCreation_data();
    void failedStepsOfCreation();
};

void ConfigActionsTest::startsWithVisibility()
{
    DisplayBackend backend;
    QCOMPARE(int(Actions(backend).currentAction()), 1);
}

void ConfigActionsTest::keepsTheLastCurrentAction()
{
    DisplayBackend backend;
    Actions actions(backend);
    actions.setCurrentAction(ISettingClass::ACTION_VALUE);
    actions.setCurrentAction(ISettingClass::ACTION_COMMIT);
    QCOMPARE(int(actions.currentAction()), 6);
}

void ConfigActionsTest::findsTheProfileByItsLabel()
{
    DisplayBackend backend;
    backend.addProfile("{a}", "Home");
    backend.addProfile("{b}", "Office");
    backend.addProfile("{c}", "Travel");
    backend.use("Office");
    QCOMPARE(Actions(backend).primaryProfilePath(), profile("{b}"));
}

void ConfigActionsTest::firstOfTwoEqualLabelsWins()
{
    DisplayBackend backend;
    backend.addProfile("{c}", "Office");
    backend.addProfile("{b}", "Office");
    backend.addProfile("{a}", "Home");
    backend.use("Office");
    QCOMPARE(Actions(backend).primaryProfilePath(), profile("{b}"));
}

void ConfigActionsTest::labelsDifferByCase()
{
    DisplayBackend backend;
    backend.addProfile("{a}", "office");
    backend.use("Office");
    QVERIFY(Actions(backend).primaryProfilePath().isNull());
}

void ConfigActionsTest::emptyLabelIsALabel()
{
    DisplayBackend backend;
    backend.addProfile("{a}", "");
    backend.use("");
    QCOMPARE(Actions(backend).primaryProfilePath(), profile("{a}"));
}

void ConfigActionsTest::noProfileOfTheLabel()
{
    DisplayBackend backend;
    backend.addProfile("{a}", "Home");
    backend.use("Office");
    QVERIFY(Actions(backend).primaryProfilePath().isNull());
}

void ConfigActionsTest::noProfileAtAll()
{
    DisplayBackend backend;
    backend.use("Office");
    QVERIFY(Actions(backend).primaryProfilePath().isNull());
}

void ConfigActionsTest::unreadableLabelInUseIsAnEmptyOne()
{
    DisplayBackend backend;
    backend.addProfile("{a}", "Home");
    backend.addProfile("{b}", "");
    QCOMPARE(Actions(backend).primaryProfilePath(), profile("{b}"));
}

void ConfigActionsTest::unreadableListing()
{
    DisplayBackend backend;
    backend.addProfile("{a}", "Office");
    backend.use("Office");
    backend.failOn("get", "root/Display/Profiles");
    QVERIFY(Actions(backend).primaryProfilePath().isNull());
}

void ConfigActionsTest::profileWithoutALabelIsPassedOver()
{
    DisplayBackend backend;
    backend.addDirectory("root/Display/Profiles", QStringList("{a}/"));
    backend.addProfile("{b}", "Office");
    backend.use("Office");
    QCOMPARE(Actions(backend).primaryProfilePath(), profile("{b}"));
}

void ConfigActionsTest::unreadableLabelOfAProfileIsAnEmptyOne()
{
    DisplayBackend backend;
    backend.addProfile("{a}", "Home");
    backend.addDirectory("root/Display/Profiles", QStringList("{b}/"));
    backend.use("");
    QCOMPARE(Actions(backend).primaryProfilePath(), profile("{b}"));
}

void ConfigActionsTest::unreadableLabelsAreEqual()
{
    DisplayBackend backend;
    backend.addDirectory("root/Display/Profiles", QStringList("{a}/"));
    QCOMPARE(Actions(backend).primaryProfilePath(), profile("{a}"));
}

void ConfigActionsTest::keepsAProfileInUse()
{
    DisplayBackend backend;
    backend.addProfile("{a}", "Office");
    backend.use("Office");
    QCOMPARE(Actions(backend).ensurePrimaryProfile(), profile("{a}"));
    QCOMPARE(backend.calls("create"), QStringList());
    QCOMPARE(backend.calls("set"), QStringList());
}

void ConfigActionsTest::createsAProfile()
{
    DisplayBackend backend;
    backend.addProfile("{a}", "Home");
    backend.use("Office");

    QString const path = Actions(backend).ensurePrimaryProfile();

    QString const name = path.section('/', -1);
    QCOMPARE(path, profile(name));
    QVERIFY2(QRegExp("\\{[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\\}").exactMatch(name),
             qPrintable(name));
    QStringList expected;
    expected << "create " + path << "set " + path + "/label Zelvo"
             << "set root/Display/Configuration/primaryprofile Zelvo"
             << "commit root/Display";
    QStringList changes = backend.calls();
    QStringList const reads = backend.calls("get");
    for (QString const& call : reads)
        changes.removeAll(call);
    QCOMPARE(changes, expected);
    QCOMPARE(backend.value(path + "/label"), QString("Zelvo"));
    QCOMPARE(backend.value("root/Display/Configuration/primaryprofile"), QString("Zelvo"));
}

void ConfigActionsTest::secondProfileIsNotCreated()
{
    DisplayBackend backend;
    QString const path = Actions(backend).ensurePrimaryProfile();
    QVERIFY(!path.isNull());
    QCOMPARE(Actions(backend).ensurePrimaryProfile(), path);
    QCOMPARE(backend.calls("create").size(), 1);
}

void ConfigActionsTest::failedStepsOfCreation_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("isThere");

    // The results are not looked at: what counts is whether the profile is found afterwards.
    QTest::newRow("create answers a failure, yet the profile is there") << "create" << true;
    QTest::newRow("set, so that neither has a label") << "set" << true;
    QTest::newRow("commit") << "commit" << false;
    QTest::newRow("get") << "get" << false;
}

void ConfigActionsTest::failedStepsOfCreation()
{
    QFETCH(QString, operation);
    QFETCH(bool, isThere);

    DisplayBackend backend;
    backend.fail(operation, TestBackend::kEvery);
    QCOMPARE(!Actions(backend).ensurePrimaryProfile().isNull(), isThere);
    QCOMPARE(backend.calls("create").size(), 1);
    QCOMPARE(backend.calls("set").size(), 2);
    QCOMPARE(backend.calls("commit"), QStringList("commit root/Display"));
}

ZELVO_TEST(ConfigActionsTest)

#include "ConfigActionsTest.moc"
