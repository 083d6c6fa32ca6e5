// SPDX-License-Identifier: MIT

#include "actions/registry/RegistryActions.h"

#include "actions/ActionKit.h"
#include "actions/default/Wrapper.h"
#include "actions/registry/EnvironmentFile.h"
#include "actions/registry/RegistryAccess.h"
#include "common/RegistryVocabulary.h"
#include "common/Text.h"
#include "tree/IConfigEntry.h"

#include <vantora/vantora.h>

#include <QVariant>

namespace {

BackEnd const kRegistry = {"registry", nullptr, "the registry"};

// What an action reads of the environment files.
enum Reading { Nothing, Variables, VariablesAndTargets };

void describeRegistry(ActionDescription& description, QString const& registryKey, Reading reading)
{
    if (!registryKey.isNull()) {
        description.backEnd = &kRegistry;
        description.registryKeys.append(registryKey);
    }
    description.readsEnvironmentFile = reading != Nothing;
    description.readsTargets = reading == VariablesAndTargets;
}

Vantora& backend()
{
    return *ActionKit::instance()->vantoraBackend();
}

QString resolved(IConfigEntry const& entry, QString const& registryKey)
{
    return ActionKit::resolveUuid(entry.path(), registryKey);
}

bool isBool(QString const& registryKey)
{
    QString type;
    // A key without a type is no boolean.
    static_cast<void>(readRegistry(registryKey, REG_PARAM_TYPE, type));
    return type == RegistryVocabulary::entryTypes().at(REG_TYPE_BOOL);
}

/// Adds the variable of a declaration, unless its registry key cannot be read.
void addVariable(QStringList& environment, IConfigEntry const& entry,
                 EnvironmentDeclaration const& declaration)
{
    QString value;
    if (readRegistry(resolved(entry, declaration.registryKey), REG_PARAM_VALUE, value))
        environment.append(declaration.name + QLatin1Char('=') + value);
}

/// Adds the variables that an environment file declares.
void addVariables(QStringList& environment, IConfigEntry const& entry, char const* fileName)
{
    QList<EnvironmentDeclaration> const lines = readEnvironmentFile(entry, fileName);
    for (EnvironmentDeclaration const& declaration : lines)
        addVariable(environment, entry, declaration);
}

QString currentKeyLine(QString const& key)
{
    return QLatin1String(kRegSet) + QLatin1Char('=') + key;
}

} // namespace

RegistryValueAction::RegistryValueAction(QString const& registryKey)
    : mRegistryKey(registryKey)
{
    describeRegistry(describeAs("RegistryValueAction"), registryKey, Variables);
}

bool RegistryValueAction::execute(IConfigEntry const& entry, QVariant& data)
{
    if (DefaultValueAction::execute(entry, data))
        return true;
    if (mRegistryKey.isNull())
        return false;

    QString value;
    // The type is declared for all sessions at once, so the key is asked for with its placeholder.
    bool const isBoolean = isBool(mRegistryKey);
    if (!readRegistry(resolved(entry, mRegistryKey), REG_PARAM_VALUE, value))
        return false;
    data = isBoolean ? boolWord(value) : value;
    return true;
}

QStringList RegistryValueAction::processEnvironment(IConfigEntry const& entry)
{
    QStringList environment = DefaultValueAction::processEnvironment(entry);
    addVariables(environment, entry, Wrapper::kGetEnv);
    return environment;
}

RegistrySetValueAction::RegistrySetValueAction(QString const& registryKey)
    : mRegistryKey(registryKey)
{
    describeRegistry(describeAs("RegistrySetValueAction"), registryKey, VariablesAndTargets);
}

bool RegistrySetValueAction::execute(IConfigEntry const& entry, QVariant& data)
{
    mTargetKeys.clear();
    // Only to collect the targets.
    if (!Wrapper::find(entry, Wrapper::kSetEnv).isNull())
        static_cast<void>(processEnvironment(entry));
    if (mTargetKeys.isEmpty()) {
        mCurrentKey = mRegistryKey;
        return execute(entry, data, mRegistryKey, false);
    }

    QSet<QString> const targets = mTargetKeys;
    for (QString const& target : targets) {
        mCurrentKey = target;
        QVariant value = data;
        if (!execute(entry, value, target, true))
            return false;
    }
    return true;
}

QStringList RegistrySetValueAction::processEnvironment(IConfigEntry const& entry)
{
    mTargetKeys.clear();
    QStringList environment = DefaultSetValueAction::processEnvironment(entry);
    QList<EnvironmentDeclaration> const lines = readEnvironmentFile(entry, Wrapper::kSetEnv);
    for (EnvironmentDeclaration const& declaration : lines) {
        if (declaration.isTarget())
            mTargetKeys.insert(resolved(entry, declaration.registryKey));
        else
            addVariable(environment, entry, declaration);
    }
    environment.append(currentKeyLine(mCurrentKey));
    return environment;
}

bool RegistrySetValueAction::execute(IConfigEntry const& entry, QVariant& data, QString const& key,
                                     bool force)
{
    if (DefaultSetValueAction::execute(entry, data) && !force)
        return true;
    if (data.isNull())
        return true;
    if (key.isNull())
        return false;

    QString value = data.toString();
    if (isBool(key))
        value = QLatin1String(isFalseWord(value) ? "0" : "1");
    return backend().set(resolved(entry, key), value, REG_PARAM_VALUE) == 0;
}

RegistryCreateAction::RegistryCreateAction(QString const& registryKey)
    : mRegistryKey(registryKey)
{
    describeRegistry(describeAs("RegistryCreateAction"), registryKey, Nothing);
}

bool RegistryCreateAction::execute(IConfigEntry const& entry, QVariant& data)
{
    return DefaultCreateAction::execute(entry, data)
        || backend().create(resolved(entry, mRegistryKey), REG_TYPE_STRING) == 0;
}

RegistryDelAction::RegistryDelAction(QString const& registryKey)
    : mRegistryKey(registryKey)
{
    describeRegistry(describeAs("RegistryDelAction"), registryKey, Nothing);
}

bool RegistryDelAction::execute(IConfigEntry const& entry, QVariant& data)
{
    return DefaultDelAction::execute(entry, data)
        || backend().del(resolved(entry, mRegistryKey)) == 0;
}

RegistryCommitAction::RegistryCommitAction(QString const& registryKey)
    : mRegistryKey(registryKey)
{
    describeRegistry(describeAs("RegistryCommitAction"), registryKey, VariablesAndTargets);
}

bool RegistryCommitAction::execute(IConfigEntry const& entry, QVariant& data)
{
    QSet<QString> const targets = getRegSet(entry);
    if (targets.isEmpty()) {
        mCurrentKey = mRegistryKey;
        return execute(entry, data, mRegistryKey);
    }

    for (QString const& target : targets) {
        mCurrentKey = target;
        if (!execute(entry, data, target))
            return false;
    }
    return true;
}

QStringList RegistryCommitAction::processEnvironment(IConfigEntry const& entry)
{
    QStringList environment = DefaultCommitAction::processEnvironment(entry);
    addVariables(environment, entry, Wrapper::kCommitEnv);
    environment.append(currentKeyLine(mCurrentKey));
    return environment;
}

QSet<QString> RegistryCommitAction::getRegSet(IConfigEntry const& entry) const
{
    // The file of setting: what was set to several keys is committed for the same keys.
    return targetKeys(entry);
}

bool RegistryCommitAction::execute(IConfigEntry const& entry, QVariant& data, QString const& key)
{
    if (DefaultCommitAction::execute(entry, data))
        return true;
    return !key.isNull() && backend().commit(resolved(entry, key)) == 0;
}

RegistryApplyAction::RegistryApplyAction(QString const& registryKey)
    : mRegistryKey(registryKey)
{
    describeRegistry(describeAs("RegistryApplyAction"), registryKey, Nothing);
}

bool RegistryApplyAction::execute(IConfigEntry const& entry, QVariant& data)
{
    if (DefaultApplyAction::execute(entry, data))
        return true;
    return !mRegistryKey.isNull()
        && backend().apply(resolved(entry, mRegistryKey), emptyText()) == 0;
}
