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
    Q_OBJECT

public:
    struct Texts {
        QString name;
        QString meaning;
    };

    TimingRow(const Texts& texts, const Timing& timing);

    [[nodiscard]] double number() const { return m_slider->number(); }

    /// Shows a number as it is; what the user is typing stays.
    void setNumber(double number);

    /// Moves to the number that exactly belongs to the milliseconds shown.
    void snap();

    /// What has been typed counts.
    void endEditing();

Q_SIGNALS:
    /// The user has set another number, which is not snapped yet.
    void changed();

private:
    [[nodiscard]] QString label() const;

    Timing m_timing;
    ValueSlider* m_slider;
    ValueField* m_field;
};

}  // namespace sayloft
