// SPDX-License-Identifier: MIT
#include "audio/Recording.h"

#include "storage/Log.h"

#include <utility>

namespace sayloft {

Recording::Recording(std::shared_ptr<RecordingFiles::Lease> name,
                     std::shared_ptr<RecordingPipeline> pipeline)
    : m_name(std::move(name)), m_pipeline(std::move(pipeline)) {}

Recording::~Recording() {
    // The capture may still be running; it must not write into a file that is somebody else's.
    m_pipeline->close();
}

QString Recording::waitUntilFinished(std::chrono::milliseconds deadline) const {
    const auto memory = m_pipeline->waitUntilComplete(deadline);
    if (const std::optional<QString> error = m_pipeline->error())
        logf(QStringLiteral("recording broke off: ") + *error);
    return memory ? memory->path() : path();
}

}  // namespace sayloft
