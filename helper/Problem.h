// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <variant>

namespace sayloft::helper {

/// Why something could not be done: one plain sentence part, without a full stop or a line feed.
struct Problem {
    std::string reason;
};

template <typename Value>
using Result = std::variant<Value, Problem>;

}  // namespace sayloft::helper
