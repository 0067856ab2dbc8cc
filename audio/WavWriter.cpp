// SPDX-License-Identifier: MIT
#include "audio/WavWriter.h"

#include <QThreadPool>

#include <utility>
#include <vector>

namespace sayloft {

WavWriter::WavWriter(QThreadPool& disk, std::shared_ptr<RecordingFiles::Lease> name, WavFile file)
    : m_disk(disk),
      m_target(std::make_shared<Target>(Target{std::move(name), std::move(file), {}})),
      m_closed(m_target->closed.get_future()) {}

WavWriter::~WavWriter() {
    close();
}

void WavWriter::write(std::span<const float> samples) {
    if (!m_target || samples.empty())
        return;
    m_isQueued = true;
    m_disk.start([target = m_target, kept = std::vector<float>(samples.begin(), samples.end())] {
        target->file->write(kept);
    });
}

void WavWriter::close() {
    if (!m_target)
        return;
    const auto finish = [target = std::exchange(m_target, nullptr)] {
        // Complete and given back before anybody is told.
        auto memory = target->file->memory();
        target->file.reset();
        target->name.reset();
        target->closed.set_value(std::move(memory));
    };
    // A recording that has not begun gives its name back at once.
    if (m_isQueued)
        m_disk.start(finish);
    else
        finish();
}

}  // namespace sayloft
