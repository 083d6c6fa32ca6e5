// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QtTest>

/// Runs the event loop until `holds()` does, or ten seconds have gone.
///
/// @return what it answers at the end.
template <typename Condition> bool waitUntil(Condition holds)
{
    int const kLimitMs = 10000;
    int const kStepMs = 5;
    QElapsedTimer timer;
    timer.start();
    while (!holds() && timer.elapsed() < kLimitMs)
        QTest::qWait(kStepMs);
    return holds();
}
