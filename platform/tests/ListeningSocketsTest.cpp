// SPDX-License-Identifier: MIT
#include "platform/linux/SocketDiagnosis.h"
#include "platform/linux/SocketTables.h"

#include "platform/PortHolder.h"

#include <QHostAddress>
#include <QTcpServer>

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <string>
#include <vector>

#include <arpa/inet.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace sayloft {
namespace {

using Sockets = std::vector<ListeningSocket>;

quint64 inodeOf(const QTcpServer& server) {
    struct stat status {};
    EXPECT_EQ(::fstat(static_cast<int>(server.socketDescriptor()), &status), 0);
    return status.st_ino;
}

/// ::ffff:127.0.0.1, which Qt's servers do not take.
int listenAtMappedLoopback() {
    const int socket = ::socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in6 at{};
    at.sin6_family = AF_INET6;
    EXPECT_EQ(::inet_pton(AF_INET6, "::ffff:127.0.0.1", &at.sin6_addr), 1);
    EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&at), sizeof at), 0);
    EXPECT_EQ(::listen(socket, 1), 0);
    return socket;
}

struct Source {
    const char* name;
    Sockets (*at)(quint16 port);
};

class ListeningSocketsFrom : public testing::TestWithParam<Source> {
protected:
    void listenAt(const QHostAddress& address) { ASSERT_TRUE(server.listen(address)); }
    [[nodiscard]] Sockets found() const { return GetParam().at(server.serverPort()); }
    [[nodiscard]] ListeningSocket own(bool isForAnyAddress) const {
        return {.inode = inodeOf(server), .isForAnyAddress = isForAnyAddress};
    }

    QTcpServer server;
};

TEST_P(ListeningSocketsFrom, nameTheSocketAtTheLoopbackAddress) {
    listenAt(QHostAddress::LocalHost);
    EXPECT_EQ(found(), Sockets{own(false)});
}

TEST_P(ListeningSocketsFrom, nameTheSocketAtTheLoopbackAddressWrittenAsOneOfTheNewerKind) {
    ASSERT_TRUE(server.setSocketDescriptor(listenAtMappedLoopback()));
    EXPECT_EQ(found(), Sockets{own(false)});
}

TEST_P(ListeningSocketsFrom, nameTheSocketAtAnyAddress) {
    listenAt(QHostAddress::AnyIPv4);
    EXPECT_EQ(found(), Sockets{own(true)});
}

TEST_P(ListeningSocketsFrom, nameTheSocketAtAnyAddressOfBothKinds) {
    listenAt(QHostAddress::Any);
    EXPECT_EQ(found(), Sockets{own(true)});
}

TEST_P(ListeningSocketsFrom, leaveOutASocketAtAnotherAddress) {
    listenAt(QHostAddress(QStringLiteral("127.0.0.2")));
    EXPECT_EQ(found(), Sockets{});
}

TEST_P(ListeningSocketsFrom, leaveOutASocketAtAnotherPort) {
    listenAt(QHostAddress::LocalHost);
    const quint16 port = server.serverPort();
    QTcpServer other;
    ASSERT_TRUE(other.listen(QHostAddress::LocalHost));
    server.close();
    EXPECT_EQ(GetParam().at(port), Sockets{});
}

INSTANTIATE_TEST_SUITE_P(TheKernel, ListeningSocketsFrom,
                         testing::Values(Source{"asked",
                                                [](quint16 port) {
                                                    return askForListeningSockets(port).value();
                                                }},
                                         Source{"tables", readListeningSockets}),
                         [](const auto& source) { return std::string(source.param.name); });

/// As services are that may open sockets of the usual kinds only: netlink is refused.
void forbidNetlink() {
    const std::array<sock_filter, 6> filter{{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_socket, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[0])),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_NETLINK, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EAFNOSUPPORT),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog program{.len = filter.size(),
                             .filter = const_cast<sock_filter*>(filter.data())};
    ASSERT_EQ(::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
    ASSERT_EQ(::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program), 0);
}

TEST(HolderOfPortDeathTest, isFoundWhereTheKernelMayNotBeAsked) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const auto find = [&server] {
        forbidNetlink();
        const bool mayAsk = askForListeningSockets(server.serverPort()).has_value();
        const PortHolder holder = holderOfPort(server.serverPort(), ::getpid());
        ::_exit(!mayAsk && holder == PortHolder::theProcess ? 0 : 1);
    };
    EXPECT_EXIT(find(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace sayloft
