// SPDX-License-Identifier: MIT
#include "ui/TimingRow.h"

#include "ui/AnimationTimes.h"
#include "ui/TextLook.h"
#include "ui/ValueField.h"

#include <QHBoxLayout>

namespace sayloft {
namespace {

constexpr int sliderWidth = 150;
constexpr int spacing = 8;

}  // namespace

Timing speedTiming() {
    return {.scale = {.lowest = slowestRate,
                      .highest = fastestRate,
                      .scale = 10000,
                      .stepsOfArrow = 1,
                      .stepsOfPage = 5},
            .further = fasterRate,
            .shownMs = shownMsOfRate,
            .snapped = snappedRate,
            .forMs = rateForMs};
}

Timing holdTiming() {
    return {.scale = {.lowest = 0,
                      .highest = longestHold,
                      .scale = 1000,
                      .stepsOfArrow = 5,
                      .stepsOfPage = 50},
            .further = longerHold,
            .shownMs = shownMsOfHold,
            .snapped = snappedHold,
            .forMs = holdForMs};
}

TimingRow::TimingRow(const Texts& texts, const Timing& timing)
    : m_timing(timing),
      m_slider(new ValueSlider(timing.scale, timing.further)),
      m_field(new ValueField) {
    new TextLook(m_field, {.size = 11, .digits = TextStyle::Digits::equallyWide});
    m_slider->setFixedWidth(sliderWidth);
    m_slider->setAccessibleName(texts.name);
    m_slider->setAccessibleDescription(texts.meaning);
    m_slider->setToolTip(texts.meaning);
    m_field->setAccessibleName(texts.name + QStringLiteral(" in milliseconds"));
    m_field->setAccessibleDescription(texts.meaning);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    row->addWidget(m_slider);
    row->addWidget(m_field);
    row->addStretch();
}

void TimingRow::takeTyped() {
    m_slider->setNumber(m_timing.forMs(typedMilliseconds(m_field->text())));
}

void TimingRow::snap() {
    m_slider->setNumber(m_timing.snapped(m_slider->number()));
    m_field->settle();
}

void TimingRow::showMilliseconds() {
    m_field->showText(millisecondsText(m_timing.shownMs(m_slider->number())));
}

}  // namespace sayloft
