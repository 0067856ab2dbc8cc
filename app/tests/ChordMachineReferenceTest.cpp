// SPDX-License-Identifier: MIT
#include "app/ChordMachine.h"

#include "app/CapturedChords.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>

namespace sayloft {
namespace {

/// The rules once more, told another way: as flags of a keyboard, sets of key names and a log of
/// what the user would notice. It shares no code with the machine.
class Reference {
public:
    std::set<std::set<std::string>> dictate;
    std::set<std::set<std::string>> dictateEnter;

    std::string change(std::uint64_t flags) {
        const std::set<std::string> held = keys(flags);
        if (!captureFor.empty())
            return capture(held);
        if (recordingWith) {
            const bool same = *recordingWith == held;
            if (same)
                return "nothing";
            recordingWith.reset();
            return "end";
        }
        if (held.empty())
            return "nothing";
        const bool enter = dictateEnter.contains(held);
        if (!enter && !dictate.contains(held))
            return "nothing";
        recordingWith = held;
        return std::string("begin") + (enter ? " enter " : " ") + joined(held);
    }

    std::string captureFor;
    std::set<std::string> captured;

private:
    static std::set<std::string> keys(std::uint64_t flags) {
        std::set<std::string> held;
        if (flags & 0x40000U)
            held.insert("1ctrl");
        if (flags & 0x80000U)
            held.insert("2opt");
        if (flags & 0x20000U)
            held.insert("3shift");
        if (flags & 0x100000U)
            held.insert("4cmd");
        if (flags & 0x800000U)
            held.insert("5fn");
        return held;
    }

    static std::string joined(const std::set<std::string>& held) {
        std::string text;
        for (const std::string& key : held)
            text += key;
        return text;
    }

    std::string capture(const std::set<std::string>& held) {
        captured.insert(held.begin(), held.end());
        if (!held.empty() || captured.empty())
            return "nothing";
        std::string result = "captured " + captureFor + " " + joined(captured);
        const bool isNew = (captureFor == "plain" ? dictate : dictateEnter).insert(captured).second;
        result += isNew ? " anew" : " again";
        captureFor.clear();
        captured.clear();
        return result;
    }

    std::optional<std::set<std::string>> recordingWith;
};

std::string keyNames(Mods mods) {
    std::string text;
    if (mods.contains(Mods::ctrl))
        text += "1ctrl";
    if (mods.contains(Mods::opt))
        text += "2opt";
    if (mods.contains(Mods::shift))
        text += "3shift";
    if (mods.contains(Mods::cmd))
        text += "4cmd";
    if (mods.contains(Mods::fn))
        text += "5fn";
    return text;
}

/// The machine with the state around it that the program keeps.
class Machine {
public:
    Machine() { config.dictateChords.clear(); }

    void startCapture(Capturing list) { m_machine.startCapture(list); }

    std::string change(std::uint64_t flags) {
        const Mods held = Mods::fromFlags(flags);
        const ChordAction action =
            m_machine.process(held, m_running, {config.dictateChords, config.dictateEnterChords});
        if (const auto* begin = std::get_if<BeginDictation>(&action)) {
            m_running = {.isRecording = true, .activeChord = begin->chord};
            return std::string("begin") + (begin->pressEnter ? " enter " : " ") +
                   keyNames(begin->chord);
        }
        if (std::holds_alternative<EndDictation>(action)) {
            m_running = {};
            return "end";
        }
        if (const auto* captured = std::get_if<ChordCaptured>(&action)) {
            const bool plain = captured->list == Capturing::dictate;
            const Config before = config;
            addCapturedChord(config, *captured);
            return std::string("captured ") + (plain ? "plain " : "enter ") +
                   keyNames(captured->chord) + (config == before ? " again" : " anew");
        }
        return "nothing";
    }

    Config config;

private:
    ChordMachine m_machine;
    RunningDictation m_running;
};

class RandomKeyboard {
public:
    explicit RandomKeyboard(unsigned seed) : m_random(seed) {}

    /// One key goes down or up, now and then several at once, with bits that mean no modifier.
    std::uint64_t change() {
        constexpr std::uint64_t keys[] = {0x40000, 0x80000, 0x20000, 0x100000, 0x800000};
        const int changes = chance(10) ? 3 : 1;
        for (int i = 0; i < changes; ++i)
            m_held ^= keys[m_random() % 5];
        if (chance(8))
            m_held = 0;
        const std::uint64_t noise = chance(3) ? 0x10000 | 0x200000 | (m_random() & 0xFFFFU) : 0;
        return m_held | noise;
    }

    bool chance(unsigned oneIn) { return m_random() % oneIn == 0; }

    std::int64_t chord() { return static_cast<std::int64_t>(m_random() % 32); }

private:
    std::mt19937 m_random;
    std::uint64_t m_held = 0;
};

std::set<std::string> keySet(std::int64_t chord) {
    std::set<std::string> keys;
    constexpr const char* names[] = {"1ctrl", "2opt", "3shift", "4cmd", "5fn"};
    for (unsigned bit = 0; bit < 5; ++bit) {
        if ((static_cast<std::uint64_t>(chord) >> bit) & 1U)
            keys.insert(names[bit]);
    }
    return keys;
}

TEST(ChordMachine, agreesWithTheReferenceOnAHundredThousandRandomSequences) {
    constexpr unsigned sequences = 100'000;
    constexpr int changesEach = 30;
    int begun = 0;
    int captures = 0;
    int capturesAgain = 0;
    for (unsigned seed = 0; seed < sequences; ++seed) {
        RandomKeyboard keyboard(seed);
        Machine machine;
        Reference reference;
        for (int i = 0; i < 3; ++i) {
            const std::int64_t chord = keyboard.chord();
            (i == 2 ? machine.config.dictateEnterChords : machine.config.dictateChords)
                .push_back(chord);
            (i == 2 ? reference.dictateEnter : reference.dictate).insert(keySet(chord));
        }
        for (int i = 0; i < changesEach; ++i) {
            if (keyboard.chance(20)) {
                const bool plain = keyboard.chance(2);
                machine.startCapture(plain ? Capturing::dictate : Capturing::dictateEnter);
                reference.captureFor = plain ? "plain" : "enter";
                reference.captured.clear();
            }
            const std::uint64_t flags = keyboard.change();
            const std::string expected = reference.change(flags);
            ASSERT_EQ(machine.change(flags), expected) << "sequence " << seed << ", change " << i;
            begun += expected.starts_with("begin");
            captures += expected.starts_with("captured");
            capturesAgain += expected.ends_with(" again");
        }
    }
    EXPECT_GT(begun, 100'000);
    EXPECT_GT(captures, 50'000);
    EXPECT_GT(capturesAgain, 1'000);
}

}  // namespace
}  // namespace sayloft
