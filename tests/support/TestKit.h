// SPDX-License-Identifier: MIT

#pragma once

#include "actions/ActionKit.h"

/// Makes a fresh kit the instance.
///
/// A kit that is replaced is never deleted, and neither are the actions it made; all of them stay
/// known here, so that a leak checker does not take them for lost.
ActionKit& freshKit(Vantora& backend, QDir const& wrappersDir);

/// Keeps a kit that somebody else made the instance known in the same way.
void keepInstanceKnown();
