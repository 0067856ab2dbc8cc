// SPDX-License-Identifier: MIT
#include "platform/PortHolder.h"

#include "tests/support/ChildProgram.h"
#include "tests/support/Loopback.h"

#include <QHostAddress>
#include <QTcpServer>

#include <gtest/gtest.h>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace sayloft {
namespace {

/// A listening socket that shares its port with others, as they may with it.
class SharingListener {
public:
    SharingListener(in_addr_t address, quint16 port) : m_socket(::socket(AF_INET, SOCK_STREAM, 0)) {
        const int on = 1;
        ::setsockopt(m_socket, SOL_SOCKET, SO_REUSEPORT, &on, sizeof on);
        sockaddr_in at{};
        at.sin_family = AF_INET;
        at.sin_addr.s_addr = htonl(address);
        at.sin_port = htons(port);
        if (::bind(m_socket, reinterpret_cast<const sockaddr*>(&at), sizeof at) != 0 ||
            ::listen(m_socket, 1) != 0)
            throw std::runtime_error("cannot listen");
    }
    ~SharingListener() { letGo(); }
    SharingListener(const SharingListener&) = delete;
    SharingListener& operator=(const SharingListener&) = delete;

    [[nodiscard]] quint16 port() const { return test::portOf(m_socket); }

    /// Programs that were started before keep it.
    void letGo() {
        if (m_socket >= 0)
            ::close(m_socket);
        m_socket = -1;
    }

private:
    int m_socket;
};

test::ChildProgram sleeper() {
    return test::ChildProgram(QStringLiteral("sleep"), {QStringLiteral("60")});
}

TEST(HolderOfPort, isNobodyWhereNobodyListens) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    server.close();
    EXPECT_EQ(holderOfPort(port, ::getpid()), PortHolder::nobody);
}

TEST(HolderOfPort, isTheProcessThatListens) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    EXPECT_EQ(holderOfPort(server.serverPort(), ::getpid()), PortHolder::theProcess);
}

TEST(HolderOfPort, isTheProcessThatListensAtEveryAddressOfBothKinds) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::Any));
    EXPECT_EQ(holderOfPort(server.serverPort(), ::getpid()), PortHolder::theProcess);
}

TEST(HolderOfPort, isSomebodyElseForAProcessThatDoesNotListen) {
    const auto other = sleeper();
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    EXPECT_EQ(holderOfPort(server.serverPort(), other.pid()), PortHolder::somebodyElse);
}

TEST(HolderOfPort, isSomebodyElseForAProcessThatIsGone) {
    auto other = sleeper();
    const qint64 pid = other.pid();
    other.end();
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    EXPECT_EQ(holderOfPort(server.serverPort(), pid), PortHolder::somebodyElse);
    EXPECT_EQ(holderOfPort(server.serverPort(), 0), PortHolder::somebodyElse);
}

TEST(HolderOfPort, isSomebodyElseWhereAnotherProcessSharesThePort) {
    const SharingListener ours(INADDR_LOOPBACK, 0);
    SharingListener theirs(INADDR_LOOPBACK, ours.port());
    const auto other = sleeper();
    theirs.letGo();
    EXPECT_EQ(holderOfPort(ours.port(), ::getpid()), PortHolder::somebodyElse);
}

TEST(HolderOfPort, isWhoeverListensAtTheAddressItselfBeforeOneWhoListensAtAny) {
    const SharingListener ours(INADDR_LOOPBACK, 0);
    SharingListener theirs(INADDR_ANY, ours.port());
    const auto other = sleeper();
    theirs.letGo();
    EXPECT_EQ(holderOfPort(ours.port(), ::getpid()), PortHolder::theProcess);
}

TEST(HolderOfPort, isNobodyWhereOnlyAnotherAddressIsListenedAt) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress(QStringLiteral("127.0.0.2"))));
    EXPECT_EQ(holderOfPort(server.serverPort(), ::getpid()), PortHolder::nobody);
}

}  // namespace
}  // namespace sayloft
