// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <compare>

namespace sayloft {

/// Orders version numbers as users read them: numbers by value, so 1.10 is above 1.9; letters make
/// a version that comes before the one without them, so 1.0b2 is below 1.0; missing numbers are 0,
/// so 1.0 equals 1.0.0.
[[nodiscard]] std::weak_ordering compareVersions(const QString& one, const QString& other);

}  // namespace sayloft
