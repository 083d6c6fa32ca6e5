// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

/// Starts a program that nobody waits for, in a session of its own and as nobody's child.
///
/// @param words  its name, looked for in the PATH when it has no "/", and its arguments.
/// @return whether it has come to its start. Whether there is such a program is not told. From any
///         thread.
bool startDetachedProgram(QStringList const& words);
