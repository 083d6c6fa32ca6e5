// SPDX-License-Identifier: MIT

#include "actions/ActionKit.h"

#include "actions/IConfigAction.h"
#include "actions/default/DefaultActions.h"
#include "actions/default/DefaultApplyAction.h"
#include "actions/registry/RegistryActions.h"
#include "common/RegistryVocabulary.h"
#include "common/UuidComponents.h"
#include "tree/IConfigEntry.h"

using RegistryVocabulary::registryPlaceholder;
using RegistryVocabulary::viewPlaceholder;

namespace {

QChar const kSeparator = QLatin1Char('/');

typedef IConfigAction* (ISettingClass::*Getter)(QString const&) const;

// By operation, isVisible first.
Getter const kGetters[] = {
    &ISettingClass::isVisibleAction, &ISettingClass::valueAction, &ISettingClass::setValueAction,
    &ISettingClass::createAction,    &ISettingClass::delAction,   &ISettingClass::commitAction,
    &ISettingClass::applyAction,
};

int indexOf(ISettingClass::Action_t op)
{
    return op - ISettingClass::ACTION_IS_VISIBLE;
}

} // namespace

std::atomic<ActionKit*> ActionKit::smInstance(nullptr);

void ActionKit::init(Vantora& backend, QDir const& wrappersDir)
{
    smInstance = new ActionKit(backend, wrappersDir);
}

IActivityObserver* ActionKit::sObserver()
{
    ActionKit const* const kit = smInstance;
    return kit ? kit->mObserver.load() : nullptr;
}

RequestContext* ActionKit::sRequest()
{
    ActionKit const* const kit = smInstance;
    return kit && kit->mRequestThread.load() == std::this_thread::get_id() ? kit->mRequest
                                                                           : nullptr;
}

void ActionKit::sSetRequest(RequestContext* request)
{
    ActionKit* const kit = smInstance;
    if (!kit)
        return;
    kit->mRequest = request;
    kit->mRequestThread = request ? std::this_thread::get_id() : std::thread::id();
}

// By value, as the platform has it.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
ActionKit::ActionKit(Vantora& backend, QDir wrappersDir)
    : mBackend(backend)
    , mWrappersDir(wrappersDir)
    , mDefaultActions {new DefaultIsVisibleAction,
                       new RegistryValueAction(QString()),
                       new RegistrySetValueAction(QString()),
                       new DefaultCreateAction,
                       new DefaultDelAction,
                       new RegistryCommitAction(QString()),
                       new DefaultApplyAction}
    , mObserver(nullptr)
    , mRequestThread(std::thread::id())
{
}

void ActionKit::registerIsVisibleAction(QString const& viewKey, IConfigAction* action)
{
    registerAction(ISettingClass::ACTION_IS_VISIBLE, viewKey, action);
}

void ActionKit::registerValueAction(QString const& viewKey, IConfigAction* action)
{
    registerAction(ISettingClass::ACTION_VALUE, viewKey, action);
}

void ActionKit::registerSetValueAction(QString const& viewKey, IConfigAction* action)
{
    registerAction(ISettingClass::ACTION_SET_VALUE, viewKey, action);
}

void ActionKit::registerCreateAction(QString const& viewKey, IConfigAction* action)
{
    registerAction(ISettingClass::ACTION_CREATE, viewKey, action);
}

void ActionKit::registerDelAction(QString const& viewKey, IConfigAction* action)
{
    registerAction(ISettingClass::ACTION_DEL, viewKey, action);
}

void ActionKit::registerCommitAction(QString const& viewKey, IConfigAction* action)
{
    registerAction(ISettingClass::ACTION_COMMIT, viewKey, action);
}

void ActionKit::registerApplyAction(QString const& viewKey, IConfigAction* action)
{
    registerAction(ISettingClass::ACTION_APPLY, viewKey, action);
}

void ActionKit::matchRegistryKey(QString const& viewKey, QString const& registryKey,
                                 IConfigAction* valueAction, IConfigAction* setValueAction)
{
    registerValueAction(viewKey, valueAction ? valueAction : new RegistryValueAction(registryKey));
    registerSetValueAction(
        viewKey, setValueAction ? setValueAction : new RegistrySetValueAction(registryKey));
    registerDelAction(viewKey, new RegistryDelAction(registryKey));
    registerCommitAction(viewKey, new RegistryCommitAction(registryKey));
    mViewKeys[registryKey].append(viewKey);
}

void ActionKit::setRegistryUuidDir(QString const& viewDir, QString const& registryDir)
{
    QString const viewUuidKey = viewDir + kSeparator + viewPlaceholder();
    QString const registryUuidKey = registryDir + kSeparator + registryPlaceholder();
    mRegistryUuidDirs.insert(viewUuidKey, registryDir);
    registerCreateAction(viewUuidKey, new RegistryCreateAction(registryUuidKey));
    registerDelAction(viewUuidKey, new RegistryDelAction(registryUuidKey));
    registerCommitAction(viewUuidKey, new RegistryCommitAction(registryUuidKey));
    mViewKeys[registryUuidKey].append(viewUuidKey);
}

QString ActionKit::getRegistryUuidDir(QString const& viewUuidKey) const
{
    return mRegistryUuidDirs.value(viewUuidKey);
}

QStringList ActionKit::viewKeysOf(QString const& registryKey) const
{
    return mViewKeys.value(registryKey);
}

void ActionKit::registerConfigBranch(QString const& viewKey, ConfigBranch* branch)
{
    mConfigBranches.insert(viewKey, branch);
}

ConfigBranch* ActionKit::registeredConfigBranch(QString const& viewKey) const
{
    return mConfigBranches.value(viewKey);
}

IConfigAction* ActionKit::registeredIsVisibleAction(IConfigEntry const& entry) const
{
    return registeredAction(ISettingClass::ACTION_IS_VISIBLE, entry);
}

IConfigAction* ActionKit::registeredValueAction(IConfigEntry const& entry) const
{
    return registeredAction(ISettingClass::ACTION_VALUE, entry);
}

IConfigAction* ActionKit::registeredSetValueAction(IConfigEntry const& entry) const
{
    return registeredAction(ISettingClass::ACTION_SET_VALUE, entry);
}

IConfigAction* ActionKit::registeredCreateAction(IConfigEntry const& entry) const
{
    return registeredAction(ISettingClass::ACTION_CREATE, entry);
}

IConfigAction* ActionKit::registeredDelAction(IConfigEntry const& entry) const
{
    return registeredAction(ISettingClass::ACTION_DEL, entry);
}

IConfigAction* ActionKit::registeredCommitAction(IConfigEntry const& entry) const
{
    return registeredAction(ISettingClass::ACTION_COMMIT, entry);
}

IConfigAction* ActionKit::registeredApplyAction(IConfigEntry const& entry) const
{
    return registeredAction(ISettingClass::ACTION_APPLY, entry);
}

ServingAction ActionKit::servingAction(Action_t op, IConfigEntry const& entry) const
{
    QString const key = generalisedPath(entry.path());
    QMap<QString, IConfigAction*> const& actions = mActions[indexOf(op)];
    QMap<QString, IConfigAction*>::const_iterator const registered = actions.constFind(key);
    if (registered != actions.constEnd())
        return {registered.value(), ServingAction::RegisteredForKey};
    if (IConfigAction* const offered = registeredActionFromSettingClasses(key, op))
        return {offered, ServingAction::OfferedBySettingClass};
    return {mDefaultActions[indexOf(op)], ServingAction::DefaultOfOperation};
}

bool ActionKit::isVisibleAction(IConfigEntry const& entry, QVariant& data)
{
    return executeAction(registeredIsVisibleAction(entry), entry, data);
}

bool ActionKit::valueAction(IConfigEntry const& entry, QVariant& data)
{
    return executeAction(registeredValueAction(entry), entry, data);
}

bool ActionKit::setValueAction(IConfigEntry const& entry, QVariant& data)
{
    return executeAction(registeredSetValueAction(entry), entry, data);
}

bool ActionKit::createAction(IConfigEntry const& entry, QVariant& data)
{
    return executeAction(registeredCreateAction(entry), entry, data);
}

bool ActionKit::delAction(IConfigEntry const& entry, QVariant& data)
{
    return executeAction(registeredDelAction(entry), entry, data);
}

bool ActionKit::commitAction(IConfigEntry const& entry, QVariant& data)
{
    return executeAction(registeredCommitAction(entry), entry, data);
}

bool ActionKit::applyAction(IConfigEntry const& entry, QVariant& data)
{
    return executeAction(registeredApplyAction(entry), entry, data);
}

bool ActionKit::executeAction(IConfigAction* action, IConfigEntry const& entry,
                              QVariant& data) const
{
    return action && action->execute(entry, data);
}

IConfigAction* ActionKit::registeredActionFromSettingClasses(QString const& key, Action_t op) const
{
    if (op < ISettingClass::ACTION_IS_VISIBLE || op > ISettingClass::ACTION_APPLY)
        return nullptr;
    Getter const getter = kGetters[indexOf(op)];
    for (ISettingClass const* const settingClass : mSettingClasses) {
        if (IConfigAction* const action = (settingClass->*getter)(key))
            return action;
    }
    return nullptr;
}

QString ActionKit::translateUuid(QString const& path, QString const& placeholder)
{
    return replaceUuidComponents(path, placeholder);
}

QString ActionKit::resolveUuid(QString const& concretePath, QString const& registryTemplate)
{
    QString const uuid = firstUuidComponent(concretePath);
    if (uuid.isEmpty())
        return registryTemplate;
    QStringList components = registryTemplate.split(kSeparator);
    for (QString& component : components) {
        if (component == registryPlaceholder())
            component = uuid;
    }
    return components.join(QString(kSeparator));
}

void ActionKit::registerAction(Action_t op, QString const& viewKey, IConfigAction* action)
{
    mActions[indexOf(op)].insert(viewKey, action);
}

IConfigAction* ActionKit::registeredAction(Action_t op, IConfigEntry const& entry) const
{
    return servingAction(op, entry).action;
}

void ActionKit::pushApplyThreadPool(QThreadPool* pool)
{
    mApplyThreadPools.push(pool);
}
