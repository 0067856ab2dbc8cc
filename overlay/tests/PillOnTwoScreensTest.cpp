// SPDX-License-Identifier: MIT
// The pill where there are two screens, the right one with twice as many pixels to a point.
#include "overlay/PillOverlay.h"

#include "platform/linux/WindowEffectsX11.h"
#include "platform/linux/XcbHandles.h"
#include "tests/support/TwoScreens.h"
#include "tests/support/WaitUntil.h"

#include <QApplication>
#include <QScreen>

#include <memory>

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

std::unique_ptr<const TwoScreens> theScreens;

class PillOnTwoScreens : public testing::Test {
protected:
    ~PillOnTwoScreens() override {
        theScreens->setMode(TwoScreens::left, QStringLiteral("1920x1080"));
        theScreens->switchOnRightOfTheOther(TwoScreens::right);
        theScreens->makeMain(TwoScreens::left);
        EXPECT_TRUE(isMain(TwoScreens::left));
    }

    static bool isMain(const QString& name) {
        return waitUntil([&] { return QGuiApplication::primaryScreen()->name() == name; });
    }

    /// Where the window is among the pixels of both screens, as the server says.
    [[nodiscard]] QRect pixels() const {
        const auto id = static_cast<xcb_window_t>(overlay.window().winId());
        const XcbOwned<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(
            m_observer.get(), xcb_get_geometry(m_observer.get(), id), nullptr));
        const XcbOwned<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
            m_observer.get(),
            xcb_translate_coordinates(m_observer.get(), id, rootWindow(m_observer.get()), 0, 0),
            nullptr));
        return {place->dst_x, place->dst_y, size->width, size->height};
    }

    [[nodiscard]] bool comesTo(const QRect& rect) const {
        return waitUntil([&] { return pixels() == rect; });
    }

    // 24 points above the lower edge, in the middle.
    static constexpr QRect onTheLeft{790, 1080 - 24 - 110, 340, 110};
    static constexpr QRect onTheRight{1920 + 960 - 340, 1080 - 2 * (24 + 110), 680, 220};

    WindowEffectsX11 m_effects;
    XcbConnection m_observer = connectToXServer();
    PillOverlay overlay{[] { return 0.0; }, m_effects};
};

TEST_F(PillOnTwoScreens, isOnTheMainOne) {
    EXPECT_TRUE(comesTo(onTheLeft));
    EXPECT_EQ(overlay.window().pos(), QPoint(790, 946));
}

TEST_F(PillOnTwoScreens, isOnTheRightOneAfterTheMainOneWasSwitchedWhileRecording) {
    overlay.setActive(true);
    ASSERT_TRUE(comesTo(onTheLeft));
    theScreens->makeMain(TwoScreens::right);
    ASSERT_TRUE(isMain(TwoScreens::right));
    overlay.setActive(true);
    EXPECT_TRUE(comesTo(onTheRight));
    EXPECT_EQ(overlay.window().devicePixelRatioF(), 2);
}

TEST_F(PillOnTwoScreens, comesBackWithTheMainOne) {
    theScreens->makeMain(TwoScreens::right);
    EXPECT_TRUE(comesTo(onTheRight));
    theScreens->makeMain(TwoScreens::left);
    EXPECT_TRUE(comesTo(onTheLeft));
}

TEST_F(PillOnTwoScreens, followsTheMainOneToAnotherResolution) {
    theScreens->setMode(TwoScreens::left, QStringLiteral("1280x1024"));
    EXPECT_TRUE(comesTo({470, 1024 - 24 - 110, 340, 110}));
}

TEST_F(PillOnTwoScreens, goesToTheOtherOneWhenTheMainOneIsSwitchedOff) {
    theScreens->makeMain(TwoScreens::right);
    ASSERT_TRUE(comesTo(onTheRight));
    theScreens->switchOff(TwoScreens::right);
    EXPECT_TRUE(comesTo(onTheLeft));
}

}  // namespace
}  // namespace sayloft::test

namespace {

int runTests(int argc, char** argv) {
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

}  // namespace

int main(int argc, char** argv) {
    using sayloft::test::TwoScreens;
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    sayloft::test::theScreens = std::make_unique<TwoScreens>();
    qputenv("QT_SCREEN_SCALE_FACTORS",
            (TwoScreens::left + QStringLiteral("=1;") + TwoScreens::right + QStringLiteral("=2"))
                .toLatin1());
    const int result = runTests(argc, argv);
    sayloft::test::theScreens.reset();
    return result;
}
