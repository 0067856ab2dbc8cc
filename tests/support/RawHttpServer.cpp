// SPDX-License-Identifier: MIT
#include "tests/support/RawHttpServer.h"

#include "tests/support/Loopback.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <optional>
#include <stdexcept>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

int listenOn(std::uint16_t port) {
    const int listener = listenOnLoopback(port);
    if (listener < 0)
        throw std::runtime_error("port " + std::to_string(port) + ": " + std::strerror(errno));
    return listener;
}

bool readable(int socket) {
    pollfd descriptor{.fd = socket, .events = POLLIN, .revents = 0};
    return ::poll(&descriptor, 1, 20) > 0;
}

void resetOnClose(int connection) {
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(connection, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

/// Length of the request that begins `data`, none while its header is not complete.
std::optional<qsizetype> requestLength(const QByteArray& data) {
    const qsizetype headerEnd = data.indexOf("\r\n\r\n");
    if (headerEnd < 0)
        return std::nullopt;
    const QByteArray header = data.left(headerEnd).toLower();
    const QByteArray field = "\r\ncontent-length:";
    const qsizetype at = header.indexOf(field);
    if (at < 0)
        return headerEnd + 4;
    const qsizetype lineEnd = header.indexOf("\r\n", at + field.size());
    const qsizetype valueAt = at + field.size();
    const QByteArray value = header.mid(valueAt, lineEnd < 0 ? -1 : lineEnd - valueAt);
    return headerEnd + 4 + value.trimmed().toLongLong();
}

}  // namespace

RawAnswer RawAnswer::ok(const QByteArray& body) {
    return {.bytes = "HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: " +
                     QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body};
}

RawAnswer RawAnswer::slowly(const QByteArray& body, std::chrono::milliseconds duration) {
    RawAnswer answer = ok(body);
    answer.trickleMs = static_cast<int>(duration.count() / answer.bytes.size());
    return answer;
}

RawAnswer RawAnswer::status(int code) {
    return {.bytes = "HTTP/1.1 " + QByteArray::number(code) +
                     " Status\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"};
}

RawHttpServer::RawHttpServer(std::vector<RawAnswer> script, std::uint16_t port)
    : m_script(std::move(script)),
      m_listener(listenOn(port)),
      m_port(portOf(m_listener)),
      m_thread([this] { serve(); }) {}

RawHttpServer::~RawHttpServer() {
    m_ending = true;
    m_thread.join();
    m_connections.clear();
    ::close(m_listener);
}

std::vector<QByteArray> RawHttpServer::requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

void RawHttpServer::serve() {
    for (std::size_t number = 0; !m_ending;) {
        if (!readable(m_listener))
            continue;
        const int connection = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0)
            continue;
        const RawAnswer& answer = m_script.at(std::min(number++, m_script.size() - 1));
        m_connections.emplace_back([this, connection, &answer] {
            serveConnection(connection, answer);
            ::close(connection);
        });
    }
}

void RawHttpServer::serveConnection(int connection, const RawAnswer& answer) {
    QByteArray data;
    while (!m_ending) {
        const auto length = requestLength(data);
        if (length && data.size() >= *length)
            break;
        if (!readable(connection))
            continue;
        std::array<char, 65536> chunk{};
        const auto received = ::recv(connection, chunk.data(), chunk.size(), 0);
        if (received <= 0)
            return;
        data.append(chunk.data(), received);
    }
    {
        const std::lock_guard lock(m_mutex);
        m_requests.push_back(data);
    }
    send(connection, answer);
    while (answer.then == RawAnswer::Then::hang && !m_ending)
        std::this_thread::sleep_for(5ms);
    if (answer.then == RawAnswer::Then::reset)
        resetOnClose(connection);
}

void RawHttpServer::send(int connection, const RawAnswer& answer) const {
    const qsizetype piece = answer.trickleMs > 0 ? 1 : std::max<qsizetype>(1, answer.bytes.size());
    for (qsizetype at = 0; at < answer.bytes.size() && !m_ending;) {
        const QByteArray bytes = answer.bytes.mid(at, piece);
        const auto sent = ::send(connection, bytes.constData(),
                                 static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL);
        if (sent <= 0)
            return;
        at += sent;
        std::this_thread::sleep_for(std::chrono::milliseconds(answer.trickleMs));
    }
}

}  // namespace sayloft::test
