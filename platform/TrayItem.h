// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Menu.h"

#include <QImage>
#include <QSize>
#include <QString>

#include <functional>

namespace sayloft {

/// The picture of a tray item.
struct TrayImage {
    QString name;    ///< of the resource, or of the system's symbol where there is no picture
    QImage picture;  ///< in any resolution, or null
    QSizeF size;     ///< in points
    bool isTemplate = false;  ///< only the shape counts; its colour is the tint or the panel's own
};

/// What a template is coloured with.
enum class TrayTint {
    none,     ///< the panel's own colour for what is written on it
    dimmed,   ///< grey, as of something that is not ready
    accent,   ///< the desktop's highlight
    warning,  ///< orange
};

/// All that is seen of the item while its menu is closed.
struct TrayLook {
    TrayImage image;
    TrayTint tint = TrayTint::none;
    QString title;   ///< the state in a few words
    QString reason;  ///< why the state is what it is; may be empty
};

/// The program's item in the system's tray or menu bar. It appears wherever there is a tray, also
/// in one that comes later or comes back. Main thread; never blocks.
class TrayItem {
public:
    virtual ~TrayItem() = default;

    virtual void setLook(const TrayLook& look) = 0;
    /// Replaces the whole menu.
    virtual void setMenu(Menu menu) = 0;

    /// Whether a tray shows the item just now.
    [[nodiscard]] virtual bool isShown() const = 0;
    /// Called when that changes.
    std::function<void()> onShownChanged;
};

}  // namespace sayloft
