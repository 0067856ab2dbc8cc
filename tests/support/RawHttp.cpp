// SPDX-License-Identifier: MIT
#include "tests/support/RawHttp.h"

#include "tests/support/Loopback.h"

#include <array>
#include <cstdlib>
#include <stdexcept>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace sayloft::test {
namespace {

RawReply parseReply(std::string bytes) {
    constexpr std::string_view proceed = "HTTP/1.1 100 Continue\r\n\r\n";
    if (bytes.starts_with(proceed))
        bytes.erase(0, proceed.size());
    const std::size_t end = bytes.find("\r\n\r\n");
    if (!bytes.starts_with("HTTP/1.1 ") || end == std::string::npos)
        return {0, bytes, {}};
    return {std::atoi(bytes.c_str() + 9), bytes.substr(0, end), bytes.substr(end + 4)};
}

}  // namespace

RawConnection::RawConnection(std::uint16_t port) : m_socket(connectToLoopback(port)) {
    if (m_socket < 0)
        throw std::runtime_error("nobody listens on port " + std::to_string(port));
}

RawConnection::~RawConnection() {
    ::close(m_socket);
}

bool RawConnection::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void RawConnection::finishSending() {
    ::shutdown(m_socket, SHUT_WR);
}

// False when the deadline passed without a byte; the end of the stream sets m_ended.
bool RawConnection::receive(std::chrono::milliseconds deadline) {
    pollfd entry{m_socket, POLLIN, 0};
    if (::poll(&entry, 1, static_cast<int>(deadline.count())) <= 0)
        return false;
    std::array<char, 65536> buffer{};
    const ssize_t count = ::recv(m_socket, buffer.data(), buffer.size(), 0);
    m_ended = count <= 0;
    if (!m_ended)
        m_received.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
}

bool RawConnection::waitForBytes(std::string_view wanted, std::chrono::milliseconds deadline) {
    while (m_received.find(wanted) == std::string::npos) {
        if (m_ended || !receive(deadline))
            return false;
    }
    return true;
}

RawReply RawConnection::readReply(std::chrono::milliseconds deadline) {
    while (!m_ended) {
        if (!receive(deadline))
            throw std::runtime_error("no answer in time");
    }
    return parseReply(m_received);
}

RawReply exchange(std::uint16_t port, std::string_view request) {
    RawConnection connection(port);
    connection.send(request);
    connection.finishSending();
    return connection.readReply();
}

std::uint16_t freePort() {
    const int listener = listenOnLoopback(0);
    if (listener < 0)
        throw std::runtime_error("there is no free port");
    const std::uint16_t port = portOf(listener);
    ::close(listener);
    return port;
}

bool isListening(std::uint16_t port) {
    const int handle = connectToLoopback(port);
    if (handle < 0)
        return false;
    ::close(handle);
    return true;
}

}  // namespace sayloft::test
