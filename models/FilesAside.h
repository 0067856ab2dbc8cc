// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace sayloft {

// Removing a file of a gigabyte takes a third of a second, and renaming it next to nothing. So it
// gets another name at once, and is removed where nobody waits.

/// The file's new name in the same folder; none when it is not there or may not be touched.
[[nodiscard]] std::optional<QString> putAside(const QString& path);

/// What was put aside in these folders and is still there. Paths.
[[nodiscard]] QStringList filesAside(const QStringList& directories);

}  // namespace sayloft
