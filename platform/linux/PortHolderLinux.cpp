// SPDX-License-Identifier: MIT
#include "platform/PortHolder.h"

#include "storage/WholeFile.h"

#include <QByteArray>
#include <QList>
#include <QSet>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <vector>

#include <arpa/inet.h>

namespace sayloft {
namespace {

// The kernel's tables print addresses as 32 bit numbers of the machine's own byte order.
QByteArray inKernelsForm(quint32 networkOrder) {
    return QByteArray::number(networkOrder, 16).toUpper().rightJustified(8, '0');
}

/// A listening socket that may be given a connection to 127.0.0.1.
struct Listener {
    QByteArray inode;
    bool isForAnyAddress;
};

// Columns: number, local address, remote address, state, queues, timer, retransmissions, user,
// timeout, inode.
std::vector<Listener> listenersIn(const QString& table, quint16 port) {
    constexpr int localColumn = 1;
    constexpr int stateColumn = 3;
    constexpr int inodeColumn = 9;
    const QByteArray listening = "0A";
    const QByteArray loopback = inKernelsForm(htonl(INADDR_LOOPBACK));
    const QByteArray mappedLoopback = QByteArray(16, '0') + inKernelsForm(htonl(0xffff)) + loopback;
    const QByteArray wantedPort = QByteArray::number(port, 16).toUpper().rightJustified(4, '0');

    std::vector<Listener> listeners;
    for (const QByteArray& line : readWholeFile(table).value_or(QByteArray()).split('\n')) {
        const QList<QByteArray> columns = line.simplified().split(' ');
        if (columns.size() <= inodeColumn || columns[stateColumn] != listening)
            continue;
        const QList<QByteArray> local = columns[localColumn].split(':');
        if (local.size() != 2 || local[1] != wantedPort)
            continue;
        const bool isForAnyAddress = local[0].count('0') == local[0].size();
        if (isForAnyAddress || local[0] == loopback || local[0] == mappedLoopback)
            listeners.push_back(
                {.inode = columns[inodeColumn], .isForAnyAddress = isForAnyAddress});
    }
    return listeners;
}

/// Those that the kernel chooses from: an address of its own goes before "any address".
std::vector<Listener> listenersAt(quint16 port) {
    std::vector<Listener> all = listenersIn(QStringLiteral("/proc/self/net/tcp"), port);
    const std::vector<Listener> six = listenersIn(QStringLiteral("/proc/self/net/tcp6"), port);
    all.insert(all.end(), six.begin(), six.end());
    const auto isExact = [](const Listener& listener) { return !listener.isForAnyAddress; };
    if (std::any_of(all.begin(), all.end(), isExact))
        std::erase_if(all, std::not_fn(isExact));
    return all;
}

QSet<QByteArray> socketsOf(qint64 pid) {
    const std::string prefix = "socket:[";
    QSet<QByteArray> inodes;
    std::error_code gone;
    const std::filesystem::path files("/proc/" + std::to_string(pid) + "/fd");
    std::filesystem::directory_iterator file(files, gone);
    for (; file != std::filesystem::directory_iterator(); file.increment(gone)) {
        const std::string target = std::filesystem::read_symlink(*file, gone).string();
        if (target.starts_with(prefix))
            inodes.insert(QByteArray::fromStdString(target.substr(prefix.size())).chopped(1));
    }
    return inodes;
}

}  // namespace

PortHolder holderOfPort(quint16 port, qint64 pid) {
    const std::vector<Listener> listeners = listenersAt(port);
    if (listeners.empty())
        return PortHolder::nobody;
    const QSet<QByteArray> own = pid > 0 ? socketsOf(pid) : QSet<QByteArray>();
    const bool allOwn =
        std::all_of(listeners.begin(), listeners.end(),
                    [&own](const Listener& listener) { return own.contains(listener.inode); });
    return allOwn ? PortHolder::theProcess : PortHolder::somebodyElse;
}

}  // namespace sayloft
