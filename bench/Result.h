// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace sayloft::bench {

/// A row of the table that scripts/bench.sh prints at the end. Peer and its value may be empty.
struct Result {
    std::string name;
    std::string value;
    std::string peer;
    std::string peerValue;
};

/// Prints the row to standard output in the form that scripts/bench.sh collects.
void print(const Result& result);

/// Of at least one value.
[[nodiscard]] double medianOf(std::vector<double> values);

/// "median (min to max)" in milliseconds; of at least one value.
[[nodiscard]] std::string describeMilliseconds(const std::vector<double>& values);

/// Prints the row that has such descriptions of both.
void printMilliseconds(const std::string& name, const std::vector<double>& ours,
                       const std::string& peer, const std::vector<double>& theirs);

/// A number with this many decimals, and its unit.
[[nodiscard]] std::string describe(double value, int decimals, const std::string& unit);

}  // namespace sayloft::bench
