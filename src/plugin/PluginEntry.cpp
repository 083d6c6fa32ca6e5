// SPDX-License-Identifier: MIT

// What the host's plugin loader looks for. Written out rather than left to the toolkit's macros,
// because these put the build key of the machine that compiles into the record; the loader wants
// the platform's.

#include "plugin/ZelvoView.h"

#include <QPointer>

extern "C" {

char const* qt_plugin_query_verification_data();
QObject* qt_plugin_instance();

/// The record that the loader compares with its own.
char const* qt_plugin_query_verification_data()
{
    return "pattern=QT_PLUGIN_VERIFICATION_DATA\n"
           "version=4.6.2\n"
           "debug=false\n"
           "buildkey=arm linux g++-4 full-config";
}

/// The one plugin object of the process, made anew when the host has deleted it; it is the host's.
QObject* qt_plugin_instance()
{
    static QPointer<QObject> instance;
    if (!instance)
        instance = new ZelvoView;
    return instance;
}

} // extern "C"
