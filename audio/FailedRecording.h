// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sayloft {

/// The sound of the last dictation that could not be transcribed, in a file beside the log: there
/// is one until a dictation works again. Any thread.
class FailedRecording {
public:
    /// Where it is.
    [[nodiscard]] static QString file();
    [[nodiscard]] static bool isKept();

    /// Moves a complete recording there, in place of an earlier one; one without any sound is not
    /// worth it.
    static void keep(const QString& recording);
    static void forget();
};

}  // namespace sayloft
