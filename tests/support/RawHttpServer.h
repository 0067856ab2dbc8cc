// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace sayloft::test {

/// How a connection is treated once its request is there.
struct RawAnswer {
    enum class Then { close, hang, reset };

    QByteArray bytes;  ///< sent as they are
    Then then = Then::close;
    int trickleMs = 0;  ///< not 0: one byte at a time, this long apart

    [[nodiscard]] static RawAnswer ok(const QByteArray& body);
    /// The same, but it takes so long to be sent.
    [[nodiscard]] static RawAnswer slowly(const QByteArray& body,
                                          std::chrono::milliseconds duration);
    [[nodiscard]] static RawAnswer status(int code);
    [[nodiscard]] static RawAnswer hang() { return {.bytes = {}, .then = Then::hang}; }
};

/// A server on plain sockets that records requests byte for byte and answers from a script. It
/// knows of HTTP only how long a request is.
class RawHttpServer {
public:
    /// Connection n gets answer n; when the script is over, the last answer again. Port 0: any free
    /// one. Throws std::runtime_error when the port is taken.
    explicit RawHttpServer(std::vector<RawAnswer> script, std::uint16_t port = 0);
    ~RawHttpServer();
    RawHttpServer(const RawHttpServer&) = delete;
    RawHttpServer& operator=(const RawHttpServer&) = delete;

    [[nodiscard]] std::uint16_t port() const { return m_port; }

    /// Complete requests in the order of their arrival.
    [[nodiscard]] std::vector<QByteArray> requests() const;

private:
    void serve();
    void serveConnection(int connection, const RawAnswer& answer);
    void send(int connection, const RawAnswer& answer) const;

    std::vector<RawAnswer> m_script;
    int m_listener = -1;
    std::uint16_t m_port = 0;
    std::atomic<bool> m_ending = false;
    mutable std::mutex m_mutex;
    std::vector<QByteArray> m_requests;
    std::vector<std::jthread> m_connections;
    std::jthread m_thread;
};

}  // namespace sayloft::test
