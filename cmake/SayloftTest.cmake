# SPDX-License-Identifier: MIT
if(NOT SAYLOFT_TESTS)
    function(sayloft_test)
    endfunction()
    return()
endif()

enable_testing()
include(GoogleTest)
find_package(GTest REQUIRED)

# sayloft_test(<name> SOURCES <files>... [LIBRARIES <targets>...] [TIMEOUT <seconds>]
#              [LOCKS <resources>...] [DEPENDS <targets>...])
# Every TEST becomes a ctest entry of its own. LOCKS names what only one test may use at a time:
#   helper    port 8090 or the process name of the speech helper
#   realtime  timing that a busy machine would spoil
function(sayloft_test name)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LIBRARIES;LOCKS;DEPENDS" ${ARGN})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 60)
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE sayloft_test_support ${arg_LIBRARIES})
    if(arg_DEPENDS)
        add_dependencies(${name} ${arg_DEPENDS})
    endif()
    gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60 NO_PRETTY_VALUES PROPERTIES TIMEOUT ${arg_TIMEOUT})
    # WORKAROUND: gtest_discover_tests of CMake 3.25 keeps only the first of several locks, so they
    # are set on its list of tests.
    if(arg_LOCKS)
        set(locks "${CMAKE_CURRENT_BINARY_DIR}/${name}_locks.cmake")
        file(CONFIGURE OUTPUT "${locks}" @ONLY CONTENT [[
if(@name@_TESTS)
    set_tests_properties(${@name@_TESTS} PROPERTIES RESOURCE_LOCK "@arg_LOCKS@")
endif()
]])
        set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${locks}")
    endif()
endfunction()
