// SPDX-License-Identifier: MIT

// The plugin as it is built and shipped: what the file shows to a loader, and what its entry points
// answer.

#include "support/TestProgram.h"

#include <vantora/abstractplugin.h>

#include <QPointer>
#include <QProcess>
#include <QRegExp>
#include <QStringList>
#include <QtTest>

#include <dlfcn.h>

namespace {

char const kInterfaceId[] = "com.orbelt.vantora.ConfigPlugin/1.1";

/// What a program prints, line by line; no lines when it cannot be run or fails.
QStringList linesOf(char const* program, QStringList const& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        return QStringList();
    QStringList lines
        = QString::fromLatin1(process.readAllStandardOutput().constData()).split("\n");
    lines.removeAll(QString());
    return lines;
}

/// Whether the compiler brings the library along, with or without a sanitizer.
bool isCompilersOwn(QString const& library)
{
    static QRegExp const names(
        "(libstdc\\+\\+|libgcc_s|libm|libc|libpthread|libdl|librt|ld-linux.*"
        "|libasan|libubsan|libtsan|libqt-for-thread-sanitizer)\\.so(\\..*)?");
    return names.exactMatch(library);
}

} // namespace

class PluginModuleTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void exportsTheTwoEntryPointsAndNothingElse();
    void needsThePlatformsLibrariesAndQtAlone();
    void verificationRecordIsThePlatformsByteForByte();
    void instanceTwiceIsTheSameObject();
    void instanceAfterDeletionIsANewObject();
    void instanceAnswersToItsNameBeforeItIsLoaded();
    void metacast_data();
    void metacast();

private:
    typedef char const* (*Verification)();
    typedef QObject* (*Instance)();

    Verification mVerification;
    Instance mInstance;
};

void PluginModuleTest::initTestCase()
{
    void* const module = ::dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    QVERIFY2(module, ::dlerror());
    mVerification
        = reinterpret_cast<Verification>(::dlsym(module, "qt_plugin_query_verification_data"));
    mInstance = reinterpret_cast<Instance>(::dlsym(module, "qt_plugin_instance"));
    QVERIFY(mVerification);
    QVERIFY(mInstance);
}

void PluginModuleTest::exportsTheTwoEntryPointsAndNothingElse()
{
    QStringList const lines = linesOf(NM_PROGRAM,
                                      QStringList() << "-D"
                                                    << "--defined-only"
                                                    << "-P" << PLUGIN_FILE);
    QStringList symbols;
    for (QString const& line : lines)
        symbols << line.section(' ', 0, 1);
    symbols.sort();
    QCOMPARE(symbols,
             QStringList() << "qt_plugin_instance T"
                           << "qt_plugin_query_verification_data T");
}

void PluginModuleTest::needsThePlatformsLibrariesAndQtAlone()
{
    QStringList const lines
        = linesOf(READELF_PROGRAM, QStringList() << "-d" << PLUGIN_FILE).filter("(NEEDED)");
    QStringList needed;
    for (QString const& line : lines) {
        QString const library = line.section('[', 1).section(']', 0, 0);
        if (!isCompilersOwn(library))
            needed << library;
    }
    needed.sort();
#if QT_VERSION < 0x050000
    QStringList const qt = QStringList() << "libQtCore.so.4"
                                         << "libQtDBus.so.4";
#else
    QStringList const qt = QStringList() << "libQt5Core.so.5"
                                         << "libQt5DBus.so.5";
#endif
    QCOMPARE(needed,
             qt
                 + (QStringList() << "libvantora.so.0"
                                  << "libvantoraclient.so.0"));
}

void PluginModuleTest::verificationRecordIsThePlatformsByteForByte()
{
    QCOMPARE(QByteArray(mVerification()),
             QByteArray("pattern=QT_PLUGIN_VERIFICATION_DATA\nversion=4.6.2\ndebug=false\n"
                        "buildkey=arm linux g++-4 full-config"));
    QVERIFY(mVerification() == mVerification());
}

void PluginModuleTest::instanceTwiceIsTheSameObject()
{
    QObject* const first = mInstance();
    QVERIFY(first);
    QVERIFY(mInstance() == first);
}

void PluginModuleTest::instanceAfterDeletionIsANewObject()
{
    QPointer<QObject> const first = mInstance();
    delete first;
    QVERIFY(first.isNull());

    QObject* const second = mInstance();
    QVERIFY(second);
    QCOMPARE(QByteArray(second->metaObject()->className()), QByteArray("ZelvoView"));
    QVERIFY(mInstance() == second);
}

void PluginModuleTest::instanceAnswersToItsNameBeforeItIsLoaded()
{
    AbstractPlugin* const plugin = qobject_cast<AbstractPlugin*>(mInstance());
    QVERIFY(plugin);
    QCOMPARE(plugin->name(), QString("zelvo-view"));
    QCOMPARE(plugin->rootDir(), QString("root/zelvo-view"));
    QCOMPARE(plugin->tmpRootDir(), QString("tmp/zelvo-view"));
    QVERIFY(!plugin->getDefaultSettings());
}

void PluginModuleTest::metacast_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    QTest::newRow("its own class: the object") << "ZelvoView"
                                               << "object";
    QTest::newRow("QObject: the object") << "QObject"
                                         << "object";
    QTest::newRow("the host's base: that part") << "AbstractPlugin"
                                                << "part";
    QTest::newRow("the interface id: the host's part") << kInterfaceId << "part";
    QTest::newRow("another version of the interface: null") << "com.orbelt.vantora.ConfigPlugin/1.2"
                                                            << "null";
    QTest::newRow("the host's interface, which has no id: null") << "ConfigPlugin"
                                                                 << "null";
    QTest::newRow("in another case: null") << "zelvoview"
                                           << "null";
    QTest::newRow("empty: null") << ""
                                 << "null";
}

void PluginModuleTest::metacast()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);

    QObject* const object = mInstance();
    AbstractPlugin* const part = dynamic_cast<AbstractPlugin*>(object);
    QVERIFY(part);
    // Else the rows could not tell the one from the other.
    QVERIFY(static_cast<void*>(part) != static_cast<void*>(object));

    void* const answer = object->qt_metacast(name.toLatin1().constData());
    if (expected == "object")
        QVERIFY(answer == static_cast<void*>(object));
    else if (expected == "part")
        QVERIFY(answer == static_cast<void*>(part));
    else
        QVERIFY(!answer);
}

ZELVO_TEST(PluginModuleTest)
#include "PluginModuleTest.moc"
