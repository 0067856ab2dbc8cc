// SPDX-License-Identifier: MIT
#include "ui/ChipList.h"

#include "tests/support/WaitUntil.h"
#include "ui/FlowLayout.h"

#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

class ChipListTest : public testing::Test {
protected:
    ChipListTest() { m_list.show(); }

    [[nodiscard]] bool becomesActive() {
        m_list.activateWindow();
        return test::waitUntil([this] { return m_list.isActiveWindow(); });
    }

    /// The buttons in the order of the layout; the last is the one that adds.
    [[nodiscard]] std::vector<QPushButton*> buttons() const {
        std::vector<QPushButton*> all(static_cast<std::size_t>(m_list.layout()->count()));
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] =
                qobject_cast<QPushButton*>(m_list.layout()->itemAt(static_cast<int>(i))->widget());
        return all;
    }

    ChipList m_list{QStringLiteral("Dictate")};
};

TEST_F(ChipListTest, showsEveryChordAndThenTheButton) {
    m_list.setChords({12, 3});
    const auto all = buttons();
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0]->text(), QStringLiteral("⇧⌘  ✕"));
    EXPECT_EQ(all[1]->text(), QStringLiteral("⌃⌥  ✕"));
    EXPECT_EQ(all[2], m_list.addButton());
}

TEST_F(ChipListTest, namesTheKeysOfAChip) {
    m_list.setChords({12});
    EXPECT_EQ(buttons()[0]->toolTip(), QStringLiteral("Shift+Super – click to remove"));
    EXPECT_EQ(buttons()[0]->accessibleName(), QStringLiteral("Remove Shift+Super from Dictate"));
}

TEST_F(ChipListTest, keepsTheButtonsOfChordsThatStay) {
    m_list.setChords({1, 2, 4, 8});
    const auto before = buttons();
    m_list.setChords({1, 4, 8, 16});
    const auto after = buttons();
    ASSERT_EQ(after.size(), 5U);
    EXPECT_EQ(after[0], before[0]);
    EXPECT_EQ(after[1], before[2]);
    EXPECT_EQ(after[2], before[3]);
    EXPECT_EQ(after[3]->accessibleName(), QStringLiteral("Remove Fn from Dictate"));
}

TEST_F(ChipListTest, showsAChordThatIsThereTwiceTwice) {
    m_list.setChords({12, 3, 12});
    EXPECT_EQ(buttons().size(), 4U);
    m_list.setChords({3});
    EXPECT_EQ(buttons().size(), 2U);
}

TEST_F(ChipListTest, showsADashForAChordOfNoKeys) {
    m_list.setChords({0});
    EXPECT_EQ(buttons()[0]->text(), QStringLiteral("—  ✕"));
}

TEST_F(ChipListTest, leavesAChipAliveWhileItsClickIsHandled) {
    m_list.setChords({12});
    const QPointer<QPushButton> chip = buttons()[0];
    QObject::connect(&m_list, &ChipList::removeRequested, &m_list, [&] {
        m_list.setChords({});
        EXPECT_FALSE(chip.isNull());
    });
    QTest::mouseClick(chip, Qt::LeftButton);
    EXPECT_TRUE(test::waitUntil([&] { return chip.isNull(); }));
}

TEST_F(ChipListTest, movesTheFocusToTheNextChipWhenOneGoes) {
    ASSERT_TRUE(becomesActive());
    m_list.setChords({1, 2, 4});
    buttons()[1]->setFocus();
    m_list.setChords({1, 4});
    EXPECT_TRUE(buttons()[1]->hasFocus());
    m_list.setChords({1});
    EXPECT_TRUE(m_list.addButton()->hasFocus());
}

TEST_F(ChipListTest, isWalkedThroughInItsOrder) {
    ASSERT_TRUE(becomesActive());
    m_list.setChords({1});
    m_list.setChords({8, 1, 2});
    m_list.setChords({8, 4, 1, 2});
    buttons()[0]->setFocus();
    for (const QPushButton* const button : buttons()) {
        EXPECT_TRUE(button->hasFocus()) << button->accessibleName().toStdString();
        QTest::keyClick(m_list.focusWidget(), Qt::Key_Tab);
    }
}

TEST_F(ChipListTest, saysWhichListIsBeingRecorded) {
    m_list.setCapture(ChipList::Capture::here);
    EXPECT_EQ(m_list.addButton()->text(), QStringLiteral("Press a combo…"));
    EXPECT_TRUE(m_list.addButton()->isEnabled());
    m_list.setCapture(ChipList::Capture::elsewhere);
    EXPECT_TRUE(m_list.addButton()->text().endsWith(QStringLiteral(" Add combo")));
    EXPECT_FALSE(m_list.addButton()->isEnabled());
}

TEST_F(ChipListTest, saysWhyNothingCanBeAddedWhileTheOtherListIsBeingRecorded) {
    const QString usual = m_list.addButton()->accessibleDescription();
    EXPECT_TRUE(m_list.addButton()->toolTip().isEmpty());
    m_list.setCapture(ChipList::Capture::elsewhere);
    EXPECT_TRUE(m_list.addButton()->toolTip().contains(QStringLiteral("other list")));
    EXPECT_EQ(m_list.addButton()->accessibleDescription(), m_list.addButton()->toolTip());
    m_list.setCapture(ChipList::Capture::none);
    EXPECT_TRUE(m_list.addButton()->toolTip().isEmpty());
    EXPECT_EQ(m_list.addButton()->accessibleDescription(), usual);
}

TEST_F(ChipListTest, wrapsManyChords) {
    m_list.setChords({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    EXPECT_GT(m_list.heightForWidth(400), 2 * m_list.addButton()->sizeHint().height());
    EXPECT_LE(m_list.minimumSizeHint().width(), 400);
}

}  // namespace
}  // namespace sayloft
