// SPDX-License-Identifier: MIT

#pragma once

#include "actions/ISettingClass.h"

#include <QDir>
#include <QList>
#include <QMap>
#include <QStack>
#include <QString>
#include <QStringList>

#include <atomic>
#include <thread>

class ConfigBranch;
class IActivityObserver;
class IConfigAction;
class IConfigEntry;
class QThreadPool;
class QVariant;
class RequestContext;
class Vantora;

/// The action that serves an operation on an entry, and why it does.
struct ServingAction
{
    enum Reason {
        RegisteredForKey, // null where an operation was registered to have none
        OfferedBySettingClass,
        DefaultOfOperation
    };

    IConfigAction* action;
    Reason reason;
};

/// The one place that says which action serves which key, and runs it.
///
/// Actions, setting classes, branches and session directories are registered while the plugin is
/// loaded, under keys with "{uuid}" in place of a session's UUID; afterwards they are only read.
/// The kit owns none of them, nor the pools: they live for the process. Host thread only.
class ActionKit
{
public:
    typedef ISettingClass::Action_t Action_t;

    /// Makes a kit and makes it the instance. A former instance is replaced, not deleted.
    static void init(Vantora& backend, QDir const& wrappersDir);

    /// Null before `init`.
    static ActionKit* instance() { return smInstance; }

    /// Who is told of what is done; null when nobody is, as it is of a new kit, and then nothing is
    /// measured or kept either. From any thread, before `init` too.
    static IActivityObserver* sObserver();

    /// @param observer  stays the caller's. It goes when no script runs any more that this kit
    ///                  has started; null: nobody is told.
    void setObserver(IActivityObserver* observer) { mObserver = observer; }

    /// The innermost request that the calling thread serves; null when it serves none. From any
    /// thread, before `init` too.
    static RequestContext* sRequest();

    /// @param request  the calling thread's, from now on; null: it serves none any more.
    static void sSetRequest(RequestContext* request);

    /// @param backend  must outlive the kit.
    ActionKit(Vantora& backend, QDir wrappersDir);
    virtual ~ActionKit() { }

    Vantora* vantoraBackend() { return &mBackend; }

    /// Holds the wrapper scripts, in folders named like the keys.
    QDir const& wrappersDirectory() const { return mWrappersDir; }

    // Each registers `action` for one operation on `viewKey`, in place of an earlier one. With a
    // null action the operation has none, whatever setting classes and defaults offer.
    void registerIsVisibleAction(QString const& viewKey, IConfigAction* action);
    void registerValueAction(QString const& viewKey, IConfigAction* action);
    void registerSetValueAction(QString const& viewKey, IConfigAction* action);
    void registerCreateAction(QString const& viewKey, IConfigAction* action);
    void registerDelAction(QString const& viewKey, IConfigAction* action);
    void registerCommitAction(QString const& viewKey, IConfigAction* action);
    void registerApplyAction(QString const& viewKey, IConfigAction* action);

    /// Ties a view key to a registry key: registers reading, setting, deleting and committing.
    ///
    /// @param valueAction     null: a `RegistryValueAction` on `registryKey`.
    /// @param setValueAction  null: a `RegistrySetValueAction` on `registryKey`.
    void matchRegistryKey(QString const& viewKey, QString const& registryKey,
                          IConfigAction* valueAction, IConfigAction* setValueAction);

    /// Ties a view directory of sessions to the registry directory that holds them: registers
    /// creating, deleting and committing of a session.
    void setRegistryUuidDir(QString const& viewDir, QString const& registryDir);

    /// @param viewUuidKey  ends in "/{uuid}".
    /// @return the registry directory of the sessions; an empty text when there is none.
    QString getRegistryUuidDir(QString const& viewUuidKey) const;

    /// The view keys that one of the two above has tied to a registry key; both with placeholders
    /// in place of UUIDs.
    QStringList viewKeysOf(QString const& registryKey) const;

    /// Registers a template whose children are copied into the branch `viewKey` when its sessions
    /// are listed.
    void registerConfigBranch(QString const& viewKey, ConfigBranch* branch);

    /// Null when there is none.
    ConfigBranch* registeredConfigBranch(QString const& viewKey) const;

    /// Adds a setting class behind those that are asked before it.
    void registerSettingClass(ISettingClass* settingClass) { mSettingClasses.append(settingClass); }

    // The action of an operation on an entry: the one registered for its key, else the first that a
    // setting class offers, else the operation's default. May be null.
    IConfigAction* registeredIsVisibleAction(IConfigEntry const& entry) const;
    IConfigAction* registeredValueAction(IConfigEntry const& entry) const;
    IConfigAction* registeredSetValueAction(IConfigEntry const& entry) const;
    IConfigAction* registeredCreateAction(IConfigEntry const& entry) const;
    IConfigAction* registeredDelAction(IConfigEntry const& entry) const;
    IConfigAction* registeredCommitAction(IConfigEntry const& entry) const;
    IConfigAction* registeredApplyAction(IConfigEntry const& entry) const;

    /// The same for any operation, with the reason for the choice.
    ServingAction servingAction(Action_t op, IConfigEntry const& entry) const;

    // Each finds the action as above and executes it.
    bool isVisibleAction(IConfigEntry const& entry, QVariant& data);
    bool valueAction(IConfigEntry const& entry, QVariant& data);
    bool setValueAction(IConfigEntry const& entry, QVariant& data);
    bool createAction(IConfigEntry const& entry, QVariant& data);
    bool delAction(IConfigEntry const& entry, QVariant& data);
    bool commitAction(IConfigEntry const& entry, QVariant& data);
    bool applyAction(IConfigEntry const& entry, QVariant& data);

    /// @return false when `action` is null, else what it answers.
    bool executeAction(IConfigAction* action, IConfigEntry const& entry, QVariant& data) const;

    /// The first action that a setting class offers, in the order of their registration; null when
    /// none does, or `op` is no operation.
    IConfigAction* registeredActionFromSettingClasses(QString const& key, Action_t op) const;

    /// `path` with every UUID component replaced by `placeholder`.
    static QString translateUuid(QString const& path, QString const& placeholder);

    /// `registryTemplate` with every "{UUID}" component replaced by the first UUID of
    /// `concretePath`; unchanged when that has none.
    static QString resolveUuid(QString const& concretePath, QString const& registryTemplate);

    // The pools of the apply requests under way, the latest on top. Looking at the top and popping
    // need a pushed pool. "Tread" is the platform's name, kept as it is.
    void pushApplyThreadPool(QThreadPool* pool);
    QThreadPool* topApplyTreadPool() { return mApplyThreadPools.top(); }
    QThreadPool* popApplyThreadPool() { return mApplyThreadPools.pop(); }

private:
    Q_DISABLE_COPY(ActionKit)

    enum { kOperations = ISettingClass::ACTION_APPLY };

    void registerAction(Action_t op, QString const& viewKey, IConfigAction* action);
    IConfigAction* registeredAction(Action_t op, IConfigEntry const& entry) const;

    // Scripts that run beside the requests ask for the observer.
    static std::atomic<ActionKit*> smInstance;

    Vantora& mBackend;
    QDir mWrappersDir;
    // By operation, isVisible first.
    IConfigAction* mDefaultActions[kOperations];
    QMap<QString, IConfigAction*> mActions[kOperations];
    QList<ISettingClass*> mSettingClasses;
    QMap<QString, QString> mRegistryUuidDirs;
    QMap<QString, ConfigBranch*> mConfigBranches;
    QStack<QThreadPool*> mApplyThreadPools;
    QMap<QString, QStringList> mViewKeys; // by registry key
    std::atomic<IActivityObserver*> mObserver;
    // Touched by the thread that serves it alone.
    RequestContext* mRequest = nullptr;
    std::atomic<std::thread::id> mRequestThread;
};
