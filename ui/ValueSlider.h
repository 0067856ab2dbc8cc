// SPDX-License-Identifier: MIT
#pragma once

#include <QSlider>

#include <functional>

namespace sayloft {

/// A slider that keeps an exact number. Its own whole positions, which assistive technology reads,
/// are that number times `scale`, rounded.
class ValueSlider : public QSlider {
    Q_OBJECT

public:
    struct Scale {
        double lowest = 0;
        double highest = 1;
        double scale = 1;
        int stepsOfArrow = 1;  ///< how far an arrow key and the wheel go
        int stepsOfPage = 1;   ///< how far the page keys and a click beside the handle go
    };
    /// The number that many steps further; what a step is differs along the way.
    using Further = std::function<double(double number, int steps)>;

    ValueSlider(const Scale& scale, Further further);

    [[nodiscard]] double number() const { return m_number; }

    /// The nearest number within the range; no signal.
    void setNumber(double number);

Q_SIGNALS:
    /// The user has set another number.
    void numberChanged();

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    [[nodiscard]] int position(double number) const;
    void adjustAction(int action);
    void goFurther(int steps);

    Scale m_scale;
    Further m_further;
    double m_number;
    int m_wheelAngle = 0;  ///< what is left of slow turns, in eighths of a degree
};

}  // namespace sayloft
