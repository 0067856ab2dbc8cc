// SPDX-License-Identifier: MIT
#include "speech/Transcriber.h"

#include "speech/TranscriptionRequest.h"
#include "storage/WholeFile.h"

#include <QStringDecoder>

#include <condition_variable>
#include <mutex>
#include <utility>

namespace sayloft {
namespace {

/// None when the file cannot be read.
std::optional<TranscriptionRequest> requestFor(const QUrl& url, const QString& wavPath) {
    const auto wav = readWholeFile(wavPath);
    return wav ? std::optional<TranscriptionRequest>(std::in_place, url, *wav) : std::nullopt;
}

/// None unless the bytes are UTF-8 without an error.
std::optional<QString> trimmedText(const QByteArray& utf8) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(utf8);
    if (decoder.hasError())
        return std::nullopt;
    return text.trimmed();
}

/// Ends early when `stop` is requested.
void pauseFor(std::chrono::milliseconds duration, const std::stop_token& stop) {
    std::mutex mutex;
    std::condition_variable_any never;
    std::unique_lock lock(mutex);
    never.wait_for(lock, stop, duration, [] { return false; });
}

}  // namespace

QUrl Transcriber::endpoint() {
    return QUrl(QStringLiteral("http://127.0.0.1:8090/v1/audio/transcriptions"));
}

Transcriber::Transcriber() : Transcriber(endpoint(), Schedule()) {}

Transcriber::Transcriber(QUrl url, Schedule schedule, MayPost mayPost)
    : m_url(std::move(url)), m_schedule(schedule), m_mayPost(std::move(mayPost)) {}

std::optional<QString> Transcriber::transcribe(const QString& wavPath,
                                               const std::stop_token& stop) const {
    const auto request = requestFor(m_url, wavPath);
    if (!request)
        return std::nullopt;
    for (int attempt = 0; attempt < m_schedule.attempts; ++attempt) {
        if (attempt > 0)
            pauseFor(m_schedule.pause, stop);
        if (stop.stop_requested())
            return std::nullopt;
        if (auto text = post(*request, stop))
            return text;
    }
    return std::nullopt;
}

std::optional<QString> Transcriber::post(const TranscriptionRequest& request,
                                         const std::stop_token& stop) const {
    // Last of all: between two attempts the port may become somebody else's.
    if (m_mayPost && !m_mayPost())
        return std::nullopt;
    const auto answer = request.post(m_schedule.timeout, stop);
    return answer ? trimmedText(*answer) : std::nullopt;
}

}  // namespace sayloft
