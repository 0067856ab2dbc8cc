// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MemoryFile.h"

#include <QString>

#include <sndfile.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace sayloft {

/// A RIFF/WAVE file of 16-bit PCM, one channel, 16000 frames per second, being written. The header
/// is brought up to date with every write, so that a file that is cut off is one that is shorter.
/// What the disk does not take goes on in memory, beside what the file has by then. Destroying it
/// closes the file. One thread at a time.
class WavFile {
public:
    static constexpr double sampleRate = 16000;
    /// More than that is not kept in memory.
    static constexpr std::int64_t mostFramesInMemory = std::int64_t{10} * 60 * 16000;

    /// Replaces what is at `path`; the file is the user's alone (mode 0600). Nothing when it cannot
    /// be opened.
    [[nodiscard]] static std::optional<WavFile> create(const QString& path);

    /// In memory from the first frame on. Nothing when that cannot be.
    [[nodiscard]] static std::optional<WavFile> createInMemory();

    /// Full scale is −1 to 1; what is beyond is clipped. False when not everything was written.
    bool write(std::span<const float> samples);

    /// Where the whole file is, when it is in memory; null when it is on the disk.
    [[nodiscard]] const std::shared_ptr<MemoryFile>& memory() const { return m_memory; }

    /// The nearest 16-bit sample; 0 for what is not a number.
    [[nodiscard]] static std::int16_t toPcm16(float sample);

private:
    struct Close {
        void operator()(SNDFILE* file) const { sf_close(file); }
    };
    using Sound = std::unique_ptr<SNDFILE, Close>;

    WavFile(Sound file, int descriptor) : m_file(std::move(file)), m_descriptor(descriptor) {}
    /// Takes the descriptor. Null when that fails.
    [[nodiscard]] static Sound open(int descriptor);

    [[nodiscard]] bool writePcm(std::span<const std::int16_t> samples);
    [[nodiscard]] bool moveToMemory();
    [[nodiscard]] bool append(int descriptor, std::int64_t frames);

    Sound m_file;
    int m_descriptor;  ///< the file's own
    std::shared_ptr<MemoryFile> m_memory;
    std::int64_t m_frames = 0;
    std::vector<std::int16_t> m_pcm;
};

}  // namespace sayloft
