// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace sayloft::fuzz {

/// In a program that AnsweredConnections.cpp is linked into, every TCP connection leads to a server
/// that answers before it is asked. Client and server are the same thread, as its `connect` is also
/// what accepts: an input waits for no other thread to get a turn.
void answerConnections(std::string_view answer);

}  // namespace sayloft::fuzz
