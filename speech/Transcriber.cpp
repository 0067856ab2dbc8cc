// SPDX-License-Identifier: MIT
#include "speech/Transcriber.h"

#include "storage/WholeFile.h"

#include <QStringDecoder>

#include <httplib.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

constexpr qsizetype largestAnswer = qsizetype{16} * 1024 * 1024;

QByteArray multipartBody(const QByteArray& wav) {
    return "--SayloftBoundary7MA4YWxkTrZu0gW\r\n"
           "Content-Disposition: form-data; name=\"file\"; filename=\"a.wav\"\r\n"
           "Content-Type: audio/wav\r\n\r\n" +
           wav +
           "\r\n--SayloftBoundary7MA4YWxkTrZu0gW\r\n"
           "Content-Disposition: form-data; name=\"response_format\"\r\n\r\ntext"
           "\r\n--SayloftBoundary7MA4YWxkTrZu0gW--\r\n";
}

/// None when the file cannot be read.
std::optional<httplib::Request> transcriptionRequest(const QUrl& url, const QString& wavPath) {
    const auto wav = readWholeFile(wavPath);
    if (!wav)
        return std::nullopt;
    httplib::Request request;
    request.method = "POST";
    request.path = url.path().toStdString();
    request.headers = {
        {"Content-Type", "multipart/form-data; boundary=SayloftBoundary7MA4YWxkTrZu0gW"},
        {"User-Agent", "Sayloft"}};
    request.body = multipartBody(*wav).toStdString();
    return request;
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

/// Ends what the client is doing when `timeout` is over or `stop` is requested: the client's own
/// timeouts begin anew with every byte.
class AbortAfter {
public:
    AbortAfter(httplib::Client& client, std::chrono::milliseconds timeout,
               const std::stop_token& stop)
        : m_thread([&client, timeout, this](const std::stop_token& end) {
              pauseFor(timeout, end);
              // A request that has not begun cannot be stopped yet.
              while (!m_done) {
                  client.stop();
                  std::this_thread::sleep_for(10ms);
              }
          }),
          m_onStop(stop, [this] { m_thread.request_stop(); }) {}

    ~AbortAfter() {
        m_done = true;
        m_thread.request_stop();
    }

private:
    std::atomic<bool> m_done = false;
    std::jthread m_thread;
    std::stop_callback<std::function<void()>> m_onStop;
};

}  // namespace

QUrl Transcriber::endpoint() {
    return QUrl(QStringLiteral("http://127.0.0.1:8090/v1/audio/transcriptions"));
}

Transcriber::Transcriber() : Transcriber(endpoint(), Schedule()) {}

Transcriber::Transcriber(QUrl url, Schedule schedule, MayPost mayPost)
    : m_url(std::move(url)), m_schedule(schedule), m_mayPost(std::move(mayPost)) {}

std::optional<QString> Transcriber::transcribe(const QString& wavPath,
                                               const std::stop_token& stop) const {
    auto request = transcriptionRequest(m_url, wavPath);
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

std::optional<QString> Transcriber::post(httplib::Request& request,
                                         const std::stop_token& stop) const {
    httplib::Client client(m_url.host().toStdString(), m_url.port());
    client.set_connection_timeout(m_schedule.timeout);
    client.set_read_timeout(m_schedule.timeout);
    client.set_write_timeout(m_schedule.timeout);
    // What was said goes to the speech server on this machine and nowhere else.
    client.set_follow_location(false);
    const AbortAfter abort(client, m_schedule.timeout, stop);

    QByteArray answer;
    request.content_receiver = [&answer](const char* data, std::size_t size,
                                         std::uint64_t /*offset*/, std::uint64_t /*total*/) {
        answer.append(data, static_cast<qsizetype>(size));
        return answer.size() <= largestAnswer;
    };
    // Last of all: half an hour of sound takes a while to be made ready, and meanwhile the port may
    // become somebody else's.
    if (m_mayPost && !m_mayPost())
        return std::nullopt;
    httplib::Response response;
    httplib::Error error{};
    if (!client.send(request, response, error) || response.status < 200 || response.status > 299)
        return std::nullopt;
    return trimmedText(answer);
}

}  // namespace sayloft
