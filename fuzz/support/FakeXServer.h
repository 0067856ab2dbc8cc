// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <string>

namespace sayloft::fuzz {

/// What the functions of libxcb answer in a program that FakeXServer.cpp and FakeXFocus.cpp are
/// linked into: there is no server, every request is carried out at once, and other clients do what
/// the fields say.
struct FakeXServer {
    /// What a client has put into whatever property is read next.
    struct Property {
        xcb_atom_t type = XCB_ATOM_NONE;
        std::uint8_t format = 8;  ///< as every server, only 8, 16 or 32
        std::string data;
    };

    Property property;
    xcb_window_t focus = XCB_WINDOW_NONE;
    xcb_window_t parent = XCB_WINDOW_NONE;
    xcb_window_t selectionOwner = XCB_WINDOW_NONE;
    xcb_timestamp_t time = 1;
    bool isGone = false;

    std::uint32_t windowCount = 0;             ///< that our side has created
    xcb_atom_t askedProperty = XCB_ATOM_NONE;  ///< where our side wants the next answer
    xcb_atom_t askedTarget = XCB_ATOM_NONE;    ///< and what it has asked for
    xcb_window_t askedWindow = XCB_WINDOW_NONE;
    xcb_window_t changedWindow = XCB_WINDOW_NONE;  ///< by our side, last

    static constexpr xcb_window_t firstWindow = 0x400000;
    static constexpr xcb_window_t root = 0x100;
};

/// The one that there is.
[[nodiscard]] FakeXServer& fakeXServer();

/// Its number for the name of an atom, as for the rest of the process.
[[nodiscard]] xcb_atom_t fakeAtom(const std::string& name);

}  // namespace sayloft::fuzz
