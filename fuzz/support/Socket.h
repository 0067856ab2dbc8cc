// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace sayloft::fuzz {

/// A connection on the loopback interface; closed at the end.
class Socket {
public:
    explicit Socket(int descriptor);
    ~Socket();
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    /// Sends everything that the other end takes and ends our side.
    void sendAll(std::string_view bytes) const;

    /// All that comes until the other end closes.
    [[nodiscard]] std::string receiveAll() const;

private:
    int m_descriptor;
};

}  // namespace sayloft::fuzz
