// SPDX-License-Identifier: MIT
// The chords in the settings window, by mouse and keys.
#include "tests/support/WaitUntil.h"
#include "ui/tests/SettingsFixture.h"

#include <QPushButton>
#include <QtTest>

#include <gmock/gmock.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const QString addDictate = QStringLiteral("Add combo to Dictate");
const QString addEnter = QStringLiteral("Add combo to Dictate + Enter");
const QString pressDictate = QStringLiteral("Press a combo for Dictate");

class SettingsHotkeys : public SettingsFixture {
protected:
    /// The modifiers go down one after the other and up together.
    void press(std::uint64_t first, std::uint64_t second) const {
        for (const std::uint64_t held : {first, first | second, std::uint64_t{0}})
            app->process(Mods::fromFlags(held));
        test::turnEventLoopFor(5ms);
    }
};

TEST_F(SettingsHotkeys, areShownInTheirListAndOrder) {
    open(R"({"dictateChords":[12,3],"dictateEnterChords":[16]})");
    const auto* first = find<QPushButton>(QStringLiteral("Remove Shift+Super from Dictate"));
    const auto* second = find<QPushButton>(QStringLiteral("Remove Ctrl+Alt from Dictate"));
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_LT(first->x(), second->x());
    EXPECT_EQ(first->text(), QStringLiteral("⇧⌘  ✕"));
    EXPECT_TRUE(isVisible(QStringLiteral("Remove Fn from Dictate + Enter")));
}

TEST_F(SettingsHotkeys, areRemovedByAClick) {
    open(R"({"dictateChords":[12,3,5]})");
    click(QStringLiteral("Remove Ctrl+Alt from Dictate"));
    EXPECT_THAT(stored().dictateChords, ElementsAre(12, 5));
    EXPECT_FALSE(isVisible(QStringLiteral("Remove Ctrl+Alt from Dictate")));
    EXPECT_THAT(seen, Contains("menu"));
}

TEST_F(SettingsHotkeys, areRemovedByTheKeyboard) {
    open(R"({"dictateChords":[12,3]})");
    auto& chip = get<QPushButton>(QStringLiteral("Remove Ctrl+Alt from Dictate"));
    chip.setFocus();
    QTest::keyClick(&chip, Qt::Key_Space);
    EXPECT_THAT(stored().dictateChords, ElementsAre(12));
    EXPECT_TRUE(get<QPushButton>(addDictate).hasFocus());
}

TEST_F(SettingsHotkeys, areRemovedFromTheirListOnly) {
    open(R"({"dictateChords":[12],"dictateEnterChords":[12,3]})");
    click(QStringLiteral("Remove Shift+Super from Dictate + Enter"));
    EXPECT_THAT(stored().dictateChords, ElementsAre(12));
    EXPECT_THAT(stored().dictateEnterChords, ElementsAre(3));
}

TEST_F(SettingsHotkeys, thatAreThereTwiceGoAltogether) {
    open(R"({"dictateChords":[12,3,12]})");
    click(QStringLiteral("Remove Shift+Super from Dictate"));
    EXPECT_THAT(stored().dictateChords, ElementsAre(3));
    EXPECT_FALSE(isVisible(QStringLiteral("Remove Shift+Super from Dictate")));
}

TEST_F(SettingsHotkeys, mayAllBeRemoved) {
    open();
    click(QStringLiteral("Remove Shift+Super from Dictate"));
    EXPECT_THAT(stored().dictateChords, IsEmpty());
    EXPECT_TRUE(isVisible(addDictate));
}

TEST_F(SettingsHotkeys, areAddedByPressingThem) {
    open();
    click(addDictate);
    EXPECT_EQ(get<QPushButton>(pressDictate).text(), QStringLiteral("Press a combo…"));
    EXPECT_FALSE(get<QPushButton>(addEnter).isEnabled());
    press(KeyFlag::control, KeyFlag::option);
    EXPECT_THAT(stored().dictateChords, ElementsAre(12, 3));
    EXPECT_TRUE(isVisible(QStringLiteral("Remove Ctrl+Alt from Dictate")));
    EXPECT_TRUE(isVisible(addDictate));
    EXPECT_TRUE(get<QPushButton>(addEnter).isEnabled());
}

TEST_F(SettingsHotkeys, areAddedToTheListWhoseButtonWasPressed) {
    open();
    click(addEnter);
    EXPECT_FALSE(get<QPushButton>(addDictate).isEnabled());
    EXPECT_TRUE(isVisible(QStringLiteral("Press a combo for Dictate + Enter")));
    press(KeyFlag::control, KeyFlag::shift);
    EXPECT_THAT(stored().dictateChords, ElementsAre(12));
    EXPECT_THAT(stored().dictateEnterChords, ElementsAre(5));
}

TEST_F(SettingsHotkeys, thatAreRecordedAreSaidInTheMenu) {
    open();
    click(addDictate);
    EXPECT_THAT(seen, ElementsAre("menu"));
}

}  // namespace
}  // namespace sayloft
