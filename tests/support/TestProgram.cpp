// SPDX-License-Identifier: MIT

#include "support/TestProgram.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QMap>
#include <QScopedPointer>
#include <QtTest>

#include <cstdio>

namespace {

typedef QMap<QByteArray, QObject* (*)()> Classes;

/// Made by the first class that asks: the order in which files are initialised is not known.
Classes& classes()
{
    static Classes known;
    return known;
}

int const kUsageError = 2;

} // namespace

TestClass::TestClass(char const* name, QObject* (*make)())
{
    classes().insert(name, make);
}

int main(int argc, char** argv)
{
    QByteArray const name = argc > 1 ? argv[1] : "";
    if (!classes().contains(name)) {
        std::fprintf(stderr, "usage: %s CLASS [QTEST-OPTION]...\n\n", argv[0]);
        QList<QByteArray> const names = classes().keys();
        for (QByteArray const& known : names)
            std::fprintf(stderr, "%s\n", known.constData());
        return kUsageError;
    }
    // The options are those of a program of this class alone.
    argv[1] = argv[0];
    --argc;
    ++argv;
    QCoreApplication application(argc, argv);
    QScopedPointer<QObject> const test(classes().value(name)());
    return QTest::qExec(test.data(), argc, argv);
}
