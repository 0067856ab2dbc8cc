// SPDX-License-Identifier: MIT
#include "storage/FolderProbe.h"

#include "storage/PrivateFolder.h"

#include <QFile>

#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sayloft {
namespace {

constexpr std::size_t eightSeconds = 256'000;

FolderState stateAfter(int error) {
    const bool isFull = error == ENOSPC || error == EDQUOT;
    return isFull ? FolderState::full : FolderState::refuses;
}

FolderState tryFile(int descriptor) {
    const std::vector<char> zeros(eightSeconds);
    errno = ENOSPC;  // of a write that had room for a part
    const ssize_t written = ::write(descriptor, zeros.data(), zeros.size());
    return written == static_cast<ssize_t>(zeros.size()) ? FolderState::writable
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
