// SPDX-License-Identifier: MIT

#pragma once

#include "doctor/Finding.h"

#include <QList>

class ExaminedEntry;
class ExaminedView;

/// What is wrong with the place of the wrappers directory itself.
QList<Finding> checkPlace(ExaminedView const& view);

/// What is wrong in the folder of a key: its scripts, its environment files, and the names of both.
/// A folder that is not there has no findings.
QList<Finding> checkFolder(ExaminedView& view, ExaminedEntry const& entry);
