#include "registry/KeySpace.h"

int const KeySpace::kDone;
int const KeySpace::kRefused;

KeySpace::~KeySpace()
{
}
