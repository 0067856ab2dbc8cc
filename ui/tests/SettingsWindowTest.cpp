// SPDX-License-Identifier: MIT
// The settings window as a whole: its size, its way through the keyboard, its end.
#include "tests/support/WaitUntil.h"
#include "tests/support/WidgetTest.h"
#include "ui/AppWindows.h"
#include "ui/SettingsWindowController.h"
#include "ui/TimingRow.h"
#include "ui/tests/CutControls.h"
#include "ui/tests/KeptLook.h"
#include "ui/tests/SettingsFixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QSlider>
#include <QtTest>

#include <set>

#include <gmock/gmock.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

class SettingsWindowTest : public SettingsFixture {
protected:
    void useFontOf(double factor) const { m_before.useFontOf(factor); }

    [[nodiscard]] std::vector<QWidget*> visibleControls() const {
        std::vector<QWidget*> controls;
        for (QWidget* const widget : window->widget()->findChildren<QWidget*>()) {
            const bool isControl =
                qobject_cast<QAbstractButton*>(widget) || qobject_cast<QAbstractSlider*>(widget) ||
                qobject_cast<QComboBox*>(widget) || qobject_cast<QLineEdit*>(widget);
            if (isControl && widget->isVisible())
                controls.push_back(widget);
        }
        return controls;
    }

    [[nodiscard]] QStringList clipped() const { return test::cutControls(*window); }

    const test::KeptLook m_before;
};

TEST_F(SettingsWindowTest, hasItsTitleAndSize) {
    open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Sayloft Settings"));
    EXPECT_EQ(window->size(), QSize(640, 700));
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
    EXPECT_EQ(clipped(), QStringList());
}

TEST_F(SettingsWindowTest, isInTheMiddleOfTheScreen) {
    open();
    const QPoint offset =
        window->frameGeometry().center() - window->screen()->availableGeometry().center();
    EXPECT_LE(offset.manhattanLength(), 40);
}

TEST_F(SettingsWindowTest, isOnlyHiddenWhenItIsClosed) {
    open();
    SettingsWindow* const before = window;
    window->close();
    EXPECT_FALSE(window->isVisible());
    app->windows->openSettings();
    EXPECT_TRUE(test::waitUntil([this] { return window->isActiveWindow(); }));
    EXPECT_EQ(&dynamic_cast<AppWindows&>(*app->windows).settingsWC->window(), before);
}

TEST_F(SettingsWindowTest, comesToTheFrontWhenItIsOpenedAgain) {
    open();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(test::waitUntil([&] { return other.isActiveWindow(); }));
    app->openSettings();
    EXPECT_TRUE(test::waitUntil([this] { return window->isActiveWindow(); }));
}

TEST_F(SettingsWindowTest, growsForALargerFont) {
    open();
    useFontOf(1.6);
    EXPECT_TRUE(test::waitUntil([this] { return window->width() > 640; }));
    EXPECT_TRUE(test::waitUntil([this] { return clipped().isEmpty(); }))
        << clipped().join(u'\n').toStdString();
}

TEST_F(SettingsWindowTest, scrollsWhereTheScreenIsTooSmall) {
    open(manyChords);
    useFontOf(2);
    EXPECT_TRUE(test::waitUntil([this] { return window->verticalScrollBar()->maximum() > 0; }));
    const QRect screen = window->screen()->availableGeometry();
    EXPECT_TRUE(test::waitUntil([&] { return screen.contains(window->frameGeometry()); }));
    EXPECT_EQ(window->horizontalScrollBar()->maximum(), 0);
}

TEST_F(SettingsWindowTest, changesNothingWhereTheWheelScrollsItPastTheControls) {
    open(manyChords);
    const QByteArray before = test::readFile(Config::url());
    window->setFocus();
    for (QWidget* const control : visibleControls()) {
        const QPointF middle = control->rect().center();
        for (const int angle : {120, -120}) {
            QWheelEvent event(middle, control->mapToGlobal(middle), {}, {0, angle}, Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            control->clearFocus();
            QCoreApplication::sendEvent(control, &event);
        }
    }
    EXPECT_EQ(test::readFile(Config::url()), before);
}

TEST_F(SettingsWindowTest, isNoWiderForTheLongNameOfAMicrophone) {
    fakes.audio.deviceList.push_back(
        {.id = 3, .uid = QStringLiteral("long"), .name = QString(90, QLatin1Char('m'))});
    open();
    EXPECT_EQ(window->width(), 640);
    auto& devices = get<QComboBox>(QStringLiteral("Input device"));
    devices.setCurrentIndex(devices.count() - 1);
    EXPECT_EQ(devices.toolTip(), devices.currentText());
    test::turnEventLoopFor(std::chrono::milliseconds(50));
    EXPECT_EQ(window->width(), 640);
}

TEST_F(SettingsWindowTest, scrollsToTheControlThatGetsTheFocus) {
    open(manyChords);
    useFontOf(2);
    ASSERT_TRUE(test::waitUntil([this] { return window->verticalScrollBar()->maximum() > 0; }));
    auto& reset = get<QPushButton>(QStringLiteral("Reset to defaults"));
    get<QLineEdit>(QStringLiteral("Show after release in milliseconds")).setFocus();
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(reset.hasFocus());
    EXPECT_TRUE(test::waitUntil([&] { return !reset.visibleRegion().isEmpty(); }));
}

TEST_F(SettingsWindowTest, wrapsManyChords) {
    open(manyChords);
    const QScrollBar& bar = *window->verticalScrollBar();
    EXPECT_TRUE(test::waitUntil([&] {
        return window->width() - (bar.isVisible() ? bar.width() : 0) == 640;
    })) << window->width()
        << ", bar " << bar.isVisible() << ' ' << bar.width();
    EXPECT_EQ(clipped(), QStringList());
}

TEST_F(SettingsWindowTest, shrinksAgainWhenChordsGo) {
    open(manyChords);
    app->cfg.dictateChords = {12};
    app->windows->refreshSettings();
    EXPECT_TRUE(test::waitUntil([this] { return window->size() == QSize(640, 700); }));
}

TEST_F(SettingsWindowTest, namesAndDescribesEveryControl) {
    provideModel(QStringLiteral("english"));
    open();
    std::set<QString> names;
    for (const QWidget* const control : visibleControls()) {
        EXPECT_FALSE(control->accessibleName().isEmpty());
        EXPECT_FALSE(control->accessibleDescription().isEmpty())
            << control->accessibleName().toStdString();
        EXPECT_TRUE(names.insert(control->accessibleName()).second)
            << control->accessibleName().toStdString();
    }
}

TEST_F(SettingsWindowTest, isWalkedThroughFromTopToBottomWithTab) {
    provideModel(QStringLiteral("english"));
    open(R"({"dictateChords":[12,3],"dictateEnterChords":[5]})");
    std::set<QWidget*> visited;
    QWidget* control = window->focusWidget();
    ASSERT_NE(control, nullptr);
    while (visited.insert(control).second) {
        QWidget* const before = control;
        QTest::keyClick(before, Qt::Key_Tab);
        control = window->focusWidget();
        const QPoint from = before->mapTo(window->widget(), before->rect().center());
        const QPoint to = control->mapTo(window->widget(), control->rect().center());
        const bool isOnward = to.y() > from.y() + 8 || (to.x() > from.x() && to.y() > from.y() - 8);
        EXPECT_TRUE(isOnward || visited.count(control) == 1)
            << before->accessibleName().toStdString() << " -> "
            << control->accessibleName().toStdString();
    }
    for (QWidget* const widget : visibleControls()) {
        EXPECT_TRUE(visited.count(widget) == 1 || !widget->isEnabled())
            << widget->accessibleName().toStdString();
    }
}

TEST_F(SettingsWindowTest, writesNothingByBeingLookedAt) {
    const QByteArray config = R"({"animAppear":7,"holdDuration":99,"pillStyle":"huge",
        "inputDeviceUID":"gone","model":"other","dictateChords":[12,12,0]})";
    open(config);
    app->windows->refreshSettings();
    window->close();
    EXPECT_EQ(test::readFile(Config::url()), config);
}

/// The window after the controller of the program has gone.
class SettingsWindowAlone : public SettingsWindowTest {
protected:
    void openAndLoseTheController() {
        open(R"({"dictateChords":[12,3],"animAppear":0.5,"boostMic":false,"playSounds":true,
                 "pillStyle":"minimal"})");
        m_windows = std::move(app->windows);
        app->applicationWillTerminate();
        app.reset();
        m_config = test::readFile(Config::url());
    }

    void TearDown() override {
        m_windows.reset();
        window = nullptr;
    }

    std::unique_ptr<Windows> m_windows;
    QByteArray m_config;
};

TEST_F(SettingsWindowAlone, showsDefaults) {
    openAndLoseTheController();
    m_windows->refreshSettings();
    EXPECT_FALSE(isVisible(QStringLiteral("Remove Shift+Super from Dictate")));
    EXPECT_TRUE(isVisible(QStringLiteral("Add combo to Dictate")));
    EXPECT_TRUE(get<QCheckBox>(QStringLiteral("Boost quiet microphone")).isChecked());
    for (const char* name :
         {"Play start / stop sound", "Leave transcript in clipboard", "Launch Sayloft at login"})
        EXPECT_FALSE(get<QCheckBox>(QLatin1String(name)).isChecked()) << name;
    EXPECT_EQ(get<QLineEdit>(QStringLiteral("Appear speed in milliseconds")).text(),
              QStringLiteral("140 ms"));
    EXPECT_EQ(get<QLineEdit>(QStringLiteral("Show after release in milliseconds")).text(),
              QStringLiteral("1000 ms"));
    EXPECT_EQ(get<QComboBox>(QStringLiteral("Input device")).count(), 1);
}

TEST_F(SettingsWindowAlone, doesNothing) {
    openAndLoseTheController();
    for (QWidget* const control : visibleControls()) {
        QTest::mouseClick(control, Qt::LeftButton);
        QTest::keyClick(control, Qt::Key_Down);
        QTest::keyClick(control, Qt::Key_Return);
    }
    EXPECT_EQ(test::readFile(Config::url()), m_config);
}

}  // namespace
}  // namespace sayloft
