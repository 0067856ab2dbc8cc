// SPDX-License-Identifier: MIT
#include "platform/linux/FocusX11.h"

#include "tests/support/ChildProgram.h"
#include "tests/support/SelectionRequestor.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XServer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace sayloft::test {
namespace {

struct ClassRow {
    const char* description;
    const char* windowClass;
    bool isTerminal;
};

class WindowClass : public testing::TestWithParam<ClassRow> {};

TEST_P(WindowClass, tellsWhetherAWindowIsATerminal) {
    EXPECT_EQ(pastesWithShiftInsert(GetParam().windowClass), GetParam().isTerminal);
}

INSTANTIATE_TEST_SUITE_P(
    FocusX11, WindowClass,
    testing::Values(ClassRow{"xterm", "XTerm", true}, ClassRow{"uxterm", "UXTerm", true},
                    ClassRow{"urxvt", "URxvt", true}, ClassRow{"xfce", "Xfce4-terminal", true},
                    ClassRow{"gnome", "Gnome-terminal", true}, ClassRow{"kgx", "kgx", true},
                    ClassRow{"console", "org.gnome.Console", true},
                    ClassRow{"mate", "Mate-terminal", true}, ClassRow{"lxde", "Lxterminal", true},
                    ClassRow{"terminator", "Terminator", true}, ClassRow{"tilix", "Tilix", true},
                    ClassRow{"kitty", "kitty", true}, ClassRow{"alacritty", "Alacritty", true},
                    ClassRow{"konsole", "konsole", true}, ClassRow{"st", "st-256color", true},
                    ClassRow{"foot", "foot", true},
                    ClassRow{"wezterm", "org.wezfurlong.wezterm", true},
                    ClassRow{"guake", "Guake", true}, ClassRow{"qterminal", "qterminal", true},
                    ClassRow{"otherCase", "XTERM", true}, ClassRow{"editor", "Mousepad", false},
                    ClassRow{"none", "", false}, ClassRow{"partOfAName", "xterminator", false}),
    [](const auto& row) { return row.param.description; });

class FocusX11Test : public testing::Test {
protected:
    void focusNothing(xcb_window_t window) {
        xcb_set_input_focus(connection.get(), XCB_INPUT_FOCUS_NONE, window, XCB_CURRENT_TIME);
        sync();
    }

    void setActiveWindow(xcb_window_t window) {
        xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, rootWindow(connection.get()),
                            internAtom(connection.get(), "_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 32,
                            1, &window);
        sync();
    }

    void movePointer(std::int16_t x, std::int16_t y) {
        xcb_warp_pointer(connection.get(), XCB_NONE, rootWindow(connection.get()), 0, 0, 0, 0, x,
                         y);
        sync();
    }

    void sync() {
        const XcbOwned<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
            connection.get(), xcb_get_input_focus(connection.get()), nullptr));
        ASSERT_TRUE(reply);
    }

    XServer server;
    XcbConnection connection = connectToXServer();
    FocusX11 focus{connection.get()};
};

TEST_F(FocusX11Test, isTheWindowWithTheInputFocusAndItsClass) {
    SelectionRequestor program;
    program.takeFocus("Mousepad");
    EXPECT_EQ(focus.focused().window, program.window());
    EXPECT_EQ(focus.focused().windowClass, "Mousepad");
}

TEST_F(FocusX11Test, onAChildHasTheClassOfTheWindowAroundIt) {
    SelectionRequestor program;
    program.takeFocus("Mousepad");
    const xcb_window_t child = xcb_generate_id(connection.get());
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, child, program.window(), 0, 0, 5, 5,
                      0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(connection.get(), child);
    xcb_set_input_focus(connection.get(), XCB_INPUT_FOCUS_NONE, child, XCB_CURRENT_TIME);
    sync();
    EXPECT_EQ(focus.focused().window, child);
    EXPECT_EQ(focus.focused().windowClass, "Mousepad");
}

TEST_F(FocusX11Test, onNothingIsTheWindowThatTheWindowManagerCallsActive) {
    SelectionRequestor program;
    program.takeFocus("Mousepad");
    setActiveWindow(program.window());
    focusNothing(XCB_INPUT_FOCUS_NONE);
    EXPECT_EQ(focus.focused().window, program.window());
    EXPECT_EQ(focus.focused().windowClass, "Mousepad");
}

TEST_F(FocusX11Test, onNothingIsNoWindowWhereNoneIsActive) {
    SelectionRequestor program;
    program.takeFocus("Mousepad");
    focusNothing(XCB_INPUT_FOCUS_NONE);
    EXPECT_EQ(focus.focused().window, xcb_window_t{XCB_WINDOW_NONE});
}

TEST_F(FocusX11Test, thatFollowsThePointerIsTheWindowUnderIt) {
    SelectionRequestor program;
    program.takeFocus("Mousepad");
    focusNothing(XCB_INPUT_FOCUS_POINTER_ROOT);
    movePointer(60, 60);
    EXPECT_EQ(focus.focused().windowClass, "Mousepad");
    movePointer(700, 700);
    EXPECT_EQ(focus.focused().window, xcb_window_t{XCB_WINDOW_NONE});
}

TEST_F(FocusX11Test, knowsARealTerminal) {
    const ChildProgram xterm(QStringLiteral("xterm"),
                             {QStringLiteral("-e"), QStringLiteral("cat")});
    ASSERT_TRUE(waitUntil([&] {
        const QByteArray found =
            run(QStringLiteral("sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("xdotool search --onlyvisible --class XTerm || true")});
        return !found.trimmed().isEmpty();
    }));
    run(QStringLiteral("xdotool"),
        {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--class"),
         QStringLiteral("XTerm"), QStringLiteral("windowfocus"), QStringLiteral("--sync")});
    EXPECT_TRUE(pastesWithShiftInsert(focus.focused().windowClass))
        << focus.focused().windowClass.toStdString();
}

TEST_F(FocusX11Test, countsTwoConnectionsOfOneProcessAsOneProgram) {
    const SelectionRequestor one;
    const SelectionRequestor other;
    EXPECT_TRUE(focus.sameProgram(one.window(), one.window()));
    EXPECT_TRUE(focus.sameProgram(one.window(), other.window()));
    EXPECT_FALSE(focus.sameProgram(one.window(), XCB_WINDOW_NONE));
    EXPECT_FALSE(focus.sameProgram(XCB_WINDOW_NONE, XCB_WINDOW_NONE));
}

TEST_F(FocusX11Test, countsWindowsOfTwoProcessesAsTwoPrograms) {
    const SelectionRequestor one;
    const ChildProgram xterm(QStringLiteral("xterm"),
                             {QStringLiteral("-e"), QStringLiteral("cat")});
    xcb_window_t other = XCB_WINDOW_NONE;
    ASSERT_TRUE(waitUntil([&] {
        other = run(QStringLiteral("sh"),
                    {QStringLiteral("-c"), QStringLiteral("xdotool search --class XTerm || true")})
                    .split('\n')
                    .first()
                    .toUInt();
        return other != XCB_WINDOW_NONE;
    }));
    EXPECT_FALSE(focus.sameProgram(one.window(), other));
}

TEST_F(FocusX11Test, isNoWindowOnceTheServerHasGone) {
    server.program().end();
    EXPECT_EQ(focus.focused().window, xcb_window_t{XCB_WINDOW_NONE});
    EXPECT_FALSE(focus.sameProgram(1, 2));
}

}  // namespace
}  // namespace sayloft::test
