// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace sayloft::test {

// TCP on 127.0.0.1, without Qt. Sockets are the caller's to close, or −1 with the reason in errno.

/// Port 0: any free one.
[[nodiscard]] int listenOnLoopback(std::uint16_t port);
[[nodiscard]] int connectToLoopback(std::uint16_t port);

[[nodiscard]] std::uint16_t portOf(int socket);

}  // namespace sayloft::test
