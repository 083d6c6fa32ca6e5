// SPDX-License-Identifier: MIT

#include "display/DisplayModeActions.h"

#include "DisplayBackend.h"
#include "support/Footprint.h"
#include "support/TestProgram.h"
#include "tree/ConfigKey.h"

#include <QtTest>

#include <limits>

#include <sys/stat.h>

namespace {

QString const kProfile = QString::fromLatin1("root/Display/Profiles/{a}");
QString const kPrimary = QString::fromLatin1("root/Display/Configuration/primaryprofile");
QString const kSecondary = QString::fromLatin1("root/Display/Configuration/secondaryprofile");
QString const kMode = QString::fromLatin1("root/Display/Configuration/secondarymode");
QString const kSwap = QString::fromLatin1("root/Display/Configuration/swapstate");
QString const kPreferences = QString::fromLatin1("/etc/wlox-display-prefs/prefs.conf");

QVector<QString> modeNames()
{
    return QVector<QString>() << "Same as primary"
                              << "Extend above primary"
                              << "Extend to the right of primary"
                              << "Extend to the left of primary"
                              << "Extend below primary";
}

/// The actions of the display key of that name.
ConfigActions* newActions(QString const& name, Vantora& backend)
{
    if (name == "color_depth")
        return new ColorDepthActions(backend);
    if (name == "multi_monitor_mode")
        return new MultiMonitorModeActions(backend, modeNames());
    if (name == "refresh_rate")
        return new RefreshRateActions(backend);
    if (name == "resolution")
        return new ResolutionActions(backend);
    return new PrimaryMonitorActions(backend);
}

/// The keys behind the display key of that name.
QStringList keysOf(QString const& name)
{
    if (name == "resolution")
        return QStringList() << kProfile + "/width" << kProfile + "/height";
    if (name == "refresh_rate")
        return QStringList(kProfile + "/refresh");
    if (name == "color_depth")
        return QStringList(kProfile + "/depth");
    if (name == "multi_monitor_mode")
        return QStringList() << kSecondary << kMode;
    return QStringList(kSwap);
}

QString bytes(char const* text, int size)
{
    return QString::fromLatin1(text, size);
}

} // namespace

/// Each case starts with a profile in use, labelled "Office", and without a preferences file.
class DisplayModeActionsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void otherOperationsDoNothing_data();
    void otherOperationsDoNothing();
    void value_data();
    void value();
    void unreadableValue_data();
    void unreadableValue();
    void stored_data();
    void stored();
    void variantAfterSetting_data();
    void variantAfterSetting();
    void failedWrite_data();
    void failedWrite();
    void committed_data();
    void committed();
    void failedCommit_data();
    void failedCommit();

    void withoutAProfile_data();
    void withoutAProfile();
    void firstSettingMakesAProfile_data();
    void firstSettingMakesAProfile();
    void noProfileCanBeMade_data();
    void noProfileCanBeMade();
    void refusedRateStillMakesAProfile();

    void rateWithoutPreferences_data();
    void rateWithoutPreferences();
    void rateOfThePreferences_data();
    void rateOfThePreferences();
    void unusablePreferences_data();
    void unusablePreferences();
    void readingPreferencesLeavesNothingOpen();

    void modesOfTheXgiDriver_data();
    void modesOfTheXgiDriver();
    void xgiDriverNeedsNoLabel();
    void noLabelForTheOtherMonitors();
    void preferencesAreAFileAndALink();

    void primaryMonitorIsAnInteger();
    void primaryMonitorOfAnInteger_data();
    void primaryMonitorOfAnInteger();

private:
    /// Executes the action of the operation on the key of that name.
    bool run(QString const& name, ISettingClass::Action_t action, QVariant& value);
    bool set(QString const& name, QVariant const& value);

    void writePreferences(QByteArray const& content);
    void linkPreferences(QString const& target);

    QScopedPointer<DisplayBackend> mBackend;
};

void DisplayModeActionsTest::initTestCase()
{
    // The preferences have a fixed path: never those of the machine.
    QVERIFY2(!qgetenv("VANTORA_SANDBOX_RECORD").isEmpty(), "to be run in the sandbox only");
}

void DisplayModeActionsTest::init()
{
    QVERIFY(!QFileInfo(kPreferences).exists());
    mBackend.reset(new DisplayBackend);
    mBackend->addProfile("{a}", "Office");
    mBackend->use("Office");
}

void DisplayModeActionsTest::cleanup()
{
    QDir().rmdir(kPreferences);
    QFile::remove(kPreferences);
}

bool DisplayModeActionsTest::run(QString const& name, ISettingClass::Action_t action,
                                 QVariant& value)
{
    QScopedPointer<ConfigActions> const actions(newActions(name, *mBackend));
    ConfigKey const entry(name, QString(), nullptr);
    actions->setCurrentAction(action);
    return actions->execute(entry, value);
}

bool DisplayModeActionsTest::set(QString const& name, QVariant const& value)
{
    QVariant data = value;
    return run(name, ISettingClass::ACTION_SET_VALUE, data);
}

void DisplayModeActionsTest::writePreferences(QByteArray const& content)
{
    QFile file(kPreferences);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

void DisplayModeActionsTest::linkPreferences(QString const& target)
{
    QVERIFY(QFile::link(target, kPreferences));
}

void DisplayModeActionsTest::otherOperationsDoNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("action");

    QTest::newRow("resolution, visibility") << "resolution" << 1;
    QTest::newRow("resolution, creation") << "resolution" << 4;
    QTest::newRow("resolution, deletion") << "resolution" << 5;
    QTest::newRow("resolution, applying") << "resolution" << 7;
    QTest::newRow("refresh rate, applying") << "refresh_rate" << 7;
    QTest::newRow("color depth, visibility") << "color_depth" << 1;
    QTest::newRow("multi-monitor mode, creation") << "multi_monitor_mode" << 4;
    QTest::newRow("primary monitor, deletion") << "primary_monitor" << 5;
}

void DisplayModeActionsTest::otherOperationsDoNothing()
{
    QFETCH(QString, name);
    QFETCH(int, action);

    QVariant value("kept");
    QVERIFY(!run(name, static_cast<ISettingClass::Action_t>(action), value));
    QCOMPARE(value, QVariant("kept"));
    QCOMPARE(mBackend->calls(), QStringList());
}

void DisplayModeActionsTest::value_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("registry");
    QTest::addColumn<QString>("expected");

    QTest::newRow("resolution") << "resolution"
                                << (QStringList()
                                    << kProfile + "/width=1024" << kProfile + "/height=768")
                                << "1024x768";
    QTest::newRow("resolution, both 0: automatic")
        << "resolution" << (QStringList() << kProfile + "/width=0" << kProfile + "/height=0")
        << "Auto";
    QTest::newRow("resolution, width 0 alone")
        << "resolution" << (QStringList() << kProfile + "/width=0" << kProfile + "/height=600")
        << "0x600";
    QTest::newRow("resolution, height 0 alone")
        << "resolution" << (QStringList() << kProfile + "/width=800" << kProfile + "/height=0")
        << "800x0";
    QTest::newRow("resolution, texts that mean 0 are not it")
        << "resolution" << (QStringList() << kProfile + "/width=00" << kProfile + "/height=0")
        << "00x0";
    QTest::newRow("resolution, empty texts")
        << "resolution" << (QStringList() << kProfile + "/width=" << kProfile + "/height=") << "x";

    QTest::newRow("refresh rate") << "refresh_rate" << QStringList(kProfile + "/refresh=75")
                                  << "75";
    QTest::newRow("refresh rate 0: automatic")
        << "refresh_rate" << QStringList(kProfile + "/refresh=0") << "Auto";
    QTest::newRow("refresh rate, a text that means 0 is not it")
        << "refresh_rate" << QStringList(kProfile + "/refresh=00") << "00";

    QTest::newRow("color depth") << "color_depth" << QStringList(kProfile + "/depth=16")
                                 << "16 Bpp";
    QTest::newRow("color depth, empty text")
        << "color_depth" << QStringList(kProfile + "/depth=") << " Bpp";

    QStringList const used(kSecondary + "=Office");
    QTest::newRow("mode 0") << "multi_monitor_mode" << (used + QStringList(kMode + "=0"))
                            << "Same as primary";
    QTest::newRow("mode 1") << "multi_monitor_mode" << (used + QStringList(kMode + "=1"))
                            << "Extend above primary";
    QTest::newRow("mode 2") << "multi_monitor_mode" << (used + QStringList(kMode + "=2"))
                            << "Extend to the right of primary";
    QTest::newRow("mode 3") << "multi_monitor_mode" << (used + QStringList(kMode + "=3"))
                            << "Extend to the left of primary";
    QTest::newRow("mode 4") << "multi_monitor_mode" << (used + QStringList(kMode + "=4"))
                            << "Extend below primary";
    QTest::newRow("mode beyond the names: the first")
        << "multi_monitor_mode" << (used + QStringList(kMode + "=5")) << "Same as primary";
    QTest::newRow("largest mode: the first")
        << "multi_monitor_mode" << (used + QStringList(kMode + "=2147483647")) << "Same as primary";
    QTest::newRow("negative mode: the first")
        << "multi_monitor_mode" << (used + QStringList(kMode + "=-1")) << "Same as primary";
    QTest::newRow("smallest mode: the first")
        << "multi_monitor_mode" << (used + QStringList(kMode + "=-2147483648"))
        << "Same as primary";
    QTest::newRow("no profile for the others, whatever the mode")
        << "multi_monitor_mode" << (QStringList() << kSecondary + "=<None>" << kMode + "=nonsense")
        << "Disable";
    QTest::newRow("no profile in another case is a label")
        << "multi_monitor_mode" << (QStringList() << kSecondary + "=<none>" << kMode + "=4")
        << "Extend below primary";

    QTest::newRow("primary monitor, the first")
        << "primary_monitor" << QStringList(kSwap + "=0") << "1";
    QTest::newRow("primary monitor, the second")
        << "primary_monitor" << QStringList(kSwap + "=1") << "2";
    QTest::newRow("primary monitor, negative")
        << "primary_monitor" << QStringList(kSwap + "=-3") << "-2";
    QTest::newRow("primary monitor, largest")
        << "primary_monitor" << QStringList(kSwap + "=2147483646") << "2147483647";
}

void DisplayModeActionsTest::value()
{
    QFETCH(QString, name);
    QFETCH(QStringList, registry);
    QFETCH(QString, expected);

    for (QString const& line : static_cast<QStringList const&>(registry))
        mBackend->addValue(line.section('=', 0, 0), line.section('=', 1));
    QVariant value;
    QVERIFY(run(name, ISettingClass::ACTION_VALUE, value));
    QCOMPARE(value.toString(), expected);
    QCOMPARE(mBackend->calls("set") + mBackend->calls("commit"), QStringList());
}

void DisplayModeActionsTest::unreadableValue_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("registry");

    QTest::newRow("resolution, no width") << "resolution" << QStringList(kProfile + "/height=768");
    QTest::newRow("resolution, no height") << "resolution" << QStringList(kProfile + "/width=1024");
    QTest::newRow("refresh rate") << "refresh_rate" << QStringList();
    QTest::newRow("color depth") << "color_depth" << QStringList();
    QTest::newRow("multi-monitor mode, no profile")
        << "multi_monitor_mode" << QStringList(kMode + "=1");
    QTest::newRow("multi-monitor mode, no mode")
        << "multi_monitor_mode" << QStringList(kSecondary + "=Office");
    QTest::newRow("multi-monitor mode, no number")
        << "multi_monitor_mode" << (QStringList() << kSecondary + "=Office" << kMode + "=left");
    QTest::newRow("multi-monitor mode, empty")
        << "multi_monitor_mode" << (QStringList() << kSecondary + "=Office" << kMode + "=");
    QTest::newRow("multi-monitor mode, too large")
        << "multi_monitor_mode"
        << (QStringList() << kSecondary + "=Office" << kMode + "=2147483648");
    QTest::newRow("primary monitor") << "primary_monitor" << QStringList();
    QTest::newRow("primary monitor, no number")
        << "primary_monitor" << QStringList(kSwap + "=left");
    QTest::newRow("primary monitor, empty") << "primary_monitor" << QStringList(kSwap + "=");
    QTest::newRow("primary monitor, too large")
        << "primary_monitor" << QStringList(kSwap + "=99999999999");
    QTest::newRow("primary monitor, none behind the largest")
        << "primary_monitor" << QStringList(kSwap + "=2147483647");
}

void DisplayModeActionsTest::unreadableValue()
{
    QFETCH(QString, name);
    QFETCH(QStringList, registry);

    for (QString const& line : static_cast<QStringList const&>(registry))
        mBackend->addValue(line.section('=', 0, 0), line.section('=', 1));
    QVariant value("kept");
    QVERIFY(!run(name, ISettingClass::ACTION_VALUE, value));
    QCOMPARE(value, QVariant("kept"));
}

void DisplayModeActionsTest::stored_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");

    QString const none;
    QString const many(1 << 22, '7');
    QTest::newRow("resolution") << "resolution"
                                << "1024x768"
                                << "1024"
                                << "768";
    QTest::newRow("resolution, automatic") << "resolution"
                                           << "Auto"
                                           << "0"
                                           << "0";
    QTest::newRow("resolution, more behind it") << "resolution"
                                                << "1024x768x16"
                                                << "1024"
                                                << "768";
    QTest::newRow("resolution, width 0") << "resolution"
                                         << "0x600"
                                         << "0"
                                         << "600";
    QTest::newRow("resolution, a blank in front") << "resolution"
                                                  << " 1024x768"
                                                  << "0"
                                                  << "0";
    QTest::newRow("resolution, capital X") << "resolution"
                                           << "1024X768"
                                           << "0"
                                           << "0";
    QTest::newRow("resolution, no height") << "resolution"
                                           << "1024x"
                                           << "0"
                                           << "0";
    QTest::newRow("resolution, no width") << "resolution"
                                          << "x768"
                                          << "0"
                                          << "0";
    QTest::newRow("resolution, a number alone") << "resolution"
                                                << "1024"
                                                << "0"
                                                << "0";
    QTest::newRow("resolution, negative width") << "resolution"
                                                << "-1024x768"
                                                << "0"
                                                << "0";
    QTest::newRow("resolution, too large a number") << "resolution"
                                                    << "99999999999999999999x1"
                                                    << "99999999999999999999"
                                                    << "1";
    QTest::newRow("resolution, NUL behind it") << "resolution" << bytes("1024x768\0x", 10) << "1024"
                                               << "768";
    QTest::newRow("resolution, NUL in front") << "resolution" << bytes("\0001024x768", 9) << "0"
                                              << "0";
    QTest::newRow("resolution, empty") << "resolution"
                                       << ""
                                       << "0"
                                       << "0";
    QTest::newRow("resolution, null") << "resolution" << QString() << "0"
                                      << "0";
    QTest::newRow("resolution, megabytes of digits") << "resolution" << many << "0"
                                                     << "0";
    QTest::newRow("resolution, megabytes behind it") << "resolution"
                                                     << "1024x768x" + many << "1024"
                                                     << "768";

    QTest::newRow("color depth") << "color_depth"
                                 << "16 Bpp"
                                 << "16" << none;
    QTest::newRow("color depth, more behind it") << "color_depth"
                                                 << "24 Bpp!"
                                                 << "24" << none;
    QTest::newRow("color depth, no blank") << "color_depth"
                                           << "16Bpp"
                                           << "8" << none;
    QTest::newRow("color depth, two blanks") << "color_depth"
                                             << "16  Bpp"
                                             << "8" << none;
    QTest::newRow("color depth, a blank in front") << "color_depth"
                                                   << " 16 Bpp"
                                                   << "8" << none;
    QTest::newRow("color depth, other case") << "color_depth"
                                             << "16 bpp"
                                             << "8" << none;
    QTest::newRow("color depth, a number alone") << "color_depth"
                                                 << "16"
                                                 << "8" << none;
    QTest::newRow("color depth, no number") << "color_depth"
                                            << " Bpp"
                                            << "8" << none;
    QTest::newRow("color depth, automatic") << "color_depth"
                                            << "Auto"
                                            << "8" << none;
    QTest::newRow("color depth, empty") << "color_depth"
                                        << ""
                                        << "8" << none;
    QTest::newRow("color depth, megabytes of digits") << "color_depth" << many << "8" << none;

    QTest::newRow("mode 0") << "multi_monitor_mode"
                            << "Same as primary"
                            << "Office"
                            << "0";
    QTest::newRow("mode 1") << "multi_monitor_mode"
                            << "Extend above primary"
                            << "Office"
                            << "1";
    QTest::newRow("mode 2") << "multi_monitor_mode"
                            << "Extend to the right of primary"
                            << "Office"
                            << "2";
    QTest::newRow("mode 3") << "multi_monitor_mode"
                            << "Extend to the left of primary"
                            << "Office"
                            << "3";
    QTest::newRow("mode 4") << "multi_monitor_mode"
                            << "Extend below primary"
                            << "Office"
                            << "4";
    QTest::newRow("no other monitor") << "multi_monitor_mode"
                                      << "Disable"
                                      << "<None>"
                                      << "0";
    QTest::newRow("mode, unknown name") << "multi_monitor_mode"
                                        << "Mirror"
                                        << "Office"
                                        << "0";
    QTest::newRow("mode, other case") << "multi_monitor_mode"
                                      << "extend below primary"
                                      << "Office"
                                      << "0";
    QTest::newRow("mode, a number") << "multi_monitor_mode"
                                    << "4"
                                    << "Office"
                                    << "0";
    QTest::newRow("mode, Disable in another case") << "multi_monitor_mode"
                                                   << "disable"
                                                   << "Office"
                                                   << "0";
    QTest::newRow("mode, empty") << "multi_monitor_mode"
                                 << ""
                                 << "Office"
                                 << "0";

    QTest::newRow("primary monitor 1") << "primary_monitor"
                                       << "1"
                                       << "0" << none;
    QTest::newRow("primary monitor 2") << "primary_monitor"
                                       << "2"
                                       << "1" << none;
    QTest::newRow("primary monitor 0") << "primary_monitor"
                                       << "0"
                                       << "0" << none;
    QTest::newRow("primary monitor, negative") << "primary_monitor"
                                               << "-7"
                                               << "0" << none;
    QTest::newRow("primary monitor, smallest") << "primary_monitor"
                                               << "-2147483648"
                                               << "0" << none;
    QTest::newRow("primary monitor, largest") << "primary_monitor"
                                              << "2147483647"
                                              << "2147483646" << none;
    QTest::newRow("primary monitor, too large") << "primary_monitor"
                                                << "99999999999"
                                                << "0" << none;
    QTest::newRow("primary monitor, no number") << "primary_monitor"
                                                << "left"
                                                << "0" << none;
    QTest::newRow("primary monitor, empty") << "primary_monitor"
                                            << ""
                                            << "0" << none;
    QTest::newRow("primary monitor, megabytes of digits")
        << "primary_monitor" << many << "0" << none;
}

void DisplayModeActionsTest::stored()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(QString, first);
    QFETCH(QString, second);

    QVERIFY(set(name, value));
    QStringList const keys = keysOf(name);
    QStringList expected("set " + keys.first() + " " + first);
    if (!second.isNull())
        expected.append("set " + keys.last() + " " + second);
    QCOMPARE(mBackend->calls("set"), expected);
    QCOMPARE(mBackend->calls("commit") + mBackend->calls("create"), QStringList());
}

void DisplayModeActionsTest::variantAfterSetting_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("isWritten");
    QTest::addColumn<QString>("expected");

    QTest::newRow("color depth: the stored number") << "color_depth"
                                                    << "16 Bpp" << true << "16";
    QTest::newRow("color depth, nonsense: the stored number") << "color_depth"
                                                              << "many" << true << "8";
    QTest::newRow("color depth, failed: as it was") << "color_depth"
                                                    << "16 Bpp" << false << "16 Bpp";
    QTest::newRow("refresh rate: the stored text") << "refresh_rate"
                                                   << "Auto" << true << "0";
    QTest::newRow("refresh rate, failed: as it was") << "refresh_rate"
                                                     << "Auto" << false << "Auto";
    QTest::newRow("resolution: as it was") << "resolution"
                                           << "1024x768x16" << true << "1024x768x16";
    QTest::newRow("resolution, failed: as it was") << "resolution"
                                                   << "1024x768" << false << "1024x768";
}

void DisplayModeActionsTest::variantAfterSetting()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(bool, isWritten);
    QFETCH(QString, expected);

    if (!isWritten)
        mBackend->fail("set");
    QVariant data(value);
    QCOMPARE(run(name, ISettingClass::ACTION_SET_VALUE, data), isWritten);
    QCOMPARE(data, QVariant(expected));
}

void DisplayModeActionsTest::failedWrite_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("failing");
    QTest::addColumn<int>("tried");

    QTest::newRow("resolution, first: the second is not tried") << "resolution"
                                                                << "1024x768" << 1 << 1;
    QTest::newRow("resolution, second: the first stays") << "resolution"
                                                         << "1024x768" << 2 << 2;
    QTest::newRow("refresh rate") << "refresh_rate"
                                  << "75" << 1 << 1;
    QTest::newRow("color depth") << "color_depth"
                                 << "16 Bpp" << 1 << 1;
    QTest::newRow("mode, first: the second is not tried") << "multi_monitor_mode"
                                                          << "Extend below primary" << 1 << 1;
    QTest::newRow("mode, second: the first stays") << "multi_monitor_mode"
                                                   << "Extend below primary" << 2 << 2;
    QTest::newRow("Disable, first: the second is not tried") << "multi_monitor_mode"
                                                             << "Disable" << 1 << 1;
    QTest::newRow("Disable, second: the first stays") << "multi_monitor_mode"
                                                      << "Disable" << 2 << 2;
    QTest::newRow("primary monitor") << "primary_monitor"
                                     << "2" << 1 << 1;
}

void DisplayModeActionsTest::failedWrite()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(int, failing);
    QFETCH(int, tried);

    mBackend->fail("set", failing);
    QVERIFY(!set(name, value));
    QCOMPARE(mBackend->calls("set").size(), tried);
    QStringList const keys = keysOf(name);
    for (int i = 0; i < keys.size(); ++i)
        QCOMPARE(!mBackend->pendingValue(keys.at(i)).isNull(), i + 1 < failing);
    QCOMPARE(mBackend->calls("rollback"), QStringList());
}

void DisplayModeActionsTest::committed_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("resolution: width, then height") << "resolution";
    QTest::newRow("refresh rate") << "refresh_rate";
    QTest::newRow("color depth") << "color_depth";
    QTest::newRow("multi-monitor mode: profile, then mode") << "multi_monitor_mode";
    QTest::newRow("primary monitor") << "primary_monitor";
}

void DisplayModeActionsTest::committed()
{
    QFETCH(QString, name);

    QVariant value("kept");
    QVERIFY(run(name, ISettingClass::ACTION_COMMIT, value));
    QStringList expected;
    QStringList const keys = keysOf(name);
    for (QString const& key : keys)
        expected.append("commit " + key);
    QCOMPARE(mBackend->calls("commit"), expected);
    QCOMPARE(mBackend->calls("set"), QStringList());
    QCOMPARE(value, QVariant("kept"));
}

void DisplayModeActionsTest::failedCommit_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("failing");
    QTest::addColumn<int>("tried");

    QTest::newRow("resolution, first: the second is tried too") << "resolution" << 1 << 2;
    QTest::newRow("resolution, second") << "resolution" << 2 << 2;
    QTest::newRow("refresh rate") << "refresh_rate" << 1 << 1;
    QTest::newRow("color depth") << "color_depth" << 1 << 1;
    QTest::newRow("multi-monitor mode, first: the second is tried too")
        << "multi_monitor_mode" << 1 << 2;
    QTest::newRow("multi-monitor mode, second") << "multi_monitor_mode" << 2 << 2;
    QTest::newRow("primary monitor") << "primary_monitor" << 1 << 1;
}

void DisplayModeActionsTest::failedCommit()
{
    QFETCH(QString, name);
    QFETCH(int, failing);
    QFETCH(int, tried);

    mBackend->fail("commit", failing);
    QVariant value;
    QVERIFY(!run(name, ISettingClass::ACTION_COMMIT, value));
    QCOMPARE(mBackend->calls("commit").size(), tried);
}

void DisplayModeActionsTest::withoutAProfile_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("resolution") << "resolution";
    QTest::newRow("refresh rate") << "refresh_rate";
    QTest::newRow("color depth") << "color_depth";
}

void DisplayModeActionsTest::withoutAProfile()
{
    QFETCH(QString, name);

    mBackend->use("Home");
    QVariant value("kept");
    QVERIFY(!run(name, ISettingClass::ACTION_VALUE, value));
    QVERIFY(!run(name, ISettingClass::ACTION_COMMIT, value));
    QCOMPARE(value, QVariant("kept"));
    QCOMPARE(mBackend->calls("create") + mBackend->calls("commit"), QStringList());
}

void DisplayModeActionsTest::firstSettingMakesAProfile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored");

    QTest::newRow("resolution") << "resolution"
                                << "800x600"
                                << "/height"
                                << "600";
    QTest::newRow("refresh rate") << "refresh_rate"
                                  << "60"
                                  << "/refresh"
                                  << "60";
    QTest::newRow("color depth") << "color_depth"
                                 << "16 Bpp"
                                 << "/depth"
                                 << "16";
}

void DisplayModeActionsTest::firstSettingMakesAProfile()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(QString, key);
    QFETCH(QString, stored);

    mBackend->use("Home");
    QVERIFY(set(name, value));
    QString const made = mBackend->calls("create").join(" ").section(' ', 1);
    QVERIFY2(made.startsWith("root/Display/Profiles/{") && made.endsWith("}"), qPrintable(made));
    QCOMPARE(mBackend->value(made + "/label"), QString("Zelvo"));
    QCOMPARE(mBackend->value(kPrimary), QString("Zelvo"));
    QCOMPARE(mBackend->pendingValue(made + key), stored);

    QVERIFY(set(name, value));
    QCOMPARE(mBackend->calls("create").size(), 1);
}

void DisplayModeActionsTest::noProfileCanBeMade_data()
{
    firstSettingMakesAProfile_data();
}

void DisplayModeActionsTest::noProfileCanBeMade()
{
    QFETCH(QString, name);
    QFETCH(QString, value);

    mBackend->use("Home");
    mBackend->fail("commit");
    QVERIFY(!set(name, value));
    // The label and the profile in use; nothing behind the display key.
    QCOMPARE(mBackend->calls("set").size(), 2);
}

void DisplayModeActionsTest::refusedRateStillMakesAProfile()
{
    mBackend->use("Home");
    QVERIFY(!set("refresh_rate", "85"));
    QCOMPARE(mBackend->calls("create").size(), 1);
    QCOMPARE(mBackend->calls("set").filter("/refresh"), QStringList());
}

void DisplayModeActionsTest::rateWithoutPreferences_data()
{
    QTest::addColumn<QString>("rate");
    QTest::addColumn<QString>("stored");

    QString const refused;
    QTest::newRow("automatic") << "Auto"
                               << "0";
    QTest::newRow("0 is automatic too") << "0"
                                        << "0";
    QTest::newRow("75") << "75"
                        << "75";
    QTest::newRow("72") << "72"
                        << "72";
    QTest::newRow("60") << "60"
                        << "60";
    QTest::newRow("none of the four") << "85" << refused;
    QTest::newRow("automatic in another case") << "auto" << refused;
    QTest::newRow("a blank behind it") << "75 " << refused;
    QTest::newRow("a unit behind it") << "75Hz" << refused;
    QTest::newRow("the same number in another text") << "075" << refused;
    QTest::newRow("empty") << "" << refused;
}

void DisplayModeActionsTest::rateWithoutPreferences()
{
    QFETCH(QString, rate);
    QFETCH(QString, stored);

    QVariant value(rate);
    QCOMPARE(run("refresh_rate", ISettingClass::ACTION_SET_VALUE, value), !stored.isNull());
    QCOMPARE(mBackend->pendingValue(kProfile + "/refresh"), stored);
    QCOMPARE(value.toString(), stored.isNull() ? rate : stored);
    QCOMPARE(mBackend->calls("set").size(), stored.isNull() ? 0 : 1);
}

void DisplayModeActionsTest::rateOfThePreferences_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("rate");
    QTest::addColumn<bool>("isAccepted");

    QByteArray const two = "[Mode]\nRefresh=85,1024x768\nDepth=16\nRefresh=70,800x600\n";
    QTest::newRow("the first offered") << two << "85" << true;
    QTest::newRow("another offered") << two << "70" << true;
    QTest::newRow("one of the usual four, not offered") << two << "75" << false;
    QTest::newRow("what follows the comma") << two << "1024x768" << false;
    QTest::newRow("the whole line") << two << "85,1024x768" << false;
    QTest::newRow("automatic is not offered") << two << "Auto" << false;
    QTest::newRow("automatic is offered as 0") << QByteArray("Refresh=0,x\n") << "Auto" << true;
    QTest::newRow("Auto in the file is not the 0 of the request")
        << QByteArray("Refresh=Auto\n") << "Auto" << false;
    QTest::newRow("no comma") << QByteArray("Refresh=85\n") << "85" << true;
    QTest::newRow("no newline") << QByteArray("Refresh=85") << "85" << true;
    QTest::newRow("CR at the line's end") << QByteArray("Refresh=85\r\n") << "85" << true;
    QTest::newRow("blanks around the rate") << QByteArray("Refresh= \t85 ,x\n") << "85" << true;
    QTest::newRow("no rate in the line") << QByteArray("Refresh=\n") << "75" << false;
    QTest::newRow("the empty rate of a line without one") << QByteArray("Refresh=") << "" << true;
    QTest::newRow("the name in another case is no offer: the usual four")
        << QByteArray("refresh=85\n") << "75" << true;
    QTest::newRow("a blank in front is no offer: the usual four")
        << QByteArray(" Refresh=85\n") << "85" << false;
    QTest::newRow("a comment is no offer: the usual four")
        << QByteArray("#Refresh=85\n") << "60" << true;
    QTest::newRow("a blank before the sign is no offer: the usual four")
        << QByteArray("Refresh =85\n") << "85" << false;
    QTest::newRow("Latin-1") << QByteArray("Refresh=8\xb5\n") << QString::fromLatin1("8\xb5")
                             << true;
    QTest::newRow("not UTF-8") << QByteArray("Refresh=8\xc2\xb5\n") << QString::fromLatin1("8\xb5")
                               << false;
    QTest::newRow("a NUL belongs to the rate")
        << QByteArray("Refresh=85\0,x\n", 14) << "85" << false;
    QTest::newRow("behind a NUL in another line")
        << QByteArray("\0\0\n\0Refresh=85\nRefresh=70\n", 26) << "70" << true;
    QTest::newRow("behind a line of megabytes") << QByteArray(1 << 23, ',') + "\nRefresh=85\n"
                                                << "85" << true;
    QTest::newRow("inside a line of megabytes: the usual four")
        << QByteArray(1 << 23, 'x') + "Refresh=85\n"
        << "85" << false;
    QTest::newRow("megabytes behind the rate")
        << "Refresh=85," + QByteArray(1 << 23, ',') << "85" << true;
}

void DisplayModeActionsTest::rateOfThePreferences()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, rate);
    QFETCH(bool, isAccepted);

    writePreferences(file);
    QCOMPARE(set("refresh_rate", rate), isAccepted);
    QCOMPARE(mBackend->calls("set").size(), isAccepted ? 1 : 0);
}

void DisplayModeActionsTest::unusablePreferences_data()
{
    QTest::addColumn<QString>("kind");

    QTest::newRow("empty file") << "empty";
    QTest::newRow("random bytes") << "random";
    QTest::newRow("directory") << "directory";
    QTest::newRow("link to nothing") << "/nowhere/prefs";
    QTest::newRow("link to itself") << kPreferences;
    QTest::newRow("link to a file without an end") << "/dev/zero";
    QTest::newRow("pipe that nobody writes") << "pipe";
}

void DisplayModeActionsTest::unusablePreferences()
{
    QFETCH(QString, kind);

    QByteArray random;
    for (unsigned state = 1; random.size() < 100000; state = state * 1103515245U + 12345U)
        random.append(static_cast<char>(state >> 16));

    if (kind == "empty")
        writePreferences(QByteArray());
    else if (kind == "random")
        writePreferences(random);
    else if (kind == "directory")
        QVERIFY(QDir().mkdir(kPreferences));
    else if (kind == "pipe")
        QCOMPARE(::mkfifo(QFile::encodeName(kPreferences).constData(), 0600), 0);
    else
        linkPreferences(kind);

    QVERIFY(set("refresh_rate", "75"));
    QVERIFY(!set("refresh_rate", "85"));
    QVERIFY(set("multi_monitor_mode", "Extend below primary"));
    QCOMPARE(mBackend->pendingValue(kSecondary), QString("Office"));
}

void DisplayModeActionsTest::readingPreferencesLeavesNothingOpen()
{
    writePreferences("Refresh=85\n");
    Footprint const before;
    QVERIFY(set("refresh_rate", "85"));
    QVERIFY(set("multi_monitor_mode", "Same as primary"));
    QCOMPARE(Footprint().newSince(before), QStringList());
}

void DisplayModeActionsTest::modesOfTheXgiDriver_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("profile");

    QTest::newRow("absolute") << "/usr/share/display/prefs.xgi"
                              << "<None>";
    QTest::newRow("relative") << "prefs.xgi"
                              << "<None>";
    QTest::newRow("only the end counts") << "/usr/share/display/old-prefs.xgi"
                                         << "<None>";
    QTest::newRow("another driver") << "/usr/share/display/prefs.via"
                                    << "Office";
    QTest::newRow("more behind it") << "/usr/share/display/prefs.xgi.old"
                                    << "Office";
    QTest::newRow("other case") << "/usr/share/display/prefs.XGI"
                                << "Office";
    QTest::newRow("below a directory of the name") << "/usr/share/prefs.xgi/prefs"
                                                   << "Office";
}

void DisplayModeActionsTest::modesOfTheXgiDriver()
{
    QFETCH(QString, target);
    QFETCH(QString, profile);

    // There is nothing at the target: the link is looked at, not the file.
    linkPreferences(target);
    QVERIFY(set("multi_monitor_mode", "Extend to the left of primary"));
    QCOMPARE(mBackend->calls("set"),
             QStringList() << "set " + kSecondary + " " + profile << "set " + kMode + " 3");
}

void DisplayModeActionsTest::xgiDriverNeedsNoLabel()
{
    linkPreferences("prefs.xgi");
    mBackend->failOn("get", kPrimary);
    QVERIFY(set("multi_monitor_mode", "Same as primary"));
    QCOMPARE(mBackend->pendingValue(kSecondary), QString("<None>"));
}

void DisplayModeActionsTest::noLabelForTheOtherMonitors()
{
    mBackend->failOn("get", kPrimary);
    QVERIFY(!set("multi_monitor_mode", "Same as primary"));
    QCOMPARE(mBackend->calls("set"), QStringList());
    QVERIFY(set("multi_monitor_mode", "Disable"));
}

void DisplayModeActionsTest::preferencesAreAFileAndALink()
{
    QString const target = "/etc/wlox-display-prefs/prefs.xgi";
    linkPreferences(target);
    QFile file(target);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("Refresh=85,1024x768\n");
    file.close();

    QVERIFY(set("refresh_rate", "85"));
    QVERIFY(!set("refresh_rate", "75"));
    QVERIFY(set("multi_monitor_mode", "Same as primary"));
    QCOMPARE(mBackend->pendingValue(kSecondary), QString("<None>"));
    QVERIFY(QFile::remove(target));
}

void DisplayModeActionsTest::primaryMonitorIsAnInteger()
{
    mBackend->addValue(kSwap, "1");
    QVariant value;
    QVERIFY(run("primary_monitor", ISettingClass::ACTION_VALUE, value));
    QCOMPARE(value, QVariant(2));
    QCOMPARE(value.type(), QVariant::Int);
}

void DisplayModeActionsTest::primaryMonitorOfAnInteger_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("stored");

    QTest::newRow("2") << 2 << "1";
    QTest::newRow("0") << 0 << "0";
    QTest::newRow("smallest") << std::numeric_limits<int>::min() << "0";
    QTest::newRow("largest") << std::numeric_limits<int>::max() << "2147483646";
}

void DisplayModeActionsTest::primaryMonitorOfAnInteger()
{
    QFETCH(int, number);
    QFETCH(QString, stored);

    QVERIFY(set("primary_monitor", number));
    QCOMPARE(mBackend->pendingValue(kSwap), stored);
}

ZELVO_TEST(DisplayModeActionsTest)

#include "DisplayModeActionsTest.moc"
