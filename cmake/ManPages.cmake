# SPDX-License-Identifier: MIT
#
# The manual pages, made from docs/man by lowdown and installed with the programs.
find_program(LOWDOWN lowdown)
find_program(GZIP gzip)
if(NOT LOWDOWN OR NOT GZIP)
    message(STATUS "lowdown or gzip not found: there will be no manual pages")
    return()
endif()

file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/man/*.md")
set(pages)
foreach(source IN LISTS sources)
    get_filename_component(page "${source}" NAME_WLE)
    set(page "${CMAKE_BINARY_DIR}/install/man/${page}")
    add_custom_command(OUTPUT "${page}.gz"
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${CMAKE_BINARY_DIR}/install/man"
        COMMAND "${LOWDOWN}" -s -Tman -o "${page}" "${source}"
        COMMAND "${GZIP}" -9nf "${page}"
        DEPENDS "${source}"
        VERBATIM)
    list(APPEND pages "${page}.gz")
endforeach()
add_custom_target(man-pages ALL DEPENDS ${pages})
install(FILES ${pages} DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT host)
