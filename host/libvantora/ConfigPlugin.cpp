// SPDX-License-Identifier: MIT

#include <vantora/configplugin.h>

ConfigPlugin::~ConfigPlugin()
{
}
