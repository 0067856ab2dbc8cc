// SPDX-License-Identifier: MIT
#include "ui/ValueSlider.h"

#include <QSignalBlocker>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace sayloft {

ValueSlider::ValueSlider(const Scale& scale, Further further)
    : QSlider(Qt::Horizontal),
      m_scale(scale),
      m_further(std::move(further)),
      m_number(scale.lowest) {
    setRange(position(scale.lowest), position(scale.highest));
    connect(this, &QSlider::actionTriggered, this, &ValueSlider::adjustAction);
    connect(this, &QSlider::valueChanged, this, [this](int value) {
        m_number = std::clamp(value / m_scale.scale, m_scale.lowest, m_scale.highest);
        Q_EMIT numberChanged();
    });
}

void ValueSlider::setNumber(double number) {
    m_number = std::clamp(number, m_scale.lowest, m_scale.highest);
    const QSignalBlocker blocker(this);
    setValue(position(m_number));
}

int ValueSlider::position(double number) const {
    return static_cast<int>(std::lround(number * m_scale.scale));
}

void ValueSlider::adjustAction(int action) {
    if (action == SliderSingleStepAdd)
        goFurther(m_scale.stepsOfArrow);
    else if (action == SliderSingleStepSub)
        goFurther(-m_scale.stepsOfArrow);
    else if (action == SliderPageStepAdd)
        goFurther(m_scale.stepsOfPage);
    else if (action == SliderPageStepSub)
        goFurther(-m_scale.stepsOfPage);
}

void ValueSlider::goFurther(int steps) {
    const double further = m_further(m_number, steps);
    setSliderPosition(position(std::clamp(further, m_scale.lowest, m_scale.highest)));
}

void ValueSlider::wheelEvent(QWheelEvent* event) {
    // Whoever scrolls the window past it does not mean it.
    if (!hasFocus()) {
        event->ignore();
        return;
    }
    constexpr int notch = 120;
    m_wheelAngle += event->angleDelta().y();
    for (; m_wheelAngle >= notch; m_wheelAngle -= notch)
        triggerAction(SliderSingleStepAdd);
    for (; m_wheelAngle <= -notch; m_wheelAngle += notch)
        triggerAction(SliderSingleStepSub);
    event->accept();
}

}  // namespace sayloft
