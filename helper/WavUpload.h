// SPDX-License-Identifier: MIT
#pragma once

#include "helper/Problem.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace sayloft::helper {

using Samples = std::vector<std::int16_t>;  ///< mono, 16000 a second

/// Takes the samples out of a WAV file: RIFF/WAVE, 16-bit PCM, mono, 16 kHz and nothing else.
/// Chunks other than "fmt " and "data" are passed over, and so is whatever follows the data.
/// Source: "Multimedia Programming Interface and Data Specifications 1.0" (RIFF WAVE).
[[nodiscard]] Result<Samples> parseWav(std::string_view file);

}  // namespace sayloft::helper
