// SPDX-License-Identifier: MIT
#include "models/Paths.h"
#include "ui/tests/DictFixture.h"

#include <QApplication>

#include <gmock/gmock.h>

namespace sayloft {
namespace {

using test::Pair;
using test::Pairs;
using testing::ElementsAre;
using testing::IsEmpty;

class DictWindow : public test::DictFixture {};

TEST_F(DictWindow, showsOneRowPerEntryInTheirOrder) {
    open({{solona, solana}, {QStringLiteral("comma"), QStringLiteral(",")}});
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(heard(1)->text(), solona);
    EXPECT_EQ(replacement(1)->text(), solana);
    EXPECT_EQ(heard(2)->text(), QStringLiteral("comma"));
    EXPECT_LT(heard(1)->mapTo(&window(), QPoint()).y(), heard(2)->mapTo(&window(), QPoint()).y());
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
    dict->refresh();
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
    EXPECT_EQ(delegate->cfg.replacements, (Pairs{{QString(), QString()}}));
    EXPECT_THAT(saved(), IsEmpty());
    window().close();
    EXPECT_THAT(delegate->cfg.replacements, IsEmpty());
    EXPECT_THAT(saved(), IsEmpty());
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

TEST_F(DictWindow, keepsWorkingWhenTheFileCannotBeWritten) {
    open();
    test::writeFile(DATA_DIR + QStringLiteral("/elsewhere"), "");
    DATA_DIR += QStringLiteral("/elsewhere");
    click(add());
    type(heard(1), "solona");
    QTest::keyClick(heard(1), Qt::Key_Return);
    EXPECT_THAT(delegate->cfg.replacements, ElementsAre(Pair{solona, QString()}));
}

TEST_F(DictWindow, doesNothingOnceTheControllerIsGone) {
    open({{solona, solana}});
    type(heard(1), "polana");
    delegate.reset();
    click(add());
    EXPECT_THAT(saved(), ElementsAre(Pair{solona, solana}));
    dict->refresh();
    EXPECT_EQ(rows(), 0);
    window().close();
    EXPECT_THAT(saved(), ElementsAre(Pair{solona, solana}));
}

}  // namespace
}  // namespace sayloft
