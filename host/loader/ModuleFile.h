// SPDX-License-Identifier: MIT

#pragma once

class QString;

/// Whether a file that says it is a module is all there.
///
/// The dynamic linker maps the parts that a module's header names without asking how long the file
/// is, and dies of the first one that is not there; a copy that was cut short is told here instead.
///
/// @return false when a part is missing. True when all are there, and for a file that is no module
///         of this machine: the dynamic linker says so itself.
bool isCompleteModule(QString const& file);
