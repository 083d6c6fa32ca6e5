// SPDX-License-Identifier: MIT

#include "registry/KeySpace.h"

KeySpace::~KeySpace()
{
}
