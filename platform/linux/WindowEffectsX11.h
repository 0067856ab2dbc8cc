// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WindowEffects.h"

#include <QAbstractNativeEventFilter>

#include <xcb/xcb.h>

#include <cstdint>

namespace sayloft {

/// Asks the compositing manager, which may come and go at any time. On the application's own
/// connection, so that its requests keep their order with what is drawn.
class WindowEffectsX11 : public WindowEffects, private QAbstractNativeEventFilter {
public:
    WindowEffectsX11();
    ~WindowEffectsX11() override;
    WindowEffectsX11(const WindowEffectsX11&) = delete;
    WindowEffectsX11& operator=(const WindowEffectsX11&) = delete;

    [[nodiscard]] bool isTranslucent() const override { return m_isComposited; }
    /// As KWin announces it. Asks the server.
    [[nodiscard]] bool blurs() const override;
    void setShape(WId window, const QRegion& region) override;
    void blurBehind(WId window, const QRegion& region) override;

private:
    void watchCompositor();
    [[nodiscard]] bool hasCompositor() const;
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

    xcb_connection_t* m_connection;  ///< null where the application is not on an X server
    xcb_atom_t m_compositorSelection = XCB_ATOM_NONE;
    xcb_atom_t m_blurRegion = XCB_ATOM_NONE;
    std::uint8_t m_selectionEvent = 0;
    bool m_isComposited = false;
};

}  // namespace sayloft
