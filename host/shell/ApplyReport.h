// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Trace.h"

#include <QStringList>

/// What a person is told of the scripts and the last command of an apply: of each script that was not
/// done with exit status 0, with the end of what it wrote to its standard error, and what was run or
/// handed over.
QStringList applyReport(QList<TraceEvent> const& events);
