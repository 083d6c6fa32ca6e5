// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

// A program of QtTest classes: its first argument names the class to run, all others are QtTest's.

/// Makes a class known to its program.
class TestClass
{
public:
    TestClass(char const* name, QObject* (*make)());
};

/// Stands where QTEST_MAIN would stand in a program of one class.
#define ZELVO_TEST(Class)                                                                          \
    static QObject* make##Class()                                                                  \
    {                                                                                              \
        return new Class;                                                                          \
    }                                                                                              \
    static TestClass const registered##Class(#Class, make##Class);
