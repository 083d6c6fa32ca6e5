// SPDX-License-Identifier: MIT

#pragma once

#include "doctor/ExaminedView.h"
#include "support/TestDirectory.h"
#include "support/TestKit.h"
#include "support/TestWrappers.h"

#include <QDir>
#include <QtTest>

/// The shipped view with wrappers of its own for one test.
class TestView
{
public:
    /// @param ownDefaults  further default settings, as XML; empty: none.
    explicit TestView(QByteArray const& ownDefaults = QByteArray())
    {
        QString error;
        QString const baseDir = QFileInfo(wrappers.directory().path()).path();
        if (!ownDefaults.isEmpty())
            wrappers.addFile(QLatin1String("../defaults"), QLatin1String("own.xml"), ownDefaults);
        if (!view.open(baseDir, QStringList(QLatin1String(DEFAULTS_DIR)), QString(), error))
            qFatal("%s", qPrintable(error));
        keepInstanceKnown();
    }

    TestWrappers const wrappers;
    ExaminedView view;

private:
    Q_DISABLE_COPY(TestView)
};
