// SPDX-License-Identifier: MIT

#pragma once

#include "actions/ActionKit.h"
#include "support/TestBackend.h"
#include "support/TestKit.h"
#include "support/TestWrappers.h"
#include "tree/ConfigBranch.h"
#include "tree/ConfigKey.h"

#include <QProcess>
#include <QStringList>

#include <stdlib.h>

/// What an action works with: a kit with its backend and wrappers directory, and the entries of one
/// view tree.
class ActionScene
{
public:
    ActionScene()
        : mTop("zelvo-view", nullptr)
    {
        freshKit(backend, wrappers.directory());
    }

    /// The key of that path, made with the branches above it. It belongs to the scene.
    ConfigKey& key(QString const& path)
    {
        ConfigBranch& parent = branch(path.section('/', 0, -2));
        QString const name = path.section('/', -1);
        ConfigKey* const existing = dynamic_cast<ConfigKey*>(parent.child(name));
        return existing ? *existing : *new ConfigKey(name, "the default", &parent);
    }

    /// The same for a branch. The path begins with "zelvo-view".
    ConfigBranch& branch(QString const& path)
    {
        ConfigBranch* branch = &mTop;
        QStringList const names = path.split('/').mid(1);
        for (QString const& name : names)
            branch = branch->branch(name);
        return *branch;
    }

    TestBackend backend;
    TestWrappers wrappers;

private:
    Q_DISABLE_COPY(ActionScene)

    ConfigBranch mTop;
};

/// The body of a script that stores the environment it was started with. (The shell's own "env"
/// would show what the shell has added.)
inline QByteArray captureEnvironment()
{
    return "cat /proc/$$/environ > seen-$(ls | grep -c '^seen-')";
}

/// The environment that the `run`th run of a capturing script saw, sorted.
inline QStringList seenEnvironment(TestWrappers const& wrappers, QString const& viewKey,
                                   int run = 0)
{
    QStringList lines;
    QList<QByteArray> const variables
        = wrappers.read(viewKey, QString("seen-%1").arg(run)).split('\0');
    for (QByteArray const& variable : variables) {
        if (!variable.isEmpty())
            lines << QString::fromLocal8Bit(variable.constData(), variable.size());
    }
    lines.sort();
    return lines;
}

/// The environment of this process and `added`, sorted.
inline QStringList environmentWith(QStringList const& added)
{
    QStringList lines = QProcess::systemEnvironment() + added;
    lines.sort();
    return lines;
}

/// Makes the environment of this process small and known.
inline void simplifyEnvironment()
{
    ::clearenv();
    ::setenv("PATH", "/usr/bin:/bin", 1);
    ::setenv("INHERITED", "from the plugin's process", 1);
}
