// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace sayloft {

/// A listening socket that may be given a connection to 127.0.0.1.
struct ListeningSocket {
    quint64 inode;  ///< as links in /proc/<pid>/fd name it
    bool isForAnyAddress;

    bool operator==(const ListeningSocket&) const = default;
};

}  // namespace sayloft
