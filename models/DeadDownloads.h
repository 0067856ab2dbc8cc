// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>

namespace sayloft {

/// A download that was cut short can go on for this long after its last byte.
constexpr std::chrono::days resumableFor{30};

/// What downloads have left in `directory` that none will go on from: parts of files that are not
/// in `wanted`, parts without a note and notes without a part, and parts that are too old. Paths.
[[nodiscard]] QStringList deadDownloads(const QString& directory, const QStringList& wanted);

}  // namespace sayloft
