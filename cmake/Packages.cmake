# SPDX-License-Identifier: MIT
#
# Debian packages of what is installed: cpack makes one of each component.
#
# They are made of any build whose prefix is /usr, which the presets set.
set(ZELVO_MAINTAINER "zelvo-view maintainers <maintainers@zelvo-view.example>" CACHE STRING
    "Who answers for the packages: a name and an address")

set(package_plugin zelvo-view)
set(package_host zelvo-view-host)
set(package_dev zelvo-view-dev)

# What each package needs beside its files: who may use it, what changed, and what lintian shall
# overlook, each with its reason.
string(TIMESTAMP package_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(packaging/changelog.in "${CMAKE_BINARY_DIR}/install/changelog" @ONLY)
execute_process(COMMAND gzip -9nf "${CMAKE_BINARY_DIR}/install/changelog"
    COMMAND_ERROR_IS_FATAL ANY)
foreach(component plugin host dev)
    set(package ${package_${component}})
    set(package_doc_dir "${CMAKE_INSTALL_DATADIR}/doc/${package}")
    install(FILES LICENSE DESTINATION "${package_doc_dir}" RENAME copyright COMPONENT ${component})
    install(FILES "${CMAKE_BINARY_DIR}/install/changelog.gz"
        DESTINATION "${package_doc_dir}" COMPONENT ${component})
    set(overrides "${PROJECT_SOURCE_DIR}/packaging/${package}.lintian-overrides")
    if(EXISTS "${overrides}")
        install(FILES "${overrides}"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" RENAME ${package}
            COMPONENT ${component})
    endif()
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_NAME zelvo-view)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_COMPONENTS_ALL plugin host dev)
set(CPACK_STRIP_FILES ON)
# Whatever the umask of the one who builds.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${ZELVO_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
foreach(component plugin host dev)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package_${component}})
endforeach()

# Which libraries' packages are needed is for dpkg-shlibdeps to find out. It cannot for a foreign
# processor, whose packages are not installed here.
if(NOT CMAKE_CROSSCOMPILING)
    set(CPACK_DEBIAN_PLUGIN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_HOST_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
endif()

# A platform provides these two under the names of their libraries; here the stand-in does.
set(platform_libraries "libvantora0, libvantoraclient0")
set(CPACK_DEBIAN_HOST_PACKAGE_CONTROL_EXTRA
    "${PROJECT_SOURCE_DIR}/packaging/host/shlibs;${PROJECT_SOURCE_DIR}/packaging/host/triggers")

set(CPACK_DEBIAN_PLUGIN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PLUGIN_PACKAGE_DEPENDS "${platform_libraries}")
set(CPACK_DEBIAN_PLUGIN_PACKAGE_RECOMMENDS network-manager)
set(CPACK_DEBIAN_PLUGIN_DESCRIPTION
"configuration plugin for thin clients
A small, stable tree of view keys in front of the platform registry, shell
scripts, display profiles and NetworkManager. The configuration host of the
platform loads it.
.
The package has the plugin, the keys of the view, and scripts to start from.")

set(CPACK_DEBIAN_HOST_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_HOST_PACKAGE_DEPENDS python3)
set(CPACK_DEBIAN_HOST_PACKAGE_PROVIDES "${platform_libraries}")
set(CPACK_DEBIAN_HOST_PACKAGE_RECOMMENDS
    "${package_plugin}, bubblewrap, dbus, python3-dbusmock, network-manager")
set(CPACK_DEBIAN_HOST_DESCRIPTION
"stand-in for the configuration host that serves zelvo-view
Keeps a registry of settings, loads configuration plugins and takes commands
for both (vantora-shell), on machines that lack the platform. A sandbox to try
them in without touching the machine is part of it (vantora-sandbox).")

set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS
    "${package_host} (= ${PROJECT_VERSION}), ${ZELVO_QT_PACKAGE}")
set(CPACK_DEBIAN_DEV_DESCRIPTION
"headers for plugins of the configuration host
What another configuration plugin is compiled with: the headers of the
platform's interface, and how CMake and pkg-config find them.")

include(CPack)
