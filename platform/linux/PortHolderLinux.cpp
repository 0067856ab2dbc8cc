// SPDX-License-Identifier: MIT
#include "platform/PortHolder.h"

#include "platform/linux/ListeningSocket.h"
#include "platform/linux/SocketDiagnosis.h"
#include "platform/linux/SocketTables.h"

#include <QByteArray>
#include <QSet>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace sayloft {
namespace {

/// Those that the kernel chooses from: an address of its own goes before "any address".
std::vector<ListeningSocket> socketsReachedAt(quint16 port) {
    const std::optional<std::vector<ListeningSocket>> told = askForListeningSockets(port);
    std::vector<ListeningSocket> all = told ? *told : readListeningSockets(port);
    const auto isExact = [](const ListeningSocket& socket) { return !socket.isForAnyAddress; };
    if (std::any_of(all.begin(), all.end(), isExact))
        std::erase_if(all, std::not_fn(isExact));
    return all;
}

QSet<quint64> socketsOf(qint64 pid) {
    const std::string prefix = "socket:[";
    QSet<quint64> inodes;
    std::error_code gone;
    const std::filesystem::path files("/proc/" + std::to_string(pid) + "/fd");
    std::filesystem::directory_iterator file(files, gone);
    for (; file != std::filesystem::directory_iterator(); file.increment(gone)) {
        const std::string target = std::filesystem::read_symlink(*file, gone).string();
        if (target.starts_with(prefix))
            inodes.insert(
                QByteArray::fromStdString(target.substr(prefix.size())).chopped(1).toULongLong());
    }
    return inodes;
}

}  // namespace

PortHolder holderOfPort(quint16 port, qint64 pid) {
    const std::vector<ListeningSocket> sockets = socketsReachedAt(port);
    if (sockets.empty())
        return PortHolder::nobody;
    const QSet<quint64> own = pid > 0 ? socketsOf(pid) : QSet<quint64>();
    const bool allOwn =
        std::all_of(sockets.begin(), sockets.end(),
                    [&own](const ListeningSocket& socket) { return own.contains(socket.inode); });
    return allOwn ? PortHolder::theProcess : PortHolder::somebodyElse;
}

}  // namespace sayloft
