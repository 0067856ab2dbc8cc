// SPDX-License-Identifier: MIT
#pragma once

#include "overlay/PillAnimation.h"
#include "overlay/PillPainter.h"

#include <QWidget>

#include <functional>

namespace sayloft {

/// Draws the pill and carries the commands that take time. Passive: whoever owns it calls `tick`
/// 60 times a second. Main thread.
class PillView : public QWidget {
public:
    explicit PillView(QWidget* parent = nullptr);

    void tick();

    /// Shows the pill and starts the recording time.
    void setRecording();
    /// Freezes the recording time.
    void stopTimer();
    /// Hides at once.
    void shrink();
    /// Hides after the hold, without a figure.
    void holdThenHide();
    /// Counts up to `wpm`, then hides after the hold.
    void showStats(int wpm);

    /// Rates are per tick, and taken as 0 to 1; `hold` is in seconds.
    void configure(bool minimal, double appear, double hide, double hold);
    void setLevelProvider(std::function<double()> levelProvider);
    void setBackground(PillBackground background);

    [[nodiscard]] const PillAnimation& pill() const { return m_pill; }
    /// The pill's outline within the view, in points with the y axis pointing down; empty when
    /// there is nothing to see.
    [[nodiscard]] QRectF outline() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void scheduleHide(int token);

    PillAnimation m_pill;
    PillPainter::Layers m_layers;
    PillBackground m_background = PillBackground::clear;
};

}  // namespace sayloft
