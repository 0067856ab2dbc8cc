// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace sayloft::fuzz {

/// A plain file that never reaches a disk, for what reads its input from a path.
class MemoryFile {
public:
    MemoryFile();
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    void setContent(std::string_view content) const;
    [[nodiscard]] std::string path() const;

private:
    int m_descriptor;
};

}  // namespace sayloft::fuzz
