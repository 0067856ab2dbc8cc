// SPDX-License-Identifier: MIT
#pragma once

#include "audio/RecordingFiles.h"
#include "audio/WavFile.h"

#include <future>
#include <memory>
#include <optional>
#include <span>

class QThreadPool;

namespace sayloft {

/// Writes an open WAV file on a thread of its own, so that a disk that stalls holds up neither the
/// sound nor whoever ends the recording. What waits for the disk is kept in memory, 64 kB for
/// each second. The file's name is leased until the file is closed. One thread at a time, but for
/// `waitUntilClosed`.
class WavWriter {
public:
    /// `disk` has a single thread and outlives this object.
    WavWriter(QThreadPool& disk, std::shared_ptr<RecordingFiles::Lease> name, WavFile file);
    ~WavWriter();
    WavWriter(const WavWriter&) = delete;
    WavWriter& operator=(const WavWriter&) = delete;

    /// Returns at once. What the disk refuses is kept in memory, as far as that goes.
    void write(std::span<const float> samples);
    /// Returns at once; the file is complete when all that came before is written. Whatever comes
    /// later is dropped.
    void close();
    /// Blocks as long as the disk does, and returns where the file is if it is not on the disk;
    /// it stays there as long as this object lives. Only after `close`. Any thread.
    [[nodiscard]] std::shared_ptr<MemoryFile> waitUntilClosed() const { return m_closed.get(); }

private:
    struct Target {
        std::shared_ptr<RecordingFiles::Lease> name;
        std::optional<WavFile> file;
        std::promise<std::shared_ptr<MemoryFile>> closed;
    };

    QThreadPool& m_disk;
    std::shared_ptr<Target> m_target;
    std::shared_future<std::shared_ptr<MemoryFile>> m_closed;
    bool m_isQueued = false;
};

}  // namespace sayloft
