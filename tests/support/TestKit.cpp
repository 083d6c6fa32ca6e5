// SPDX-License-Identifier: MIT

#include "support/TestKit.h"

ActionKit& freshKit(Vantora& backend, QDir const& wrappersDir)
{
    ActionKit::init(backend, wrappersDir);
    keepInstanceKnown();
    return *ActionKit::instance();
}

void keepInstanceKnown()
{
    static QList<ActionKit*>* const kits = new QList<ActionKit*>;
    kits->append(ActionKit::instance());
}
