// SPDX-License-Identifier: MIT

#include "actions/IConfigAction.h"

IConfigAction::~IConfigAction()
{
}
