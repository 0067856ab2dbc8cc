// SPDX-License-Identifier: MIT
#include "app/CapturedChords.h"

#include <algorithm>

namespace sayloft {

void addCapturedChord(Config& config, const ChordCaptured& captured) {
    auto& list =
        captured.list == Capturing::dictate ? config.dictateChords : config.dictateEnterChords;
    if (std::find(list.begin(), list.end(), captured.chord.rawValue) == list.end())
        list.push_back(captured.chord.rawValue);
}

}  // namespace sayloft
