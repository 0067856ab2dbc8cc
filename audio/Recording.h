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
/// removed. Any thread.
class Recording {
public:
    Recording(std::unique_ptr<RecordingFiles::Lease> file,
              std::shared_ptr<RecordingPipeline> pipeline);
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    [[nodiscard]] const QString& path() const { return m_file->path(); }

    /// The last word is written about 0.1 s after `Recorder::stop()`: waits for it and returns the
    /// path of the complete file; after `deadline` completes the file with what it has. Blocks, so
    /// never on the main thread.
    QString waitUntilFinished(std::chrono::milliseconds deadline = std::chrono::seconds(2)) const;

private:
    std::unique_ptr<RecordingFiles::Lease> m_file;
    std::shared_ptr<RecordingPipeline> m_pipeline;
};

}  // namespace sayloft
