// SPDX-License-Identifier: MIT
#pragma once

#include <QtGui/qwindowdefs.h>

#include <functional>

class QRegion;

namespace sayloft {

/// What windows can do here beyond being rectangles. Regions are in device pixels from the top left
/// of the window. Main thread.
class WindowEffects {
public:
    virtual ~WindowEffects() = default;

    /// Whether one sees through what is translucent; where not, it is black.
    [[nodiscard]] virtual bool isTranslucent() const = 0;
    /// Whether `blurBehind` does something.
    [[nodiscard]] virtual bool blurs() const = 0;

    /// Leaves of the window what is in the region.
    virtual void setShape(WId window, const QRegion& region) = 0;
    /// Puts out of focus what is seen through the region.
    virtual void blurBehind(WId window, const QRegion& region) = 0;

    /// What `isTranslucent` answers has changed.
    std::function<void()> onChange;
};

}  // namespace sayloft
