# SPDX-License-Identifier: MIT

# zelvo_automoc(TARGET)
#
# Has moc look at the target's files.
function(zelvo_automoc target)
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    set_property(GLOBAL APPEND PROPERTY ZELVO_AUTOMOC_TARGETS ${target})
endfunction()

# To be called behind all targets. With Ninja, moc runs again when a file has changed that it has
# looked at before, and would not see one that is added to a target which has been built already.
function(zelvo_rerun_moc_for_added_files)
    get_property(targets GLOBAL PROPERTY ZELVO_AUTOMOC_TARGETS)
    foreach(target IN LISTS targets)
        get_target_property(sources ${target} SOURCES)
        get_target_property(folder ${target} BINARY_DIR)
        set(list "${folder}/${target}-sources")
        set(before)
        if(EXISTS "${list}")
            file(READ "${list}" before)
        endif()
        if(NOT before STREQUAL "${sources}")
            file(REMOVE "${folder}/${target}_autogen/timestamp")
            file(WRITE "${list}" "${sources}")
        endif()
    endforeach()
endfunction()
