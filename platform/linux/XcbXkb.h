// SPDX-License-Identifier: MIT
#pragma once

// WORKAROUND: libxcb 1.15's xkb header names a structure member `explicit`, a keyword of C++.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
