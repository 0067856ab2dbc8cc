// SPDX-License-Identifier: MIT
#include "audio/Recording.h"

#include <utility>

namespace sayloft {

Recording::Recording(std::unique_ptr<RecordingFiles::Lease> file,
                     std::shared_ptr<RecordingPipeline> pipeline)
    : m_file(std::move(file)), m_pipeline(std::move(pipeline)) {}

Recording::~Recording() {
    // The capture may still be running; it must not write into a file that is somebody else's.
    m_pipeline->close();
}

QString Recording::waitUntilFinished(std::chrono::milliseconds deadline) const {
    m_pipeline->waitUntilEnded(deadline);
    return path();
}

}  // namespace sayloft
