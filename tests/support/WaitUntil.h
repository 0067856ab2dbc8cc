// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

namespace sayloft::test {

/// Turns the event loop until `condition` holds; false when it still does not after `deadline`.
[[nodiscard]] bool waitUntil(const std::function<bool()>& condition,
                             std::chrono::milliseconds deadline = std::chrono::seconds(10));

/// Turns the event loop for `duration`: only for showing that something does not happen.
void turnEventLoopFor(std::chrono::milliseconds duration);

}  // namespace sayloft::test
