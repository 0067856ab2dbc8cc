// SPDX-License-Identifier: MIT
#include "app/ChordMachine.h"

#include <algorithm>

namespace sayloft {
namespace {

bool holds(const std::vector<std::int64_t>& chords, Mods chord) {
    return std::find(chords.begin(), chords.end(), chord.rawValue) != chords.end();
}

ChordAction match(Mods held, const ChordLists& chords) {
    if (held.isEmpty())
        return {};
    // A chord that stands in both lists presses Return.
    if (holds(chords.dictateEnter, held))
        return BeginDictation{.pressEnter = true, .chord = held};
    if (holds(chords.dictate, held))
        return BeginDictation{.pressEnter = false, .chord = held};
    return {};
}

}  // namespace

ChordAction ChordMachine::process(Mods held, const RunningDictation& running,
                                  const ChordLists& chords) {
    if (m_capturing != Capturing::none)
        return capture(held);
    if (!running.isRecording)
        return match(held, chords);
    if (held == running.activeChord)
        return {};
    return EndDictation{};
}

void ChordMachine::startCapture(Capturing list) {
    m_capturing = list;
    m_captureMask = {};
}

ChordAction ChordMachine::capture(Mods held) {
    m_captureMask = m_captureMask.unionWith(held);
    if (!held.isEmpty() || m_captureMask.isEmpty())
        return {};
    const ChordCaptured captured{.list = m_capturing, .chord = m_captureMask};
    startCapture(Capturing::none);
    return captured;
}

}  // namespace sayloft
