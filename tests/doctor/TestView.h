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
    TestView()
    {
        QString error;
        QString const baseDir = QFileInfo(wrappers.directory().path()).path();
        if (!view.open(baseDir, QStringList(QLatin1String(DEFAULTS_DIR)), QString(), error))
            qFatal("%s", qPrintable(error));
        keepInstanceKnown();
    }

    TestWrappers const wrappers;
    ExaminedView view;

private:
    Q_DISABLE_COPY(TestView)
};
