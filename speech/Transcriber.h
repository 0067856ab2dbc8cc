// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>

namespace sayloft {

class TranscriptionRequest;

/// Turns a recording into text by asking the speech server. Has no state: one object serves any
/// number of threads at once.
class Transcriber {
public:
    struct Schedule {
        int attempts = 4;
        std::chrono::milliseconds pause = std::chrono::milliseconds(500);  ///< between attempts
        std::chrono::milliseconds timeout = std::chrono::seconds(30);      ///< of a whole attempt
    };

    /// The speech server's transcription address on this machine.
    [[nodiscard]] static QUrl endpoint();

    /// Asked right before every attempt, on the thread that transcribes: false lets the attempt
    /// fail without anything being sent.
    using MayPost = std::function<bool()>;

    Transcriber();
    Transcriber(QUrl url, Schedule schedule, MayPost mayPost = {});

    /// Blocks, so never on the main thread; `stop` ends it early without a result. The trimmed
    /// transcript, which may be empty; none when the file cannot be read or no attempt succeeded.
    [[nodiscard]] std::optional<QString> transcribe(const QString& wavPath,
                                                    const std::stop_token& stop = {}) const;

private:
    [[nodiscard]] std::optional<QString> post(const TranscriptionRequest& request,
                                              const std::stop_token& stop) const;

    QUrl m_url;
    Schedule m_schedule;
    MayPost m_mayPost;
};

}  // namespace sayloft
