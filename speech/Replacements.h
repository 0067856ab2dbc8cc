// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

namespace sayloft {

/// Applies the user's dictionary to `text`, entry by entry, each to the result of the ones before.
/// An entry is the heard text and its replacement; any other number of items, or nothing heard,
/// makes it an entry that is skipped. Matches are substrings, whatever their case.
[[nodiscard]] QString applyReplacements(const QString& text,
                                        const std::vector<std::vector<QString>>& dictionary);

}  // namespace sayloft
