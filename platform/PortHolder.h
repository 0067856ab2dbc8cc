// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace sayloft {

enum class PortHolder {
    nobody,      ///< also when it cannot be found out
    theProcess,  ///< and nobody beside it
    somebodyElse,
};

/// Who would be given a connection to TCP port `port` of 127.0.0.1: the process `pid`, or who else?
/// Reads a few small files of the system. Any thread.
[[nodiscard]] PortHolder holderOfPort(quint16 port, qint64 pid);

}  // namespace sayloft
