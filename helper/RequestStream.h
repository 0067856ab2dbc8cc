// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <string>

#include <httplib.h>

namespace sayloft::helper {

/// What a client may cost us before it gets its answer.
struct RequestLimits {
    std::size_t headBytes = std::size_t{64} * 1024;
    std::size_t bodyBytes = std::size_t{64} * 1024 * 1024;
    /// From the accepted connection to the last byte of the request; the answer has as long again.
    std::chrono::milliseconds transferTime = std::chrono::seconds(10);
    /// How long a client that has its answer may go on sending before the connection is cut.
    std::chrono::milliseconds lingerTime = std::chrono::seconds(2);
};

/// One connection as the HTTP library reads and writes it, with an overall deadline: a client that
/// sends a byte now and then holds its thread no longer than one that sends nothing.
class RequestStream : public httplib::Stream {
public:
    /// `connection` stays the caller's.
    RequestStream(socket_t connection, const RequestLimits& limits);

    [[nodiscard]] bool is_readable() const override;
    [[nodiscard]] bool is_writable() const override;

    /// All of `size` bytes, fewer only at the end of the stream; negative after the deadline, after
    /// an error and over the budget.
    ssize_t read(char* target, size_t size) override;
    ssize_t write(const char* bytes, size_t size) override;

    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    [[nodiscard]] socket_t socket() const override { return m_connection; }

    /// The head has been read: from here on the body's budget counts.
    void beginBody();

    [[nodiscard]] bool hasReceived() const { return m_received > 0; }
    [[nodiscard]] bool hasAnswered() const { return m_answered; }

    /// False once the client has closed the connection or ended its side of it, which look alike
    /// from here. Does not wait.
    [[nodiscard]] bool isClientThere() const;

    /// Ends our side and reads away what the client still sends, for a while: closing with unread
    /// bytes would reset the connection and take the answer away from the client.
    void finish();

private:
    using Clock = std::chrono::steady_clock;
    enum class Direction { Read, Write };

    [[nodiscard]] bool waitFor(Direction direction) const;
    [[nodiscard]] ssize_t refill();

    socket_t m_connection;
    RequestLimits m_limits;
    Clock::time_point m_deadline;
    std::size_t m_budget;  ///< bytes that may still be handed on
    std::size_t m_received = 0;
    bool m_answered = false;
    std::array<char, 16384> m_buffer{};
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
};

}  // namespace sayloft::helper
