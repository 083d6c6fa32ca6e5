// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// The commands that end an apply request, at most one of them. The words of the table in the .cpp
// file are ranked; anything else is a command line of its own.

/// What is pending after `offer` came in while `pending` was: a known word gives way to a higher
/// one alone, anything else (nothing included) to whatever comes.
QString lastCommandAfterOffer(QString const& pending, QString const& offer);

/// The command line that a command stands for.
QString lastCommandLine(QString const& command);
