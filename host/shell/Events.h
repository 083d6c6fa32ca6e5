// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>
#include <QEvent>

/// Serves what waits for the thread's event loop, deletions included: the threads of an apply are
/// deleted by their signals.
inline void serveEvents()
{
    QCoreApplication::processEvents();
    // Outside of a running loop the call above leaves these.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
