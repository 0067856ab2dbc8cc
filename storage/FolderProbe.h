// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sayloft {

enum class FolderState {
    writable,
    full,     ///< there is no room on its disk, or not for this user
    refuses,  ///< it is read-only, somebody else's or no folder
};

/// Tries to write a little into the folder, which is made where it is missing, and asks whether
/// there is room for as much as a dictation of some seconds needs. Takes no such room from others,
/// and leaves nothing behind.
[[nodiscard]] FolderState tryFolder(const QString& path);

}  // namespace sayloft
