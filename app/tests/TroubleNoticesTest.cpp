// SPDX-License-Identifier: MIT
#include "app/TroubleNotices.h"

#include "tests/support/FakePlatform.h"
#include "tests/support/WaitUntil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

// In the order of their severity.
constexpr std::array allTroubles{
    Trouble::keysOutOfReach,     Trouble::helperMissing, Trouble::modelMissing,
    Trouble::portTaken,          Trouble::helperGone,    Trouble::soundServerGone,
    Trouble::soundServerRefuses, Trouble::noMicrophone,  Trouble::noTrayHost};

constexpr auto settle = 40ms;

class TroubleNoticesTest : public testing::Test {
protected:
    TroubleNoticesTest() {
        m_notices.onChange = [this] { ++m_changes; };
    }

    [[nodiscard]] bool nothingIsVisible() const {
        return test::waitUntil([this] { return m_notifier.visible.empty(); });
    }

    test::FakeNotifier m_notifier;
    TroubleNotices m_notices{m_notifier, settle};
    int m_changes = 0;
};

struct Row {
    Trouble trouble;
    const char* name;
    const char* remedyNames;  ///< the word that tells what to do or where
    bool hasAction;
};

class EveryTrouble : public TroubleNoticesTest, public testing::WithParamInterface<Row> {};

INSTANTIATE_TEST_SUITE_P(
    , EveryTrouble,
    testing::Values(Row{Trouble::keysOutOfReach, "keysOutOfReach", "X11 session", true},
                    Row{Trouble::helperMissing, "helperMissing", "Install Sayloft again", false},
                    Row{Trouble::modelMissing, "modelMissing", "Download it", true},
                    Row{Trouble::portTaken, "portTaken", "8090", false},
                    Row{Trouble::helperGone, "helperGone", "smaller model", true},
                    Row{Trouble::soundServerGone, "soundServerGone", "start the sound server",
                        true},
                    Row{Trouble::soundServerRefuses, "soundServerRefuses", "not as root", true},
                    Row{Trouble::noMicrophone, "noMicrophone", "Plug a microphone in", true},
                    Row{Trouble::noTrayHost, "noTrayHost", "AppIndicator", true}),
    [](const auto& row) { return row.param.name; });

TEST_P(EveryTrouble, isToldOnceHoweverOftenItIsNoticed) {
    for (int i = 0; i < 3; ++i)
        m_notices.raise(GetParam().trouble);
    EXPECT_EQ(m_notifier.shown, 1);
    EXPECT_EQ(m_changes, 1);
    EXPECT_THAT(m_notices.current(), ElementsAre(GetParam().trouble));
}

TEST_P(EveryTrouble, saysWhatToDo) {
    m_notices.raise(GetParam().trouble);
    ASSERT_EQ(m_notifier.visible.size(), 1U);
    const Notification& told = m_notifier.visible.front();
    EXPECT_FALSE(told.summary.isEmpty());
    EXPECT_TRUE(told.body.contains(QString::fromUtf8(GetParam().remedyNames)))
        << told.body.toStdString();
    EXPECT_TRUE(told.body.endsWith(QLatin1Char('.')));
}

TEST_P(EveryTrouble, fitsATooltipAndANotification) {
    const TroubleText text = troubleText(GetParam().trouble);
    EXPECT_FALSE(text.phrase.isEmpty());
    EXPECT_LE(text.phrase.size(), 30);
    EXPECT_LE(text.summary.size(), 45);
    EXPECT_LE(text.remedy.size(), 220);
    EXPECT_EQ(!text.action.isEmpty(), GetParam().hasAction);
}

TEST_P(EveryTrouble, isWithdrawnWhenItHasGoneAndToldAgainWhenItComesBack) {
    m_notices.raise(GetParam().trouble);
    m_notices.clear(GetParam().trouble);
    EXPECT_THAT(m_notices.current(), IsEmpty());
    ASSERT_TRUE(nothingIsVisible());
    m_notices.raise(GetParam().trouble);
    EXPECT_EQ(m_notifier.shown, 2);
    EXPECT_EQ(m_changes, 3);
}

TEST_P(EveryTrouble, offersItsActionToWhoeverTakesIt) {
    std::vector<Trouble> taken;
    m_notices.onAction = [&taken](Trouble trouble) { taken.push_back(trouble); };
    m_notices.raise(GetParam().trouble);
    const Notification told = m_notifier.visible.at(0);
    ASSERT_EQ(static_cast<bool>(told.onActivated), GetParam().hasAction);
    EXPECT_EQ(told.actionLabel, troubleText(GetParam().trouble).action);
    if (told.onActivated)
        told.onActivated();
    EXPECT_EQ(taken.size(), GetParam().hasAction ? 1U : 0U);
}

TEST_F(TroubleNoticesTest, offersNoActionThatNobodyTakes) {
    m_notices.raise(Trouble::modelMissing);
    EXPECT_FALSE(m_notifier.visible.at(0).onActivated);
}

TEST_F(TroubleNoticesTest, namesTheMostSevereCauseFirst) {
    for (auto it = allTroubles.rbegin(); it != allTroubles.rend(); ++it)
        m_notices.raise(*it);
    EXPECT_THAT(m_notices.current(), ElementsAreArray(allTroubles));
    m_notices.clear(Trouble::keysOutOfReach);
    EXPECT_EQ(m_notices.current().front(), Trouble::helperMissing);
}

TEST_F(TroubleNoticesTest, tellsEveryCauseByItself) {
    m_notices.raise(Trouble::helperGone);
    m_notices.raise(Trouble::soundServerGone);
    EXPECT_EQ(m_notifier.visible.size(), 2U);
    m_notices.clear(Trouble::helperGone);
    ASSERT_TRUE(test::waitUntil([this] { return m_notifier.visible.size() == 1; }));
    EXPECT_EQ(m_notifier.visible[0].summary, troubleText(Trouble::soundServerGone).summary);
}

TEST_F(TroubleNoticesTest, takesNoNoticeOfAClearedCauseThatNeverHeld) {
    m_notices.clear(Trouble::portTaken);
    EXPECT_EQ(m_changes, 0);
    EXPECT_EQ(m_notifier.shown, 0);
}

TEST_F(TroubleNoticesTest, doesNotTellAgainWhatWasAwayForAMomentOnly) {
    m_notices.raise(Trouble::helperGone);
    for (int i = 0; i < 5; ++i) {
        m_notices.clear(Trouble::helperGone);
        EXPECT_THAT(m_notices.current(), IsEmpty());
        m_notices.raise(Trouble::helperGone);
        EXPECT_THAT(m_notices.current(), ElementsAre(Trouble::helperGone));
    }
    EXPECT_EQ(m_changes, 11);
    test::turnEventLoopFor(3 * settle);
    EXPECT_EQ(m_notifier.shown, 1);
    EXPECT_EQ(m_notifier.visible.size(), 1U);
}

TEST_F(TroubleNoticesTest, countsTheTimeAwayFromTheLastGoing) {
    m_notices.raise(Trouble::helperGone);
    m_notices.clear(Trouble::helperGone);
    test::turnEventLoopFor(settle / 2);
    m_notices.raise(Trouble::helperGone);
    m_notices.clear(Trouble::helperGone);
    const auto lastGoing = std::chrono::steady_clock::now();
    ASSERT_TRUE(nothingIsVisible());
    EXPECT_GE(std::chrono::steady_clock::now() - lastGoing, settle - 1ms);
}

TEST_F(TroubleNoticesTest, tellsTheCurrentCausesWithinItsOwnCallback) {
    std::vector<Trouble> seen;
    m_notices.onChange = [&] { seen = m_notices.current(); };
    m_notices.raise(Trouble::noTrayHost);
    EXPECT_THAT(seen, ElementsAre(Trouble::noTrayHost));
}

TEST(TroubleTexts, areAllDifferent) {
    std::set<std::string> phrases;
    std::set<std::string> summaries;
    for (const Trouble trouble : allTroubles) {
        phrases.insert(troubleText(trouble).phrase.toStdString());
        summaries.insert(troubleText(trouble).summary.toStdString());
    }
    EXPECT_EQ(phrases.size(), allTroubles.size());
    EXPECT_EQ(summaries.size(), allTroubles.size());
}

}  // namespace
}  // namespace sayloft
