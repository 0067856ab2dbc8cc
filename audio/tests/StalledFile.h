// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sayloft::test {

/// A file on a disk that stalls: whoever writes to it waits until this object is destroyed. Only in
/// programs that are linked with its source, which puts a `write` before the system's; one at a
/// time.
class StalledFile {
public:
    explicit StalledFile(const QString& path);
    ~StalledFile();
    StalledFile(const StalledFile&) = delete;
    StalledFile& operator=(const StalledFile&) = delete;

    /// Whether somebody waits.
    [[nodiscard]] bool holdsUpAWriter() const;
};

}  // namespace sayloft::test
