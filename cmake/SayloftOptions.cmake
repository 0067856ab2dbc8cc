# SPDX-License-Identifier: MIT
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    set(_starter_default ON)
else()
    set(_starter_default OFF)
endif()
option(SAYLOFT_STARTER "Ship the starter model and its recogniser" ${_starter_default})
option(SAYLOFT_TESTS "Build the tests" ON)
option(SAYLOFT_BENCH "Build the benchmarks" ON)
option(SAYLOFT_FUZZ "Build the fuzzers, with clang" OFF)
set(SAYLOFT_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_C_COMPILER_LAUNCHER "${CCACHE}")
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE}")
endif()

# What every target of ours is compiled with.
add_library(sayloft_options INTERFACE)
target_compile_options(sayloft_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
target_compile_definitions(sayloft_options INTERFACE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII)

if(SAYLOFT_SANITIZE)
    target_compile_options(sayloft_options INTERFACE
        -fsanitize=${SAYLOFT_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(sayloft_options INTERFACE -fsanitize=${SAYLOFT_SANITIZE})
endif()
