// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>

#include <functional>

class QPainter;

namespace sayloft {

/// A picture as large as the pill's view, drawn anew only when it has been forgotten or the scale
/// of the device has changed. Main thread.
class KeptPicture {
public:
    /// `draw` gets a painter whose picture is transparent as yet.
    void paint(QPainter& painter, const std::function<void(QPainter&)>& draw);
    void forget() { m_pixmap = {}; }

private:
    QPixmap m_pixmap;
};

}  // namespace sayloft
