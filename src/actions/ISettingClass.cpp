// SPDX-License-Identifier: MIT

#include "actions/ISettingClass.h"

ISettingClass::~ISettingClass()
{
}
