// SPDX-License-Identifier: MIT
#pragma once

#include "ui/ValueSlider.h"

#include <QWidget>

#include <cstdint>

namespace sayloft {

class ValueField;

/// What a slider of time means in milliseconds and back.
struct Timing {
    ValueSlider::Scale scale;
    ValueSlider::Further further;
    int (*shownMs)(double number);
    double (*snapped)(double number);
    double (*forMs)(std::int64_t milliseconds);
};

/// A rate, set by a slider or by typing the milliseconds that the pill then takes.
[[nodiscard]] Timing speedTiming();
/// Seconds, set by a slider or by typing milliseconds.
[[nodiscard]] Timing holdTiming();

/// A slider with a field beside it that shows the same in milliseconds.
class TimingRow : public QWidget {
public:
    struct Texts {
        QString name;
        QString meaning;
    };

    TimingRow(const Texts& texts, const Timing& timing);

    [[nodiscard]] ValueSlider* slider() const { return m_slider; }
    [[nodiscard]] ValueField* field() const { return m_field; }

    /// Moves the slider to the milliseconds that have been typed.
    void takeTyped();

    /// Moves the slider to the number that exactly belongs to the milliseconds that it stands for.
    /// Nobody is typing any more.
    void snap();

    /// Shows in the field what the slider stands for; what the user is typing stays.
    void showMilliseconds();

private:
    Timing m_timing;
    ValueSlider* m_slider;
    ValueField* m_field;
};

}  // namespace sayloft
