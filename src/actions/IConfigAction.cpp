#include "actions/IConfigAction.h"

IConfigAction::~IConfigAction()
{
}
