// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QThread>

#include <cstdint>
#include <future>
#include <memory>
#include <optional>
#include <stop_token>

namespace sayloft {

class Recording;
class Transcriber;

/// Transcribes one recording on a thread of its own, keeps it where that fails and emits
/// `finished`. Destroying it gives it up.
class TranscriptionThread : public QThread {
public:
    /// `transcriber` must outlive the thread and may serve several at once. `number` counts the
    /// dictations.
    TranscriptionThread(const Transcriber& transcriber, std::shared_ptr<Recording> recording,
                        std::uint64_t number, QObject* parent);
    ~TranscriptionThread() override;
    TranscriptionThread(const TranscriptionThread&) = delete;
    TranscriptionThread& operator=(const TranscriptionThread&) = delete;

    [[nodiscard]] std::uint64_t number() const { return m_number; }

    /// Ends the transcription and waits for the thread, which is prompt.
    void giveUp();

    /// The transcript, none when there is none. Waits for it.
    [[nodiscard]] const std::optional<QString>& text() const { return m_text.get(); }

protected:
    void run() override;

private:
    const Transcriber& m_transcriber;
    std::shared_ptr<Recording> m_recording;
    std::uint64_t m_number;
    std::stop_source m_stop;
    std::promise<std::optional<QString>> m_transcribed;
    const std::shared_future<std::optional<QString>> m_text = m_transcribed.get_future();
};

}  // namespace sayloft
