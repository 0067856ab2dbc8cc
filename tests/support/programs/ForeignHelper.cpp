// SPDX-License-Identifier: MIT
// Stands for a speech server that is not ours and behaves as the model file tells it. The file's
// first word is one of: serve, not-found, exit, print, ignore-term, deaf, slow, relay, flood-line,
// flood-head, flood-body. Floods answer recordings without end, in one line, with lines of a head
// or with text, while there is a file "<model>.flood"; without it they say "ok". A file
// "<model>.log" gets a line with the process id and the arguments, and "<model>.ended" comes to be
// when the process is asked to end. A relay leads to the port that "<model>.port" holds, as soon as
// there is such a file.

#include "tests/support/Loopback.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

const std::string found = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nConnection: close\r\n\r\nok";
const std::string notFound =
    "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";

bool say(int connection, std::string_view words) {
    return ::send(connection, words.data(), words.size(), MSG_NOSIGNAL) > 0;
}

/// Until the other side has closed it, or has nothing to say for a second.
void readToTheEnd(int connection) {
    const timeval patience{.tv_sec = 1, .tv_usec = 0};
    ::setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    ::shutdown(connection, SHUT_WR);
    std::array<char, 65536> bytes{};
    while (::recv(connection, bytes.data(), bytes.size(), 0) > 0) {
    }
}

/// Gives each request that begins on a connection to `answer`.
template <typename Answer>
[[noreturn]] void serve(std::uint16_t port, const Answer& answer) {
    const int listener = sayloft::test::listenOnLoopback(port);
    if (listener < 0)
        std::_Exit(3);
    for (;;) {
        const int connection = ::accept(listener, nullptr, nullptr);
        std::array<char, 4096> request{};
        const auto got = ::recv(connection, request.data(), request.size(), 0);
        answer(connection, std::string_view(request.data(),
                                            static_cast<std::size_t>(std::max(got, ssize_t{}))));
        readToTheEnd(connection);
        ::close(connection);
    }
}

[[noreturn]] void serveAlways(std::uint16_t port, const std::string& answer) {
    serve(port, [&answer](int connection, std::string_view /*request*/) {
        static_cast<void>(say(connection, answer));
    });
}

[[noreturn]] void flood(std::uint16_t port, const std::string& behaviour, const std::string& sign) {
    const std::string head = "HTTP/1.1 200 OK\r\nConnection: close\r\n";
    const std::string line =
        behaviour == "flood-head" ? "X-Word: over and over again\r\n" : "word ";
    std::string many;
    while (many.size() < 60000)
        many += line;
    serve(port, [&](int connection, std::string_view request) {
        if (!request.starts_with("POST") || !std::ifstream(sign))
            return static_cast<void>(say(connection, found));
        if (behaviour != "flood-line")
            say(connection, behaviour == "flood-body" ? head + "\r\n" : head);
        while (say(connection, many)) {
        }
    });
}

/// Until `from` has nothing more to say, which `to` is told.
void pass(int from, int to) {
    std::array<char, 65536> bytes{};
    ssize_t got = 0;
    while ((got = ::recv(from, bytes.data(), bytes.size(), 0)) > 0) {
        for (ssize_t sent = 0; sent < got;) {
            const ssize_t now =
                ::send(to, bytes.data() + sent, static_cast<std::size_t>(got - sent), MSG_NOSIGNAL);
            if (now < 0)
                return;
            sent += now;
        }
    }
    ::shutdown(to, SHUT_WR);
}

void passBothWays(int client, int server) {
    std::jthread requests([=] { pass(client, server); });
    pass(server, client);
    // What the server has no ear for any more, the client need not say.
    ::shutdown(client, SHUT_RDWR);
    requests.join();
    ::close(client);
    ::close(server);
}

[[noreturn]] void relay(std::uint16_t port, const std::string& portFile) {
    int serversPort = 0;
    while (!(std::ifstream(portFile) >> serversPort))
        std::this_thread::sleep_for(10ms);
    const int listener = sayloft::test::listenOnLoopback(port);
    if (listener < 0)
        std::_Exit(3);
    for (;;) {
        const int client = ::accept(listener, nullptr, nullptr);
        const int server =
            sayloft::test::connectToLoopback(static_cast<std::uint16_t>(serversPort));
        std::thread(passBothWays, client, server).detach();
    }
}

std::string endedFile;

void noteTheEnd(int /*signal*/) {
    ::close(::open(endedFile.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    ::_exit(0);
}

[[noreturn]] void sleepForever() {
    for (;;)
        std::this_thread::sleep_for(1h);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 7)
        return 2;
    const std::string model = argv[2];
    const auto port = static_cast<std::uint16_t>(std::stoi(argv[6]));
    std::ofstream log(model + ".log", std::ios::app);
    log << ::getpid();
    for (int i = 1; i < argc; ++i)
        log << ' ' << argv[i];
    log << std::endl;

    endedFile = model + ".ended";
    std::signal(SIGTERM, noteTheEnd);
    std::string behaviour;
    std::ifstream(model) >> behaviour;
    if (behaviour == "exit")
        return 1;
    if (behaviour == "deaf")
        sleepForever();
    if (behaviour == "relay")
        relay(port, model + ".port");
    if (behaviour == "ignore-term")
        std::signal(SIGTERM, SIG_IGN);
    if (behaviour == "slow")
        std::this_thread::sleep_for(1200ms);
    if (behaviour == "print")
        std::thread([] {
            for (;;)
                std::puts("a line that nobody reads, again and again and again and again");
        }).detach();
    if (behaviour.starts_with("flood"))
        flood(port, behaviour, model + ".flood");
    serveAlways(port, behaviour == "not-found" ? notFound : found);
}
