// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sayloft::test {

using Samples = std::vector<std::int16_t>;

/// The samples of a one-channel sound file as another program (sox) reads them, at 16 kHz.
[[nodiscard]] Samples readSound(const QString& path);

/// Writes a one-channel 16-bit WAV file through sox.
void writeSound(const QString& path, std::span<const std::int16_t> samples, int rate = 16000);

/// A sentence as flite's rms voice says it, at 16 kHz, written to `path`.
void speak(const QString& sentence, const QString& path);

/// White noise that is the same in every run: every stretch of it is unlike every other.
[[nodiscard]] Samples noise(std::size_t count, std::int16_t peak = 8000);

/// Where a sound lies in a recording, and how much of it is there.
struct Match {
    std::ptrdiff_t offset = 0;  ///< of its first sample; negative when the beginning is missing
    std::size_t heard = 0;      ///< how many of its samples lie within the recording
    std::size_t equal = 0;      ///< how many of those are bit for bit the same
    double likeness = 0;        ///< normalised correlation of those, −1 to 1
};

/// Finds the loudest part of `sound` in `recording` and compares everything around it.
[[nodiscard]] Match find(std::span<const std::int16_t> sound,
                         std::span<const std::int16_t> recording);

}  // namespace sayloft::test
