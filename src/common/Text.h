// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

/// A text that is empty but not null: an answer of its own, where null says "no answer".
QString emptyText();

/// Whether a command line that is this path alone would be split into other words.
bool isSplitByCommandLine(QString const& path);

/// The bytes up to the first NUL, or all of them, as Latin-1.
QString latin1UpToNul(QByteArray const& bytes);
