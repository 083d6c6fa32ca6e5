// SPDX-License-Identifier: MIT

#pragma once

#include "tree/ConfigBranch.h"
#include "tree/ConfigKey.h"

#include <QStringList>

/// A key that writes its name into a log when it is deleted.
class WatchedKey : public ConfigKey
{
public:
    WatchedKey(QString const& name, IConfigEntry* parent, QStringList& log)
        : ConfigKey(name, QString(), parent)
        , mLog(log)
    {
    }

    ~WatchedKey() override { mLog.append(name()); }

private:
    QStringList& mLog;
};

/// The same as a branch.
class WatchedBranch : public ConfigBranch
{
public:
    WatchedBranch(QString const& name, IConfigEntry* parent, QStringList& log)
        : ConfigBranch(name, parent)
        , mLog(log)
    {
    }

    ~WatchedBranch() override { mLog.append(name()); }

private:
    QStringList& mLog;
};

/// The names of the children of a branch, in order; those of branches end in "/".
inline QStringList childNames(ConfigBranch const& branch)
{
    QStringList names;
    for (IConfigEntry const* const child : branch.children())
        names.append(child->name() + (dynamic_cast<ConfigBranch const*>(child) ? "/" : ""));
    return names;
}
