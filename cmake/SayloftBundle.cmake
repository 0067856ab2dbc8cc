# SPDX-License-Identifier: MIT
# The bundle is laid out in the build tree as it is installed: build/Sayloft.app/Contents/...
set(SAYLOFT_BUNDLE_DIR "${CMAKE_BINARY_DIR}/Sayloft.app")
set(SAYLOFT_CONTENTS_DIR "${SAYLOFT_BUNDLE_DIR}/Contents")

# Everything that a bundle needs, and nothing else.
add_custom_target(bundle ALL)

# sayloft_bundle_program(<target> <subfolder>): the target is linked right into the bundle.
function(sayloft_bundle_program target subfolder)
    set_target_properties(${target} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${SAYLOFT_CONTENTS_DIR}/${subfolder}")
    add_dependencies(bundle ${target})
endfunction()

# sayloft_bundle_resources(<subfolder> <files>...): copied when they change.
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
    add_custom_target(${target} DEPENDS ${copies})
    add_dependencies(bundle ${target})
endfunction()
