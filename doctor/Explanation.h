// SPDX-License-Identifier: MIT

#pragma once

#include "actions/ActionKit.h"
#include "actions/IActionDescription.h"
#include "actions/default/Wrapper.h"
#include "doctor/EnvironmentLines.h"
#include "doctor/Finding.h"
#include "doctor/Operations.h"

#include <vantora/types.h>

#include <QList>
#include <QString>
#include <QStringList>

class ExaminedEntry;
class ExaminedView;

/// A file where the plugin looks for it.
struct ExpectedFile
{
    QString path;
    bool exists;
};

/// Who serves one operation on a key.
struct OperationExplanation
{
    Operation const* operation;

    /// Without it nothing else is told: the operation runs no action of such a key.
    bool isForKey;

    ServingAction::Reason reason;
    ActionDescription action;

    /// Those of the action, for this very key.
    QStringList registryKeys;

    ExpectedFile script;

    /// Of an operation that has one.
    ExpectedFile environmentFile;
    QList<DeclarationLine> declarations;

    /// A line for each variable that the script is given: its name, "=" and the registry key.
    QStringList variables;

    /// The registry keys that "REG_SET" lines put in the place of the key's own.
    QStringList targets;
};

/// Where the value of a key comes from.
struct Explanation
{
    QString key;
    QString viewKey;
    EntryKind kind;
    _RegEntryType type;
    QString defaultValue;

    /// Whether it is a value that is read from somewhere and that only scripts can write.
    bool isReadOnly;

    QString folder;

    QList<OperationExplanation> operations;

    /// What its actions read and write themselves.
    QStringList files;

    /// The scripts that can hide the key, from the top.
    QList<ExpectedFile> visibility;

    QList<Finding> findings;
};

Explanation explain(ExaminedView& view, ExaminedEntry const& entry);

/// What an action answered when it was asked just now.
struct Answer
{
    QString viewKey;

    /// Without it the rest is as if nobody had been asked.
    bool isAnswered;
    QString text;

    int milliseconds;

    /// The scripts that ran for it, those of other keys that it led to included.
    QList<WrapperRun> scripts;
};

/// Whether the plugin reads what the script prints; of any other its output is not known.
bool keepsOutput(WrapperRun const& run);

/// What the actions that only read answer now.
struct LiveAnswers
{
    /// Of each level from the top whether it is shown.
    QList<Answer> visibility;

    /// Of a value key: its value.
    Answer value;

    /// Who has answered the value; of a directory it says nothing.
    enum Source { Nobody, Script, Action, Default };
    Source source;
    BackEnd const* backEnd;
};

/// Asks the actions, which runs their scripts.
LiveAnswers askLive(ExaminedEntry const& entry);
