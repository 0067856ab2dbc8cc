// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

namespace sayloft::test {

/// What `numberedFrames` counts up to.
constexpr int lastNumber = 32000;

/// Two seconds at 16 kHz in which frame number n has the value n, so that every captured frame
/// tells which one it is. A tenth of a second of silence comes first.
[[nodiscard]] std::vector<std::int16_t> numberedFrames();

/// The numbers of numbered frames, without the silence before them.
[[nodiscard]] std::vector<int> numbersIn(const std::vector<float>& samples);

/// Whether every number is followed by the next one.
[[nodiscard]] bool areConsecutive(const std::vector<int>& numbers);

}  // namespace sayloft::test
