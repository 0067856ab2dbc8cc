// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/ListeningSocket.h"

#include <optional>
#include <vector>

namespace sayloft {

/// Asks the kernel for the sockets that listen at TCP port `port`. None when it does not tell: the
/// interface (sock_diag(7)) can be missing or forbidden. Well below a millisecond. Any thread.
[[nodiscard]] std::optional<std::vector<ListeningSocket>> askForListeningSockets(quint16 port);

}  // namespace sayloft
