# SPDX-License-Identifier: MIT
find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets Network DBus Test)
find_package(nlohmann_json 3.11 REQUIRED)

pkg_check_modules(SOXR REQUIRED IMPORTED_TARGET soxr)
pkg_check_modules(CURL REQUIRED IMPORTED_TARGET libcurl)
pkg_check_modules(CRYPTO REQUIRED IMPORTED_TARGET libcrypto)
pkg_check_modules(SNDFILE REQUIRED IMPORTED_TARGET sndfile)

if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    pkg_check_modules(PULSE REQUIRED IMPORTED_TARGET libpulse)
    pkg_check_modules(MNL REQUIRED IMPORTED_TARGET libmnl)
    pkg_check_modules(XCB REQUIRED IMPORTED_TARGET
        xcb xcb-xkb xcb-xtest xcb-xfixes xcb-res xcb-shape xkbcommon xkbcommon-x11)
endif()

if(SAYLOFT_STARTER)
    # WORKAROUND: Debian 12's pocketsphinx.pc names an include directory that does not exist, which
    # an imported target refuses, so its flags are used as plain variables.
    pkg_check_modules(POCKETSPHINX REQUIRED pocketsphinx)
endif()
pkg_check_modules(HTTPLIB REQUIRED IMPORTED_TARGET cpp-httplib)
