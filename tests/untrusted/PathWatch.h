// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

/// Notes the paths that this process looks at, opens, makes, renames or removes, on any thread,
/// while the object lives. One at a time.
///
/// It stands between every library and the system's own functions, in the program that links it.
class PathWatch
{
public:
    PathWatch();
    ~PathWatch();

    /// Each path once.
    QStringList paths() const;

    /// Whether the plugin may look at `path`: it lies in the wrappers directory of `baseDir`
    /// without a way up in it, or is one of the fixed ones, or a temporary file of the system.
    static bool isExpected(QString const& path, QString const& baseDir);

private:
    Q_DISABLE_COPY(PathWatch)
};
