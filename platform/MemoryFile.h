// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>

namespace sayloft {

/// A file of this program alone that lives in memory, as long as this object does. Any thread.
class MemoryFile {
public:
    /// Null when there is no memory, or on systems that cannot do this.
    [[nodiscard]] static std::shared_ptr<MemoryFile> create();

    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    /// Stays this object's own.
    [[nodiscard]] int descriptor() const { return m_descriptor; }
    /// By which it can be opened anew.
    [[nodiscard]] QString path() const;

private:
    explicit MemoryFile(int descriptor) : m_descriptor(descriptor) {}

    int m_descriptor;
};

}  // namespace sayloft
