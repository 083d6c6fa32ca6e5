// SPDX-License-Identifier: MIT

#pragma once

#include "actions/ISettingClass.h"
#include "doctor/ScriptFile.h"

#include <QList>
#include <QString>
#include <QStringList>

/// What an entry of the view is to those who write scripts for it.
enum EntryKind { ValueKey, SessionDirectory, PlainDirectory };

/// One of the operations for which the action kit has actions.
struct Operation
{
    ISettingClass::Action_t action;
    char const* name;

    /// File names in the folder of a key, each with the "/" before it; null where there is no such
    /// file.
    char const* script;
    char const* environmentFile;

    /// The script gets a file with a value, and is started by its path. Others are started by a
    /// command line.
    bool takesValue;

    ScriptEnvironment environment;

    /// What happens where neither a script nor a back end does anything.
    char const* otherwise;

    /// Whether the operation runs an action of such an entry.
    bool isFor(EntryKind kind) const;

    /// Why it runs none of the others.
    char const* reach() const;
};

/// All of them, in the order in which they are numbered.
QList<Operation> const& operations();

Operation const& operation(ISettingClass::Action_t action);

/// The name of a wrapper file without the "/" before it.
QString fileName(char const* wrapperFile);

QStringList scriptNames();
QStringList environmentFileNames();
