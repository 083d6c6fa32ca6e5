// SPDX-License-Identifier: MIT

#pragma once

#include "doctor/Finding.h"

#include <QList>

class ExaminedView;

/// What is wrong in a wrappers tree, folder by folder in the order of their names. Links to folders
/// are followed; names that begin with a dot are passed over.
QList<Finding> checkWrappers(ExaminedView& view);
