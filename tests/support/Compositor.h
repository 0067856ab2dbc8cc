// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"
#include "tests/support/XServer.h"

namespace sayloft::test {

/// picom: makes translucent windows possible. Composes when the constructor returns.
class Compositor {
public:
    explicit Compositor(const XServer& server);

private:
    ChildProgram m_program;
};

}  // namespace sayloft::test
