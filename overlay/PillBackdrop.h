// SPDX-License-Identifier: MIT
#pragma once

#include "overlay/KeptPicture.h"

class QPainter;

namespace sayloft {

/// What can be seen behind the pill.
enum class PillBackground {
    black,    ///< nothing: the window cannot be seen through
    clear,    ///< what lies below, as it is
    blurred,  ///< what lies below, out of focus
};

/// The body of the pill and its shadow, on which bars and figures stand. Keeps what a pill that is
/// fully there looks like, since drawing the shadow takes longer than all the rest. Main thread.
class PillBackdrop {
public:
    struct Look {
        bool minimal;
        PillBackground background;
        double presence;  ///< 0 to 1

        bool operator==(const Look&) const = default;
    };

    /// Draws into a view of 340 by 110 points.
    void paint(QPainter& painter, const Look& look);

private:
    KeptPicture m_kept;
    Look m_keptLook{};
};

}  // namespace sayloft
