// SPDX-License-Identifier: MIT

#pragma once

#include "actions/IActionDescription.h"
#include "doctor/Operations.h"

#include <vantora/types.h>

#include <QList>
#include <QString>
#include <QStringList>

class ExaminedView;

/// A key of the view and what is behind it where no script is.
struct MapRow
{
    QString viewKey;
    EntryKind kind;

    /// Of a value key.
    _RegEntryType type;
    QString defaultValue;

    /// What stands behind reading, or behind the first operation that has something behind it.
    BackEnd const* backEnd;
    QStringList registryKeys;

    /// The operations that a back end serves.
    QStringList operations;
};

/// All keys of the view in the order of the default settings, and the directories with a back end
/// of their own.
QList<MapRow> viewMap(ExaminedView& view);
