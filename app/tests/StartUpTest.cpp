// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"
#include "models/Paths.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/FakeUserInterface.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

/// The controller with the real speech helper.
class StartUp : public testing::Test {
protected:
    StartUp() {
        fixPaths(QStringLiteral(SAYLOFT_BUNDLE_DIR), m_home.path());
        test::writeFile(Config::url(), R"({"model":"starter"})");
        m_delegate = std::make_unique<AppDelegate>(m_fakes.platform());
        m_delegate->statusItem = std::make_unique<test::FakeStatusItem>(m_seen);
    }

    [[nodiscard]] bool waitForReady() {
        return test::waitUntil([this] { return count("ready") > 0; }, 30s);
    }

    [[nodiscard]] long count(const char* word) const {
        return std::count(m_seen.begin(), m_seen.end(), word);
    }

    test::TempHome m_home;
    test::FakePlatform m_fakes;
    test::Seen m_seen;
    std::unique_ptr<AppDelegate> m_delegate;
};

TEST_F(StartUp, showsWarmingUntilTheHelperReportsReady) {
    m_delegate->applicationDidFinishLaunching();
    EXPECT_FALSE(m_delegate->parakeet().ready());
    ASSERT_TRUE(waitForReady());
    EXPECT_EQ(m_seen, (test::Seen{"menu", "warming", "ready"}));
    EXPECT_TRUE(m_delegate->parakeet().ready());
}

TEST_F(StartUp, isReadyAgainAfterARestartOfTheHelper) {
    m_delegate->applicationDidFinishLaunching();
    ASSERT_TRUE(waitForReady());
    m_seen.clear();
    m_delegate->restartServer();
    ASSERT_TRUE(waitForReady());
    EXPECT_EQ(m_seen, (test::Seen{"warming", "ready"}));
}

}  // namespace
}  // namespace sayloft
