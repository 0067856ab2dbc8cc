// SPDX-License-Identifier: MIT
#include "tests/support/WindowIcon.h"

#include "platform/linux/XcbHandles.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace sayloft::test {
namespace {

/// The whole value of a property, as bytes; empty where there is none.
QByteArray propertyOf(xcb_connection_t* connection, xcb_window_t window, const char* name) {
    constexpr std::uint32_t everything = 0x1fffffff;
    const auto cookie = xcb_get_property(connection, 0, window, internAtom(connection, name),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, everything);
    const XcbOwned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

std::vector<std::uint32_t> numbersOf(const QByteArray& bytes) {
    std::vector<std::uint32_t> numbers(static_cast<std::size_t>(bytes.size()) /
                                       sizeof(std::uint32_t));
    std::memcpy(numbers.data(), bytes.constData(), numbers.size() * sizeof(std::uint32_t));
    return numbers;
}

/// Of those that the window manager manages.
xcb_window_t windowWithTitle(xcb_connection_t* connection, const QString& title) {
    const auto windows =
        numbersOf(propertyOf(connection, rootWindow(connection), "_NET_CLIENT_LIST"));
    const auto found = std::find_if(windows.begin(), windows.end(), [&](xcb_window_t window) {
        return propertyOf(connection, window, "_NET_WM_NAME") == title.toUtf8();
    });
    return found == windows.end() ? xcb_window_t{XCB_WINDOW_NONE} : *found;
}

}  // namespace

// Each size is its width, its height, and its pixels.
std::vector<QImage> iconsOf(const QString& windowTitle) {
    const XcbConnection connection = connectToXServer();
    const xcb_window_t window = windowWithTitle(connection.get(), windowTitle);
    const auto numbers = numbersOf(propertyOf(connection.get(), window, "_NET_WM_ICON"));
    std::vector<QImage> icons;
    for (std::size_t at = 0; at + 2 <= numbers.size();) {
        const std::size_t width = numbers[at];
        const std::size_t height = numbers[at + 1];
        at += 2;
        if (width == 0 || height == 0 || width > numbers.size() ||
            height > (numbers.size() - at) / width)
            return {};
        QImage icon(static_cast<int>(width), static_cast<int>(height), QImage::Format_ARGB32);
        std::memcpy(icon.bits(), &numbers[at], width * height * sizeof(std::uint32_t));
        icons.push_back(icon);
        at += width * height;
    }
    return icons;
}

}  // namespace sayloft::test
