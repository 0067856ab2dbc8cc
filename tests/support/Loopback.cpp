// SPDX-License-Identifier: MIT
#include "tests/support/Loopback.h"

#include <cerrno>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace sayloft::test {
namespace {

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

int newSocket() {
    return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

int failed(int socket) {
    const int reason = errno;
    ::close(socket);
    errno = reason;
    return -1;
}

}  // namespace

int listenOnLoopback(std::uint16_t port) {
    const int listener = newSocket();
    const int on = 1;
    ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const sockaddr_in address = loopback(port);
    if (::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        ::listen(listener, 16) == 0)
        return listener;
    return failed(listener);
}

int connectToLoopback(std::uint16_t port) {
    const int connection = newSocket();
    const sockaddr_in address = loopback(port);
    if (::connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return connection;
    return failed(connection);
}

std::uint16_t portOf(int socket) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

}  // namespace sayloft::test
