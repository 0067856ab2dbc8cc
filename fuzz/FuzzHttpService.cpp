// SPDX-License-Identifier: MIT
// A whole request to the speech helper, through a real connection.
#include "fuzz/support/FuzzInput.h"
#include "fuzz/support/Socket.h"
#include "helper/HttpService.h"
#include "tests/support/Loopback.h"

#include <cerrno>
#include <cstdio>
#include <thread>

#include <unistd.h>

using namespace sayloft;

namespace {

constexpr helper::RequestLimits limits{.headBytes = 8192,
                                       .bodyBytes = 16384,
                                       .transferTime = std::chrono::seconds(5),
                                       .lingerTime = std::chrono::seconds(5)};

std::uint16_t freePort() {
    const int listener = test::listenOnLoopback(0);
    const std::uint16_t port = test::portOf(listener);
    ::close(listener);
    return port;
}

// Serves until the process ends.
std::uint16_t startService() {
    const std::uint16_t port = freePort();
    static auto* const service = new helper::HttpService(limits);
    fuzz::require(std::holds_alternative<std::monostate>(service->bind(port)));
    std::thread([] {
        service->serve(
            [](const helper::Samples& samples) { return std::to_string(samples.size()); });
    }).detach();
    return port;
}

// The fuzzing engine's clock is a signal.
int connectTo(std::uint16_t port) {
    int connection = -1;
    do {
        connection = test::connectToLoopback(port);
    } while (connection < 0 && errno == EINTR);
    return connection;
}

bool isProperAnswer(std::string_view answer) {
    for (const std::string_view status : {"100", "200", "400", "404", "503"}) {
        if (answer.starts_with("HTTP/1.1 " + std::string(status) + ' '))
            return true;
    }
    return false;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::uint16_t port = startService();
    const fuzz::Socket client(connectTo(port));
    client.sendAll(fuzz::FuzzInput(data, size).rest());
    const std::string answer = client.receiveAll();
    if (size == 0 ? answer.empty() : isProperAnswer(answer))
        return 0;
    std::fprintf(stderr, "The answer: %s\n", answer.c_str());
    std::abort();
}
