// SPDX-License-Identifier: MIT
#include "overlay/PillView.h"

#include "tests/support/WaitUntil.h"

#include <QCoreApplication>
#include <QEvent>

#include <limits>
#include <memory>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::turnEventLoopFor;
using test::waitUntil;

/// Counts how often a widget is painted.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QObject& widget) { widget.installEventFilter(this); }
    int paints = 0;

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

class PillViewTest : public testing::Test {
protected:
    void configureHold(double seconds) { view->configure(false, 0.3, 0.3, seconds); }
    void show() {
        view->setRecording();
        tick(60);
    }
    void tick(int times) {
        for (int i = 0; i < times; ++i)
            view->tick();
    }
    [[nodiscard]] bool hides() const { return view->pill().presenceTarget == 0; }

    std::unique_ptr<PillView> view = std::make_unique<PillView>();
};

TEST_F(PillViewTest, hidesWhenTheHoldIsOver) {
    configureHold(0.05);
    show();
    view->holdThenHide();
    EXPECT_FALSE(hides());
    EXPECT_TRUE(waitUntil([this] { return hides(); }));
}

TEST_F(PillViewTest, keepsTheResultForTheWholeHold) {
    configureHold(0.3);
    show();
    const auto begin = PillAnimation::Clock::now();
    view->showStats(120);
    ASSERT_TRUE(waitUntil([this] { return hides(); }));
    EXPECT_GE(PillAnimation::Clock::now() - begin, 300ms);
}

class PillViewWithoutHold : public PillViewTest, public testing::WithParamInterface<double> {};

TEST_P(PillViewWithoutHold, hidesAtTheNextTurnOfTheMainLoop) {
    configureHold(GetParam());
    show();
    view->holdThenHide();
    EXPECT_FALSE(hides());
    QCoreApplication::processEvents();
    EXPECT_TRUE(hides());
}

INSTANTIATE_TEST_SUITE_P(Holds, PillViewWithoutHold,
                         testing::Values(0.0, -0.0, -1.0, -1e300,
                                         -std::numeric_limits<double>::infinity()));

TEST_F(PillViewTest, takesAHoldThatIsTooLongToCountAsVeryLong) {
    for (const double seconds : {1e9, 1e300, std::numeric_limits<double>::infinity()}) {
        configureHold(seconds);
        show();
        view->holdThenHide();
        turnEventLoopFor(20ms);
        EXPECT_FALSE(hides()) << seconds;
    }
}

TEST_F(PillViewTest, doesNotHideANewRecordingWithAnOlderHold) {
    configureHold(0.05);
    show();
    view->showStats(120);
    view->setRecording();
    turnEventLoopFor(150ms);
    EXPECT_FALSE(hides());
}

TEST_F(PillViewTest, mayGoWhileAHoldRuns) {
    configureHold(0.02);
    view->holdThenHide();
    view.reset();
    turnEventLoopFor(50ms);
}

TEST_F(PillViewTest, takesRatesBeyondAllAtOnceAsAllAtOnce) {
    view->configure(true, 25, -3, 1);
    view->setRecording();
    tick(3);
    EXPECT_EQ(view->pill().presence, 1);
    view->shrink();
    tick(3);
    EXPECT_EQ(view->pill().presence, 1);
    EXPECT_TRUE(view->pill().minimal);
}

TEST_F(PillViewTest, paintsNothingWhileHiddenButOneLastFrame) {
    view->show();
    ASSERT_TRUE(waitUntil([this] { return view->isVisible(); }));
    turnEventLoopFor(100ms);
    PaintCounter counter(*view);
    tick(100);
    turnEventLoopFor(50ms);
    EXPECT_EQ(counter.paints, 0);

    show();
    ASSERT_TRUE(waitUntil([&] { return counter.paints > 0; }));
    view->shrink();
    tick(17);
    turnEventLoopFor(50ms);
    ASSERT_FALSE(view->pill().isVisible());
    const int paintsUntilHidden = counter.paints;
    tick(100);
    turnEventLoopFor(50ms);
    EXPECT_EQ(counter.paints, paintsUntilHidden);
}

TEST_F(PillViewTest, hasAnOutlineOnlyWhileItIsSeen) {
    EXPECT_TRUE(view->outline().isEmpty());
    show();
    const QRectF outline = view->outline();
    EXPECT_NEAR(outline.width(), 256, 0.01);
    EXPECT_NEAR(outline.center().y(), 55, 0.01);
    view->shrink();
    tick(60);
    EXPECT_TRUE(view->outline().isEmpty());
}

}  // namespace
}  // namespace sayloft
