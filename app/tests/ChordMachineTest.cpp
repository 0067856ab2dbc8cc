// SPDX-License-Identifier: MIT
#include "app/ChordMachine.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

constexpr Mods shiftCmd{Mods::shift, Mods::cmd};

class Chords : public testing::Test {
protected:
    /// Carries out what the machine decides, as the program does.
    ChordAction hold(Mods held) {
        const ChordAction action = m_machine.process(held, m_running, {m_dictate, m_dictateEnter});
        if (const auto* begin = std::get_if<BeginDictation>(&action))
            m_running = {.isRecording = true, .activeChord = begin->chord};
        if (std::holds_alternative<EndDictation>(action))
            m_running = {};
        return action;
    }

    std::vector<std::int64_t> m_dictate{12};
    std::vector<std::int64_t> m_dictateEnter;
    RunningDictation m_running;
    ChordMachine m_machine;
};

const ChordAction nothing;
const ChordAction ends = EndDictation{};

ChordAction begins(Mods chord) {
    return BeginDictation{.pressEnter = false, .chord = chord};
}

ChordAction beginsWithEnter(Mods chord) {
    return BeginDictation{.pressEnter = true, .chord = chord};
}

TEST_F(Chords, beginADictationWhenTheirLastKeyGoesDown) {
    EXPECT_EQ(hold(Mods::shift), nothing);
    EXPECT_EQ(hold(shiftCmd), begins(shiftCmd));
    EXPECT_EQ(hold(Mods::cmd), ends);
    EXPECT_EQ(hold({}), nothing);
}

TEST_F(Chords, doNotTellLeftFromRightKeys) {
    constexpr std::uint64_t rightCommandLeftShift = 0x100000 | 0x10 | 0x20000 | 0x2;
    EXPECT_EQ(hold(Mods::fromFlags(rightCommandLeftShift)), begins(shiftCmd));
}

TEST_F(Chords, matchWithCapsLockOn) {
    constexpr std::uint64_t capsLock = 0x10000;
    EXPECT_EQ(hold(Mods::fromFlags(KeyFlag::shift | KeyFlag::command | capsLock)),
              begins(shiftCmd));
    EXPECT_EQ(hold(Mods::fromFlags(KeyFlag::shift | KeyFlag::command)), nothing);
}

TEST_F(Chords, endWhenOneMoreKeyIsPressed) {
    hold(shiftCmd);
    EXPECT_EQ(hold(shiftCmd.unionWith(Mods::opt)), ends);
    EXPECT_FALSE(m_running.isRecording);
}

TEST_F(Chords, matchOnlyExactly) {
    EXPECT_EQ(hold(shiftCmd.unionWith(Mods::opt)), nothing);
    EXPECT_EQ(hold(shiftCmd), begins(shiftCmd));
}

TEST_F(Chords, goOnWhileTheSameKeysAreHeld) {
    hold(shiftCmd);
    EXPECT_EQ(hold(shiftCmd), nothing);
    EXPECT_TRUE(m_running.isRecording);
}

TEST_F(Chords, ofTheEnterListPressReturn) {
    m_dictateEnter = {9};
    EXPECT_EQ(hold(Mods(9)), beginsWithEnter(Mods(9)));
}

TEST_F(Chords, inBothListsPressReturn) {
    m_dictateEnter = {12};
    EXPECT_EQ(hold(shiftCmd), beginsWithEnter(shiftCmd));
}

TEST_F(Chords, ofValueZeroNeverMatch) {
    m_dictate = {0};
    m_dictateEnter = {0};
    EXPECT_EQ(hold({}), nothing);
}

TEST_F(Chords, areNotMatchedByTheChangeThatEndsADictation) {
    m_dictate = {8, 12};
    EXPECT_EQ(hold(Mods::cmd), begins(Mods::cmd));
    EXPECT_EQ(hold(shiftCmd), ends);
    EXPECT_EQ(hold(Mods::cmd), begins(Mods::cmd));
}

TEST_F(Chords, endADictationThatHasNoChordOnAnyChange) {
    m_running = {.isRecording = true, .activeChord = std::nullopt};
    EXPECT_EQ(hold(shiftCmd), ends);
}

class ChordCapture : public Chords {};

TEST_F(ChordCapture, commitsTheUnionWhenAllKeysAreUp) {
    m_machine.startCapture(Capturing::dictate);
    EXPECT_EQ(hold(Mods::cmd), nothing);
    EXPECT_EQ(hold(shiftCmd), nothing);
    EXPECT_EQ(hold(Mods::cmd), nothing);
    EXPECT_EQ(hold({}), ChordAction(ChordCaptured{Capturing::dictate, shiftCmd}));
    EXPECT_EQ(m_machine.capturing(), Capturing::none);
}

TEST_F(ChordCapture, joinsKeysThatWereNeverDownTogether) {
    m_machine.startCapture(Capturing::dictateEnter);
    hold(Mods::cmd);
    hold(Mods::shift);
    EXPECT_EQ(hold({}), ChordAction(ChordCaptured{Capturing::dictateEnter, shiftCmd}));
}

TEST_F(ChordCapture, waitsForTheFirstKey) {
    m_machine.startCapture(Capturing::dictate);
    EXPECT_EQ(hold({}), nothing);
    EXPECT_EQ(m_machine.capturing(), Capturing::dictate);
}

TEST_F(ChordCapture, beginsNoDictation) {
    m_machine.startCapture(Capturing::dictate);
    hold(shiftCmd);
    EXPECT_FALSE(m_running.isRecording);
}

TEST_F(ChordCapture, leavesARunningDictationToALaterChange) {
    hold(shiftCmd);
    m_machine.startCapture(Capturing::dictate);
    hold(Mods::cmd);
    EXPECT_TRUE(m_running.isRecording);
    EXPECT_EQ(hold({}), ChordAction(ChordCaptured{Capturing::dictate, Mods::cmd}));
    EXPECT_TRUE(m_running.isRecording);
    EXPECT_EQ(hold(Mods::cmd), ends);
}

TEST_F(ChordCapture, startedAnewForgetsTheKeysBefore) {
    m_machine.startCapture(Capturing::dictate);
    hold(Mods::ctrl);
    m_machine.startCapture(Capturing::dictate);
    hold(Mods::fn);
    EXPECT_EQ(hold({}), ChordAction(ChordCaptured{Capturing::dictate, Mods::fn}));
}

}  // namespace
}  // namespace sayloft
