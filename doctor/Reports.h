// SPDX-License-Identifier: MIT

#pragma once

#include "doctor/Explanation.h"
#include "doctor/Style.h"
#include "doctor/ViewMap.h"

// What the program prints. Each answers whole lines.

/// "FILE:LINE: MESSAGE (KEY)", the message of a note with "note: " before it.
QString textOf(Finding const& finding, Style const& style);

QString textOf(Explanation const& explanation, Style const& style);
QString textOf(LiveAnswers const& answers, Style const& style);
QString textOf(QList<MapRow> const& rows, Style const& style);

/// The map as a document.
QString markdownOf(QList<MapRow> const& rows);

/// @param answers  null: nothing was run.
QString jsonOf(Explanation const& explanation, LiveAnswers const* answers);
QString jsonOf(QList<Finding> const& findings);

/// Of a key that cannot be explained.
QString jsonOf(QString const& key, QString const& error);

QString jsonOf(QList<MapRow> const& rows);
