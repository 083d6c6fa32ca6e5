#include "actions/ISettingClass.h"

ISettingClass::~ISettingClass()
{
}
