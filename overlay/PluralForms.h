// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sayloft {

/// The form of the Polish noun for "word" that agrees with the count.
[[nodiscard]] QString plWords(int n);

}  // namespace sayloft
