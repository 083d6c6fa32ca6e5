#include "tree/IConfigEntry.h"

IConfigEntry::~IConfigEntry()
{
}
