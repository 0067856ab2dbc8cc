// SPDX-License-Identifier: MIT
#include "fuzz/support/MemoryFile.h"

#include "fuzz/support/FuzzInput.h"

#include <sys/mman.h>
#include <unistd.h>

namespace sayloft::fuzz {

MemoryFile::MemoryFile() : m_descriptor(::memfd_create("input", MFD_CLOEXEC)) {
    require(m_descriptor >= 0);
}

MemoryFile::~MemoryFile() {
    ::close(m_descriptor);
}

void MemoryFile::setContent(std::string_view content) const {
    require(::ftruncate(m_descriptor, 0) == 0);
    const ssize_t written = ::pwrite(m_descriptor, content.data(), content.size(), 0);
    require(written == static_cast<ssize_t>(content.size()));
}

std::string MemoryFile::path() const {
    return "/proc/self/fd/" + std::to_string(m_descriptor);
}

}  // namespace sayloft::fuzz
