// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>

namespace sayloft {

/// A download that was cut short can go on for this long after its last byte, and less long where
/// the user has chosen another model since.
constexpr std::chrono::days resumableFor{30};
constexpr std::chrono::days resumableForOthers{7};

/// The files that downloads can go on with.
struct WantedFiles {
    QString chosen;       ///< of the model in use
    QStringList offered;  ///< of all models
};

/// What downloads have left in `directory` that none will go on from: parts of files that are not
/// wanted, parts without a note and notes without a part, notes that were not written to their
/// end, and parts that are too old. Paths.
[[nodiscard]] QStringList deadDownloads(const QString& directory, const WantedFiles& wanted);

}  // namespace sayloft
