# SPDX-License-Identifier: MIT
#
# Puts a library between every program and Qt that tells the thread sanitizer of Qt's mutexes; see
# there. Include before any target of the project is made.
if(ZELVO_SANITIZE MATCHES "thread")
    add_library(qt-for-thread-sanitizer SHARED "${PROJECT_SOURCE_DIR}/cmake/QtForThreadSanitizer.cpp")
    target_link_libraries(qt-for-thread-sanitizer PRIVATE ${CMAKE_DL_LIBS})
    # Ahead of Qt, and needed although nobody asks for its names.
    link_libraries(-Wl,--no-as-needed $<TARGET_FILE:qt-for-thread-sanitizer> -Wl,--as-needed)
endif()
