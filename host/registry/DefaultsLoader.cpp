// SPDX-License-Identifier: MIT

#include "registry/DefaultsLoader.h"

#include "registry/DefaultNode.h"
#include "registry/RegistryKey.h"
#include "registry/ValueType.h"

namespace {

// The tree is walked by recursion.
int const kDeepest = 64;

bool isName(QString const& name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && isXmlText(name);
}

bool checkKey(DefaultNode const& directory, QString const& name, QString& error)
{
    if (!isName(name) || isPlaceholder(name))
        return refuse(error, "\"%1\" is no name for a key", name);
    if (directory.child(name))
        return refuse(error, "\"%1\" is declared already", name);
    return true;
}

bool checkType(RegistryXmlKey const& key, _RegEntryType& type, QString& error)
{
    if (!key.type.isNull() && !typeFromWord(key.type, type))
        return refuse(error, "\"%1\" is no type", key.type);
    // An empty default goes with every type.
    if (!key.defaultValue.isEmpty() && !typeAdmits(type, key.defaultValue))
        return refuse(error, "the default \"%1\" does not fit its type", key.defaultValue);
    if (!QRegExp(key.regExp).isValid())
        return refuse(error, "\"%1\" is no regular expression", key.regExp);
    return true;
}

} // namespace

DefaultsLoader::DefaultsLoader(DefaultNode& top)
{
    mDirectories.push(&top);
}

bool DefaultsLoader::enterDirectory(QString const& name, QString& error)
{
    DefaultNode& parent = *mDirectories.top();
    DefaultNode* directory = parent.child(name);
    if (!directory) {
        if (!checkDirectory(name, error))
            return false;
        directory = new DefaultNode(name);
        parent.append(directory);
    }
    if (directory->isValue())
        return refuse(error, "\"%1\" is declared as a value already", name);
    mDirectories.push(directory);
    return true;
}

bool DefaultsLoader::checkDirectory(QString const& name, QString& error) const
{
    // A first component may be empty: its keys begin with a "/".
    bool const isFirst = mDirectories.size() == 1;
    if (!isName(name) && !(isFirst && name.isEmpty()))
        return refuse(error, "\"%1\" is no name for a directory", name);
    if (isPlaceholder(name) && mDirectories.top()->templateDirectory())
        return refuse(error, "\"%1\" is a second template directory here", name);
    if (mDirectories.size() >= kDeepest)
        return refuse(error, "\"%1\" lies too deep", name);
    return true;
}

bool DefaultsLoader::addKey(RegistryXmlKey const& key, QString& error)
{
    DefaultNode& directory = *mDirectories.top();
    _RegEntryType type = REG_TYPE_STRING;
    if (!checkKey(directory, key.name, error) || !checkType(key, type, error))
        return false;
    if (!key.value.isNull())
        return refuse(error, "\"%1\": default settings carry no value", key.name);
    // No default is an empty one, not a null one.
    QString const defaultValue = QString::fromLatin1("") + key.defaultValue;
    directory.append(new DefaultNode(key.name, type, defaultValue, key.regExp));
    return true;
}
