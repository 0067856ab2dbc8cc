// SPDX-License-Identifier: MIT
#include "helper/tests/WordErrors.h"

#include <algorithm>
#include <numeric>
#include <sstream>
#include <utility>

namespace sayloft::helper::test {

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

int wordErrors(const std::string& spoken, const std::string& heard) {
    const std::vector<std::string> from = wordsOf(spoken);
    const std::vector<std::string> to = wordsOf(heard);
    std::vector<int> row(to.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 0; i < from.size(); ++i) {
        int diagonal = std::exchange(row[0], static_cast<int>(i) + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const int replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

}  // namespace sayloft::helper::test
