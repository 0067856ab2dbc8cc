// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace sayloft::helper::test {

[[nodiscard]] std::vector<std::string> wordsOf(const std::string& text);

/// How many words have to be put in, taken out or replaced to turn `heard` into `spoken`: the
/// Levenshtein distance over words.
[[nodiscard]] int wordErrors(const std::string& spoken, const std::string& heard);

}  // namespace sayloft::helper::test
