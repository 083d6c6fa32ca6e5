// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Reply.h"

/// An answer for a person, in lines, as it is shown on standard output; empty if there is nothing
/// to show. On a terminal listings stand in columns, and what stands out has its colour.
QString replyText(Reply const& reply);

/// What else there is to tell: why it failed, or what came of it. A line each.
QStringList replyMessages(Reply const& reply);
