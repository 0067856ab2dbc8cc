# SPDX-License-Identifier: MIT
if(NOT SAYLOFT_TESTS)
    return()
endif()

enable_testing()
include(GoogleTest)
find_package(GTest REQUIRED)

# Where users may have namespaces and this tree is seen from there, every test that has to be alone has
# a machine to itself, as far as it can tell.
set(_alone "${CMAKE_SOURCE_DIR}/scripts/alone.sh")
execute_process(COMMAND "${_alone}" test -d "${CMAKE_SOURCE_DIR}" -a -d "${CMAKE_BINARY_DIR}"
    RESULT_VARIABLE _failure ERROR_VARIABLE _reason OUTPUT_QUIET)
if(_failure)
    message(STATUS "Some tests take turns, for want of namespaces: ${_reason}")
    set(_alone "")
endif()

# What ThreadSanitizer looks at.
add_custom_target(threaded_tests)

# sayloft_test(<name> SOURCES <files>... [LIBRARIES <targets>...] [TIMEOUT <seconds>]
#              [NEEDS <resources>...] [LABELS <labels>...] [DEPENDS <targets>...])
# Every TEST becomes a ctest entry of its own. NEEDS names what it cannot share with another test:
#   alone     a port or the process name of the speech helper, which only one may have
#   realtime  timing that a busy machine would spoil; it counts as two of the tests run at a time
# LABELS says where else it runs, or does not:
#   threads    it runs under ThreadSanitizer too: several threads of ours take part
#   long       it takes minutes, and runs in `make endurance` only
function(sayloft_test name)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LIBRARIES;NEEDS;LABELS;DEPENDS" ${ARGN})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 60)
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE sayloft_test_support ${arg_LIBRARIES})
    # Most of a build is tests, and no test is in a hurry itself.
    target_compile_options(${name} PRIVATE $<$<CONFIG:RelWithDebInfo>:-O1;-g1>)
    if(arg_DEPENDS)
        add_dependencies(${name} ${arg_DEPENDS})
    endif()
    set(lock "")
    if("alone" IN_LIST arg_NEEDS AND _alone)
        set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "${_alone}")
    elseif("alone" IN_LIST arg_NEEDS)
        set(lock alone)
    endif()
    set(processors 1)
    if("realtime" IN_LIST arg_NEEDS)
        set(processors 2)
    endif()
    gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60 NO_PRETTY_VALUES PROPERTIES TIMEOUT ${arg_TIMEOUT})
    if("threads" IN_LIST arg_LABELS)
        add_dependencies(threaded_tests ${name})
    endif()
    # Tests that may take long begin first, so that none is still running when all others have ended.
    # WORKAROUND: gtest_discover_tests of CMake 3.25 keeps only the first of several labels, so they
    # are set on its list of tests.
    set(properties "${CMAKE_CURRENT_BINARY_DIR}/${name}_properties.cmake")
    file(CONFIGURE OUTPUT "${properties}" @ONLY CONTENT [[
if(@name@_TESTS)
    set_tests_properties(${@name@_TESTS} PROPERTIES RESOURCE_LOCK "@lock@"
        PROCESSORS @processors@ LABELS "@arg_LABELS@" COST @arg_TIMEOUT@)
endif()
]])
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${properties}")
endfunction()
