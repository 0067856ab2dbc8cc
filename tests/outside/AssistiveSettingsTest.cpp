// SPDX-License-Identifier: MIT
// The settings window by assistive technology.
#include "tests/outside/Controls.h"
#include "tests/outside/SettingsOnDesk.h"
#include "tests/support/WaitUntil.h"

#include <QFile>

#include <utility>
#include <vector>

#include <gmock/gmock.h>

namespace sayloft::test {
namespace {

using State = AccessibleObject::State;

using roles::button;
using roles::checkBox;
using roles::comboBox;
using roles::field;
using roles::slider;

const QString window = WindowDesk::settings;

const QString multilingualFile = QStringLiteral("parakeet-tdt-0.6b-v3-f16.gguf");
const QString englishFile = QStringLiteral("parakeet-tdt-0.6b-v2-f16.gguf");

/// From top to bottom.
const std::vector<Control> controls{
    {QStringLiteral("Open Settings: Accessibility"), button},
    {QStringLiteral("Open Settings: Microphone"), button},
    {QStringLiteral("Download Multilingual (v3) — 25 languages"), button},
    {QStringLiteral("Use English only (v2) — best for English"), button},
    {QStringLiteral("Delete English only (v2) — best for English"), button},
    {QStringLiteral("Remove Shift+Super from Dictate"), button},
    {QStringLiteral("Remove Ctrl+Alt from Dictate"), button},
    {QStringLiteral("Add combo to Dictate"), button},
    {QStringLiteral("Remove Ctrl+Shift from Dictate + Enter"), button},
    {QStringLiteral("Add combo to Dictate + Enter"), button},
    {QStringLiteral("Input device"), comboBox},
    {QStringLiteral("Boost quiet microphone"), checkBox},
    {QStringLiteral("Leave transcript in clipboard"), checkBox},
    {QStringLiteral("Edit dictionary…"), button},
    {QStringLiteral("Launch Sayloft at login"), checkBox},
    {QStringLiteral("Play start / stop sound"), checkBox},
    {QStringLiteral("Overlay"), comboBox},
    {QStringLiteral("Appear speed"), slider},
    {QStringLiteral("Appear speed in milliseconds"), field},
    {QStringLiteral("Hide speed"), slider},
    {QStringLiteral("Hide speed in milliseconds"), field},
    {QStringLiteral("Show after release"), slider},
    {QStringLiteral("Show after release in milliseconds"), field},
    {QStringLiteral("Reset to defaults"), button},
};

class AssistiveSettings : public SettingsOnDesk {};

TEST_F(AssistiveSettings, hasItsControlsInTheOrderOfTheWindow) {
    m_desk.provideModel(englishFile);
    open(R"({"model":"starter","dictateChords":[12,3],"dictateEnterChords":[5]})");
    EXPECT_EQ(m_desk.windows().window(window).role(), QStringLiteral("frame"));
    EXPECT_THAT(controlsOf(m_desk, window), testing::UnorderedElementsAreArray(controls));
    const QStringList way = titlesOf(controls);
    EXPECT_EQ(m_desk.walk(window), way);
    EXPECT_EQ(m_desk.walk(window, TestKeyboard::shiftLeft),
              beginningWith(way.front(), backwards(way)));
}

TEST_F(AssistiveSettings, removesAChord) {
    open(R"({"model":"starter","dictateChords":[12,3]})");
    press(QStringLiteral("Remove Shift+Super from Dictate"));
    EXPECT_TRUE(m_desk.isSaved("dictateChords", {3}));
}

TEST_F(AssistiveSettings, addsAChord) {
    open();
    press(QStringLiteral("Add combo to Dictate + Enter"));
    static_cast<void>(control(QStringLiteral("Press a combo for Dictate + Enter")));
    EXPECT_FALSE(control(QStringLiteral("Add combo to Dictate")).is(State::sensitive));
    m_desk.keyboard().tapWith(TestKeyboard::controlLeft, TestKeyboard::altLeft);
    static_cast<void>(control(QStringLiteral("Remove Ctrl+Alt from Dictate + Enter")));
    EXPECT_TRUE(m_desk.isSaved("dictateEnterChords", {3}));
}

TEST_F(AssistiveSettings, switchesCheckBoxes) {
    open();
    const std::pair<const char*, QString> boxes[] = {
        {"boostMic", QStringLiteral("Boost quiet microphone")},
        {"leaveInClipboard", QStringLiteral("Leave transcript in clipboard")},
        {"playSounds", QStringLiteral("Play start / stop sound")}};
    for (const auto& [key, title] : boxes) {
        const bool wasOn = control(title).is(State::checked);
        press(title);
        EXPECT_NE(control(title).is(State::checked), wasOn) << key;
        EXPECT_TRUE(m_desk.isSaved(key, !wasOn)) << key;
    }
}

TEST_F(AssistiveSettings, startsTheProgramAtLogin) {
    open();
    press(QStringLiteral("Launch Sayloft at login"));
    EXPECT_TRUE(waitUntil([this] {
        return QFile::exists(m_desk.home() +
                             QStringLiteral("/.config/autostart/org.sayloft.Sayloft.desktop"));
    }));
    EXPECT_TRUE(control(QStringLiteral("Launch Sayloft at login")).is(State::checked));
}

TEST_F(AssistiveSettings, choosesAStyle) {
    open();
    control(QStringLiteral("Overlay")).act(QStringLiteral("ShowMenu"));
    m_desk.keyboard().tap(TestKeyboard::end);
    m_desk.keyboard().tap(TestKeyboard::returnKey);
    EXPECT_TRUE(m_desk.isSaved("pillStyle", "minimal"));
    EXPECT_EQ(control(QStringLiteral("Overlay")).name(),
              QStringLiteral("Minimal — voice indicator only"));
}

TEST_F(AssistiveSettings, choosesAMicrophone) {
    plugInHeadset();
    open();
    const QString title = QStringLiteral("Input device");
    EXPECT_EQ(control(title).name(), QStringLiteral("Built-in mic (recommended)"));
    control(title).act(QStringLiteral("ShowMenu"));
    m_desk.keyboard().type(QStringLiteral("head"));
    m_desk.keyboard().tap(TestKeyboard::returnKey);
    EXPECT_TRUE(m_desk.isSaved("inputDeviceUID", "headset"));
    EXPECT_EQ(control(title).name(), QStringLiteral("Headset"));
}

TEST_F(AssistiveSettings, movesSliders) {
    open();
    const AccessibleObject appear = control(QStringLiteral("Appear speed"));
    appear.setValue(1810);
    EXPECT_TRUE(waitUntil([this] {
        return control(QStringLiteral("Appear speed in milliseconds")).text() ==
               QStringLiteral("250 ms");
    }));
    EXPECT_NEAR(m_desk.config().value("animAppear", 0.0), 0.181, 0.001);
    control(QStringLiteral("Show after release")).setValue(2000);
    EXPECT_TRUE(m_desk.isSaved("holdDuration", 2.0));
}

TEST_F(AssistiveSettings, takesWhatIsWrittenIntoAField) {
    open();
    const AccessibleObject hold = control(QStringLiteral("Show after release in milliseconds"));
    hold.grabFocus();
    hold.setText(QStringLiteral("2500"));
    control(QStringLiteral("Reset to defaults")).grabFocus();
    EXPECT_TRUE(m_desk.isSaved("holdDuration", 2.5));
    EXPECT_EQ(hold.text(), QStringLiteral("2500 ms"));
}

TEST_F(AssistiveSettings, usesAndDeletesModels) {
    m_desk.provideModel(englishFile);
    m_desk.provideModel(multilingualFile);
    open();
    press(QStringLiteral("Use English only (v2) — best for English"));
    EXPECT_TRUE(m_desk.isSaved("model", "english"));
    press(QStringLiteral("Delete Multilingual (v3) — 25 languages"));
    press(QStringLiteral("Delete"));
    EXPECT_TRUE(waitUntil([this] {
        return !QFile::exists(m_desk.home() + QStringLiteral("/.sayloft/models/") +
                              multilingualFile);
    }));
}

TEST_F(AssistiveSettings, resetsAfterAsking) {
    open(R"({"model":"starter","dictateChords":[3],"holdDuration":2})");
    press(QStringLiteral("Reset to defaults"));
    press(QStringLiteral("Cancel"));
    EXPECT_TRUE(m_desk.isSaved("dictateChords", {3}));
    press(QStringLiteral("Reset to defaults"));
    press(QStringLiteral("Reset"));
    EXPECT_TRUE(m_desk.isSaved("dictateChords", {12}));
    EXPECT_TRUE(m_desk.isSaved("holdDuration", 1.0));
}

}  // namespace
}  // namespace sayloft::test
