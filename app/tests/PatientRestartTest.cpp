// SPDX-License-Identifier: MIT
#include "app/PatientRestart.h"

#include "tests/support/WaitUntil.h"

#include <QDeadlineTimer>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

class PatientRestartTest : public testing::Test {
protected:
    /// Far from what any test waits for.
    static constexpr auto longPatience = 1min;
    static constexpr auto shortPatience = 50ms;

    PatientRestart restartWith(std::chrono::milliseconds patience) {
        return {[this] { return isAnswering; }, [this] { ++restarts; }, patience};
    }

    bool isAnswering = true;
    int restarts = 0;
};

TEST_F(PatientRestartTest, happensAtOnceWhereNothingIsAsked) {
    isAnswering = false;
    restartWith(longPatience).request();
    EXPECT_EQ(restarts, 1);
}

TEST_F(PatientRestartTest, waitsForTheAnswer) {
    PatientRestart restart = restartWith(longPatience);
    restart.request();
    restart.review();
    EXPECT_EQ(restarts, 0);
    isAnswering = false;
    restart.review();
    EXPECT_EQ(restarts, 1);
}

TEST_F(PatientRestartTest, waitsNoLongerThanItsPatience) {
    PatientRestart restart = restartWith(shortPatience);
    const QDeadlineTimer patience(shortPatience - 5ms);
    restart.request();
    EXPECT_TRUE(test::waitUntil([this] { return restarts == 1; }));
    EXPECT_TRUE(patience.hasExpired());
}

TEST_F(PatientRestartTest, losesNoPatienceBecauseItIsAskedAgain) {
    PatientRestart restart = restartWith(shortPatience);
    restart.request();
    EXPECT_TRUE(test::waitUntil([&] {
        restart.request();
        return restarts > 0;
    }));
}

TEST_F(PatientRestartTest, happensOnceForSeveralRequests) {
    PatientRestart restart = restartWith(longPatience);
    restart.request();
    restart.request();
    isAnswering = false;
    restart.review();
    restart.review();
    EXPECT_EQ(restarts, 1);
}

TEST_F(PatientRestartTest, doesNotHappenWithoutARequest) {
    PatientRestart restart = restartWith(longPatience);
    isAnswering = false;
    restart.review();
    EXPECT_EQ(restarts, 0);
}

TEST_F(PatientRestartTest, doesNotHappenOnceItIsCancelled) {
    PatientRestart restart = restartWith(shortPatience);
    restart.request();
    restart.cancel();
    test::turnEventLoopFor(4 * shortPatience);
    isAnswering = false;
    restart.review();
    EXPECT_EQ(restarts, 0);
}

}  // namespace
}  // namespace sayloft
