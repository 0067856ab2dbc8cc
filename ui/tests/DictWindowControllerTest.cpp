// SPDX-License-Identifier: MIT
#include "ui/DictWindowController.h"

#include "app/AppDelegate.h"
#include "models/Paths.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"
#include "ui/DrawableText.h"
#include "ui/TextLabel.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <algorithm>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sayloft {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Pair = std::vector<QString>;
using Pairs = std::vector<Pair>;

const QString solona = QStringLiteral("solona");
const QString solana = QStringLiteral("Solana");

/// The window as the user has it in front, on fake services.
class DictWindow : public testing::Test {
protected:
    void open(const Pairs& replacements = {}) {
        m_delegate->cfg.replacements = replacements;
        m_delegate->cfg.save();
        m_dict = std::make_unique<DictWindowController>(*m_delegate);
        show();
    }

    void show() {
        m_dict->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    }

    [[nodiscard]] QWidget& window() const { return m_dict->window(); }

    template <typename Control>
    [[nodiscard]] Control* control(const QString& name) const {
        const QList<Control*> all = window().findChildren<Control*>();
        const auto found = std::find_if(all.begin(), all.end(), [&name](Control* each) {
            return each->isVisible() && each->accessibleName() == name;
        });
        if (found == all.end())
            throw std::runtime_error("no control " + name.toStdString());
        return *found;
    }

    [[nodiscard]] QLineEdit* heard(int row) const {
        return control<QLineEdit>(QStringLiteral("Heard %1").arg(row));
    }
    [[nodiscard]] QLineEdit* replacement(int row) const {
        return control<QLineEdit>(QStringLiteral("Replace with %1").arg(row));
    }
    [[nodiscard]] QPushButton* remove(int row) const {
        return control<QPushButton>(QStringLiteral("Remove %1").arg(row));
    }
    [[nodiscard]] QPushButton* add() const {
        return control<QPushButton>(QStringLiteral("＋ Add replacement"));
    }

    /// Number of rows on the screen.
    [[nodiscard]] int rows() const {
        const QList<QLineEdit*> fields = window().findChildren<QLineEdit*>();
        const auto shown = std::count_if(fields.begin(), fields.end(),
                                         [](QLineEdit* field) { return field->isVisible(); });
        return static_cast<int>(shown) / 2;
    }

    static void click(QWidget* target) { QTest::mouseClick(target, Qt::LeftButton); }

    static void type(QLineEdit* field, const char* text) {
        click(field);
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, QString::fromUtf8(text));
    }

    [[nodiscard]] static Pairs saved() { return Config::load().replacements; }

    test::TempHome m_home;
    test::FakePlatform m_fakes;
    std::unique_ptr<AppDelegate> m_delegate = std::make_unique<AppDelegate>(m_fakes.platform());
    std::unique_ptr<DictWindowController> m_dict;
};

TEST_F(DictWindow, showsOneRowPerEntryInTheirOrder) {
    open({{solona, solana}, {QStringLiteral("comma"), QStringLiteral(",")}});
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(heard(1)->text(), solona);
    EXPECT_EQ(replacement(1)->text(), solana);
    EXPECT_EQ(heard(2)->text(), QStringLiteral("comma"));
    EXPECT_LT(heard(1)->mapTo(&window(), QPoint()).y(), heard(2)->mapTo(&window(), QPoint()).y());
}

TEST_F(DictWindow, showsOnlyTheButtonAndTheHelpForAnEmptyList) {
    open();
    EXPECT_EQ(rows(), 0);
    EXPECT_EQ(add()->text(), drawableText(QStringLiteral("＋ Add replacement"), add()->font()));
    const auto labels = window().findChildren<TextLabel*>();
    ASSERT_EQ(labels.size(), 1);
    EXPECT_EQ(labels[0]->text(), QStringLiteral("Applied to every transcript (case-insensitive). "
                                                "Example: “solona” → “Solana”."));
    EXPECT_EQ(labels[0]->width(), 400);
}

TEST_F(DictWindow, hasItsTitleItsSizeAndItsMeasures) {
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

TEST_F(DictWindow, readsMissingStringsAsEmptyAndIgnoresFurtherOnes) {
    open({{}, {solona}, {solona, solana, QStringLiteral("more")}});
    EXPECT_EQ(heard(1)->text(), QString());
    EXPECT_EQ(heard(2)->text(), solona);
    EXPECT_EQ(replacement(2)->text(), QString());
    EXPECT_EQ(replacement(3)->text(), solana);
}

TEST_F(DictWindow, writesNothingByBeingOpened) {
    const Pairs odd{{}, {solona}, {QStringLiteral(" padded "), solana, QStringLiteral("more")}};
    open(odd);
    EXPECT_EQ(saved(), odd);
}

TEST_F(DictWindow, savesAPairWithoutTheSpacesAroundIt) {
    open();
    click(add());
    type(heard(1), "  solona\t ");
    type(replacement(1), " Solana ");
    QTest::keyClick(replacement(1), Qt::Key_Return);
    EXPECT_THAT(saved(), ElementsAre(Pair{solona, solana}));
    EXPECT_EQ(replacement(1)->text(), QStringLiteral(" Solana "));
}

TEST_F(DictWindow, keepsLineEndsAtTheEndsOfATextThatItShows) {
    open({{QStringLiteral("\n a \n"), QStringLiteral(" b\n ")}});
    click(heard(1));
    click(replacement(1));
    EXPECT_THAT(saved(), ElementsAre(Pair{QStringLiteral("\n a \n"), QStringLiteral("b\n")}));
}

TEST_F(DictWindow, cutsNoTextHoweverLong) {
    const QString text(40000, QLatin1Char('x'));
    open({{solona, text}});
    window().close();
    EXPECT_THAT(saved(), ElementsAre(Pair{solona, text}));
}

TEST_F(DictWindow, dropsARowWithoutAHeardTextButKeepsItOnTheScreen) {
    open();
    click(add());
    type(heard(1), "   ");
    type(replacement(1), "text");
    QTest::keyClick(replacement(1), Qt::Key_Return);
    EXPECT_THAT(saved(), IsEmpty());
    EXPECT_EQ(rows(), 1);
    EXPECT_EQ(replacement(1)->text(), QStringLiteral("text"));
    m_dict->refresh();
    EXPECT_EQ(rows(), 0);
}

TEST_F(DictWindow, savesAHeardTextThatIsReplacedByNothing) {
    open();
    click(add());
    type(heard(1), "uhm");
    QTest::keyClick(heard(1), Qt::Key_Return);
    EXPECT_THAT(saved(), ElementsAre(Pair{QStringLiteral("uhm"), QString()}));
}

TEST_F(DictWindow, savesWhenTheCursorLeavesAField) {
    open({{solona, solana}});
    type(replacement(1), "SOL");
    click(heard(1));
    EXPECT_THAT(saved(), ElementsAre(Pair{solona, QStringLiteral("SOL")}));
}

TEST_F(DictWindow, savesInTheOrderOfTheScreenAndWithDuplicates) {
    const Pairs pairs{{solona, solana}, {QStringLiteral("a"), {}}, {solona, QStringLiteral("x")}};
    open(pairs);
    click(heard(2));
    QTest::keyClick(heard(2), Qt::Key_Return);
    EXPECT_EQ(saved(), pairs);
}

TEST_F(DictWindow, showsOneEmptyRowAfterTwoClicksOnAdd) {
    open({{solona, solana}});
    click(add());
    click(add());
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(heard(2)->text(), QString());
    EXPECT_THAT(saved(), ElementsAre(Pair{solona, solana}));
}

TEST_F(DictWindow, keepsWhatIsBeingTypedWhenARowIsAdded) {
    open();
    click(add());
    type(heard(1), "solona");
    click(add());
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(heard(1)->text(), solona);
    EXPECT_THAT(saved(), ElementsAre(Pair{solona, QString()}));
}

TEST_F(DictWindow, doesNotSaveTheEmptyRowThatIsAdded) {
    open();
    click(add());
    EXPECT_EQ(m_delegate->cfg.replacements, (Pairs{{QString(), QString()}}));
    EXPECT_THAT(saved(), IsEmpty());
    window().close();
    EXPECT_THAT(m_delegate->cfg.replacements, IsEmpty());
    EXPECT_THAT(saved(), IsEmpty());
}

TEST_F(DictWindow, putsTheCursorIntoTheRowThatIsAdded) {
    open({{solona, solana}});
    click(add());
    EXPECT_EQ(QApplication::focusWidget(), heard(2));
}

TEST_F(DictWindow, removesTheRowWhoseButtonIsPressed) {
    open({{solona, solana}, {QStringLiteral("b"), QStringLiteral("c")}});
    click(remove(1));
    EXPECT_EQ(rows(), 1);
    EXPECT_EQ(heard(1)->text(), QStringLiteral("b"));
    EXPECT_THAT(saved(), ElementsAre(Pair{QStringLiteral("b"), QStringLiteral("c")}));
}

TEST_F(DictWindow, removesARowWhoseTextIsBeingEdited) {
    open({{solona, solana}, {QStringLiteral("b"), QStringLiteral("c")}});
    type(heard(1), "other");
    click(remove(1));
    EXPECT_THAT(saved(), ElementsAre(Pair{QStringLiteral("b"), QStringLiteral("c")}));
}

TEST_F(DictWindow, keepsEditsOfOtherRowsWhenOneIsRemoved) {
    open({{solona, solana}, {QStringLiteral("b"), QStringLiteral("c")}});
    type(replacement(1), "SOL");
    click(remove(2));
    EXPECT_THAT(saved(), ElementsAre(Pair{solona, QStringLiteral("SOL")}));
}

TEST_F(DictWindow, savesTheFieldWithTheCursorWhenItIsClosed) {
    open({{solona, solana}});
    type(heard(1), "polana");
    ASSERT_EQ(QApplication::focusWidget(), heard(1));
    window().close();
    EXPECT_FALSE(window().isVisible());
    EXPECT_THAT(saved(), ElementsAre(Pair{QStringLiteral("polana"), solana}));
}

TEST_F(DictWindow, opensAgainWithWhatWasSaved) {
    open({{solona, solana}});
    type(heard(1), " polana ");
    window().close();
    show();
    EXPECT_EQ(heard(1)->text(), QStringLiteral("polana"));
}

TEST_F(DictWindow, endsEditingByAClickOnEmptySpace) {
    open({{solona, solana}});
    type(heard(1), "polana");
    QTest::mouseClick(window().childAt(455, 375), Qt::LeftButton);
    EXPECT_EQ(QApplication::focusWidget(), nullptr);
    EXPECT_THAT(saved(), ElementsAre(Pair{QStringLiteral("polana"), solana}));
}

TEST_F(DictWindow, opensInTheCornerOfTheScreen) {
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

TEST_F(DictWindow, staysWhereTheUserHasPutIt) {
    open();
    window().move(200, 100);
    ASSERT_TRUE(test::waitUntil([&] { return window().pos() == QPoint(200, 100); }));
    window().close();
    show();
    EXPECT_TRUE(test::waitUntil([&] { return window().pos() == QPoint(200, 100); }));
}

TEST_F(DictWindow, scrollsALongListAndStaysAsLargeAsItIs) {
    open(Pairs(50, Pair{solona, solana}));
    EXPECT_EQ(window().size(), QSize(460, 380));
    EXPECT_TRUE(add()->isVisible());
    EXPECT_LE(add()->mapTo(&window(), QPoint(0, add()->height())).y(), 380);
    const auto* area = window().findChild<QScrollArea*>();
    EXPECT_GT(area->verticalScrollBar()->maximum(), 0);
}

TEST_F(DictWindow, bringsANewRowOfALongListIntoSight) {
    open(Pairs(50, Pair{solona, solana}));
    click(add());
    EXPECT_FALSE(heard(51)->visibleRegion().isEmpty());
}

TEST_F(DictWindow, scrollsWithTheTabKey) {
    open(Pairs(50, Pair{solona, solana}));
    click(heard(1));
    for (int i = 0; i < 3 * 30; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), heard(31));
    EXPECT_FALSE(heard(31)->visibleRegion().isEmpty());
}

TEST_F(DictWindow, goesFromFieldToFieldWithTheTabKey) {
    open({{solona, solana}, {QStringLiteral("b"), QStringLiteral("c")}});
    click(heard(1));
    for (QWidget* next : std::initializer_list<QWidget*>{
             replacement(1), remove(1), heard(2), replacement(2), remove(2), add(), heard(1)}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), next) << next->accessibleName().toStdString();
    }
}

TEST_F(DictWindow, isUsedWithoutAMouse) {
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

TEST_F(DictWindow, namesAndDescribesEveryControl) {
    open({{solona, solana}});
    for (QWidget* each : window().findChildren<QWidget*>()) {
        if (each->focusPolicy() == Qt::NoFocus)
            continue;
        EXPECT_FALSE(each->accessibleName().isEmpty()) << each->metaObject()->className();
        EXPECT_FALSE(each->accessibleDescription().isEmpty()) << each->metaObject()->className();
    }
}

TEST_F(DictWindow, staysUsableWithALargeFont) {
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPixelSize(32);
    QApplication::setFont(large);
    open(Pairs(50, Pair{solona, solana}));
    EXPECT_GT(window().width(), 460);
    EXPECT_LE(window().height(), window().screen()->availableGeometry().height());
    EXPECT_LE(remove(1)->mapTo(&window(), QPoint(remove(1)->width(), 0)).x(),
              window().width() - 20);
    EXPECT_LT(QFontMetrics(large).horizontalAdvance(replacement(1)->placeholderText()),
              replacement(1)->width());
    QApplication::setFont(before);
}

TEST_F(DictWindow, keepsWorkingWhenTheFileCannotBeWritten) {
    open();
    test::writeFile(DATA_DIR + QStringLiteral("/elsewhere"), "");
    DATA_DIR += QStringLiteral("/elsewhere");
    click(add());
    type(heard(1), "solona");
    QTest::keyClick(heard(1), Qt::Key_Return);
    EXPECT_THAT(m_delegate->cfg.replacements, ElementsAre(Pair{solona, QString()}));
}

TEST_F(DictWindow, doesNothingOnceTheControllerIsGone) {
    open({{solona, solana}});
    type(heard(1), "polana");
    m_delegate.reset();
    click(add());
    EXPECT_THAT(saved(), ElementsAre(Pair{solona, solana}));
    m_dict->refresh();
    EXPECT_EQ(rows(), 0);
    window().close();
    EXPECT_THAT(saved(), ElementsAre(Pair{solona, solana}));
}

}  // namespace
}  // namespace sayloft
