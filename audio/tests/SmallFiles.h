// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>

#include <sys/resource.h>

namespace sayloft::test {

/// No file of this process, be it on a disk or in memory, grows beyond a size while this object
/// lives.
class SmallFiles {
public:
    explicit SmallFiles(rlim_t bytes) : m_signal(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit small{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallFiles() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_signal);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

private:
    void (*m_signal)(int);
    rlimit m_before{};
};

}  // namespace sayloft::test
