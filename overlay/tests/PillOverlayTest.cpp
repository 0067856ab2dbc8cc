// SPDX-License-Identifier: MIT
#include "overlay/PillOverlay.h"

#include "overlay/CapsuleRegion.h"
#include "platform/linux/WindowEffectsX11.h"
#include "platform/linux/XcbHandles.h"
#include "tests/support/BoundingShape.h"
#include "tests/support/Compositor.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WidgetTest.h"

#include <QCoreApplication>
#include <QScreen>

#include <memory>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::turnEventLoopFor;
using test::waitUntil;

class PillOverlayTest : public testing::Test {
protected:
    PillOverlayTest() { overlay->configure(false, 0.3, 0.3, 0.1); }

    [[nodiscard]] const PillAnimation& pill() const { return overlay->view().pill(); }
    [[nodiscard]] bool becomesVisible() const {
        return waitUntil([this] { return pill().presence > 0.9; });
    }
    [[nodiscard]] bool becomesHidden() const {
        return waitUntil([this] { return !pill().isVisible(); });
    }

    /// What the server has of the window.
    [[nodiscard]] QRegion shape() const {
        return test::boundingShape(observer.get(), overlay->window().winId());
    }

    // Equal regions may be made of other rectangles.
    [[nodiscard]] bool hasShape(const QRegion& region) const {
        return shape().xored(region).isEmpty();
    }

    const QRegion wholePill = capsuleRegion(QRectF(75, 28, 256, 54), 1);
    XcbConnection observer = connectToXServer();
    double level = 0;
    WindowEffectsX11 effects;
    std::unique_ptr<PillOverlay> overlay =
        std::make_unique<PillOverlay>([this] { return level; }, effects);
};

TEST_F(PillOverlayTest, isAtTheBottomOfTheScreenInTheMiddle) {
    const QRect screen = overlay->window().screen()->geometry();
    EXPECT_EQ(overlay->window().geometry(),
              QRect((screen.width() - 340) / 2, screen.height() - 24 - 110, 340, 110));
}

TEST_F(PillOverlayTest, isThereBeforeThereIsAnythingToSee) {
    EXPECT_TRUE(overlay->window().isVisible());
    EXPECT_FALSE(pill().isVisible());
}

TEST_F(PillOverlayTest, showsItselfForARecordingAndHidesWhenThereIsNone) {
    overlay->setActive(true);
    EXPECT_TRUE(becomesVisible());
    overlay->setActive(false);
    EXPECT_TRUE(becomesHidden());
}

TEST_F(PillOverlayTest, staysHiddenWhenActivatedAndDeactivatedAtOnce) {
    overlay->setActive(true);
    overlay->setActive(false);
    turnEventLoopFor(300ms);
    EXPECT_EQ(pill().presenceTarget, 0);
    EXPECT_FALSE(pill().isVisible());
    EXPECT_FALSE(pill().recStart.has_value());
}

TEST_F(PillOverlayTest, obeysAfterWhatTheCallerIsDoing) {
    overlay->setActive(true);
    EXPECT_EQ(pill().presenceTarget, 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(pill().presenceTarget, 1);
}

TEST_F(PillOverlayTest, obeysInTheOrderOfTheCalls) {
    overlay->setActive(true);
    overlay->stopTimer();
    overlay->showStats(90);
    overlay->holdThenHide();
    QCoreApplication::processEvents();
    EXPECT_EQ(pill().statsToken, 3);
    EXPECT_EQ(pill().mode, StatMode::wpm);
    EXPECT_EQ(pill().wpmTarget, 90);
    EXPECT_FALSE(pill().recStart.has_value());
    EXPECT_TRUE(becomesHidden());
}

TEST_F(PillOverlayTest, takesStyleAndTimings) {
    overlay->configure(true, 0.25, 0.5, 3);
    QCoreApplication::processEvents();
    EXPECT_TRUE(pill().minimal);
    EXPECT_EQ(pill().appearRate, 0.25);
    EXPECT_EQ(pill().hideRate, 0.5);
    EXPECT_EQ(pill().holdDuration, 3);
}

TEST_F(PillOverlayTest, followsTheLevelWhileRecording) {
    overlay->setActive(true);
    level = 0.75;
    EXPECT_TRUE(waitUntil([this] { return pill().level > 0.74; }));
    overlay->stopTimer();
    EXPECT_TRUE(waitUntil([this] { return pill().level < 0.01; }));
}

TEST_F(PillOverlayTest, doesNotWakeUpWhileHidden) {
    ASSERT_TRUE(waitUntil([this] { return !overlay->isTicking(); }));
    overlay->setActive(true);
    ASSERT_TRUE(becomesVisible());
    EXPECT_TRUE(overlay->isTicking());
    overlay->setActive(false);
    EXPECT_TRUE(waitUntil([this] { return !overlay->isTicking(); }));
}

TEST_F(PillOverlayTest, mayGoWhileCommandsWait) {
    overlay->setActive(true);
    overlay->showStats(12);
    overlay.reset();
    turnEventLoopFor(200ms);
}

TEST_F(PillOverlayTest, isShapedToThePillWithoutACompositorAndToNothingWhileHidden) {
    EXPECT_TRUE(shape().isEmpty());
    overlay->setActive(true);
    EXPECT_TRUE(waitUntil([this] { return hasShape(wholePill); }));
    overlay->setActive(false);
    EXPECT_TRUE(waitUntil([this] { return shape().isEmpty(); }));
}

TEST_F(PillOverlayTest, hasItsWholeWindowAsLongAsThereIsACompositor) {
    overlay->setActive(true);
    ASSERT_TRUE(waitUntil([this] { return hasShape(wholePill); }));
    {
        const test::Compositor compositor(test::widgetTestDisplay());
        EXPECT_TRUE(waitUntil([this] { return hasShape(QRegion(0, 0, 340, 110)); }));
    }
    EXPECT_TRUE(waitUntil([this] { return hasShape(wholePill); }));
}

}  // namespace
}  // namespace sayloft
