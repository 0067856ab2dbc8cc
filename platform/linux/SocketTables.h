// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/ListeningSocket.h"

#include <vector>

namespace sayloft {

/// The sockets that listen at TCP port `port`, out of the kernel's tables of all sockets, which are
/// always there but take it milliseconds to write. Any thread.
[[nodiscard]] std::vector<ListeningSocket> readListeningSockets(quint16 port);

}  // namespace sayloft
