// SPDX-License-Identifier: MIT
#pragma once

#include "fuzz/support/FakeXServer.h"

#include <cstddef>
#include <cstdlib>

namespace sayloft::fuzz {

/// A reply of the size that its type has, zeroed, with `extra` bytes behind it.
template <typename Reply>
Reply* newReply(std::size_t extra = 0) {
    return static_cast<Reply*>(std::calloc(1, sizeof(Reply) + extra));
}

template <typename Reply>
Reply* replyUnlessGone() {
    return fakeXServer().isGone ? nullptr : newReply<Reply>();
}

}  // namespace sayloft::fuzz
