// SPDX-License-Identifier: MIT
#include "platform/MemoryFile.h"

#include <sys/mman.h>
#include <unistd.h>

namespace sayloft {

std::shared_ptr<MemoryFile> MemoryFile::create() {
    const int descriptor = ::memfd_create("sayloft", MFD_CLOEXEC);
    return descriptor < 0 ? nullptr : std::shared_ptr<MemoryFile>(new MemoryFile(descriptor));
}

MemoryFile::~MemoryFile() {
    ::close(m_descriptor);
}

QString MemoryFile::path() const {
    return QStringLiteral("/proc/%1/fd/%2").arg(::getpid()).arg(m_descriptor);
}

}  // namespace sayloft
