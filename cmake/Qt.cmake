# SPDX-License-Identifier: MIT
#
# One target for the Qt that was chosen: zelvo-qt (QtCore and QtDBus), and zelvo-qt-test for tests.
add_library(zelvo-qt INTERFACE)
add_library(zelvo-qt-test INTERFACE)

if(ZELVO_QT EQUAL 4)
    # The platform has 4.6, which the plugin makes do with and all else does not.
    set(oldest 4.8)
    if(ZELVO_PLUGIN_ONLY)
        set(oldest 4.6)
    endif()
    set(components QtCore QtDBus)
    if(ZELVO_BUILD_TESTS)
        list(APPEND components QtTest)
    endif()
    find_package(Qt4 ${oldest} REQUIRED ${components})
    set(ZELVO_QT_CORE Qt4::QtCore)
    set(ZELVO_QT_DBUS Qt4::QtDBus)
    set(ZELVO_QT_TEST Qt4::QtTest)
    # For those who compile with what is installed.
    set(ZELVO_QT_DEPENDENCY "find_dependency(Qt4 ${oldest} COMPONENTS QtCore)")
    set(ZELVO_QT_PKGCONFIG QtCore)
    set(ZELVO_QT_PACKAGE libqt4-dev)
    # Qt 4's moc trips over the macros of current system headers.
    list(APPEND CMAKE_AUTOMOC_MOC_OPTIONS -D_SYS_SYSMACROS_H_OUTER)
else()
    find_package(Qt5 5.15 REQUIRED COMPONENTS Core DBus)
    set(ZELVO_QT_CORE Qt5::Core)
    set(ZELVO_QT_DBUS Qt5::DBus)
    set(ZELVO_QT_TEST Qt5::Test)
    set(ZELVO_QT_DEPENDENCY "find_dependency(Qt5 5.15 COMPONENTS Core)")
    set(ZELVO_QT_PKGCONFIG Qt5Core)
    set(ZELVO_QT_PACKAGE qtbase5-dev)
    # A text put together with "+" is made in one piece. Qt 4 cannot compare one not made yet.
    set(ZELVO_QT_STRINGS QT_USE_QSTRINGBUILDER)
    if(ZELVO_BUILD_TESTS)
        find_package(Qt5 5.15 REQUIRED COMPONENTS Test)
    endif()
endif()

target_link_libraries(zelvo-qt INTERFACE ${ZELVO_QT_CORE} ${ZELVO_QT_DBUS})
target_link_libraries(zelvo-qt-test INTERFACE zelvo-qt ${ZELVO_QT_TEST})
