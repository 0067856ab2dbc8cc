// SPDX-License-Identifier: MIT
#include "platform/linux/SocketTables.h"

#include "storage/WholeFile.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <arpa/inet.h>
#include <netinet/in.h>

namespace sayloft {
namespace {

// The kernel's tables print addresses as 32 bit numbers of the machine's own byte order.
QByteArray inKernelsForm(quint32 networkOrder) {
    return QByteArray::number(networkOrder, 16).toUpper().rightJustified(8, '0');
}

// Columns: number, local address, remote address, state, queues, timer, retransmissions, user,
// timeout, inode.
std::vector<ListeningSocket> socketsIn(const QString& table, quint16 port) {
    constexpr int localColumn = 1;
    constexpr int stateColumn = 3;
    constexpr int inodeColumn = 9;
    const QByteArray listening = "0A";
    const QByteArray loopback = inKernelsForm(htonl(INADDR_LOOPBACK));
    const QByteArray mappedLoopback = QByteArray(16, '0') + inKernelsForm(htonl(0xffff)) + loopback;
    const QByteArray wantedPort = QByteArray::number(port, 16).toUpper().rightJustified(4, '0');

    std::vector<ListeningSocket> sockets;
    for (const QByteArray& line : readWholeFile(table).value_or(QByteArray()).split('\n')) {
        const QList<QByteArray> columns = line.simplified().split(' ');
        if (columns.size() <= inodeColumn || columns[stateColumn] != listening)
            continue;
        const QList<QByteArray> local = columns[localColumn].split(':');
        if (local.size() != 2 || local[1] != wantedPort)
            continue;
        const bool isForAnyAddress = local[0].count('0') == local[0].size();
        if (isForAnyAddress || local[0] == loopback || local[0] == mappedLoopback)
            sockets.push_back(
                {.inode = columns[inodeColumn].toULongLong(), .isForAnyAddress = isForAnyAddress});
    }
    return sockets;
}

}  // namespace

std::vector<ListeningSocket> readListeningSockets(quint16 port) {
    std::vector<ListeningSocket> all = socketsIn(QStringLiteral("/proc/self/net/tcp"), port);
    const std::vector<ListeningSocket> six = socketsIn(QStringLiteral("/proc/self/net/tcp6"), port);
    all.insert(all.end(), six.begin(), six.end());
    return all;
}

}  // namespace sayloft
