// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"
#include "tests/support/XServer.h"

namespace sayloft::test {

/// openbox: gives new windows the focus. Shows new windows when the constructor returns.
class WindowManager {
public:
    explicit WindowManager(const XServer& server);

private:
    ChildProgram m_program;
};

}  // namespace sayloft::test
