// SPDX-License-Identifier: MIT
#pragma once

#include "overlay/FrameTimer.h"
#include "overlay/Overlay.h"
#include "overlay/PillView.h"

#include <QRect>
#include <QRegion>
#include <QWidget>

#include <functional>

class QScreen;

namespace sayloft {

class WindowEffects;

/// The pill's window: at the bottom of the main screen, above all others, and nothing to mouse and
/// keyboard. It stays mapped for the whole run and is shaped to nothing while the pill is hidden.
/// Main thread.
class PillOverlay : public QObject, public Overlay {
public:
    /// `levelProvider` gives the input level, 0 to 1; it and `effects` outlive this.
    PillOverlay(std::function<double()> levelProvider, WindowEffects& effects);
    ~PillOverlay() override;
    PillOverlay(const PillOverlay&) = delete;
    PillOverlay& operator=(const PillOverlay&) = delete;

    void setActive(bool active) override;
    void stopTimer() override;
    void showStats(int wpm) override;
    void holdThenHide() override;
    void configure(bool minimal, double appear, double hide, double hold) override;

    /// Moves the window to its place on the main screen; without one it stays where it is.
    void reposition();

    [[nodiscard]] const QWidget& window() const { return m_window; }
    [[nodiscard]] const PillView& view() const { return *m_view; }
    [[nodiscard]] bool isTicking() const { return m_timer.isRunning(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void tick();
    /// Runs on the next turn of the main loop, in the order of the calls.
    void command(std::function<void(PillView&)> task);
    void resizeInPixels();
    void followScreens();
    void follow(QScreen* screen);
    void readEffects();
    void dress();
    [[nodiscard]] QRegion shapeOf(const QRegion& pill) const;
    void stayOnTop();

    WindowEffects& m_effects;
    QWidget m_window;
    PillView* m_view;  ///< child of the window
    FrameTimer m_timer;
    PillBackground m_background = PillBackground::black;
    QRect m_place;
    QRegion m_shape;  ///< in device pixels, like the next
    QRegion m_blurred;
    int m_ticks = 0;
};

}  // namespace sayloft
