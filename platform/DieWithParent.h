// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace sayloft {

/// To be called before a child process is forked; the result runs in the child before its program
/// does. From then on the child is killed when the thread that forked it ends, however it ends.
/// Does nothing on systems that cannot do this.
[[nodiscard]] std::function<void()> dieWithParent();

}  // namespace sayloft
