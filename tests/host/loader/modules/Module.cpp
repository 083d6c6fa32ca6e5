// SPDX-License-Identifier: MIT

// A tiny plugin module. What is wrong with it is chosen by definitions; without any it is a good
// one.

#include <vantora/abstractplugin.h>

#include <QObject>
#include <QPointer>

#ifndef RECORD_PATTERN
#define RECORD_PATTERN "QT_PLUGIN_VERIFICATION_DATA"
#endif
#ifndef RECORD_VERSION
#define RECORD_VERSION "4.6.2"
#endif
#ifndef RECORD_DEBUG
#define RECORD_DEBUG "false"
#endif
#ifndef RECORD_BUILD_KEY
#define RECORD_BUILD_KEY "arm linux g++-4 full-config"
#endif

class ModulePlugin : public QObject, public AbstractPlugin
{
    Q_OBJECT
    Q_INTERFACES(AbstractPlugin)

public:
    ModulePlugin() { setName(QLatin1String("module")); }
};

#ifdef USES_UNKNOWN_FUNCTION
int functionOfNoLibrary();
int sAnswer = functionOfNoLibrary();
#endif

#ifndef WITHOUT_RECORD
extern "C" Q_DECL_EXPORT char const* qt_plugin_query_verification_data()
{
    return "pattern=" RECORD_PATTERN "\nversion=" RECORD_VERSION "\ndebug=" RECORD_DEBUG
           "\nbuildkey=" RECORD_BUILD_KEY;
}
#endif

#ifndef WITHOUT_INSTANCE
extern "C" Q_DECL_EXPORT QObject* qt_plugin_instance()
{
#if defined(NULL_INSTANCE)
    return nullptr;
#elif defined(OTHER_INSTANCE)
    static QObject other;
    return &other;
#else
    // The host deletes its plugins; the next one that asks gets a new one.
    static QPointer<QObject> plugin;
    if (!plugin)
        plugin = new ModulePlugin;
    return plugin;
#endif
}
#endif

#include "Module.moc"
