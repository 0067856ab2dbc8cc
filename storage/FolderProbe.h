// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sayloft {

enum class FolderState {
    writable,
    full,     ///< there is no room on its disk, or not for this user
    refuses,  ///< it is read-only, somebody else's or no folder
};

/// Tries to write as much into the folder, which is made where it is missing, as a dictation of
/// some seconds needs. Nothing is left behind.
[[nodiscard]] FolderState tryFolder(const QString& path);

}  // namespace sayloft
