// SPDX-License-Identifier: MIT
#pragma once

#include "overlay/KeptPicture.h"
#include "overlay/PillStats.h"

class QPainter;

namespace sayloft {

/// The figures beside the bars. Those of a pill that is fully there are kept until they change,
/// since to lay out text takes long. Main thread.
class PillFigures {
public:
    /// Draws into a view of 340 by 110 points. `presence` is 0 to 1.
    void paint(QPainter& painter, const PillStats& stats, double presence);

private:
    KeptPicture m_kept;
    PillStats m_keptStats;
};

}  // namespace sayloft
