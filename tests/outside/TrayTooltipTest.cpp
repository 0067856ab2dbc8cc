// SPDX-License-Identifier: MIT
// What a panel says when the mouse rests on the item.
#include "tests/outside/WindowDesk.h"
#include "tests/support/TrayClient.h"
#include "tests/support/TrayHost.h"
#include "tests/support/WaitUntil.h"

#include <chrono>

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

class TrayTooltip : public testing::Test {
protected:
    void start() {
        m_desk.setVariable(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("LXQt"));
        m_desk.startSayloft();
        const TrayClient client(m_desk.bus());
        ASSERT_TRUE(client.tooltipSays(QStringLiteral("no sound server")));
    }

    /// Moves the mouse about on the item, since panels look at movements.
    [[nodiscard]] bool appears(const QString& text) {
        int step = 0;
        return waitUntil(
            [&] {
                m_desk.pointer().moveTo(itemPlace + QPoint(++step % 2, 0));
                turnEventLoopFor(900ms);
                return m_desk.windows().findWindow(text).has_value();
            },
            20s);
    }

    static constexpr QPoint itemPlace{1260, 15};

    WindowDesk m_desk;
    const TrayHost m_panel{TrayHostKind::lxqtPanel, m_desk.display(), m_desk.bus()};
};

TEST_F(TrayTooltip, hasTheReasonOnThePanelOfLxqtWhichShowsTitlesOnly) {
    ASSERT_NO_FATAL_FAILURE(start());
    EXPECT_TRUE(appears(QStringLiteral("Sayloft: ready (no sound server)")));
}

}  // namespace
}  // namespace sayloft::test
