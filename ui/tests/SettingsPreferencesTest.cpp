// SPDX-License-Identifier: MIT
// Microphone, overlay, check boxes, permissions and the reset, by mouse and keys.
#include "tests/support/WaitUntil.h"
#include "ui/AppWindows.h"
#include "ui/DictWindowController.h"
#include "ui/SettingsWindowController.h"
#include "ui/tests/SettingsFixture.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

#include <gmock/gmock.h>

namespace sayloft {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const QString inputDevice = QStringLiteral("Input device");
const QString overlayStyle = QStringLiteral("Overlay");
const QString launchAtLogin = QStringLiteral("Launch Sayloft at login");
const QString openMicrophone = QStringLiteral("Open Settings: Microphone");
const QString resetButton = QStringLiteral("Reset to defaults");

class SettingsPreferences : public SettingsFixture {
protected:
    [[nodiscard]] QComboBox& popUp(const QString& name) const { return get<QComboBox>(name); }
    [[nodiscard]] bool isChecked(const QString& name) const {
        return get<QCheckBox>(name).isChecked();
    }

    /// Opens the list and clicks one of its entries.
    void pick(const QString& name, int index) const {
        QComboBox& box = popUp(name);
        QTest::mouseClick(&box, Qt::LeftButton);
        ASSERT_TRUE(test::waitUntil([&] { return box.view()->isVisible(); }));
        const QRect entry = box.view()->visualRect(box.model()->index(index, 0));
        // The list takes no click within the time of a double click after it has opened.
        ASSERT_TRUE(test::waitUntil([&] {
            QTest::mouseMove(box.view()->viewport(), entry.center());
            QTest::mouseClick(box.view()->viewport(), Qt::LeftButton, {}, entry.center());
            return !box.view()->isVisible();
        }));
    }
};

TEST_F(SettingsPreferences, listTheMicrophonesAfterTheBuiltInOne) {
    open();
    ASSERT_EQ(popUp(inputDevice).count(), 3);
    EXPECT_EQ(popUp(inputDevice).itemText(0), QStringLiteral("Built-in mic (recommended)"));
    EXPECT_EQ(popUp(inputDevice).itemText(2), QStringLiteral("Desk Microphone"));
    EXPECT_EQ(popUp(inputDevice).currentIndex(), 0);
}

TEST_F(SettingsPreferences, storeTheMicrophoneThatIsPicked) {
    open();
    pick(inputDevice, 2);
    EXPECT_EQ(stored().inputDeviceUID, QStringLiteral("usb"));
    EXPECT_EQ(app->recorder().deviceUID, QStringLiteral("usb"));
}

TEST_F(SettingsPreferences, storeNoMicrophoneForTheBuiltInOne) {
    open(R"({"inputDeviceUID":"usb"})");
    EXPECT_EQ(popUp(inputDevice).currentIndex(), 2);
    QTest::keyClick(&popUp(inputDevice), Qt::Key_Home);
    EXPECT_EQ(stored().inputDeviceUID, std::nullopt);
    EXPECT_EQ(app->recorder().deviceUID, std::nullopt);
}

TEST_F(SettingsPreferences, keepAMicrophoneThatIsNotConnected) {
    const QByteArray config = R"({"inputDeviceUID":"headset"})";
    open(config);
    EXPECT_EQ(popUp(inputDevice).currentIndex(), 0);
    EXPECT_EQ(test::readFile(Config::url()), config);
    EXPECT_EQ(app->cfg.inputDeviceUID, QStringLiteral("headset"));
}

TEST_F(SettingsPreferences, showAMicrophoneOnceItIsConnected) {
    open(R"({"inputDeviceUID":"headset"})");
    fakes.audio.deviceList.push_back(
        {.id = 3, .uid = QStringLiteral("headset"), .name = QStringLiteral("Headset")});
    app->windows->refreshSettings();
    EXPECT_EQ(popUp(inputDevice).currentText(), QStringLiteral("Headset"));
}

TEST_F(SettingsPreferences, showTheMinimalStyle) {
    open(R"({"pillStyle":"minimal"})");
    EXPECT_EQ(popUp(overlayStyle).currentText(), QStringLiteral("Minimal — voice indicator only"));
}

TEST_F(SettingsPreferences, showAnUnknownStyleAsTheFullOneAndKeepIt) {
    const QByteArray config = R"({"pillStyle":"huge"})";
    open(config);
    EXPECT_EQ(popUp(overlayStyle).currentText(), QStringLiteral("Full — waveform + words/min"));
    EXPECT_EQ(test::readFile(Config::url()), config);
}

TEST_F(SettingsPreferences, storeTheStyleThatIsPicked) {
    open();
    popUp(overlayStyle).setFocus();
    QTest::keyClick(&popUp(overlayStyle), Qt::Key_Down);
    EXPECT_EQ(stored().pillStyle, QStringLiteral("minimal"));
    EXPECT_THAT(seen, ElementsAre("menu"));
    EXPECT_TRUE(test::waitUntil([this] { return seen.size() > 1; }));
    EXPECT_THAT(seen, Contains("minimal 0.3 0.3 1"));
}

TEST_F(SettingsPreferences, storeWhetherTheTranscriptStays) {
    open();
    click(QStringLiteral("Leave transcript in clipboard"));
    EXPECT_TRUE(stored().leaveInClipboard);
    click(QStringLiteral("Leave transcript in clipboard"));
    EXPECT_FALSE(stored().leaveInClipboard);
}

TEST_F(SettingsPreferences, storeTheBoostAndTellTheRecorder) {
    open();
    EXPECT_TRUE(isChecked(QStringLiteral("Boost quiet microphone")));
    click(QStringLiteral("Boost quiet microphone"));
    EXPECT_FALSE(stored().boostMic);
    EXPECT_FALSE(app->recorder().boost);
}

TEST_F(SettingsPreferences, storeWhetherThereAreSounds) {
    open();
    auto& check = get<QCheckBox>(QStringLiteral("Play start / stop sound"));
    check.setFocus();
    QTest::keyClick(&check, Qt::Key_Space);
    EXPECT_TRUE(stored().playSounds);
}

TEST_F(SettingsPreferences, tellTheSystemToLaunchAtLogin) {
    const QByteArray config = "{}";
    open(config);
    click(launchAtLogin);
    EXPECT_TRUE(fakes.loginItem.enabled);
    click(launchAtLogin);
    EXPECT_FALSE(fakes.loginItem.enabled);
    EXPECT_EQ(test::readFile(Config::url()), config);
}

TEST_F(SettingsPreferences, askTheSystemEveryTimeWhetherItLaunchesAtLogin) {
    open();
    fakes.loginItem.enabled = true;
    app->windows->refreshSettings();
    EXPECT_TRUE(isChecked(launchAtLogin));
}

TEST_F(SettingsPreferences, showWhatTheSystemSaysWhenItRefusesToLaunchAtLogin) {
    open();
    fakes.loginItem.refusal = QStringLiteral("the folder is read-only");
    click(launchAtLogin);
    EXPECT_FALSE(isChecked(launchAtLogin));
    EXPECT_TRUE(
        home.log().contains(QStringLiteral("login item toggle failed: the folder is read-only\n")));
    EXPECT_EQ(window->findChild<QMessageBox*>(), nullptr);
}

TEST_F(SettingsPreferences, openTheDictionary) {
    open();
    click(QStringLiteral("Edit dictionary…"));
    EXPECT_NE(dynamic_cast<AppWindows&>(*app->windows).dictWC, nullptr);
}

TEST_F(SettingsPreferences, sayWhatIsGranted) {
    open();
    EXPECT_TRUE(isVisible(QStringLiteral("Accessibility: Granted")));
    EXPECT_TRUE(isVisible(QStringLiteral("Microphone: Granted")));
    EXPECT_TRUE(showsText(QStringLiteral("✓ Granted")));
}

TEST_F(SettingsPreferences, sayWhatIsNotGranted) {
    fakes.privacy.trusted = false;
    fakes.audio.answer = AudioInput::Authorization::denied;
    open();
    EXPECT_TRUE(isVisible(QStringLiteral("Accessibility: Not granted")));
    EXPECT_TRUE(isVisible(QStringLiteral("Microphone: Not granted")));
    EXPECT_TRUE(showsText(QStringLiteral("✕ Not granted")));
}

TEST_F(SettingsPreferences, sayWhatIsGrantedOnceTheWindowComesBack) {
    fakes.privacy.trusted = false;
    open();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(test::waitUntil([&] { return other.isActiveWindow(); }));
    fakes.privacy.trusted = true;
    other.close();
    window->activateWindow();
    EXPECT_TRUE(
        test::waitUntil([this] { return isVisible(QStringLiteral("Accessibility: Granted")); }));
}

TEST_F(SettingsPreferences, sayWhatThePermissionsAreHere) {
    open();
    const auto& keyboard = get<QLabel>(QStringLiteral("Accessibility: Granted"));
    const auto& microphone = get<QLabel>(QStringLiteral("Microphone: Granted"));
    for (const QString& text : {keyboard.toolTip(), keyboard.accessibleDescription()})
        EXPECT_THAT(text.toStdString(), HasSubstr("X server"));
    for (const QString& text : {microphone.toolTip(), microphone.accessibleDescription()}) {
        EXPECT_THAT(text.toStdString(), HasSubstr("PipeWire"));
        EXPECT_THAT(text.toStdString(), HasSubstr("PulseAudio"));
    }
}

TEST_F(SettingsPreferences, openTheSettingsOfTheSystem) {
    open();
    click(QStringLiteral("Open Settings: Accessibility"));
    click(openMicrophone);
    ASSERT_EQ(fakes.privacy.opened.size(), 2U);
    EXPECT_TRUE(fakes.privacy.opened[0].endsWith(QStringLiteral("?Privacy_Accessibility")));
    EXPECT_TRUE(fakes.privacy.opened[1].endsWith(QStringLiteral("?Privacy_Microphone")));
    EXPECT_EQ(fakes.audio.accessRequests, 0);
}

TEST_F(SettingsPreferences, askForAMicrophoneThatWasNeverAskedFor) {
    fakes.audio.answer = AudioInput::Authorization::notDetermined;
    fakes.audio.userSays = AudioInput::Authorization::denied;
    open();
    click(openMicrophone);
    EXPECT_EQ(fakes.audio.accessRequests, 1);
    EXPECT_THAT(fakes.privacy.opened, IsEmpty());
}

TEST_F(SettingsPreferences, showTheAnswerAboutTheMicrophone) {
    fakes.audio.answer = AudioInput::Authorization::notDetermined;
    fakes.audio.userSays = AudioInput::Authorization::authorized;
    open();
    EXPECT_TRUE(isVisible(QStringLiteral("Microphone: Not granted")));
    click(openMicrophone);
    EXPECT_TRUE(isVisible(QStringLiteral("Microphone: Granted")));
}

TEST_F(SettingsPreferences, areResetAfterAYes) {
    open(R"({"dictateChords":[3],"pillStyle":"minimal","holdDuration":2,"playSounds":true,
             "inputDeviceUID":"usb","boostMic":false})");
    click(resetButton);
    EXPECT_EQ(stored().pillStyle, QStringLiteral("minimal"));
    answer(QStringLiteral("Reset"));
    EXPECT_EQ(stored(), Config());
    EXPECT_TRUE(isVisible(QStringLiteral("Remove Shift+Super from Dictate")));
    EXPECT_EQ(popUp(overlayStyle).currentIndex(), 0);
    EXPECT_EQ(popUp(inputDevice).currentIndex(), 0);
    EXPECT_TRUE(isChecked(QStringLiteral("Boost quiet microphone")));
}

TEST_F(SettingsPreferences, stayAfterACancel) {
    const QByteArray config = R"({"pillStyle":"minimal"})";
    open(config);
    click(resetButton);
    answer(QStringLiteral("Cancel"));
    EXPECT_EQ(test::readFile(Config::url()), config);
}

TEST_F(SettingsPreferences, stayAfterEscape) {
    const QByteArray config = R"({"pillStyle":"minimal"})";
    open(config);
    click(resetButton);
    QTest::keyClick(window->findChild<QMessageBox*>(), Qt::Key_Escape);
    EXPECT_EQ(test::readFile(Config::url()), config);
}

TEST_F(SettingsPreferences, sayWhatAResetDoes) {
    open();
    click(resetButton);
    const auto* alert = window->findChild<QMessageBox*>();
    ASSERT_NE(alert, nullptr);
    EXPECT_TRUE(alert->isModal());
    EXPECT_EQ(alert->text(), QStringLiteral("Reset all settings to defaults?"));
    EXPECT_EQ(
        alert->informativeText(),
        QStringLiteral("Hotkeys, microphone, overlay and other preferences will be restored."));
}

}  // namespace
}  // namespace sayloft
