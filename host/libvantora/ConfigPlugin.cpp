#include <vantora/configplugin.h>

ConfigPlugin::~ConfigPlugin()
{
}
