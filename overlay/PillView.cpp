// SPDX-License-Identifier: MIT
#include "overlay/PillView.h"

#include "overlay/PillGeometry.h"
#include "overlay/PillPainter.h"

#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

/// Beyond what a timer can wait, days, nobody looks at a figure.
std::chrono::milliseconds holdTime(double seconds) {
    constexpr std::chrono::duration<double> longest = 24h;
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::duration<double>(std::clamp(seconds, 0.0, longest.count())));
}

}  // namespace

PillView::PillView(QWidget* parent) : QWidget(parent) {
    setFixedSize(static_cast<int>(PillGeometry::viewW), static_cast<int>(PillGeometry::viewH));
}

void PillView::tick() {
    if (m_pill.tick())
        update();
}

void PillView::setRecording() {
    m_pill.setRecording(PillAnimation::Clock::now());
}

void PillView::stopTimer() {
    m_pill.stopTimer(PillAnimation::Clock::now());
}

void PillView::shrink() {
    m_pill.shrink();
}

void PillView::holdThenHide() {
    scheduleHide(m_pill.holdThenHide());
}

void PillView::showStats(int wpm) {
    scheduleHide(m_pill.showStats(wpm));
}

void PillView::scheduleHide(int token) {
    QTimer::singleShot(holdTime(m_pill.holdDuration), Qt::PreciseTimer, this,
                       [this, token] { m_pill.hide(token); });
}

// A rate above 1 would overshoot, and from 2 on the pill would grow without end.
void PillView::configure(bool minimal, double appear, double hide, double hold) {
    m_pill.minimal = minimal;
    m_pill.appearRate = std::clamp(appear, 0.0, 1.0);
    m_pill.hideRate = std::clamp(hide, 0.0, 1.0);
    m_pill.holdDuration = hold;
}

void PillView::setLevelProvider(std::function<double()> levelProvider) {
    m_pill.levelProvider = std::move(levelProvider);
}

void PillView::setBackground(PillBackground background) {
    if (background != m_background)
        update();
    m_background = background;
}

QRectF PillView::outline() const {
    if (!m_pill.isVisible())
        return {};
    const PillGeometry geometry{m_pill.minimal};
    return onScreen(geometry.scaledPill(pillScale(std::clamp(m_pill.presence, 0.0, 1.0))));
}

void PillView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    PillPainter(painter, m_pill, PillAnimation::Clock::now()).paint(m_layers, m_background);
}

}  // namespace sayloft
