// SPDX-License-Identifier: MIT
#include "fuzz/support/Socket.h"

#include "fuzz/support/FuzzInput.h"

#include <array>
#include <cerrno>

#include <sys/socket.h>
#include <unistd.h>

namespace sayloft::fuzz {
namespace {

// The fuzzing engine's clock is a signal.
template <typename Call>
ssize_t uninterrupted(Call call) {
    ssize_t result = -1;
    do {
        result = call();
    } while (result < 0 && errno == EINTR);
    return result;
}

}  // namespace

Socket::Socket(int descriptor) : m_descriptor(descriptor) {
    require(m_descriptor >= 0);
}

Socket::~Socket() {
    ::close(m_descriptor);
}

void Socket::sendAll(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = uninterrupted(
            [&] { return ::send(m_descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL); });
        if (count <= 0)
            break;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    ::shutdown(m_descriptor, SHUT_WR);
}

std::string Socket::receiveAll() const {
    std::string received;
    std::array<char, 4096> buffer{};
    while (true) {
        const ssize_t count =
            uninterrupted([&] { return ::recv(m_descriptor, buffer.data(), buffer.size(), 0); });
        if (count <= 0)
            return received;
        received.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

}  // namespace sayloft::fuzz
