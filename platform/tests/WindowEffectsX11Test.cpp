// SPDX-License-Identifier: MIT
#include "platform/linux/WindowEffectsX11.h"

#include "platform/linux/XcbHandles.h"
#include "tests/support/BoundingShape.h"
#include "tests/support/Compositor.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WidgetTest.h"

#include <QRegion>
#include <QWidget>

#include <cstdint>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using test::waitUntil;

class WindowEffectsX11Test : public testing::Test {
protected:
    WindowEffectsX11Test() {
        m_window.resize(100, 50);
        m_window.show();
        m_effects.onChange = [this] { ++m_changes; };
    }
    ~WindowEffectsX11Test() override {
        xcb_delete_property(m_observer.get(), rootWindow(m_observer.get()), m_blurAtom);
        xcb_flush(m_observer.get());
    }

    void startCompositor() {
        m_compositor.emplace(test::widgetTestDisplay());
        ASSERT_TRUE(waitUntil([this] { return m_effects.isTranslucent(); }));
    }

    /// Says that windows can be blurred, as KWin does.
    void announceBlur() {
        const std::uint32_t nothing = 0;
        xcb_change_property(m_observer.get(), XCB_PROP_MODE_REPLACE, rootWindow(m_observer.get()),
                            m_blurAtom, XCB_ATOM_CARDINAL, 32, 1, &nothing);
        xcb_flush(m_observer.get());
        ASSERT_TRUE(waitUntil([this] { return m_effects.blurs(); }));
    }

    /// What others see of the window.
    [[nodiscard]] QRegion shape() const { return test::boundingShape(m_observer.get(), window()); }

    [[nodiscard]] std::vector<std::uint32_t> blurProperty() const {
        const XcbOwned<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(m_observer.get(),
                                   xcb_get_property(m_observer.get(), 0, windowId(), m_blurAtom,
                                                    XCB_ATOM_CARDINAL, 0, 1000),
                                   nullptr));
        const auto* numbers =
            static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        return {numbers, numbers + xcb_get_property_value_length(reply.get()) / 4};
    }

    [[nodiscard]] WId window() const { return m_window.winId(); }
    [[nodiscard]] xcb_window_t windowId() const { return static_cast<xcb_window_t>(window()); }

    XcbConnection m_observer = connectToXServer();
    xcb_atom_t m_blurAtom = internAtom(m_observer.get(), "_KDE_NET_WM_BLUR_BEHIND_REGION");
    QWidget m_window;
    WindowEffectsX11 m_effects;
    std::optional<test::Compositor> m_compositor;
    int m_changes = 0;
};

TEST_F(WindowEffectsX11Test, seesACompositorComeAndGo) {
    EXPECT_FALSE(m_effects.isTranslucent());
    startCompositor();
    EXPECT_EQ(m_changes, 1);
    m_compositor.reset();
    EXPECT_TRUE(waitUntil([this] { return !m_effects.isTranslucent(); }));
    EXPECT_EQ(m_changes, 2);
}

TEST_F(WindowEffectsX11Test, seesACompositorThatWasThereFirst) {
    startCompositor();
    const WindowEffectsX11 later;
    EXPECT_TRUE(later.isTranslucent());
}

TEST_F(WindowEffectsX11Test, blursOnlyWhereTheCompositorSaysSo) {
    EXPECT_FALSE(m_effects.blurs());
    startCompositor();
    EXPECT_FALSE(m_effects.blurs());
    announceBlur();
    m_compositor.reset();
    EXPECT_TRUE(waitUntil([this] { return !m_effects.blurs(); }));
}

TEST_F(WindowEffectsX11Test, leavesOfAWindowWhatIsInTheShape) {
    const QRegion corners = QRegion(0, 0, 10, 10) + QRect(90, 40, 10, 10);
    m_effects.setShape(window(), corners);
    EXPECT_TRUE(waitUntil([&] { return shape() == corners; }));
    m_effects.setShape(window(), {});
    EXPECT_TRUE(waitUntil([this] { return shape().isEmpty(); }));
}

TEST_F(WindowEffectsX11Test, namesTheRegionToBlurInPixels) {
    m_effects.blurBehind(window(), QRegion(1, 2, 30, 4) + QRect(5, 10, 6, 7));
    const std::vector<std::uint32_t> expected{1, 2, 30, 4, 5, 10, 6, 7};
    EXPECT_TRUE(waitUntil([&] { return blurProperty() == expected; }));
}

// A property without rectangles would blur the whole window.
TEST_F(WindowEffectsX11Test, blursNothingOfAnEmptyRegion) {
    m_effects.blurBehind(window(), QRegion(1, 2, 30, 4));
    ASSERT_TRUE(waitUntil([this] { return !blurProperty().empty(); }));
    m_effects.blurBehind(window(), {});
    EXPECT_TRUE(waitUntil([this] { return blurProperty().empty(); }));
}

}  // namespace
}  // namespace sayloft
