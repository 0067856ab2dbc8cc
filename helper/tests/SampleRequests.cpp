// SPDX-License-Identifier: MIT
#include "helper/tests/SampleRequests.h"

#include <array>
#include <cstdio>

namespace sayloft::helper::test {
namespace {

constexpr std::string_view boundary = "SayloftBoundary7MA4YWxkTrZu0gW";

}  // namespace

std::string formType() {
    return "Content-Type: multipart/form-data; boundary=" + std::string(boundary) + "\r\n";
}

std::string littleEndian(std::uint32_t value, std::size_t bytes) {
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> (8 * i));
    return text;
}

std::string wavFile(std::size_t samples, const WavFormat& format) {
    const auto block = static_cast<std::uint32_t>(format.channels * format.bits / 8);
    const auto size = static_cast<std::uint32_t>(samples * block);
    std::string data;
    for (std::size_t i = 0; i < samples * block; ++i)
        data += static_cast<char>(i * 37 % 7);
    return "RIFF" + littleEndian(36 + size, 4) + "WAVEfmt " + littleEndian(16, 4) +
           littleEndian(format.tag, 2) + littleEndian(format.channels, 2) +
           littleEndian(format.rate, 4) + littleEndian(format.rate * block, 4) +
           littleEndian(block, 2) + littleEndian(format.bits, 2) + "data" + littleEndian(size, 4) +
           data;
}

std::string appForm(std::string_view wav) {
    return "--SayloftBoundary7MA4YWxkTrZu0gW\r\n"
           "Content-Disposition: form-data; name=\"file\"; filename=\"a.wav\"\r\n"
           "Content-Type: audio/wav\r\n\r\n" +
           std::string(wav) +
           "\r\n--SayloftBoundary7MA4YWxkTrZu0gW\r\n"
           "Content-Disposition: form-data; name=\"response_format\"\r\n\r\ntext"
           "\r\n--SayloftBoundary7MA4YWxkTrZu0gW--\r\n";
}

std::string form(const std::vector<std::string>& parts) {
    std::string body;
    for (const std::string& part : parts)
        body += "--" + std::string(boundary) + "\r\n" + part + "\r\n";
    return body + "--" + std::string(boundary) + "--\r\n";
}

std::string filePart(std::string_view wav) {
    return "Content-Disposition: form-data; name=\"file\"; filename=\"a.wav\"\r\n\r\n" +
           std::string(wav);
}

std::string post(std::string_view headers, std::string_view body) {
    return "POST /v1/audio/transcriptions HTTP/1.1\r\nHost: 127.0.0.1\r\n" + std::string(headers) +
           "\r\n" + std::string(body);
}

std::string postOf(std::string_view body, std::string_view headers) {
    return post(std::string(headers) + formType() +
                    "Content-Length: " + std::to_string(body.size()) + "\r\n",
                body);
}

std::string chunkedType() {
    return "Transfer-Encoding: chunked\r\n" + formType();
}

std::string chunked(std::string_view body, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < body.size(); i += size) {
        const std::string_view part = body.substr(i, size);
        std::array<char, 20> length{};
        std::snprintf(length.data(), length.size(), "%zx\r\n", part.size());
        text += length.data() + std::string(part) + "\r\n";
    }
    return text + "0\r\n\r\n";
}

}  // namespace sayloft::helper::test
