// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Json.h"

struct TraceEvent;

/// An event for a program.
Json traceObject(TraceEvent const& event);
