// SPDX-License-Identifier: MIT

#pragma once

// What the operations of the registry answer.

int const kDone = 0;

/// Nothing has changed, and nothing has been added to a result.
int const kRefused = 1;
