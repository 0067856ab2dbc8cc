// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace sayloft::test {

/// What came back on a raw connection.
struct RawReply {
    int status = 0;    ///< 0 when there was no HTTP answer
    std::string head;  ///< status line and headers, without a preceding "100 Continue"
    std::string body;
};

/// A TCP connection to a port of this machine that sends and receives bytes as they are: it shares
/// nothing with the HTTP code under test.
class RawConnection {
public:
    /// Throws std::runtime_error when nobody listens there.
    explicit RawConnection(std::uint16_t port);
    ~RawConnection();
    RawConnection(const RawConnection&) = delete;
    RawConnection& operator=(const RawConnection&) = delete;

    /// False when the other side has closed before everything was taken.
    bool send(std::string_view bytes);
    void finishSending();

    /// Waits until `wanted` has been received; false when the connection ended or the deadline
    /// passed without it. What was read stays for `readReply`.
    [[nodiscard]] bool waitForBytes(std::string_view wanted, std::chrono::milliseconds deadline);

    /// Reads until the other side closes. Throws std::runtime_error when it has not after
    /// `deadline`.
    [[nodiscard]] RawReply readReply(std::chrono::milliseconds deadline = std::chrono::seconds(30));

private:
    [[nodiscard]] bool receive(std::chrono::milliseconds deadline);

    int m_socket;
    bool m_ended = false;
    std::string m_received;
};

/// Sends all of `request` on a connection of its own, closes the sending side and reads the answer.
[[nodiscard]] RawReply exchange(std::uint16_t port, std::string_view request);

/// A port that nobody listened on a moment ago.
[[nodiscard]] std::uint16_t freePort();

[[nodiscard]] bool isListening(std::uint16_t port);

}  // namespace sayloft::test
