// SPDX-License-Identifier: MIT
// Which keys paste in which keyboard layout.
#include "platform/tests/KeyPosterX11Test.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace sayloft::test {
namespace {

struct LayoutRow {
    const char* description;
    const char* layouts;
    std::uint8_t active;
    std::uint8_t modifier;
    std::uint8_t key;
};

class EachLayout : public KeyPosterX11Test, public testing::WithParamInterface<LayoutRow> {};

TEST_P(EachLayout, isPastedIntoByTheKeyThatMeansPasteThere) {
    m_keyboard.setLayouts(QString::fromLatin1(GetParam().layouts), GetParam().active);
    focusWindow();
    const Events events = pasteEvents();
    ASSERT_EQ(events.size(), 4U);
    EXPECT_EQ(events[0].key, GetParam().modifier);
    EXPECT_EQ(events[1].key, GetParam().key);
    EXPECT_EQ(m_keyboard.activeLayout(), GetParam().active);
}

constexpr std::uint8_t dvorakV = 60;
INSTANTIATE_TEST_SUITE_P(
    KeyPosterX11, EachLayout,
    testing::Values(
        LayoutRow{"us", "us", 0, TestKeyboard::controlLeft, TestKeyboard::v},
        LayoutRow{"dvorak", "us(dvorak)", 0, TestKeyboard::controlLeft, dvorakV},
        LayoutRow{"secondOfTwoLatin", "us,us(dvorak)", 1, TestKeyboard::controlLeft, dvorakV},
        LayoutRow{"russianBeforeLatin", "ru,us", 0, TestKeyboard::controlLeft, TestKeyboard::v},
        LayoutRow{"russianAfterLatin", "us,ru", 1, TestKeyboard::controlLeft, TestKeyboard::v},
        LayoutRow{"russianAfterDvorak", "us(dvorak),ru", 1, TestKeyboard::controlLeft, dvorakV},
        LayoutRow{"russianOnly", "ru", 0, TestKeyboard::shiftLeft, TestKeyboard::insert},
        LayoutRow{"greekOnly", "gr", 0, TestKeyboard::shiftLeft, TestKeyboard::insert}),
    [](const auto& row) { return row.param.description; });

TEST_F(KeyPosterX11Test, followsALayoutThatChangesBetweenTwoPastes) {
    focusWindow();
    EXPECT_EQ(pasteEvents()[1].key, TestKeyboard::v);
    m_keyboard.setLayouts(QStringLiteral("us(dvorak)"));
    m_posted = 0;
    EXPECT_EQ(pasteEvents()[1].key, dvorakV);
}

}  // namespace
}  // namespace sayloft::test
