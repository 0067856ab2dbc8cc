// SPDX-License-Identifier: MIT
#include "platform/tests/NumberedFrames.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace sayloft::test {
namespace {

constexpr int silence = 1600;

}  // namespace

std::vector<std::int16_t> numberedFrames() {
    std::vector<std::int16_t> frames(silence + lastNumber);
    std::iota(frames.end() - lastNumber, frames.end(), std::int16_t{1});
    return frames;
}

std::vector<int> numbersIn(const std::vector<float>& samples) {
    std::vector<int> numbers;
    for (const float sample : samples) {
        const int number = static_cast<int>(std::lround(sample * 32768));
        if (number > 0 || !numbers.empty())
            numbers.push_back(number);
    }
    return numbers;
}

bool areConsecutive(const std::vector<int>& numbers) {
    return std::adjacent_find(numbers.begin(), numbers.end(),
                              [](int a, int b) { return b != a + 1; }) == numbers.end();
}

}  // namespace sayloft::test
