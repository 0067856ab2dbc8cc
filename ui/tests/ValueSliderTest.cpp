// SPDX-License-Identifier: MIT
#include "ui/ValueSlider.h"

#include <QSignalSpy>
#include <QWheelEvent>
#include <QtTest>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

class ValueSliderTest : public testing::Test {
protected:
    ValueSliderTest() { m_slider.resize(150, 24); }

    void turnWheel(int angle) {
        const QPointF middle = m_slider.rect().center();
        QWheelEvent event(middle, m_slider.mapToGlobal(middle), {}, {0, angle}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&m_slider, &event);
    }

    ValueSlider m_slider{
        {.lowest = 0.1, .highest = 0.55, .scale = 10000, .stepsOfArrow = 1, .stepsOfPage = 5},
        [](double number, int steps) { return number + steps * 0.01; }};
    QSignalSpy m_changes{&m_slider, &ValueSlider::numberChanged};
};

TEST_F(ValueSliderTest, keepsTheExactNumber) {
    m_slider.setNumber(0.1810553);
    EXPECT_EQ(m_slider.number(), 0.1810553);
    EXPECT_EQ(m_slider.value(), 1811);
    EXPECT_EQ(m_changes.count(), 0);
}

TEST_F(ValueSliderTest, staysWithinItsRange) {
    m_slider.setNumber(0.9);
    EXPECT_EQ(m_slider.number(), 0.55);
    m_slider.setNumber(0);
    EXPECT_EQ(m_slider.number(), 0.1);
}

TEST_F(ValueSliderTest, goesOneStepForAnArrowKey) {
    m_slider.setNumber(0.3);
    QTest::keyClick(&m_slider, Qt::Key_Right);
    EXPECT_NEAR(m_slider.number(), 0.31, 1e-9);
    QTest::keyClick(&m_slider, Qt::Key_Left);
    EXPECT_NEAR(m_slider.number(), 0.3, 1e-9);
    EXPECT_EQ(m_changes.count(), 2);
}

TEST_F(ValueSliderTest, goesAPageForThePageKeys) {
    m_slider.setNumber(0.3);
    QTest::keyClick(&m_slider, Qt::Key_PageUp);
    EXPECT_NEAR(m_slider.number(), 0.35, 1e-9);
}

TEST_F(ValueSliderTest, goesToItsEndsForHomeAndEnd) {
    m_slider.setNumber(0.3);
    QTest::keyClick(&m_slider, Qt::Key_End);
    EXPECT_EQ(m_slider.number(), 0.55);
    QTest::keyClick(&m_slider, Qt::Key_Home);
    EXPECT_EQ(m_slider.number(), 0.1);
}

TEST_F(ValueSliderTest, leavesTheWheelToTheWindowUnlessItHasTheKeyboard) {
    m_slider.setNumber(0.3);
    turnWheel(120);
    EXPECT_EQ(m_changes.count(), 0);
}

TEST_F(ValueSliderTest, goesOneStepForANotchOfTheWheelHoweverSlowlyTurned) {
    m_slider.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m_slider));
    m_slider.setFocus();
    m_slider.setNumber(0.3);
    turnWheel(40);
    turnWheel(40);
    EXPECT_EQ(m_changes.count(), 0);
    turnWheel(40);
    EXPECT_NEAR(m_slider.number(), 0.31, 1e-9);
    turnWheel(-240);
    EXPECT_NEAR(m_slider.number(), 0.29, 1e-9);
}

}  // namespace
}  // namespace sayloft
