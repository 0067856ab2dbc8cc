// SPDX-License-Identifier: MIT
#include "storage/FolderProbe.h"

#include "storage/PrivateFolder.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <cstdint>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace sayloft {
namespace {

constexpr std::uint64_t eightSeconds = 256'000;

FolderState stateAfter(int error) {
    const bool isFull = error == ENOSPC || error == EDQUOT;
    return isFull ? FolderState::full : FolderState::refuses;
}

/// Some file systems do not say how large they are.
bool saysThatThereIsNoRoom(int descriptor) {
    struct statvfs disk {};
    if (::fstatvfs(descriptor, &disk) != 0 || disk.f_blocks == 0)
        return false;
    // What is kept for root alone is room for root.
    const std::uint64_t blocks = ::geteuid() == 0 ? disk.f_bfree : disk.f_bavail;
    return blocks * disk.f_frsize < eightSeconds;
}

// One block shows what is not asked for: quotas, and disks that fail. More would be missing to
// those who write at the same time.
FolderState tryFile(int descriptor) {
    if (saysThatThereIsNoRoom(descriptor))
        return FolderState::full;
    const std::array<char, 4096> block{};
    errno = ENOSPC;  // of a write that had room for a part
    const ssize_t written = ::write(descriptor, block.data(), block.size());
    return written == static_cast<ssize_t>(block.size()) ? FolderState::writable
                                                         : stateAfter(errno);
}

}  // namespace

FolderState tryFolder(const QString& path) {
    makePrivateFolder(path);
    const QByteArray probe = QFile::encodeName(path + QStringLiteral("/room"));
    const int descriptor =
        ::open(probe.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW,
               S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return stateAfter(errno);
    const FolderState state = tryFile(descriptor);
    ::close(descriptor);
    ::unlink(probe.constData());
    return state;
}

}  // namespace sayloft
