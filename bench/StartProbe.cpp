// SPDX-License-Identifier: MIT

// Prints how many nanoseconds this process takes to load a module.
//
// usage: StartProbe empty MODULE              loading alone
//        StartProbe plugin MODULE BASE-DIR    until the plugin has answered its first get

#include "loader/PluginLoader.h"
#include "registry/RegistryHost.h"

#include <vantora/abstractplugin.h>

#include <chrono>
#include <cstdio>
#include <cstring>

#include <dlfcn.h>

namespace {

typedef std::chrono::steady_clock Clock;

int report(Clock::time_point start)
{
    std::printf("%lld\n",
                static_cast<long long>(std::chrono::nanoseconds(Clock::now() - start).count()));
    return 0;
}

int loadEmpty(char const* module)
{
    Clock::time_point const start = Clock::now();
    if (!dlopen(module, RTLD_NOW | RTLD_LOCAL))
        qFatal("%s", dlerror());
    return report(start);
}

int loadPlugin(QString const& module, QString const& baseDir)
{
    RegistryHost host;
    QString error;
    if (!host.loadDefaults(QLatin1String(ZELVO_DEFAULTS_DIR), error)
        || !host.open(QLatin1String(":memory:"), error))
        qFatal("%s", qPrintable(error));

    PluginLoader loader;
    Clock::time_point const start = Clock::now();
    AbstractPlugin* const plugin = loader.load(module, error);
    if (!plugin)
        qFatal("%s", qPrintable(error));
    plugin->pluginIsLoaded(host, host.defaultSettings(), QString(), baseDir);
    host.addPlugin(*plugin);
    QMap<QString, _RegNodeType> answer;
    if (host.get(QLatin1String("root/zelvo-view/usb/enable"), answer, REG_PARAM_VALUE, QString()))
        qFatal("the plugin does not answer");
    return report(start);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::strcmp(argv[1], "empty") == 0)
        return loadEmpty(argv[2]);
    if (argc == 4 && std::strcmp(argv[1], "plugin") == 0)
        return loadPlugin(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]));
    std::fputs("usage: StartProbe empty MODULE | plugin MODULE BASE-DIR\n", stderr);
    return 2;
}
