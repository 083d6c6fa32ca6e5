// SPDX-License-Identifier: MIT

#pragma once

#include "doctor/Problem.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// What the plugin starts a script with. The system gives a script without a shebang line to
/// /bin/sh when it inherits the plugin's environment, and does not start it with any other.
enum ScriptEnvironment { InheritedEnvironment, OwnEnvironment };

/// Why a script would not start, or would not do what it says, as far as this can be told without
/// running it. A file that is not there has no problem.
QList<Problem> problemsOfScript(QString const& path, ScriptEnvironment environment);

/// Reads what a script holds, as much of it as is looked at; false when it cannot be read.
bool readScript(QString const& path, QByteArray& content);
