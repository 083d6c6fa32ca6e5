# SPDX-License-Identifier: MIT
#
# What is installed, and where. The components are the packages (cmake/Packages.cmake): "plugin" is
# what the platform needs, "host" the stand-in host and its tools, "dev" what another plugin or
# program is compiled with.
include(CMakePackageConfigHelpers)

set(plugin_dir "${CMAKE_INSTALL_LIBDIR}/vantora/plugins")
set(data_dir "${CMAKE_INSTALL_DATADIR}/zelvo-view")

# Outside of the system's own folders the two libraries are found from where their users lie.
set(programs vantora-shell zelvo-view-doctor)
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set_target_properties(zelvo-view PROPERTIES INSTALL_RPATH "\$ORIGIN/../..")
    if(NOT ZELVO_PLUGIN_ONLY)
        file(RELATIVE_PATH lib_dir "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
        set_target_properties(${programs} PROPERTIES INSTALL_RPATH "\$ORIGIN/${lib_dir}")
    endif()
endif()

# The plugin, its keys, and scripts to start from.
install(TARGETS zelvo-view LIBRARY DESTINATION "${plugin_dir}" COMPONENT plugin)
install(FILES share/defaults/view.xml DESTINATION "${data_dir}/defaults" COMPONENT plugin)
install(DIRECTORY examples DESTINATION "${data_dir}" COMPONENT plugin USE_SOURCE_PERMISSIONS)
install(FILES README.md DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT plugin)
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT plugin)

if(ZELVO_PLUGIN_ONLY)
    return()
endif()

# The stand-in host: libraries, programs, the platform's keys, the sandbox.
install(TARGETS vantora-headers vantora vantoraclient
    EXPORT VantoraTargets
    LIBRARY
        DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT host
        NAMELINK_COMPONENT dev)
install(TARGETS ${programs} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT host)
install(FILES share/defaults/platform.xml DESTINATION "${data_dir}/defaults" COMPONENT host)
install(DIRECTORY share/bash-completion/
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT host)
set(sandbox_dir "${CMAKE_INSTALL_LIBEXECDIR}/vantora/sandbox")
install(DIRECTORY host/sandbox/ DESTINATION "${sandbox_dir}" COMPONENT host USE_SOURCE_PERMISSIONS)
file(RELATIVE_PATH sandbox "${CMAKE_INSTALL_FULL_BINDIR}"
    "${CMAKE_INSTALL_PREFIX}/${sandbox_dir}/vantora-sandbox")
file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/install")
file(CREATE_LINK "${sandbox}" "${CMAKE_BINARY_DIR}/install/vantora-sandbox" SYMBOLIC)
install(FILES "${CMAKE_BINARY_DIR}/install/vantora-sandbox"
    DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT host)

include(cmake/ManPages.cmake)

# The platform's headers, for find_package(Vantora) and for pkg-config.
install(DIRECTORY host/include/vantora DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT dev)

set(config_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Vantora")
set_target_properties(vantora-headers PROPERTIES EXPORT_NAME headers)
install(EXPORT VantoraTargets NAMESPACE Vantora:: DESTINATION "${config_dir}" COMPONENT dev)
configure_package_config_file(packaging/VantoraConfig.cmake.in
    "${CMAKE_BINARY_DIR}/install/VantoraConfig.cmake"
    INSTALL_DESTINATION "${config_dir}"
    PATH_VARS plugin_dir)
write_basic_package_version_file("${CMAKE_BINARY_DIR}/install/VantoraConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES
    "${CMAKE_BINARY_DIR}/install/VantoraConfig.cmake"
    "${CMAKE_BINARY_DIR}/install/VantoraConfigVersion.cmake"
    DESTINATION "${config_dir}" COMPONENT dev)

set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH prefix_from_pc "${CMAKE_INSTALL_PREFIX}/${pkgconfig_dir}" "${CMAKE_INSTALL_PREFIX}")
configure_file(packaging/vantora.pc.in "${CMAKE_BINARY_DIR}/install/vantora.pc" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/install/vantora.pc"
    DESTINATION "${pkgconfig_dir}" COMPONENT dev)
