// SPDX-License-Identifier: MIT
#include "platform/linux/SocketDiagnosis.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>

#include <arpa/inet.h>
#include <libmnl/libmnl.h>
#include <linux/inet_diag.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace sayloft {
namespace {

struct MnlSocketClose {
    void operator()(mnl_socket* socket) const { mnl_socket_close(socket); }
};
using MnlSocket = std::unique_ptr<mnl_socket, MnlSocketClose>;

/// An address in network order; of IPv4 only the first word counts.
using Address = std::array<std::uint32_t, 4>;

struct Answer {
    quint16 port;
    std::vector<ListeningSocket> sockets;
};

bool isAnyAddress(const Address& address) {
    return std::all_of(address.begin(), address.end(),
                       [](std::uint32_t word) { return word == 0; });
}

bool isLoopback(const Address& address, std::uint8_t family) {
    const std::uint32_t loopback = htonl(INADDR_LOOPBACK);
    return family == AF_INET ? address[0] == loopback
                             : address == Address{0, 0, htonl(0xffff), loopback};
}

int addSocket(const nlmsghdr* message, void* data) {
    auto& answer = *static_cast<Answer*>(data);
    if (mnl_nlmsg_get_payload_len(message) < sizeof(inet_diag_msg))
        return MNL_CB_ERROR;
    const auto* const socket = static_cast<const inet_diag_msg*>(mnl_nlmsg_get_payload(message));
    Address address{};
    std::memcpy(address.data(), socket->id.idiag_src, sizeof socket->id.idiag_src);
    const bool isForAnyAddress = isAnyAddress(address);
    const bool isReached = isForAnyAddress || isLoopback(address, socket->idiag_family);
    if (isReached && socket->id.idiag_sport == htons(answer.port))
        answer.sockets.push_back(
            {.inode = socket->idiag_inode, .isForAnyAddress = isForAnyAddress});
    return MNL_CB_OK;
}

bool sendQuestion(const mnl_socket* socket, std::uint8_t family, quint16 port) {
    alignas(nlmsghdr) std::array<char, MNL_NLMSG_HDRLEN + MNL_ALIGN(sizeof(inet_diag_req_v2))>
        space{};
    nlmsghdr* const message = mnl_nlmsg_put_header(space.data());
    message->nlmsg_type = SOCK_DIAG_BY_FAMILY;
    message->nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    auto* const question = static_cast<inet_diag_req_v2*>(
        mnl_nlmsg_put_extra_header(message, sizeof(inet_diag_req_v2)));
    question->sdiag_family = family;
    question->sdiag_protocol = IPPROTO_TCP;
    question->idiag_states = 1U << TCP_LISTEN;
    question->id.idiag_sport = htons(port);
    return mnl_socket_sendto(socket, message, message->nlmsg_len) >= 0;
}

bool takeAnswer(const mnl_socket* socket, Answer& answer) {
    constexpr std::size_t advisedSize = 8192;
    alignas(nlmsghdr) std::array<char, advisedSize> space{};
    int state = MNL_CB_OK;
    while (state > MNL_CB_STOP) {
        const ssize_t length = mnl_socket_recvfrom(socket, space.data(), space.size());
        if (length < 0)
            return false;
        state = mnl_cb_run(space.data(), static_cast<std::size_t>(length), 0,
                           mnl_socket_get_portid(socket), addSocket, &answer);
    }
    return state == MNL_CB_STOP;
}

}  // namespace

std::optional<std::vector<ListeningSocket>> askForListeningSockets(quint16 port) {
    const MnlSocket socket(mnl_socket_open2(NETLINK_SOCK_DIAG, SOCK_CLOEXEC));
    if (!socket || mnl_socket_bind(socket.get(), 0, MNL_SOCKET_AUTOPID) < 0)
        return std::nullopt;
    Answer answer{.port = port, .sockets = {}};
    for (const std::uint8_t family : std::array<std::uint8_t, 2>{AF_INET, AF_INET6}) {
        if (!sendQuestion(socket.get(), family, port) || !takeAnswer(socket.get(), answer))
            return std::nullopt;
    }
    return answer.sockets;
}

}  // namespace sayloft
