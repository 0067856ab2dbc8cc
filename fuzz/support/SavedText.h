// SPDX-License-Identifier: MIT
#pragma once

#include "fuzz/support/FuzzInput.h"
#include "storage/Json.h"

#include <QByteArray>

#include <cstddef>

namespace sayloft::fuzz {

/// Requires that a text that was saved, which is never empty, is known for what a crash has left of
/// it: cut off at a place somewhere in it, or with a hole there.
inline void requireDamageToBeSeen(const QByteArray& saved, std::size_t place) {
    const auto length = static_cast<qsizetype>(place % static_cast<std::size_t>(saved.size()));
    require(isCutOffJson(saved.first(length)));
    require(!parseJson(saved.first(length)));
    QByteArray holed = saved;
    holed[length] = '\0';
    require(isCutOffJson(holed));
}

}  // namespace sayloft::fuzz
