// SPDX-License-Identifier: MIT
#include "fuzz/support/AnsweredConnections.h"

#include "fuzz/support/FuzzInput.h"
#include "fuzz/support/Socket.h"
#include "tests/support/Loopback.h"

#include <cerrno>
#include <cstdint>
#include <optional>
#include <string>

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace sayloft;

namespace {

/// Has one connection at a time.
class Server {
public:
    void setAnswer(std::string_view answer) {
        m_client.reset();
        m_answer = answer;
    }

    int connect(int socket) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(m_port);
        const auto result = ::syscall(SYS_connect, socket, &address, sizeof address);
        const int reason = errno;
        // On this machine it is established as soon as it is asked for.
        m_client.emplace(accepted());
        m_client->sendAll(m_answer);
        errno = reason;
        return static_cast<int>(result);
    }

private:
    /// Sends no more than the socket has room for: nobody reads meanwhile.
    [[nodiscard]] int accepted() const {
        int client = -1;
        do {
            client = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        } while (client < 0 && errno == EINTR);
        return client;
    }

    int m_listener = test::listenOnLoopback(0);
    std::uint16_t m_port = test::portOf(m_listener);
    std::string m_answer;
    std::optional<fuzz::Socket> m_client;
};

Server& server() {
    static Server theServer;
    return theServer;
}

}  // namespace

namespace sayloft::fuzz {

void answerConnections(std::string_view answer) {
    server().setAnswer(answer);
}

}  // namespace sayloft::fuzz

// In place of the system's.
extern "C" int connect(int socket, const sockaddr* /*address*/, socklen_t /*length*/) {
    return server().connect(socket);
}
