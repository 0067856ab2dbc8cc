// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"

#include "models/ModelCatalogue.h"
#include "models/Paths.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/FakeUserInterface.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

/// The controller on fake services and without a speech helper, so that nothing comes up by itself.
class Controller : public testing::Test {
protected:
    void launch() {
        m_delegate = std::make_unique<AppDelegate>(m_fakes.platform());
        m_delegate->statusItem = std::make_unique<test::FakeStatusItem>(m_seen);
        m_delegate->overlay = std::make_unique<test::FakeOverlay>(m_seen);
        m_delegate->windows = std::make_unique<test::FakeWindows>(m_seen);
        m_delegate->applicationDidFinishLaunching();
        settle();
    }

    /// Everything that is queued on the main loop has happened afterwards.
    static void settle() { test::turnEventLoopFor(5ms); }

    static void provideModel(const QString& key) {
        test::writeFile(DOWNLOAD_MODELS_DIR + QLatin1Char('/') + modelInfo(key).file, "model");
    }

    void hold(Mods mods) {
        std::uint64_t flags = 0;
        flags |= mods.contains(Mods::shift) ? KeyFlag::shift : 0;
        flags |= mods.contains(Mods::cmd) ? KeyFlag::command : 0;
        flags |= mods.contains(Mods::opt) ? KeyFlag::option : 0;
        m_fakes.modifierWatch.hold(flags);
        settle();
    }

    test::TempHome m_home;
    test::FakePlatform m_fakes;
    test::Seen m_seen;
    std::unique_ptr<AppDelegate> m_delegate;
};

constexpr Mods shiftCmd{Mods::shift, Mods::cmd};

TEST_F(Controller, opensOnboardingWhenTheConfiguredModelIsAbsent) {
    launch();
    EXPECT_THAT(m_seen, Contains("onboarding"));
}

TEST_F(Controller, opensOnboardingWhenAccessibilityIsMissing) {
    provideModel(QStringLiteral("multilingual"));
    m_fakes.privacy.trusted = false;
    launch();
    EXPECT_THAT(m_seen, Contains("onboarding"));
    EXPECT_TRUE(m_home.log().contains(QStringLiteral("accessibility missing\n")));
}

TEST_F(Controller, opensNoOnboardingWhenModelAndAccessibilityAreThere) {
    provideModel(QStringLiteral("multilingual"));
    m_fakes.audio.answer = AudioInput::Authorization::denied;
    launch();
    EXPECT_THAT(m_seen, Not(Contains("onboarding")));
    EXPECT_TRUE(m_home.log().contains(QStringLiteral("accessibility granted\n")));
}

TEST_F(Controller, showsTheMenuBeforeAnythingElseAndStaysWarmingWithoutAServer) {
    provideModel(QStringLiteral("multilingual"));
    launch();
    EXPECT_THAT(m_seen,
                ElementsAre("menu", "reason speech helper missing", "warming", "full 0.3 0.3 1"));
}

TEST_F(Controller, showsReadyOnceTheServerIs) {
    launch();
    m_seen.clear();
    m_delegate->parakeet().onReady();
    settle();
    EXPECT_THAT(m_seen, ElementsAre("ready"));
}

class ControllerWithoutSound : public Controller,
                               public testing::WithParamInterface<AudioInput::Authorization> {};

TEST_P(ControllerWithoutSound, opensItsHelpOnTheSoundServer) {
    m_fakes.audio.answer = GetParam();
    launch();
    hold(shiftCmd);
    m_fakes.notifier.visible.back().onActivated();
    EXPECT_THAT(m_fakes.privacy.helped, ElementsAre(QStringLiteral("sound-server")));
    EXPECT_TRUE(m_fakes.privacy.opened.empty());
}

INSTANTIATE_TEST_SUITE_P(Answers, ControllerWithoutSound,
                         testing::Values(AudioInput::Authorization::notDetermined,
                                         AudioInput::Authorization::denied),
                         [](const auto& row) {
                             return row.param == AudioInput::Authorization::denied ? "refuses"
                                                                                   : "isGone";
                         });

TEST_F(Controller, opensItsHelpOnKeysThatAreOutOfReach) {
    m_fakes.privacy.trusted = false;
    launch();
    for (const Notification& told : m_fakes.notifier.visible) {
        if (told.onActivated)
            told.onActivated();
    }
    EXPECT_THAT(m_fakes.privacy.helped, ElementsAre(QStringLiteral("accessibility")));
}

TEST_F(Controller, opensTheSoundSettingsWhereThereIsNoMicrophone) {
    m_fakes.audio.defaultFormat = {};
    launch();
    hold(shiftCmd);
    m_fakes.notifier.visible.back().onActivated();
    EXPECT_THAT(m_fakes.privacy.opened, ElementsAre(testing::Truly([](const QString& pane) {
                    return pane.endsWith(QStringLiteral("?Privacy_Microphone"));
                })));
}

TEST_F(Controller, startsWithTheSettingsOfTheUser) {
    test::writeFile(Config::url(), R"({"inputDeviceUID":"usb-mic","boostMic":false,
        "pillStyle":"minimal","animAppear":0.5,"animHide":0.25,"holdDuration":2})");
    launch();
    EXPECT_EQ(m_delegate->recorder().deviceUID, QStringLiteral("usb-mic"));
    EXPECT_FALSE(m_delegate->recorder().boost);
    EXPECT_THAT(m_seen, Contains("minimal 0.5 0.25 2"));
}

TEST_F(Controller, asksForTheMicrophoneOnlyWhenThatWasNeverAnswered) {
    m_fakes.audio.answer = AudioInput::Authorization::notDetermined;
    launch();
    EXPECT_EQ(m_fakes.audio.accessRequests, 1);
    m_fakes.audio.answer = AudioInput::Authorization::denied;
    m_delegate->checkPermissions();
    EXPECT_EQ(m_fakes.audio.accessRequests, 1);
}

TEST_F(Controller, saysInTheLogWhetherTheKeysAreWatched) {
    launch();
    EXPECT_TRUE(m_home.log().contains(QStringLiteral("event tap installed OK\n")));
}

TEST_F(Controller, runsOnWhenTheKeysMayNotBeWatched) {
    m_fakes.modifierWatch.allowed = false;
    launch();
    EXPECT_TRUE(m_home.log().contains(
        QStringLiteral("EVENT TAP FAILED — grant Accessibility to Sayloft\n")));
    EXPECT_THAT(m_seen, Contains("menu"));
}

TEST_F(Controller, recordsWhileTheChordIsHeld) {
    launch();
    hold(Mods::shift);
    EXPECT_FALSE(m_fakes.audio.isCapturing());
    hold(shiftCmd);
    EXPECT_TRUE(m_fakes.audio.isCapturing());
    EXPECT_THAT(m_seen, Contains("recording"));
    hold(Mods::shift);
    EXPECT_FALSE(m_fakes.audio.isCapturing());
}

TEST_F(Controller, endsADictationWhenOneMoreKeyIsPressed) {
    launch();
    hold(shiftCmd);
    hold(shiftCmd.unionWith(Mods::opt));
    EXPECT_FALSE(m_delegate->session().running().isRecording);
}

TEST_F(Controller, storesACapturedChordAndShowsIt) {
    launch();
    m_delegate->startCapture(Capturing::dictateEnter);
    m_seen.clear();
    hold(Mods::opt);
    EXPECT_FALSE(m_fakes.audio.isCapturing());
    hold({});
    EXPECT_EQ(Config::load().dictateEnterChords, std::vector<std::int64_t>{2});
    EXPECT_EQ(Config::load().dictateChords, std::vector<std::int64_t>{12});
    EXPECT_THAT(m_seen, ElementsAre("menu", "settings refreshed"));
}

TEST_F(Controller, storesTheSameChordOnceButSavesAndShowsAgain) {
    launch();
    m_delegate->startCapture(Capturing::dictate);
    m_seen.clear();
    hold(Mods::cmd);
    hold(shiftCmd);
    hold(Mods::cmd);
    hold({});
    EXPECT_EQ(Config::load().dictateChords, std::vector<std::int64_t>{12});
    EXPECT_TRUE(test::readFile(Config::url()).contains(R"("dictateChords":[12])"));
    EXPECT_THAT(m_seen, ElementsAre("menu", "settings refreshed"));
}

TEST_F(Controller, takesTheSameChordIntoBothLists) {
    launch();
    m_delegate->startCapture(Capturing::dictateEnter);
    hold(shiftCmd);
    hold({});
    EXPECT_EQ(m_delegate->cfg.dictateEnterChords, std::vector<std::int64_t>{12});
    EXPECT_EQ(m_delegate->cfg.dictateChords, std::vector<std::int64_t>{12});
}

TEST_F(Controller, showsThatACaptureHasBegun) {
    launch();
    m_seen.clear();
    m_delegate->startCapture(Capturing::dictate);
    EXPECT_THAT(m_seen, ElementsAre("menu", "settings refreshed"));
}

TEST_F(Controller, comesToTheFrontWhenItIsStartedAgain) {
    launch();
    m_seen.clear();
    m_delegate->activate();
    EXPECT_THAT(m_seen, ElementsAre("settings"));
}

TEST_F(Controller, showsWarmingWhileTheServerRestarts) {
    launch();
    m_seen.clear();
    m_delegate->restartServer();
    settle();
    EXPECT_THAT(m_seen, ElementsAre("warming"));
}

TEST_F(Controller, letsTheLoginItemFollowTheProgramAtEveryStart) {
    launch();
    EXPECT_EQ(m_fakes.loginItem.follows, 1);
    EXPECT_FALSE(m_home.log().contains(QStringLiteral("login item")));
}

TEST_F(Controller, saysInTheLogWhyTheLoginItemDoesNotFollow) {
    m_fakes.loginItem.refusal = QStringLiteral("Permission denied");
    launch();
    EXPECT_TRUE(
        m_home.log().contains(QStringLiteral("login item not updated: Permission denied\n")));
}

TEST_F(Controller, handsTheClipboardOverWhenItEnds) {
    launch();
    m_delegate->applicationWillTerminate();
    EXPECT_TRUE(m_fakes.clipboard.handedOver);
}

TEST_F(Controller, worksWithoutAnyUserInterface) {
    m_delegate = std::make_unique<AppDelegate>(m_fakes.platform());
    m_delegate->applicationDidFinishLaunching();
    hold(shiftCmd);
    hold({});
    m_delegate->startCapture(Capturing::dictate);
    hold(Mods::opt);
    hold({});
    m_delegate->activate();
    EXPECT_EQ(m_delegate->cfg.dictateChords, (std::vector<std::int64_t>{12, 2}));
}

}  // namespace
}  // namespace sayloft
