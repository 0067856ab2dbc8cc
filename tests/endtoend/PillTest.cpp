// SPDX-License-Identifier: MIT
// The pill on a real desktop: what it shows, and what it leaves alone.
#include "tests/endtoend/Dictation.h"
#include "tests/support/Compositor.h"
#include "tests/support/FullScreenTerminal.h"
#include "tests/support/WaitUntil.h"

#include <QImage>

#include <array>
#include <optional>
#include <ostream>

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

// The pill's window at the bottom of the screen of 1280 by 800, and places in it.
constexpr QRect pillWindow(470, 666, 340, 110);
constexpr QPoint body(85, 55);
constexpr QPoint besideThePill(10, 10);
// Outside the pill, but within the rectangle around it.
constexpr std::array corners{QPoint(77, 30), QPoint(329, 30), QPoint(77, 79), QPoint(329, 79)};
constexpr QPoint middleOfScreen = pillWindow.topLeft() + QPoint(200, 55);

enum class Composition { none, picom };

void PrintTo(Composition composition, std::ostream* stream) {
    *stream << (composition == Composition::none ? "none" : "picom");
}

class PillOnDesktop : public Dictation, public testing::WithParamInterface<Composition> {
protected:
    PillOnDesktop() {
        if (GetParam() == Composition::picom)
            m_compositor.emplace(m_desk.display());
        m_terminal.emplace(m_desk.display());
    }

    /// What is on the screen where the pill's window is.
    [[nodiscard]] QImage screen() const {
        const QByteArray png =
            run(QStringLiteral("import"),
                {QStringLiteral("-window"), QStringLiteral("root"), QStringLiteral("-crop"),
                 QStringLiteral("%1x%2+%3+%4")
                     .arg(pillWindow.width())
                     .arg(pillWindow.height())
                     .arg(pillWindow.x())
                     .arg(pillWindow.y()),
                 QStringLiteral("+repage"), QStringLiteral("png:-")},
                {}, m_desk.display().environment());
        return QImage::fromData(png).convertToFormat(QImage::Format_RGB32);
    }

    [[nodiscard]] bool isPillShown() const { return screen().pixelColor(body).lightness() < 90; }

    [[nodiscard]] QByteArray xdotool(const QStringList& arguments) const {
        return run(QStringLiteral("xdotool"), arguments, {}, m_desk.display().environment());
    }

    /// The focus, the active window and all windows that the window manager lists.
    [[nodiscard]] QByteArray windows() const {
        return xdotool({QStringLiteral("getwindowfocus")}) +
               xdotool({QStringLiteral("getactivewindow")}) +
               run(QStringLiteral("xprop"),
                   {QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST_STACKING")}, {},
                   m_desk.display().environment());
    }

    /// With a compositor the shadow is there, which is faint.
    void expectNoBox(const QImage& empty) const {
        const QImage shown = screen();
        const int faint = GetParam() == Composition::none ? 0 : 90;
        for (const QPoint& corner : corners)
            EXPECT_LE(
                qAbs(shown.pixelColor(corner).lightness() - empty.pixelColor(corner).lightness()),
                faint);
    }

    /// Dictates and returns while the result is on the pill, for a minute.
    void dictateAndKeepThePill() {
        m_desk.startSayloft({RawAnswer::ok("a few words")}, R"("holdDuration":60)");
        m_desk.say();
        ASSERT_TRUE(m_desk.waitForTranscripts(1));
        ASSERT_TRUE(waitUntil([this] { return isPillShown(); }));
    }

    std::optional<Compositor> m_compositor;
    std::optional<FullScreenTerminal> m_terminal;
};

TEST_P(PillOnDesktop, isThereFromTheChordToTheEndOfTheHoldAndLeavesNothing) {
    const QImage empty = screen();
    m_desk.startSayloft({RawAnswer::ok("a few words")}, R"("holdDuration":0.5)");
    EXPECT_EQ(screen(), empty);
    m_desk.hold();
    EXPECT_TRUE(waitUntil([this] { return isPillShown(); }));
    expectNoBox(empty);
    m_desk.room().play(m_desk.soundFile());
    m_desk.letGo();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    EXPECT_TRUE(waitUntil([&] { return screen() == empty; }));
}

TEST_P(PillOnDesktop, leavesFocusAndWindowListAlone) {
    const QByteArray before = windows();
    m_desk.startSayloft({RawAnswer::ok("a few words")}, R"("holdDuration":0.5)");
    EXPECT_EQ(windows(), before);
    m_desk.hold();
    ASSERT_TRUE(waitUntil([this] { return isPillShown(); }));
    EXPECT_EQ(windows(), before);
    m_desk.room().play(m_desk.soundFile());
    m_desk.letGo();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    ASSERT_TRUE(waitUntil([this] { return !isPillShown(); }));
    EXPECT_EQ(windows(), before);
}

TEST_P(PillOnDesktop, letsClicksThroughToTheWindowBelow) {
    dictateAndKeepThePill();
    static_cast<void>(xdotool({QStringLiteral("mousemove"), QString::number(middleOfScreen.x()),
                               QString::number(middleOfScreen.y()), QStringLiteral("click"),
                               QStringLiteral("1")}));
    EXPECT_TRUE(waitUntil([this] { return m_terminal->received().contains("\033[M "); }));
    EXPECT_TRUE(isPillShown());
}

TEST_P(PillOnDesktop, staysAboveAWindowThatFillsTheScreenLater) {
    dictateAndKeepThePill();
    const FullScreenTerminal later(m_desk.display(), QStringLiteral("#00ff00"));
    ASSERT_TRUE(
        waitUntil([this] { return screen().pixelColor(besideThePill) == QColor(Qt::green); }));
    turnEventLoopFor(600ms);
    EXPECT_TRUE(isPillShown());
}

TEST_P(PillOnDesktop, isOnEveryWorkspace) {
    dictateAndKeepThePill();
    static_cast<void>(xdotool({QStringLiteral("set_desktop"), QStringLiteral("1")}));
    ASSERT_TRUE(waitUntil([this] { return screen().pixelColor(besideThePill) != Qt::white; }));
    EXPECT_TRUE(isPillShown());
}

TEST_P(PillOnDesktop, hasNoStatsInTheMinimalStyle) {
    m_desk.startSayloft({RawAnswer::ok("a few words")}, R"("pillStyle":"minimal")");
    const QPoint stats(290, 40);
    m_desk.hold();
    ASSERT_TRUE(waitUntil([this] { return isPillShown(); }));
    EXPECT_GT(screen().pixelColor(stats).lightness(), 200);
    m_desk.letGo();
}

INSTANTIATE_TEST_SUITE_P(Desktops, PillOnDesktop,
                         testing::Values(Composition::none, Composition::picom),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace sayloft::test
