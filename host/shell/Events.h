// SPDX-License-Identifier: MIT

#pragma once

/// Serves what waits for the thread's event loop, deletions included: the threads of an apply are
/// deleted by their signals.
void serveEvents();
