// SPDX-License-Identifier: MIT

#include "shell/Events.h"

#include <QCoreApplication>
#include <QEvent>

void serveEvents()
{
    QCoreApplication::processEvents();
    // Outside of a running loop the call above leaves these.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
