// SPDX-License-Identifier: MIT

#include "loader/PluginLoader.h"

#include "loader/ModuleFile.h"
#include "loader/VerificationRecord.h"

#include <vantora/abstractplugin.h>

#include <QFile>
#include <QFileInfo>
#include <QObject>

#include <dlfcn.h>

namespace {

char const* const kVerificationSymbol = "qt_plugin_query_verification_data";
char const* const kInstanceSymbol = "qt_plugin_instance";

typedef char const* (*VerificationFunction)();
typedef QObject* (*InstanceFunction)();

QString dlError()
{
    char const* const message = dlerror();
    return message ? QString::fromLocal8Bit(message) : QString::fromLatin1("unknown error");
}

void* openModule(QString const& file, QString& error)
{
    QFileInfo const info(file);
    if (!info.isFile()) {
        error = QLatin1String("there is no such file");
        return nullptr;
    }
    if (!isCompleteModule(file)) {
        error = QLatin1String("a part of the file is missing");
        return nullptr;
    }
    // Without a directory in its name the dynamic linker would look for the file elsewhere.
    QByteArray const path = QFile::encodeName(info.absoluteFilePath());
    void* const module = dlopen(path.constData(), RTLD_NOW | RTLD_LOCAL);
    if (!module)
        error = dlError();
    return module;
}

/// A module's entry point; null with a message in `error` when it has none of that name.
template <typename Function> Function entryPoint(void* module, char const* symbol, QString& error)
{
    void* const address = dlsym(module, symbol);
    if (!address)
        error = QString::fromLatin1("it has no entry point %1").arg(QLatin1String(symbol));
    return reinterpret_cast<Function>(address);
}

bool isBuiltForThisHost(void* module, QString& error)
{
    VerificationFunction const query
        = entryPoint<VerificationFunction>(module, kVerificationSymbol, error);
    if (!query)
        return false;
    error = VerificationRecord(QByteArray(query())).mismatch();
    return error.isNull();
}

QObject* instance(void* module, QString& error)
{
    InstanceFunction const create = entryPoint<InstanceFunction>(module, kInstanceSymbol, error);
    if (!create)
        return nullptr;
    QObject* const object = create();
    if (!object)
        error = QLatin1String("it gives no plugin object");
    return object;
}

/// The plugin object of an open module, in both its shapes.
struct Found
{
    QObject* object;
    AbstractPlugin* plugin;
};

Found findPlugin(QString const& file, QString& error)
{
    Found found = {nullptr, nullptr};
    void* const module = openModule(file, error);
    if (!module || !isBuiltForThisHost(module, error))
        return found;
    found.object = instance(module, error);
    if (!found.object)
        return found;
    found.plugin = qobject_cast<AbstractPlugin*>(found.object);
    if (!found.plugin)
        error = QString::fromLatin1("its object, a %1, is no plugin of interface %2")
                    .arg(QLatin1String(found.object->metaObject()->className()),
                         QLatin1String(qobject_interface_iid<AbstractPlugin*>()));
    return found;
}

} // namespace

PluginLoader::~PluginLoader()
{
    while (!mInstances.isEmpty())
        delete mInstances.takeLast();
}

AbstractPlugin* PluginLoader::load(QString const& file, QString& error)
{
    QString reason;
    Found const found = findPlugin(file, reason);
    // Of a module that is loaded twice the object is the same.
    if (found.plugin && mInstances.contains(found.object))
        reason = QLatin1String("it is loaded already");
    if (!reason.isNull()) {
        error = QString::fromLatin1("cannot load %1: %2").arg(file, reason);
        return nullptr;
    }
    mInstances.append(found.object);
    return found.plugin;
}
