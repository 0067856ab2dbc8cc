// SPDX-License-Identifier: MIT
// The way from the window of a first run to dictation with the model that comes with the program.
#include "tests/support/Nginx.h"
#include "tests/support/ServedCatalogue.h"
#include "ui/tests/OnboardFixture.h"

#include <algorithm>

namespace sayloft {
namespace {

const QString multilingual = QStringLiteral("multilingual");
const QString starterKey = QStringLiteral("starter");

class OnboardStarter : public test::OnboardFixture {
protected:
    void openWithStarter() {
        provideModel(starterKey);
        open();
    }

    [[nodiscard]] bool isOffered() const {
        const auto labels = window().findChildren<QLabel*>();
        const bool isTold = std::any_of(labels.begin(), labels.end(), [](const QLabel* each) {
            return each->isVisible() &&
                   each->text() ==
                       QStringLiteral("The small starter model works at once, in English.");
        });
        EXPECT_EQ(isTold, starter()->isVisible());
        return starter()->isVisible();
    }

    [[nodiscard]] bool downloadEnds() const {
        return test::waitUntil([this] { return !delegate->models().downloading(); });
    }

    void serveSlowly() { catalogue.serve(multilingual, QByteArray(60'000, 'm')); }

    test::Nginx nginx{"location / { limit_rate 40k; }"};
    test::ServedCatalogue catalogue{nginx};
};

TEST_F(OnboardStarter, isOfferedWhileTheConfiguredModelIsDownloaded) {
    serveSlowly();
    openWithStarter();
    ASSERT_EQ(delegate->models().downloadingKey(), multilingual);
    EXPECT_TRUE(isOffered());
    EXPECT_TRUE(starter()->isEnabled());
    ASSERT_TRUE(downloadEnds());
    EXPECT_FALSE(isOffered()) << "nobody needs it any more";
}

TEST_F(OnboardStarter, isOfferedAfterADownloadThatFailed) {
    openWithStarter();
    ASSERT_TRUE(downloadEnds());
    EXPECT_EQ(modelStatus(), notYet);
    EXPECT_TRUE(isOffered());
}

TEST_F(OnboardStarter, isNotOfferedWhereTheConfiguredModelIsThere) {
    provideModel(multilingual);
    openWithStarter();
    EXPECT_FALSE(isOffered());
}

TEST_F(OnboardStarter, isNotOfferedWhereItIsMissingItself) {
    open();
    EXPECT_FALSE(isOffered());
}

TEST_F(OnboardStarter, isNotOfferedWhereItIsConfiguredAlready) {
    delegate->cfg.model = starterKey;
    openWithStarter();
    EXPECT_FALSE(isOffered());
    EXPECT_EQ(modelStatus(), ready);
}

TEST_F(OnboardStarter, isInUseAfterOneClick) {
    openWithStarter();
    ASSERT_TRUE(downloadEnds());
    click(starter());
    EXPECT_EQ(Config::load().model, starterKey);
    EXPECT_EQ(modelStatus(), ready);
    EXPECT_FALSE(isOffered());
    EXPECT_TRUE(window().isVisible());
}

TEST_F(OnboardStarter, leavesTheDownloadRunningAndStaysInUseWhenThatEnds) {
    serveSlowly();
    openWithStarter();
    click(starter());
    EXPECT_EQ(Config::load().model, starterKey);
    EXPECT_EQ(delegate->models().downloadingKey(), multilingual);
    EXPECT_TRUE(modelStatus().startsWith(QStringLiteral("Downloading… ")));
    EXPECT_FALSE(isOffered());
    ASSERT_TRUE(downloadEnds());
    EXPECT_TRUE(modelDownloaded(multilingual));
    EXPECT_EQ(Config::load().model, starterKey);
    EXPECT_EQ(modelStatus(), ready);
}

TEST_F(OnboardStarter, takesNoRoomOnceItIsChosen) {
    openWithStarter();
    ASSERT_TRUE(downloadEnds());
    const auto isBelowTheModel = [this] { return hotkeys()->y() - model()->y(); };
    const int offered = isBelowTheModel();
    click(starter());
    ASSERT_TRUE(test::waitUntil([&] { return isBelowTheModel() < offered; }));
    const int chosen = isBelowTheModel();
    window().close();
    appWindows->onboardWC.reset();
    open();
    EXPECT_EQ(isBelowTheModel(), chosen) << "as in a window that never offered it";
}

}  // namespace
}  // namespace sayloft
