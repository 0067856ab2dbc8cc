// SPDX-License-Identifier: MIT
#include "tests/support/WaitUntil.h"
#include "ui/GlyphText.h"
#include "ui/TextLabel.h"
#include "ui/tests/DictFixture.h"
#include "ui/tests/KeptLook.h"

#include <QApplication>
#include <QLineEdit>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

#include <gmock/gmock.h>

namespace sayloft {
namespace {

using test::Pair;
using test::Pairs;
using testing::ElementsAre;
using testing::IsEmpty;

class DictWindowOnScreen : public test::DictFixture {};

TEST_F(DictWindowOnScreen, showsOnlyTheButtonAndTheHelpForAnEmptyList) {
    open();
    EXPECT_EQ(rows(), 0);
    EXPECT_EQ(add()->text(), displayable(QStringLiteral("＋ Add replacement"),
                                         QStringLiteral("+ Add replacement"), add()->font()));
    const auto labels = window().findChildren<TextLabel*>();
    ASSERT_EQ(labels.size(), 1);
    EXPECT_EQ(labels[0]->text(), QStringLiteral("Applied to every transcript (case-insensitive). "
                                                "Example: “solona” → “Solana”."));
    EXPECT_EQ(labels[0]->width(), 400);
}

TEST_F(DictWindowOnScreen, hasItsTitleItsSizeAndItsMeasures) {
    open({{solona, solana}});
    EXPECT_EQ(window().windowTitle(), QStringLiteral("Dictionary"));
    EXPECT_EQ(window().size(), QSize(460, 380));
    EXPECT_EQ(heard(1)->mapTo(&window(), QPoint()), QPoint(20, 20));
    EXPECT_EQ(heard(1)->width(), 150);
    EXPECT_EQ(replacement(1)->width(), 150);
    EXPECT_EQ(heard(1)->placeholderText(), QStringLiteral("heard"));
    EXPECT_EQ(replacement(1)->placeholderText(), QStringLiteral("replace with"));
    EXPECT_EQ(remove(1)->text(), QStringLiteral("✕"));
    EXPECT_EQ(add()->mapTo(&window(), QPoint()).y(), 20 + heard(1)->parentWidget()->height() + 14);
}

// As a desktop does that tells nothing of hints.
TEST_F(DictWindowOnScreen, hasHintsInTheColourOfItsTexts) {
    const test::KeptLook before;
    QPalette colours = before.palette();
    colours.setColor(QPalette::Base, Qt::black);
    colours.setColor(QPalette::Text, Qt::white);
    colours.setColor(QPalette::PlaceholderText, Qt::black);
    QApplication::setPalette(colours);
    open({{solona, solana}});
    const QColor faintWhite(255, 255, 255, 128);
    EXPECT_EQ(heard(1)->palette().color(QPalette::PlaceholderText), faintWhite);
    colours.setColor(QPalette::Text, Qt::red);
    window().setPalette(colours);
    const QColor faintRed(255, 0, 0, 128);
    EXPECT_EQ(heard(1)->palette().color(QPalette::PlaceholderText), faintRed);
}

TEST_F(DictWindowOnScreen, putsTheCursorIntoTheRowThatIsAdded) {
    open({{solona, solana}});
    click(add());
    EXPECT_EQ(QApplication::focusWidget(), heard(2));
}

TEST_F(DictWindowOnScreen, endsEditingByAClickOnEmptySpace) {
    open({{solona, solana}});
    type(heard(1), "polana");
    QTest::mouseClick(window().childAt(455, 375), Qt::LeftButton);
    EXPECT_EQ(QApplication::focusWidget(), nullptr);
    EXPECT_THAT(saved(), ElementsAre(Pair{QStringLiteral("polana"), solana}));
}

TEST_F(DictWindowOnScreen, opensInTheCornerOfTheScreen) {
    open();
    const QRect space = window().screen()->availableGeometry();
    // A window manager keeps the frame on the screen.
    EXPECT_TRUE(test::waitUntil([&] {
        return window().geometry().left() - space.left() <= 10 &&
               space.bottom() - window().geometry().bottom() <= 10;
    })) << window().geometry().left()
        << ' ' << window().geometry().bottom();
    EXPECT_TRUE(space.adjusted(-10, -10, 10, 10).contains(window().geometry()));
}

TEST_F(DictWindowOnScreen, staysWhereTheUserHasPutIt) {
    open();
    window().move(200, 100);
    ASSERT_TRUE(test::waitUntil([&] { return window().pos() == QPoint(200, 100); }));
    window().close();
    show();
    EXPECT_TRUE(test::waitUntil([&] { return window().pos() == QPoint(200, 100); }));
}

TEST_F(DictWindowOnScreen, scrollsALongListAndStaysAsLargeAsItIs) {
    open(Pairs(50, Pair{solona, solana}));
    EXPECT_EQ(window().size(), QSize(460, 380));
    EXPECT_TRUE(add()->isVisible());
    EXPECT_LE(add()->mapTo(&window(), QPoint(0, add()->height())).y(), 380);
    const auto* area = window().findChild<QScrollArea*>();
    EXPECT_GT(area->verticalScrollBar()->maximum(), 0);
}

TEST_F(DictWindowOnScreen, bringsANewRowOfALongListIntoSight) {
    open(Pairs(50, Pair{solona, solana}));
    click(add());
    EXPECT_FALSE(heard(51)->visibleRegion().isEmpty());
}

TEST_F(DictWindowOnScreen, scrollsWithTheTabKey) {
    open(Pairs(50, Pair{solona, solana}));
    click(heard(1));
    for (int i = 0; i < 3 * 30; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), heard(31));
    EXPECT_FALSE(heard(31)->visibleRegion().isEmpty());
}

TEST_F(DictWindowOnScreen, goesFromFieldToFieldWithTheTabKey) {
    open({{solona, solana}, {QStringLiteral("b"), QStringLiteral("c")}});
    click(heard(1));
    for (QWidget* next : std::initializer_list<QWidget*>{
             replacement(1), remove(1), heard(2), replacement(2), remove(2), add(), heard(1)}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), next) << next->accessibleName().toStdString();
    }
}

TEST_F(DictWindowOnScreen, isUsedWithoutAMouse) {
    open();
    QTest::keyClick(&window(), Qt::Key_Tab);
    add()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(add(), Qt::Key_Space);
    QTest::keyClicks(QApplication::focusWidget(), solona);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClicks(QApplication::focusWidget(), solana);
    QTest::keyClick(&window(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window().isVisible());
    EXPECT_THAT(saved(), ElementsAre(Pair{solona, solana}));
    show();
    remove(1)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(remove(1), Qt::Key_Space);
    EXPECT_THAT(saved(), IsEmpty());
}

TEST_F(DictWindowOnScreen, namesAndDescribesEveryControl) {
    open({{solona, solana}});
    for (QWidget* each : window().findChildren<QWidget*>()) {
        if (each->focusPolicy() == Qt::NoFocus)
            continue;
        EXPECT_FALSE(each->accessibleName().isEmpty()) << each->metaObject()->className();
        EXPECT_FALSE(each->accessibleDescription().isEmpty()) << each->metaObject()->className();
    }
}

TEST_F(DictWindowOnScreen, staysUsableWithALargeFont) {
    const test::KeptLook before;
    QFont large = before.font();
    large.setPixelSize(32);
    QApplication::setFont(large);
    open(Pairs(50, Pair{solona, solana}));
    EXPECT_GT(window().width(), 460);
    EXPECT_LE(window().height(), window().screen()->availableGeometry().height());
    EXPECT_LE(remove(1)->mapTo(&window(), QPoint(remove(1)->width(), 0)).x(),
              window().width() - 20);
    EXPECT_LT(QFontMetrics(large).horizontalAdvance(replacement(1)->placeholderText()),
              replacement(1)->width());
}

}  // namespace
}  // namespace sayloft
