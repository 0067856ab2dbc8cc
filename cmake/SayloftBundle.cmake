# SPDX-License-Identifier: MIT
# The bundle is laid out in the build tree as it is installed: build/Sayloft.app/Contents/...
set(SAYLOFT_BUNDLE_DIR "${CMAKE_BINARY_DIR}/Sayloft.app")
set(SAYLOFT_CONTENTS_DIR "${SAYLOFT_BUNDLE_DIR}/Contents")

# sayloft_bundle_resources(<subfolder> <files>...): copied when they change, as part of `all`.
function(sayloft_bundle_resources subfolder)
    set(copies "")
    foreach(file IN LISTS ARGN)
        cmake_path(ABSOLUTE_PATH file OUTPUT_VARIABLE source)
        cmake_path(GET source FILENAME name)
        set(copy "${SAYLOFT_CONTENTS_DIR}/Resources/${subfolder}/${name}")
        add_custom_command(OUTPUT "${copy}"
            COMMAND ${CMAKE_COMMAND} -E make_directory "${SAYLOFT_CONTENTS_DIR}/Resources/${subfolder}"
            COMMAND ${CMAKE_COMMAND} -E copy "${source}" "${copy}"
            DEPENDS "${source}" VERBATIM)
        list(APPEND copies "${copy}")
    endforeach()
    string(MAKE_C_IDENTIFIER "bundle_${subfolder}" target)
    add_custom_target(${target} ALL DEPENDS ${copies})
endfunction()
