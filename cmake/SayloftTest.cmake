# SPDX-License-Identifier: MIT
if(NOT SAYLOFT_TESTS)
    return()
endif()

enable_testing()
include(GoogleTest)
find_package(GTest REQUIRED)

# What ThreadSanitizer looks at.
add_custom_target(threaded_tests)

# sayloft_test(<name> SOURCES <files>... [LIBRARIES <targets>...] [TIMEOUT <seconds>]
#              [LOCKS <resources>...] [LABELS <labels>...] [DEPENDS <targets>...])
# Every TEST becomes a ctest entry of its own. LOCKS names what only one test may use at a time:
#   helper    port 8090 or the process name of the speech helper
#   realtime  timing that a busy machine would spoil
# LABELS says where else it runs, or does not:
#   threads    it runs under ThreadSanitizer too: several threads of ours take part
#   long       it takes minutes, and runs in `make endurance` only
function(sayloft_test name)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LIBRARIES;LOCKS;LABELS;DEPENDS" ${ARGN})
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
    if("threads" IN_LIST arg_LABELS)
        add_dependencies(threaded_tests ${name})
    endif()
    # What only one test may use at a time is used from the first minute on, beside all other tests;
    # otherwise it would all be left for the end, one after another.
    set(cost 0)
    if("helper" IN_LIST arg_LOCKS)
        set(cost 2)
    elseif("realtime" IN_LIST arg_LOCKS)
        set(cost 1)
    endif()
    # WORKAROUND: gtest_discover_tests of CMake 3.25 keeps only the first of several locks or labels,
    # so they are set on its list of tests.
    set(properties "${CMAKE_CURRENT_BINARY_DIR}/${name}_properties.cmake")
    file(CONFIGURE OUTPUT "${properties}" @ONLY CONTENT [[
if(@name@_TESTS)
    set_tests_properties(${@name@_TESTS} PROPERTIES
        RESOURCE_LOCK "@arg_LOCKS@" LABELS "@arg_LABELS@" COST @cost@)
endif()
]])
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${properties}")
endfunction()
