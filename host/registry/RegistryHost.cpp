// SPDX-License-Identifier: MIT

#include "registry/RegistryHost.h"

#include "registry/DefaultSettings.h"
#include "registry/LiveRegistry.h"
#include "registry/RegistryKey.h"
#include "registry/ResultCodes.h"
#include "registry/TemporaryKeys.h"

#include <vantora/abstractplugin.h>

#include <QSystemSemaphore>

#include <mutex>

namespace {

int const kNoUnits = 0;

typedef std::lock_guard<std::recursive_mutex> Guard;

} // namespace

class RegistryHost::Private
{
public:
    Private()
        : registry(defaults)
    {
    }

    AbstractPlugin* pluginFor(QString const& key) const;
    QList<AbstractPlugin*> pluginsUnder(QString const& key) const;
    QStringList pluginRoots() const;
    KeySpace& spaceFor(QString const& key);
    void finishApply(QString const& command);

    // The standard's, not the toolkit's: the thread sanitizer sees it.
    std::recursive_mutex lock;
    DefaultSettings defaults;
    LiveRegistry registry;
    TemporaryKeys temporary;
    QList<AbstractPlugin*> plugins;
};

AbstractPlugin* RegistryHost::Private::pluginFor(QString const& key) const
{
    for (AbstractPlugin* plugin : plugins) {
        if (isAtOrUnder(key, plugin->rootDir()))
            return plugin;
    }
    return nullptr;
}

QList<AbstractPlugin*> RegistryHost::Private::pluginsUnder(QString const& key) const
{
    QList<AbstractPlugin*> found;
    for (AbstractPlugin* plugin : plugins) {
        if (isAtOrUnder(plugin->rootDir(), key))
            found.append(plugin);
    }
    return found;
}

QStringList RegistryHost::Private::pluginRoots() const
{
    QStringList roots;
    for (AbstractPlugin const* plugin : plugins)
        roots.append(plugin->rootDir());
    return roots;
}

KeySpace& RegistryHost::Private::spaceFor(QString const& key)
{
    if (TemporaryKeys::sOwns(key))
        return temporary;
    return registry;
}

// The end of an apply as whoever asked for it waits for it: the key set to "0", then one unit of
// the system semaphore of that name.
void RegistryHost::Private::finishApply(QString const& command)
{
    if (command.isEmpty())
        return;
    KeySpace& space = spaceFor(command);
    static_cast<void>(space.set(command, QString::fromLatin1("0")));
    static_cast<void>(space.commit(command));
    QSystemSemaphore(command, kNoUnits, QSystemSemaphore::Open).release();
}

RegistryHost::RegistryHost()
    : d(new Private)
{
}

RegistryHost::~RegistryHost()
{
}

bool RegistryHost::loadDefaults(QString const& directory, QString& error)
{
    Guard const guard(d->lock);
    return d->defaults.load(directory, error);
}

bool RegistryHost::open(QString const& databaseFile, QString& error)
{
    Guard const guard(d->lock);
    return d->registry.open(databaseFile, error);
}

void RegistryHost::addPlugin(AbstractPlugin& plugin)
{
    Guard const guard(d->lock);
    d->plugins.append(&plugin);
}

Reg::Registry& RegistryHost::defaultSettings()
{
    return d->defaults;
}

int RegistryHost::set(QString const& key, QString const& value, _RegEntryParam const& param)
{
    Guard const guard(d->lock);
    if (AbstractPlugin* const plugin = d->pluginFor(key))
        return plugin->set(key, value, param);
    // Types and regular expressions are declared, not set.
    return param == REG_PARAM_VALUE ? d->spaceFor(key).set(key, value) : kRefused;
}

int RegistryHost::get(QString const& key, QMap<QString, _RegNodeType>& result,
                      _RegEntryParam const& param, QString const& extra)
{
    Guard const guard(d->lock);
    if (AbstractPlugin* const plugin = d->pluginFor(key))
        return plugin->get(key, result, param, extra);
    QList<AbstractPlugin*> const plugins = d->pluginsUnder(key);
    // A parameter of a directory is nobody's.
    if (plugins.isEmpty() || param != REG_PARAM_VALUE)
        return d->spaceFor(key).get(key, result, param);

    QMap<QString, _RegNodeType> answers;
    bool const isKnown = d->spaceFor(key).get(key, answers, param) == kDone;
    for (AbstractPlugin* plugin : plugins) {
        // A plugin enters its own root, or leaves it out when it is hidden; the code it answers for
        // a key that is not its own says nothing.
        answers.remove(plugin->rootDir());
        static_cast<void>(plugin->get(key, answers, param, extra));
    }
    QMap<QString, _RegNodeType>::const_iterator answer = answers.constBegin();
    for (; answer != answers.constEnd(); ++answer)
        result.insert(answer.key(), answer.value());
    return isKnown || !answers.isEmpty() ? kDone : kRefused;
}

int RegistryHost::contains(QString const& key)
{
    Guard const guard(d->lock);
    QList<AbstractPlugin*> const plugins = d->plugins;
    for (AbstractPlugin* plugin : plugins) {
        if (isAtOrUnder(key, plugin->rootDir()) || isAtOrUnder(key, plugin->tmpRootDir()))
            return plugin->contains(key);
    }
    return d->spaceFor(key).contains(key);
}

int RegistryHost::commit(QString const& key)
{
    Guard const guard(d->lock);
    if (AbstractPlugin* const plugin = d->pluginFor(key))
        return plugin->commit(key);
    QList<AbstractPlugin*> const plugins = d->pluginsUnder(key);
    if (plugins.isEmpty())
        return d->spaceFor(key).commit(key);
    // Plugins first: what they write to the registry is then part of this commit, and they still
    // see its pending changes. Their codes say only whose key it is.
    d->registry.beginCommits();
    for (AbstractPlugin* plugin : plugins)
        static_cast<void>(plugin->commit(key));
    int const code = d->spaceFor(key).commit(key);
    return d->registry.endCommits() ? code : kRefused;
}

int RegistryHost::apply(QString const& key, QString const& command)
{
    Guard const guard(d->lock);
    if (AbstractPlugin* const plugin = d->pluginFor(key))
        return plugin->apply(key, command);
    int const code = d->spaceFor(key).contains(key);
    // There is nothing behind a key of the registry that would have to be told.
    if (code == kDone)
        d->finishApply(command);
    return code;
}

int RegistryHost::clone(QString const& source, QString const& target)
{
    Guard const guard(d->lock);
    AbstractPlugin* const plugin = d->pluginFor(source);
    return plugin ? plugin->clone(source, target) : kRefused;
}

int RegistryHost::rollback(QString const& key)
{
    Guard const guard(d->lock);
    if (AbstractPlugin* const plugin = d->pluginFor(key))
        return plugin->rollback(key);
    QList<AbstractPlugin*> const plugins = d->pluginsUnder(key);
    for (AbstractPlugin* plugin : plugins)
        static_cast<void>(plugin->rollback(key));
    return d->spaceFor(key).rollback(key);
}

int RegistryHost::watch(QStringList const&, int)
{
    return kRefused;
}

int RegistryHost::changes(QMap<QString, _RegEntryChange>& changes)
{
    Guard const guard(d->lock);
    d->registry.changes(changes);
    d->temporary.changes(changes);
    QList<AbstractPlugin*> const plugins = d->plugins;
    for (AbstractPlugin* plugin : plugins)
        static_cast<void>(plugin->changes(changes));
    return kDone;
}

int RegistryHost::create(QString const& key, _RegEntryType const& type)
{
    Guard const guard(d->lock);
    if (AbstractPlugin* const plugin = d->pluginFor(key))
        return plugin->create(key, type);
    return d->spaceFor(key).create(key);
}

int RegistryHost::del(QString const& key)
{
    Guard const guard(d->lock);
    if (AbstractPlugin* const plugin = d->pluginFor(key))
        return plugin->del(key);
    return d->spaceFor(key).del(key);
}

int RegistryHost::importRegistry(QByteArray& data)
{
    Guard const guard(d->lock);
    int const code = d->registry.importXml(data, d->pluginRoots());
    if (code != kDone)
        return code;
    QList<AbstractPlugin*> const plugins = d->plugins;
    for (AbstractPlugin* plugin : plugins)
        static_cast<void>(plugin->importRegistry(data));
    return kDone;
}

int RegistryHost::exportRegistry(QString const& key, QByteArray& data)
{
    Guard const guard(d->lock);
    if (AbstractPlugin* const plugin = d->pluginFor(key))
        return plugin->exportRegistry(key, data);
    int const code = d->registry.exportXml(key, d->pluginRoots(), data);
    if (code != kDone)
        return code;
    QList<AbstractPlugin*> const plugins = d->pluginsUnder(key);
    for (AbstractPlugin* plugin : plugins)
        static_cast<void>(plugin->exportRegistry(key, data));
    return kDone;
}
