// SPDX-License-Identifier: MIT
#pragma once

#include "app/Capturing.h"
#include "platform/Mods.h"

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace sayloft {

struct BeginDictation {
    bool pressEnter = false;
    Mods chord;

    bool operator==(const BeginDictation&) const = default;
};

struct EndDictation {
    bool operator==(const EndDictation&) const = default;
};

/// A new chord for the list that the capture was started for.
struct ChordCaptured {
    Capturing list = Capturing::none;
    Mods chord;

    bool operator==(const ChordCaptured&) const = default;
};

/// What a change of the held modifiers leads to; `monostate` is nothing.
using ChordAction = std::variant<std::monostate, BeginDictation, EndDictation, ChordCaptured>;

/// The chords that are configured, as `Mods::rawValue`.
struct ChordLists {
    const std::vector<std::int64_t>& dictate;
    const std::vector<std::int64_t>& dictateEnter;
};

/// The dictation that is running, if any.
struct RunningDictation {
    bool isRecording = false;
    std::optional<Mods> activeChord;
};

/// Turns changes of the held modifiers into dictations and captured chords. Pure: it does nothing
/// itself and knows of no platform.
class ChordMachine {
public:
    /// `held` is the complete set of modifiers after the change.
    [[nodiscard]] ChordAction process(Mods held, const RunningDictation& running,
                                      const ChordLists& chords);

    /// From now until all keys of one gesture are up again, changes record a chord for `list` and
    /// neither begin nor end a dictation.
    void startCapture(Capturing list);

    [[nodiscard]] Capturing capturing() const { return m_capturing; }

private:
    [[nodiscard]] ChordAction capture(Mods held);

    Capturing m_capturing = Capturing::none;
    Mods m_captureMask;  ///< every modifier that was down during the capture
};

}  // namespace sayloft
