// SPDX-License-Identifier: MIT
// A speech server that answers every recording at once with the same words, so that what is left of
// a dictation's time is the app's own. For each request, "<model>.times" gets a line with the
// moments of its arrival and of its answer in nanoseconds of CLOCK_MONOTONIC; "<model>.wav" is the
// first recording that came.

#include "tests/support/Loopback.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <string>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

bool receiveMore(int connection, std::string& received) {
    std::array<char, 65536> bytes{};
    const auto got = ::recv(connection, bytes.data(), bytes.size(), 0);
    if (got <= 0)
        return false;
    received.append(bytes.data(), static_cast<std::size_t>(got));
    return true;
}

std::size_t contentLength(const std::string& head) {
    constexpr const char* name = "Content-Length: ";
    const auto at = head.find(name);
    return at == std::string::npos ? 0 : std::stoul(head.substr(at + std::string(name).size()));
}

std::string receiveRequest(int connection) {
    constexpr const char* endOfHead = "\r\n\r\n";
    std::string request;
    while (request.find(endOfHead) == std::string::npos) {
        if (!receiveMore(connection, request))
            return request;
    }
    const std::size_t head = request.find(endOfHead) + 4;
    const std::size_t whole = head + contentLength(request.substr(0, head));
    while (request.size() < whole && receiveMore(connection, request))
        continue;
    return request;
}

bool exists(const std::string& path) {
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0;
}

// A RIFF file tells its own length, in the four bytes after its first four.
void keepRecording(const std::string& request, const std::string& path) {
    const auto begin = request.find("RIFF");
    if (begin == std::string::npos || begin + 8 > request.size() || exists(path))
        return;
    std::uint32_t length = 0;
    for (std::size_t i = 4; i > 0; --i)
        length = length << 8U | static_cast<unsigned char>(request[begin + 3 + i]);
    std::ofstream(path, std::ios::binary) << request.substr(begin, std::size_t{length} + 8);
}

void answer(int connection, const std::string& model) {
    const std::string request = receiveRequest(connection);
    const auto arrived = Clock::now();
    const std::string reply =
        "HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: 11\r\n"
        "Connection: close\r\n\r\nsome words.";
    static_cast<void>(::send(connection, reply.data(), reply.size(), MSG_NOSIGNAL));
    const auto answered = Clock::now();
    ::close(connection);
    if (!request.starts_with("POST "))
        return;
    keepRecording(request, model + ".wav");
    std::ofstream(model + ".times", std::ios::app)
        << arrived.time_since_epoch().count() << ' ' << answered.time_since_epoch().count() << '\n';
}

}  // namespace

// Called as the app calls its helper: --model <file> --host <address> --port <port>.
int main(int argc, char** argv) {
    if (argc != 7)
        return 2;
    const int listener =
        sayloft::test::listenOnLoopback(static_cast<std::uint16_t>(std::stoi(argv[6])));
    if (listener < 0)
        return 3;
    for (;;)
        answer(::accept(listener, nullptr, nullptr), argv[2]);
}
