// SPDX-License-Identifier: MIT

#include "tree/IConfigEntry.h"

IConfigEntry::~IConfigEntry()
{
}
