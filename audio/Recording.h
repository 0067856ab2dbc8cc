// SPDX-License-Identifier: MIT
#pragma once

#include "audio/RecordingFiles.h"
#include "audio/RecordingPipeline.h"

#include <QString>

#include <chrono>
#include <memory>

namespace sayloft {

/// The file of one recording. As long as this object lives no other recording is written to that
/// file; afterwards the main file stays on the disk until it is overwritten and any other file is
/// removed. Must not outlive its recorder. Any thread.
class Recording {
public:
    Recording(std::shared_ptr<RecordingFiles::Lease> name,
              std::shared_ptr<RecordingPipeline> pipeline);
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    [[nodiscard]] const QString& path() const { return m_name->path(); }

    /// The last word comes about 0.1 s after `Recorder::stop()`: waits for it, but no longer than
    /// `deadline`, then as long as the disk takes, and returns the path of the complete file: that
    /// of one in memory, good as long as this object lives, where the disk did not take it. A
    /// capture that broke off is logged. Blocks, so on the main thread only when the program ends.
    QString waitUntilFinished(std::chrono::milliseconds deadline = std::chrono::seconds(2)) const;

private:
    std::shared_ptr<RecordingFiles::Lease> m_name;
    std::shared_ptr<RecordingPipeline> m_pipeline;
};

}  // namespace sayloft
