// SPDX-License-Identifier: MIT
// The tray item on panels that come, crash and paint.
#include "app/StatusItem.h"
#include "tests/endtoend/TrayDesktop.h"
#include "tests/support/VisibleWindows.h"

#include <cmath>
#include <csignal>
#include <utility>
#include <vector>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::Tray;
using test::TrayHostKind;

// Of the symbol where the panel does not colour it.
const QColor readyColour(134, 134, 134);

class EveryTray : public Tray, public testing::WithParamInterface<TrayHostKind> {
protected:
    /// What is left of the colour where the panel shines through it.
    [[nodiscard]] QColor paled(const QColor& colour) const {
        constexpr double opacity = 140.0 / 255;
        const QColor panel = pictureOfThePanel().pixelColor(4, 4);
        const auto mixed = [](int over, int under) {
            return static_cast<int>(std::lround(opacity * over + (1 - opacity) * under));
        };
        return {mixed(colour.red(), panel.red()), mixed(colour.green(), panel.green()),
                mixed(colour.blue(), panel.blue())};
    }
};

TEST_P(EveryTray, showsTheItemAtOnce) {
    startPanel(GetParam());
    startSayloft();
    EXPECT_TRUE(isShown());
}

TEST_P(EveryTray, showsTheItemWhenItComesLater) {
    startSayloft();
    EXPECT_FALSE(m_client.isSayloftShown());
    startPanel(GetParam());
    EXPECT_TRUE(isShown());
}

TEST_P(EveryTray, showsTheItemAgainAfterACrash) {
    startPanel(GetParam());
    startSayloft();
    ASSERT_TRUE(isShown());
    m_panel->program().signal(SIGKILL);
    ASSERT_TRUE(m_panel->program().waitForEnd(5s));
    m_panel.reset();
    ASSERT_TRUE(test::waitUntil([this] { return !m_client.isTrayThere(); }));
    startPanel(GetParam());
    EXPECT_TRUE(isShown());
}

TEST_P(EveryTray, showsTheItemAgainOnTheNextBus) {
    writeHistory(R"(["a"])");
    startPanel(GetParam());
    startSayloft();
    ASSERT_TRUE(isShown());
    m_bus.kill();
    m_panel.reset();
    m_bus.restart();
    m_client = test::TrayClient(m_bus);
    startPanel(GetParam());
    EXPECT_TRUE(isShown());
    m_client.click(QStringLiteral("Clear History"));
    EXPECT_TRUE(
        test::waitUntil([this] { return m_client.idOf(QStringLiteral("(empty)")).has_value(); }));
}

TEST_P(EveryTray, paintsEveryState) {
    startPanel(GetParam());
    m_environment.insert(QStringLiteral("HOME"), home());
    test::ChildProgram item(QStringLiteral(SAYLOFT_TRAY_STATES), {}, m_environment);
    const std::vector<std::pair<IconState, QColor>> states{
        {IconState::processing, QColor(35, 116, 225)},
        {IconState::error, QColor(255, 149, 0)},
        {IconState::recording, QColor(224, 49, 43)},
        {IconState::warming, paled(readyColour)},
        {IconState::ready, readyColour},
    };
    for (const auto& row : states) {
        const QColor& colour = row.second;
        EXPECT_FALSE(panelHas(colour)) << colour.name().toStdString();
        item.process().write(QByteArray::number(static_cast<int>(row.first)) + '\n');
        EXPECT_TRUE(test::waitUntil([&] { return panelHas(colour); }))
            << colour.name().toStdString();
    }
}

TEST_P(EveryTray, opensTheMenuOnALeftClick) {
    startPanel(GetParam());
    startSayloft();
    std::optional<QPoint> place;
    ASSERT_TRUE(test::waitUntil([&] { return (place = placeOf(readyColour)).has_value(); }))
        << m_client.property(QStringLiteral("Title")).toStdString();
    const QString any = QStringLiteral(".");
    const qsizetype before = test::visibleWindows(m_display, any).size();
    test::run(QStringLiteral("xdotool"),
              {QStringLiteral("mousemove"), QString::number(place->x()),
               QString::number(place->y()), QStringLiteral("click"), QStringLiteral("1")},
              {}, m_environment);
    EXPECT_TRUE(
        test::waitUntil([&] { return test::visibleWindows(m_display, any).size() > before; }));
}

INSTANTIATE_TEST_SUITE_P(Panels, EveryTray,
                         testing::Values(TrayHostKind::xfcePanel, TrayHostKind::lxqtPanel),
                         [](const auto& kind) {
                             return kind.param == TrayHostKind::xfcePanel ? "Xfce" : "LXQt";
                         });

// Without a tray

TEST_F(Tray, theProgramRunsWithoutASessionBus) {
    m_environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    startSayloft();
    EXPECT_TRUE(m_sayloft->waitForHelper());
    m_sayloft->program().signal(SIGTERM);
    ASSERT_TRUE(m_sayloft->program().waitForEnd(8s));
    EXPECT_EQ(m_sayloft->program().exitCode(), 0);
}

}  // namespace
}  // namespace sayloft
