// SPDX-License-Identifier: MIT
#pragma once

#include "helper/Problem.h"

#include <cstdint>
#include <span>
#include <string>

namespace sayloft::helper {

/// What the program was asked to do.
struct CommandLine {
    std::string modelPath;
    std::string host;        ///< always "127.0.0.1": nobody else's machine may reach the server
    std::uint16_t port = 0;  ///< 1 to 65535
};

/// Reads `--model PATH --host HOST --port PORT`, in any order, each exactly once and nothing else.
/// `arguments` does not hold the program's name.
[[nodiscard]] Result<CommandLine> parseCommandLine(std::span<const char* const> arguments);

}  // namespace sayloft::helper
