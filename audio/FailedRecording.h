// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>

namespace sayloft {

/// The sound of the last dictation that could not be transcribed, in a file beside the log: there
/// is one until a dictation works again. Any thread.
class FailedRecording {
public:
    /// Where it is.
    [[nodiscard]] static QString file();
    [[nodiscard]] static bool isKept();

    /// Moves the complete recording of a dictation there, in place of an earlier one's; one without
    /// any sound is not worth it. An empty file takes its place. Dictations are numbered from 1,
    /// since they may end in another order than they began.
    static void keep(const QString& recording, std::uint64_t dictation);
    /// A dictation has worked: what an earlier one left is not needed any more.
    static void forgetBefore(std::uint64_t dictation);
    /// Removes what a crash has left of a recording that was to be kept.
    static void removeLeftover();
};

}  // namespace sayloft
