// SPDX-License-Identifier: MIT
#include "bench/Result.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace sayloft::bench {

void print(const Result& result) {
    std::printf("RESULT\t%s\t%s\t%s\t%s\n", result.name.c_str(), result.value.c_str(),
                result.peer.c_str(), result.peerValue.c_str());
    std::fflush(stdout);
}

double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

std::string describeMilliseconds(const std::vector<double>& values) {
    const auto [least, most] = std::minmax_element(values.begin(), values.end());
    return describe(medianOf(values), 1, "ms") + " (" + describe(*least, 1, "to ") +
           describe(*most, 1, "ms") + ")";
}

void printMilliseconds(const std::string& name, const std::vector<double>& ours,
                       const std::string& peer, const std::vector<double>& theirs) {
    print({.name = name,
           .value = describeMilliseconds(ours),
           .peer = peer,
           .peerValue = describeMilliseconds(theirs)});
}

std::string describe(double value, int decimals, const std::string& unit) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f %s", decimals, value, unit.c_str());
    return text.data();
}

}  // namespace sayloft::bench
