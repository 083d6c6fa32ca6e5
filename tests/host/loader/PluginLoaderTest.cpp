// SPDX-License-Identifier: MIT

#include "loader/PluginLoader.h"

#include "support/TestProgram.h"

#include <vantora/abstractplugin.h>

#include <QDir>
#include <QFile>
#include <QPointer>
#include <QTemporaryFile>
#include <QtTest>

#include <cstddef>
#include <cstring>
#include <initializer_list>

#include <link.h>

namespace {

QString module(char const* name)
{
    return QString::fromLatin1(MODULES_DIR "/%1.so").arg(QLatin1String(name));
}

/// Where the last part of a module ends that is mapped into memory.
int endOfLastPart(QByteArray const& module)
{
    ElfW(Ehdr) header;
    std::memcpy(&header, module.constData(), sizeof header);
    quint64 end = 0;
    for (int i = 0; i < header.e_phnum; ++i) {
        ElfW(Phdr) part;
        std::memcpy(&part, module.constData() + header.e_phoff + i * sizeof part, sizeof part);
        if (part.p_type == PT_LOAD)
            end = qMax<quint64>(end, part.p_offset + part.p_filesz);
    }
    return int(end);
}

QObject* object(AbstractPlugin* plugin)
{
    return dynamic_cast<QObject*>(plugin);
}

} // namespace

class PluginLoaderTest : public QObject
{
    Q_OBJECT

private slots:
    void goodModuleGivesItsPlugin();
    void relativePathIsTakenFromTheWorkingDirectory();
    void pluginIsDeletedWithItsLoader();
    void pluginsAreDeletedInTheReverseOrder();
    void moduleIsNotLoadedTwice();
    void moduleIsUsableAfterItsPluginIsGone();
    void badModuleIsAMessage_data();
    void badModuleIsAMessage();
    void fileThatIsNoModuleIsAMessage_data();
    void fileThatIsNoModuleIsAMessage();

public slots:
    void noteDeletion() { mDeleted.append(sender()->objectName()); }

private:
    QStringList mDeleted;
};

void PluginLoaderTest::goodModuleGivesItsPlugin()
{
    PluginLoader loader;
    QString error;
    AbstractPlugin* const plugin = loader.load(module("good"), error);
    QVERIFY2(plugin, qPrintable(error));
    QVERIFY(error.isNull());
    QCOMPARE(plugin->name(), QString::fromLatin1("module"));
    QCOMPARE(plugin->rootDir(), QString::fromLatin1("root/module"));
}

void PluginLoaderTest::relativePathIsTakenFromTheWorkingDirectory()
{
    QString const before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(QLatin1String(MODULES_DIR)));
    PluginLoader loader;
    QString error;
    AbstractPlugin* const plugin = loader.load(QLatin1String("good.so"), error);
    QDir::setCurrent(before);
    QVERIFY2(plugin, qPrintable(error));
}

void PluginLoaderTest::pluginIsDeletedWithItsLoader()
{
    QPointer<QObject> plugin;
    {
        PluginLoader loader;
        QString error;
        plugin = object(loader.load(module("good"), error));
        QVERIFY(plugin);
    }
    QVERIFY(plugin.isNull());
}

void PluginLoaderTest::pluginsAreDeletedInTheReverseOrder()
{
    mDeleted.clear();
    {
        PluginLoader loader;
        for (char const* const name : {"good", "second"}) {
            QString error;
            QObject* const plugin = object(loader.load(module(name), error));
            QVERIFY2(plugin, qPrintable(error));
            plugin->setObjectName(name);
            connect(plugin, SIGNAL(destroyed()), SLOT(noteDeletion()));
        }
    }
    QCOMPARE(mDeleted,
             QStringList() << "second"
                           << "good");
}

void PluginLoaderTest::moduleIsNotLoadedTwice()
{
    PluginLoader loader;
    QString error;
    QVERIFY2(loader.load(module("good"), error), qPrintable(error));
    QVERIFY(!loader.load(module("good"), error));
    QVERIFY2(error.endsWith(QLatin1String(": it is loaded already")), qPrintable(error));
}

void PluginLoaderTest::moduleIsUsableAfterItsPluginIsGone()
{
    QString error;
    {
        PluginLoader loader;
        QVERIFY(loader.load(module("good"), error));
    }
    PluginLoader loader;
    QVERIFY2(loader.load(module("good"), error), qPrintable(error));
}

void PluginLoaderTest::badModuleIsAMessage_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");

    QTest::newRow("function that no library has") << "unknown-function"
                                                  << "undefined symbol";
    QTest::newRow("no verification record")
        << "without-record"
        << "it has no entry point qt_plugin_query_verification_data";
    QTest::newRow("no instance function") << "without-instance"
                                          << "it has no entry point qt_plugin_instance";
    QTest::newRow("other pattern") << "other-pattern"
                                   << "its verification pattern is \"SOMETHING_ELSE\"";
    QTest::newRow("other version") << "other-version"
                                   << "its Qt version is \"5.15.2\", this host loads 4.0 to 4.8";
    QTest::newRow("debug build") << "debug-build"
                                 << "its debug flag is \"true\", this host loads \"false\"";
    QTest::newRow("other build key") << "other-build-key"
                                     << "its build key is \"x86_64 linux g++-4 full-config\", "
                                        "this host loads \"arm linux g++-4 full-config\"";
    QTest::newRow("null instance") << "null-instance"
                                   << "it gives no plugin object";
    QTest::newRow("instance of another class")
        << "other-instance"
        << "its object, a QObject, is no plugin of interface "
           "com.orbelt.vantora.ConfigPlugin/1.1";
}

void PluginLoaderTest::badModuleIsAMessage()
{
    QFETCH(QString, name);
    QFETCH(QString, message);

    PluginLoader loader;
    QString const file = module(qPrintable(name));
    QVERIFY(QFile::exists(file));
    QString error;
    QVERIFY(!loader.load(file, error));
    QVERIFY2(error.startsWith(QString::fromLatin1("cannot load %1: ").arg(file)),
             qPrintable(error));
    QVERIFY2(error.contains(message), qPrintable(error));
}

void PluginLoaderTest::fileThatIsNoModuleIsAMessage_data()
{
    QTest::addColumn<QByteArray>("contents");

    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("text") << QByteArray("This is no module.\n");
    QTest::newRow("nothing but the mark of a module") << QByteArray("\177ELF");

    QFile good(module("good"));
    QVERIFY(good.open(QIODevice::ReadOnly));
    QByteArray const whole = good.readAll();
    int const partOfHeader = 20;
    int const partOfTable = 100;
    int const partOfCode = 0x2100;
    QTest::newRow("module cut off in its header") << whole.left(partOfHeader);
    QTest::newRow("module cut off in its table of parts") << whole.left(partOfTable);
    QTest::newRow("module cut off in its code") << whole.left(partOfCode);
    QTest::newRow("module without the end of its last part")
        << whole.left(endOfLastPart(whole) - 1);
    QTest::newRow("module whose table of parts lies nowhere") << QByteArray(whole).replace(
        offsetof(ElfW(Ehdr), e_phoff), sizeof(ElfW(Off)), QByteArray(sizeof(ElfW(Off)), '\377'));
}

void PluginLoaderTest::fileThatIsNoModuleIsAMessage()
{
    QFETCH(QByteArray, contents);

    QTemporaryFile file;
    QVERIFY(file.open());
    QCOMPARE(file.write(contents), qint64(contents.size()));
    QVERIFY(file.flush());

    PluginLoader loader;
    QString error;
    QVERIFY(!loader.load(file.fileName(), error));
    QVERIFY2(error.startsWith(QLatin1String("cannot load ")), qPrintable(error));

    QVERIFY(!loader.load(QDir::tempPath(), error));
    QVERIFY2(error.contains(QLatin1String("there is no such file")), qPrintable(error));
    QVERIFY(!loader.load(QString(), error));
}

ZELVO_TEST(PluginLoaderTest)

#include "PluginLoaderTest.moc"
