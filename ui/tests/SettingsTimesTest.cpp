// SPDX-License-Identifier: MIT
// The times of the pill, set in the settings window by mouse and keys.
#include "tests/support/WaitUntil.h"
#include "ui/AppWindows.h"
#include "ui/SettingsWindowController.h"
#include "ui/ValueSlider.h"
#include "ui/tests/SettingsFixture.h"

#include <QLineEdit>
#include <QStyleOptionSlider>
#include <QtTest>

#include <cmath>
#include <ostream>

#include <gmock/gmock.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using testing::Contains;

const QString appear = QStringLiteral("Appear speed");
const QString appearField = QStringLiteral("Appear speed in milliseconds");
const QString hideField = QStringLiteral("Hide speed in milliseconds");
const QString hold = QStringLiteral("Show after release");
const QString holdField = QStringLiteral("Show after release in milliseconds");

class SettingsTimes : public SettingsFixture {
protected:
    [[nodiscard]] QString text(const QString& field) const { return get<QLineEdit>(field).text(); }
    [[nodiscard]] double number(const QString& slider) const {
        return get<ValueSlider>(slider).number();
    }

    void typeAndLeave(const QString& field, const QString& text) const {
        type(field, text);
        clickEmptySpace();
    }

    [[nodiscard]] QRect handleOf(const QString& name) const {
        auto& slider = get<ValueSlider>(name);
        QStyleOptionSlider option;
        option.initFrom(&slider);
        option.orientation = Qt::Horizontal;
        option.minimum = slider.minimum();
        option.maximum = slider.maximum();
        option.sliderPosition = slider.sliderPosition();
        option.sliderValue = slider.value();
        return slider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle,
                                              &slider);
    }

    void drag(const QString& name, int pixels) const {
        auto& slider = get<ValueSlider>(name);
        const QPoint from = handleOf(name).center();
        QTest::mousePress(&slider, Qt::LeftButton, {}, from);
        QTest::mouseMove(&slider, from + QPoint(pixels, 0));
        QTest::mouseRelease(&slider, Qt::LeftButton, {}, from + QPoint(pixels, 0));
    }
};

TEST_F(SettingsTimes, areShownAsTheyAreConfigured) {
    open(R"({"animAppear":0.25,"animHide":0.5,"holdDuration":2.5})");
    EXPECT_EQ(number(appear), 0.25);
    EXPECT_EQ(text(appearField), QStringLiteral("170 ms"));
    EXPECT_EQ(text(hideField), QStringLiteral("70 ms"));
    EXPECT_EQ(text(holdField), QStringLiteral("2500 ms"));
    EXPECT_EQ(number(hold), 2.5);
}

TEST_F(SettingsTimes, ofTwoHundredAndFiftyMillisecondsAreFifteenFrames) {
    open();
    typeAndLeave(appearField, QStringLiteral("250"));
    EXPECT_NEAR(stored().animAppear, 1 - std::pow(0.05, 1.0 / 15), 1e-12);
    EXPECT_EQ(number(appear), stored().animAppear);
    EXPECT_EQ(text(appearField), QStringLiteral("250 ms"));
}

struct TypedSpeed {
    const char* typed;
    const char* shown;
};

void PrintTo(const TypedSpeed& row, std::ostream* stream) {
    *stream << row.typed;
}

class SettingsSpeeds : public SettingsTimes, public testing::WithParamInterface<TypedSpeed> {};

TEST_P(SettingsSpeeds, stayBetweenSixtyAndFourHundredAndSeventyMilliseconds) {
    open();
    for (const QString& field : {appearField, hideField}) {
        typeAndLeave(field, QLatin1String(GetParam().typed));
        EXPECT_EQ(text(field), QLatin1String(GetParam().shown));
    }
    EXPECT_EQ(stored().animAppear, stored().animHide);
    EXPECT_GE(stored().animAppear, 0.1);
    EXPECT_LE(stored().animAppear, 0.55);
}

INSTANTIATE_TEST_SUITE_P(Table, SettingsSpeeds,
                         testing::Values(TypedSpeed{"0", "60 ms"}, TypedSpeed{"10", "60 ms"},
                                         TypedSpeed{"fast", "60 ms"}, TypedSpeed{"61", "60 ms"},
                                         TypedSpeed{"1000", "470 ms"},
                                         TypedSpeed{"5000", "470 ms"}),
                         [](const auto& row) { return std::string("of_") + row.param.typed; });

TEST_F(SettingsTimes, ofLettersAreNoHold) {
    open();
    typeAndLeave(holdField, QStringLiteral("long"));
    EXPECT_EQ(stored().holdDuration, 0);
    EXPECT_EQ(text(holdField), QStringLiteral("0 ms"));
}

TEST_F(SettingsTimes, holdForFourSecondsAtMost) {
    open();
    typeAndLeave(holdField, QStringLiteral("9000"));
    EXPECT_EQ(stored().holdDuration, 4);
    EXPECT_EQ(text(holdField), QStringLiteral("4000 ms"));
}

TEST_F(SettingsTimes, dropEverythingThatIsNoDigit) {
    open();
    typeAndLeave(holdField, QStringLiteral("1.5 s"));
    EXPECT_EQ(stored().holdDuration, 0.02);
    EXPECT_EQ(text(holdField), QStringLiteral("20 ms"));
}

TEST_F(SettingsTimes, areTakenWithReturn) {
    open();
    type(holdField, QStringLiteral("1500"));
    EXPECT_EQ(stored().holdDuration, 1);
    QTest::keyClick(&get<QLineEdit>(holdField), Qt::Key_Return);
    EXPECT_EQ(stored().holdDuration, 1.5);
}

TEST_F(SettingsTimes, areTakenWithTab) {
    open();
    type(holdField, QStringLiteral("1500"));
    QTest::keyClick(&get<QLineEdit>(holdField), Qt::Key_Tab);
    EXPECT_EQ(stored().holdDuration, 1.5);
}

TEST_F(SettingsTimes, areTakenWhenTheWindowIsClosed) {
    open();
    type(holdField, QStringLiteral("1500"));
    window->close();
    EXPECT_EQ(stored().holdDuration, 1.5);
}

TEST_F(SettingsTimes, areTakenTogetherAndSnapped) {
    open();
    typeAndLeave(holdField, QStringLiteral("1234"));
    EXPECT_EQ(stored().holdDuration, 1.23);
    EXPECT_NEAR(stored().animAppear, 1 - std::pow(0.05, 1 / 8.4), 1e-12);
    EXPECT_EQ(stored().animHide, stored().animAppear);
}

TEST_F(SettingsTimes, reachThePill) {
    open();
    typeAndLeave(holdField, QStringLiteral("2000"));
    EXPECT_TRUE(test::waitUntil([this] { return !seen.empty(); }));
    EXPECT_THAT(seen, Contains("full 0.299972 0.299972 2"));
}

TEST_F(SettingsTimes, stayAsTheyAreInAFieldThatIsOnlyVisited) {
    const QByteArray config = R"({"animAppear":0.9,"animHide":0.3})";
    open(config);
    QTest::mouseClick(&get<QLineEdit>(appearField), Qt::LeftButton);
    clickEmptySpace();
    EXPECT_EQ(test::readFile(Config::url()), config);
    EXPECT_EQ(text(appearField), QStringLiteral("60 ms"));
}

TEST_F(SettingsTimes, ofASliderAreTakenWhereverItIsDragged) {
    open();
    drag(appear, 40);
    const double rate = stored().animAppear;
    EXPECT_GT(rate, 0.35);
    EXPECT_LT(rate, 0.55);
    EXPECT_EQ(number(appear), rate);
    const int frames = qRound(std::log(0.05) / std::log(1 - rate) / 60 * 1000);
    EXPECT_EQ(frames % 10, 0);
    EXPECT_EQ(text(appearField), QString::number(frames) + QStringLiteral(" ms"));
}

TEST_F(SettingsTimes, ofASliderEndWhereItEnds) {
    open();
    drag(hold, 400);
    EXPECT_EQ(stored().holdDuration, 4);
    drag(hold, -400);
    EXPECT_EQ(stored().holdDuration, 0);
    EXPECT_EQ(text(holdField), QStringLiteral("0 ms"));
}

TEST_F(SettingsTimes, changeByTenMillisecondsWithAnArrowKey) {
    open();
    auto& slider = get<ValueSlider>(appear);
    slider.setFocus();
    QTest::keyClick(&slider, Qt::Key_Left);
    EXPECT_EQ(text(appearField), QStringLiteral("150 ms"));
    QTest::keyClick(&slider, Qt::Key_Right);
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(text(appearField), QStringLiteral("130 ms"));
    EXPECT_EQ(stored().animAppear, number(appear));
}

TEST_F(SettingsTimes, goThroughAllStepsWithTheKeyboard) {
    open();
    auto& slider = get<ValueSlider>(appear);
    QTest::keyClick(&slider, Qt::Key_Home);
    for (int milliseconds = 470; milliseconds >= 60; milliseconds -= 10) {
        EXPECT_EQ(text(appearField), QString::number(milliseconds) + QStringLiteral(" ms"));
        QTest::keyClick(&slider, Qt::Key_Right);
    }
    EXPECT_EQ(stored().animAppear, 0.55);
}

TEST_F(SettingsTimes, thatAreBeingTypedSurviveARefresh) {
    open();
    type(holdField, QStringLiteral("15"));
    app->windows->refreshSettings();
    EXPECT_TRUE(get<QLineEdit>(holdField).hasFocus());
    QTest::keyClicks(&get<QLineEdit>(holdField), QStringLiteral("00"));
    clickEmptySpace();
    EXPECT_EQ(stored().holdDuration, 1.5);
}

TEST_F(SettingsTimes, thatAreBeingTypedSurviveALookAtAnotherWindow) {
    open();
    type(holdField, QStringLiteral("15"));
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(test::waitUntil([&] { return other.isActiveWindow(); }));
    EXPECT_EQ(stored().holdDuration, 1);
    other.close();
    window->activateWindow();
    ASSERT_TRUE(test::waitUntil([this] { return window->isActiveWindow(); }));
    EXPECT_EQ(text(holdField), QStringLiteral("15"));
}

TEST_F(SettingsTimes, thatWereBeingTypedGoWithTheProgram) {
    open();
    type(holdField, QStringLiteral("1500"));
    app.reset();
    window = nullptr;
    EXPECT_EQ(stored().holdDuration, 1);
}

}  // namespace
}  // namespace sayloft
