// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace sayloft::bench {

/// The whole of a benchmark's main function: runs it with an application object and says on
/// standard error what it has thrown. The exit status.
[[nodiscard]] int benchMain(int argc, char** argv, const std::function<void()>& bench);

/// The same for a benchmark that makes its own application object.
[[nodiscard]] int benchMainWithoutApplication(const char* program,
                                              const std::function<void()>& bench);

}  // namespace sayloft::bench
