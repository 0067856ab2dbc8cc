// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace sayloft {

/// Runs a function when the process ends by `exit()` while this object lives: that is how the
/// toolkit ends a program whose X server is gone. One at a time. Main thread.
class ExitHook {
public:
    explicit ExitHook(std::function<void()> atExit);
    ~ExitHook();
    ExitHook(const ExitHook&) = delete;
    ExitHook& operator=(const ExitHook&) = delete;
};

}  // namespace sayloft
