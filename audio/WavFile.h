// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <sndfile.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace sayloft {

/// A RIFF/WAVE file of 16-bit PCM, one channel, 16000 frames per second, being written. The header
/// is brought up to date with every write, so that a file that is cut off is one that is shorter.
/// Destroying it closes the file. One thread at a time.
class WavFile {
public:
    static constexpr double sampleRate = 16000;

    /// Replaces what is at `path`; the file is the user's alone (mode 0600). Nothing when it cannot
    /// be opened.
    [[nodiscard]] static std::optional<WavFile> create(const QString& path);

    /// Full scale is −1 to 1; what is beyond is clipped. False when not everything was written.
    bool write(std::span<const float> samples);

    /// The nearest 16-bit sample; 0 for what is not a number.
    [[nodiscard]] static std::int16_t toPcm16(float sample);

private:
    struct Close {
        void operator()(SNDFILE* file) const { sf_close(file); }
    };
    explicit WavFile(SNDFILE* file) : m_file(file) {}

    std::unique_ptr<SNDFILE, Close> m_file;
    std::vector<std::int16_t> m_pcm;
};

}  // namespace sayloft
