// SPDX-License-Identifier: MIT
#include "platform/linux/WindowEffectsX11.h"

#include "platform/linux/XcbHandles.h"

#include <QGuiApplication>
#include <QRegion>

#include <xcb/shape.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace sayloft {
namespace {

constexpr std::uint8_t propertyFormat = 32;

std::vector<xcb_rectangle_t> rectangles(const QRegion& region) {
    std::vector<xcb_rectangle_t> rects;
    rects.reserve(static_cast<std::size_t>(region.rectCount()));
    for (const QRect& rect : region)
        rects.push_back({static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                         static_cast<std::uint16_t>(rect.width()),
                         static_cast<std::uint16_t>(rect.height())});
    return rects;
}

std::vector<std::uint32_t> cardinals(const QRegion& region) {
    std::vector<std::uint32_t> numbers;
    numbers.reserve(4 * static_cast<std::size_t>(region.rectCount()));
    for (const QRect& rect : region) {
        for (const int number : {rect.x(), rect.y(), rect.width(), rect.height()})
            numbers.push_back(static_cast<std::uint32_t>(number));
    }
    return numbers;
}

xcb_connection_t* applicationConnection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

}  // namespace

WindowEffectsX11::WindowEffectsX11() : m_connection(applicationConnection()) {
    if (m_connection == nullptr)
        return;
    m_compositorSelection = internAtom(m_connection, "_NET_WM_CM_S0");
    m_blurRegion = internAtom(m_connection, "_KDE_NET_WM_BLUR_BEHIND_REGION");
    watchCompositor();
    m_isComposited = hasCompositor();
}

WindowEffectsX11::~WindowEffectsX11() {
    if (qGuiApp != nullptr)
        qGuiApp->removeNativeEventFilter(this);
}

void WindowEffectsX11::watchCompositor() {
    const auto* extension = xcb_get_extension_data(m_connection, &xcb_xfixes_id);
    if (extension == nullptr || extension->present == 0)
        return;
    m_selectionEvent =
        static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    // The extension refuses everything to a client that has not told its version.
    const XcbOwned<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        m_connection, xcb_xfixes_query_version(m_connection, 5, 0), nullptr));
    xcb_xfixes_select_selection_input(m_connection, rootWindow(m_connection), m_compositorSelection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    qGuiApp->installNativeEventFilter(this);
}

bool WindowEffectsX11::nativeEventFilter(const QByteArray& /*eventType*/, void* message,
                                         qintptr* /*result*/) {
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != m_selectionEvent)
        return false;
    const auto* change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event);
    if (change->selection != m_compositorSelection)
        return false;
    const bool wasComposited = std::exchange(m_isComposited, hasCompositor());
    if (wasComposited != m_isComposited && onChange)
        onChange();
    return false;
}

bool WindowEffectsX11::hasCompositor() const {
    const XcbOwned<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, m_compositorSelection), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

bool WindowEffectsX11::blurs() const {
    if (!m_isComposited)
        return false;
    const XcbOwned<xcb_list_properties_reply_t> reply(xcb_list_properties_reply(
        m_connection, xcb_list_properties(m_connection, rootWindow(m_connection)), nullptr));
    if (!reply)
        return false;
    const xcb_atom_t* begin = xcb_list_properties_atoms(reply.get());
    const xcb_atom_t* end = begin + xcb_list_properties_atoms_length(reply.get());
    return std::find(begin, end, m_blurRegion) != end;
}

void WindowEffectsX11::setShape(WId window, const QRegion& region) {
    if (m_connection == nullptr)
        return;
    const auto rects = rectangles(region);
    xcb_shape_rectangles(m_connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                         XCB_CLIP_ORDERING_YX_BANDED, static_cast<xcb_window_t>(window), 0, 0,
                         static_cast<std::uint32_t>(rects.size()), rects.data());
    xcb_flush(m_connection);
}

// An empty region would mean the whole window.
void WindowEffectsX11::blurBehind(WId window, const QRegion& region) {
    if (m_connection == nullptr)
        return;
    const auto target = static_cast<xcb_window_t>(window);
    const auto numbers = cardinals(region);
    if (numbers.empty())
        xcb_delete_property(m_connection, target, m_blurRegion);
    else
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, target, m_blurRegion,
                            XCB_ATOM_CARDINAL, propertyFormat,
                            static_cast<std::uint32_t>(numbers.size()), numbers.data());
    xcb_flush(m_connection);
}

}  // namespace sayloft
