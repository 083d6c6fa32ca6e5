#include "registry/KeySpace.h"

KeySpace::~KeySpace()
{
}
