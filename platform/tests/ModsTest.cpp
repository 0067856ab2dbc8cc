// SPDX-License-Identifier: MIT
#include "platform/Mods.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

constexpr std::uint64_t capsLock = 0x10000;
constexpr std::uint64_t numericPad = 0x200000;
constexpr std::uint64_t leftShiftOnly = 0x2;

struct MemberRow {
    const char* description;
    Mods member;
    std::int64_t bit;
    std::uint64_t flag;
    const char* glyph;
};

class EachModifier : public testing::TestWithParam<MemberRow> {};

TEST_P(EachModifier, hasItsBitItsFlagAndItsGlyph) {
    const MemberRow& row = GetParam();
    EXPECT_EQ(row.member.rawValue, row.bit);
    EXPECT_EQ(Mods::fromFlags(row.flag), row.member);
    EXPECT_EQ(row.member.name().toStdString(), row.glyph);
}

INSTANTIATE_TEST_SUITE_P(Mods, EachModifier,
                         testing::Values(MemberRow{"ctrl", Mods::ctrl, 1, 0x40000, "⌃"},
                                         MemberRow{"opt", Mods::opt, 2, 0x80000, "⌥"},
                                         MemberRow{"shift", Mods::shift, 4, 0x20000, "⇧"},
                                         MemberRow{"cmd", Mods::cmd, 8, 0x100000, "⌘"},
                                         MemberRow{"fn", Mods::fn, 16, 0x800000, "fn"}),
                         [](const auto& row) { return row.param.description; });

TEST(Mods, ofTheEmptySetIsShownAsAnEmDash) {
    EXPECT_EQ(Mods().name().toStdString(), "—");
}

TEST(Mods, namesGlyphsInTheirFixedOrder) {
    EXPECT_EQ((Mods{Mods::opt, Mods::ctrl}).name().toStdString(), "⌃⌥");
    EXPECT_EQ((Mods{Mods::cmd, Mods::shift}).name().toStdString(), "⇧⌘");
    EXPECT_EQ((Mods{Mods::fn, Mods::cmd}).name().toStdString(), "⌘fn");
    EXPECT_EQ(Mods(31).name().toStdString(), "⌃⌥⇧⌘fn");
}

TEST(Mods, ignoreCapsLockAndEveryOtherFlagBit) {
    EXPECT_EQ(Mods::fromFlags(capsLock | numericPad | leftShiftOnly), Mods());
    EXPECT_EQ(Mods::fromFlags(KeyFlag::shift | KeyFlag::command | capsLock | leftShiftOnly),
              Mods(12));
}

TEST(Mods, supportTheUsualSetAlgebra) {
    const Mods shiftCmd{Mods::shift, Mods::cmd};
    EXPECT_EQ(shiftCmd.unionWith(Mods::fn), Mods(28));
    EXPECT_EQ(shiftCmd.intersection(Mods::cmd), Mods::cmd);
    EXPECT_EQ(shiftCmd.symmetricDifference(Mods{Mods::cmd, Mods::opt}), Mods(6));
    EXPECT_TRUE(shiftCmd.contains(Mods::cmd));
    EXPECT_FALSE(Mods::cmd.contains(shiftCmd));
    EXPECT_TRUE(Mods::cmd.isSubset(shiftCmd));
    EXPECT_TRUE(shiftCmd.isSuperset(Mods::cmd));
    EXPECT_TRUE(shiftCmd.isDisjoint(Mods::ctrl));
    Mods changed = shiftCmd;
    changed.insert(Mods::ctrl);
    changed.remove(Mods::shift);
    EXPECT_EQ(changed, Mods(9));
}

}  // namespace
}  // namespace sayloft
