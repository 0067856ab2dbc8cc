// SPDX-License-Identifier: MIT
#pragma once

namespace sayloft {

/// Which chord list a new chord is being recorded for.
enum class Capturing { none, dictate, dictateEnter };

}  // namespace sayloft
