// SPDX-License-Identifier: MIT
#include "speech/TranscriptionRequest.h"

#include <cstddef>
#include <utility>

namespace sayloft {
namespace {

// Ten hours of fast speech have less text.
constexpr qsizetype largestAnswer = qsizetype{1024} * 1024;

QByteArray multipartBody(const QByteArray& wav) {
    return "--SayloftBoundary7MA4YWxkTrZu0gW\r\n"
           "Content-Disposition: form-data; name=\"file\"; filename=\"a.wav\"\r\n"
           "Content-Type: audio/wav\r\n\r\n" +
           wav +
           "\r\n--SayloftBoundary7MA4YWxkTrZu0gW\r\n"
           "Content-Disposition: form-data; name=\"response_format\"\r\n\r\ntext"
           "\r\n--SayloftBoundary7MA4YWxkTrZu0gW--\r\n";
}

// Without "Expect", libcurl would ask first whether a long recording is welcome.
CurlList requestHeaders() {
    CurlList headers;
    for (const char* line :
         {"Content-Type: multipart/form-data; boundary=SayloftBoundary7MA4YWxkTrZu0gW",
          "Connection: close", "Expect:"}) {
        curl_slist* longer = curl_slist_append(headers.get(), line);
        static_cast<void>(headers.release());
        headers.reset(longer);
    }
    return headers;
}

struct Answer {
    QByteArray body;
    bool hasWholeHead = false;
};

// Both tell by their result how much they have taken; anything but all of it ends the transfer.
std::size_t takeLine(char* bytes, std::size_t size, std::size_t count, void* answer) {
    const std::size_t length = size * count;
    const QByteArrayView line(bytes, static_cast<qsizetype>(length));
    // Lines may come after the body as well, without an empty one.
    if (line.startsWith("HTTP/"))
        static_cast<Answer*>(answer)->hasWholeHead = false;
    else if (line.trimmed().isEmpty())
        static_cast<Answer*>(answer)->hasWholeHead = true;
    return length;
}

std::size_t takeBody(char* bytes, std::size_t size, std::size_t count, void* answer) {
    const std::size_t length = size * count;
    QByteArray& body = static_cast<Answer*>(answer)->body;
    body.append(bytes, static_cast<qsizetype>(length));
    return body.size() <= largestAnswer ? length : 0;
}

/// Whether the transfer of `multi` has come to a good end; it is given up when `stop` is requested.
bool run(CURLM* multi, const std::stop_token& stop) {
    const std::stop_callback onStop(stop, [multi] { curl_multi_wakeup(multi); });
    int running = 0;
    while (!stop.stop_requested() && curl_multi_perform(multi, &running) == CURLM_OK) {
        int left = 0;
        if (const CURLMsg* message = curl_multi_info_read(multi, &left))
            return message->data.result == CURLE_OK;
        if (running == 0)
            return false;
        // It ends at the transfer's own timeout, too.
        constexpr int longestWaitMs = 1000;
        curl_multi_poll(multi, nullptr, 0, longestWaitMs, nullptr);
    }
    return false;
}

}  // namespace

TranscriptionRequest::TranscriptionRequest(QUrl url, const QByteArray& wav)
    : m_url(std::move(url)), m_body(multipartBody(wav)), m_headers(requestHeaders()) {}

std::optional<QByteArray> TranscriptionRequest::post(std::chrono::milliseconds timeout,
                                                     const std::stop_token& stop) const {
    Answer answer;
    const CurlEasy easy = transfer(timeout);
    curl_easy_setopt(easy.get(), CURLOPT_HEADERDATA, &answer);
    curl_easy_setopt(easy.get(), CURLOPT_WRITEDATA, &answer);
    const CurlMulti multi(curl_multi_init());
    curl_multi_add_handle(multi.get(), easy.get());
    const bool isDone = run(multi.get(), stop);
    curl_multi_remove_handle(multi.get(), easy.get());

    long status = 0;
    curl_easy_getinfo(easy.get(), CURLINFO_RESPONSE_CODE, &status);
    // libcurl takes a head that breaks off for one without a body.
    if (!isDone || !answer.hasWholeHead || status < 200 || status > 299)
        return std::nullopt;
    return answer.body;
}

CurlEasy TranscriptionRequest::transfer(std::chrono::milliseconds timeout) const {
    CurlEasy transfer(curl_easy_init());
    CURL* easy = transfer.get();
    curl_easy_setopt(easy, CURLOPT_URL, m_url.toEncoded().constData());
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, m_headers.get());
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "Sayloft");
    curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t{m_body.size()});
    curl_easy_setopt(easy, CURLOPT_POSTFIELDS, m_body.constData());
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, static_cast<long>(timeout.count()));
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    // What was said goes to the speech server on this machine and nowhere else.
    curl_easy_setopt(easy, CURLOPT_PROXY, "");
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &takeLine);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &takeBody);
    return transfer;
}

}  // namespace sayloft
