// SPDX-License-Identifier: MIT
// The dictionary window with real keys, with clicks, and by assistive technology.
#include "tests/outside/Controls.h"
#include "tests/support/WaitUntil.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace sayloft::test {
namespace {

using State = AccessibleObject::State;
using Key = TestKeyboard::Key;
using Entries = std::vector<std::vector<std::string>>;

const QString window = WindowDesk::dictionary;
const QString add = QStringLiteral("＋ Add replacement");
using roles::button;
using roles::field;

class Dictionary : public testing::Test {
protected:
    void open(const QByteArray& replacements = "[]") {
        m_desk.startSayloft(R"({"model":"starter","replacements":)" + replacements + '}');
        m_desk.openDictionary();
    }

    [[nodiscard]] bool hasSaved(const Entries& entries) const {
        return m_desk.isSaved("replacements", entries);
    }

    [[nodiscard]] AccessibleObject control(const QString& title) const {
        return m_desk.control(window, title);
    }

    [[nodiscard]] bool getsTheKeyboard(const QString& title) const {
        return waitUntil([&] { return control(title).is(State::focused); });
    }

    void waitUntilEmpty() const {
        EXPECT_TRUE(waitUntil(
            [this] { return !m_desk.windows().findControl(window, QStringLiteral("Heard 1")); }));
    }

    WindowDesk m_desk;
    TestKeyboard& m_keyboard = m_desk.keyboard();
};

TEST_F(Dictionary, tellsAssistiveTechnologyItsControlsAndTheWayThroughThem) {
    open(R"([["a","b"],["c","d"]])");
    const std::vector<Control> controls{{QStringLiteral("Heard 1"), field},
                                        {QStringLiteral("Replace with 1"), field},
                                        {QStringLiteral("Remove 1"), button},
                                        {QStringLiteral("Heard 2"), field},
                                        {QStringLiteral("Replace with 2"), field},
                                        {QStringLiteral("Remove 2"), button},
                                        {add, button}};
    EXPECT_EQ(m_desk.windows().window(window).role(), QStringLiteral("frame"));
    EXPECT_THAT(controlsOf(m_desk, window), testing::ElementsAreArray(controls));
    const QStringList way = m_desk.walk(window);
    EXPECT_EQ(way, beginningWith(way.front(), titlesOf(controls)));
    EXPECT_EQ(m_desk.walk(window, Key::shiftLeft),
              beginningWith(way.front(), backwards(titlesOf(controls))));
}

TEST_F(Dictionary, isEditedByAssistiveTechnology) {
    open(R"([["keep","kept"]])");
    m_desk.press(window, add);
    control(QStringLiteral("Heard 2")).setText(QStringLiteral("solona"));
    control(QStringLiteral("Replace with 2")).setText(QStringLiteral("Solana"));
    control(add).grabFocus();
    m_desk.press(window, add);
    static_cast<void>(control(QStringLiteral("Heard 3")));
    EXPECT_TRUE(hasSaved({{"keep", "kept"}, {"solona", "Solana"}}));
    EXPECT_EQ(control(QStringLiteral("Heard 2")).text(), QStringLiteral("solona"));
    m_desk.press(window, QStringLiteral("Remove 1"));
    EXPECT_TRUE(hasSaved({{"solona", "Solana"}}));
}

TEST_F(Dictionary, savesWhatAssistiveTechnologyWroteWhenTheFieldIsLeft) {
    open(R"([["solona","Solana"]])");
    const AccessibleObject replacement = control(QStringLiteral("Replace with 1"));
    replacement.grabFocus();
    replacement.setText(QStringLiteral("SOL"));
    control(add).grabFocus();
    EXPECT_TRUE(hasSaved({{"solona", "SOL"}}));
}

TEST_F(Dictionary, isEditedWithTheKeyboardAlone) {
    open();
    m_desk.tabTo(window, add);
    m_keyboard.tap(Key::space);
    ASSERT_TRUE(getsTheKeyboard(QStringLiteral("Heard 1")));
    m_keyboard.type(QStringLiteral("solona"));
    m_keyboard.tap(Key::tab);
    m_keyboard.type(QStringLiteral("Solana"));
    m_keyboard.tap(Key::returnKey);
    EXPECT_TRUE(hasSaved({{"solona", "Solana"}}));
    m_desk.tabTo(window, QStringLiteral("Heard 1"));
    m_keyboard.tapWith(Key::controlLeft, Key::a);
    m_keyboard.type(QStringLiteral("salona"));
    m_keyboard.tap(Key::tab);
    EXPECT_TRUE(hasSaved({{"salona", "Solana"}}));
    m_desk.tabTo(window, QStringLiteral("Remove 1"));
    m_keyboard.tap(Key::space);
    EXPECT_TRUE(hasSaved({}));
    waitUntilEmpty();
}

TEST_F(Dictionary, isEditedWithClicks) {
    open();
    m_desk.click(window, add);
    ASSERT_TRUE(getsTheKeyboard(QStringLiteral("Heard 1")));
    m_keyboard.type(QStringLiteral("solona"));
    m_desk.clickInto(window, QStringLiteral("Replace with 1"));
    m_keyboard.type(QStringLiteral("Solana"));
    m_desk.pointer().click(m_desk.windows().window(window).place().topLeft() + QPoint(5, 5));
    EXPECT_TRUE(hasSaved({{"solona", "Solana"}}));
    m_desk.click(window, QStringLiteral("Remove 1"));
    EXPECT_TRUE(hasSaved({}));
    waitUntilEmpty();
}

TEST_F(Dictionary, savesWhatIsBeingTypedWhenItIsClosed) {
    open(R"([["solona","Solana"]])");
    m_desk.tabTo(window, QStringLiteral("Replace with 1"));
    m_keyboard.tapWith(Key::controlLeft, Key::a);
    m_keyboard.type(QStringLiteral("SOL"));
    m_keyboard.tapWith(Key::controlLeft, Key::w);
    m_desk.windows().waitUntilGone(window);
    EXPECT_TRUE(hasSaved({{"solona", "SOL"}}));
}

}  // namespace
}  // namespace sayloft::test
