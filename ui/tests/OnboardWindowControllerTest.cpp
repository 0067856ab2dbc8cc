// SPDX-License-Identifier: MIT
#include "ui/tests/OnboardFixture.h"

#include "ui/SettingsWindowController.h"
#include "ui/StatusColours.h"

#include <QApplication>
#include <QFileInfo>
#include <QScreen>

#include <algorithm>
#include <chrono>

#include <gmock/gmock.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using Authorization = AudioInput::Authorization;
using testing::ElementsAre;
using testing::IsEmpty;

const QString microphonePane =
    QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_Microphone");
const QString accessibilityPane =
    QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility");
constexpr auto aboutASecond = 1500ms;

class OnboardWindow : public test::OnboardFixture {
protected:
    OnboardWindow() { provideModel(); }

    [[nodiscard]] QStringList texts() const {
        QStringList shown;
        for (const QLabel* each : window().findChildren<QLabel*>()) {
            if (each->isVisible())
                shown << each->text();
        }
        return shown;
    }
};

TEST_F(OnboardWindow, hasItsTextsAndItsPlace) {
    open();
    EXPECT_EQ(window().windowTitle(), QStringLiteral("Welcome to Sayloft"));
    EXPECT_GE(window().width(), 480);
    EXPECT_GE(window().height(), 360);
    for (const char* text :
         {"Welcome to Sayloft", "Grant two permissions — the model downloads automatically.",
          "1. Microphone", "2. Accessibility", "3. Model", "4. Hotkeys",
          "Hold ⌘⇧ to dictate. “Dictate + Enter” is off — add or change either combo anytime."})
        EXPECT_TRUE(texts().contains(QString::fromUtf8(text))) << text;
    EXPECT_EQ(mic()->text(), QStringLiteral("Grant"));
    EXPECT_EQ(acc()->text(), QStringLiteral("Grant"));
    EXPECT_EQ(model()->text(), QStringLiteral("Download"));
    EXPECT_EQ(hotkeys()->text(), QStringLiteral("Customize…"));
}

TEST_F(OnboardWindow, isNoWiderThanItsColumnsNeed) {
    open();
    const QList<QPushButton*> buttons{mic(), acc(), model(), hotkeys()};
    int widest = 0;
    for (const QPushButton* each : buttons)
        widest = std::max(widest, each->sizeHint().width());
    EXPECT_EQ(window().width(), std::max(480, 24 + 130 + 14 + 210 + 14 + widest + 24));
}

TEST_F(OnboardWindow, opensInTheMiddleOfTheScreen) {
    open();
    const QPoint middle = window().screen()->availableGeometry().center();
    EXPECT_TRUE(test::waitUntil([&] {
        const QPoint off = window().geometry().center() - middle;
        return std::abs(off.x()) <= 15 && std::abs(off.y()) <= 30;
    }));
}

TEST_F(OnboardWindow, showsWhatIsThere) {
    open();
    EXPECT_EQ(micStatus(), ready);
    EXPECT_EQ(accStatus(), ready);
    EXPECT_EQ(modelStatus(), ready);
    EXPECT_FALSE(mic()->isEnabled());
    EXPECT_FALSE(acc()->isEnabled());
    EXPECT_FALSE(model()->isEnabled());
    EXPECT_TRUE(hotkeys()->isEnabled());
    EXPECT_EQ(label("State of the microphone")->palette().color(QPalette::WindowText),
              textColour(TextRole::good, window().palette()));
}

TEST_F(OnboardWindow, showsWhatIsMissing) {
    fakes.audio.answer = Authorization::denied;
    fakes.privacy.trusted = false;
    open();
    EXPECT_EQ(micStatus(), notYet);
    EXPECT_EQ(accStatus(), notYet);
    EXPECT_TRUE(mic()->isEnabled());
    EXPECT_TRUE(acc()->isEnabled());
    EXPECT_EQ(label("State of the microphone")->palette().color(QPalette::WindowText),
              textColour(TextRole::warning, window().palette()));
}

TEST_F(OnboardWindow, seesWithinASecondThatAccessibilityWasGranted) {
    fakes.privacy.trusted = false;
    open();
    EXPECT_EQ(accStatus(), notYet);
    fakes.privacy.trusted = true;
    EXPECT_TRUE(test::waitUntil([&] { return accStatus() == ready; }, aboutASecond));
    EXPECT_FALSE(acc()->isEnabled());
}

TEST_F(OnboardWindow, seesWithinASecondThatTheMicrophoneWasTakenAway) {
    open();
    EXPECT_EQ(micStatus(), ready);
    fakes.audio.answer = Authorization::denied;
    EXPECT_TRUE(test::waitUntil([&] { return micStatus() == notYet; }, aboutASecond));
    EXPECT_TRUE(mic()->isEnabled());
}

TEST_F(OnboardWindow, asksForTheMicrophoneAndShowsTheAnswerAtOnce) {
    fakes.audio.answer = Authorization::notDetermined;
    fakes.audio.userSays = Authorization::authorized;
    open();
    EXPECT_EQ(micStatus(), notYet);
    click(mic());
    EXPECT_EQ(fakes.audio.accessRequests, 1);
    EXPECT_EQ(micStatus(), ready);
    EXPECT_FALSE(mic()->isEnabled());
    EXPECT_THAT(fakes.privacy.opened, IsEmpty());
}

TEST_F(OnboardWindow, opensThePaneOfTheMicrophoneOnceItWasDenied) {
    fakes.audio.answer = Authorization::notDetermined;
    fakes.audio.userSays = Authorization::denied;
    open();
    click(mic());
    EXPECT_EQ(micStatus(), notYet);
    EXPECT_TRUE(mic()->isEnabled());
    EXPECT_THAT(fakes.privacy.opened, IsEmpty());
    click(mic());
    EXPECT_EQ(fakes.audio.accessRequests, 1);
    EXPECT_THAT(fakes.privacy.opened, ElementsAre(microphonePane));
}

TEST_F(OnboardWindow, opensThePaneOfTheMicrophoneWhereNobodyAnswers) {
    fakes.audio.answer = Authorization::notDetermined;
    open();
    click(mic());
    EXPECT_EQ(fakes.audio.accessRequests, 1);
    EXPECT_THAT(fakes.privacy.opened, ElementsAre(microphonePane));
}

TEST_F(OnboardWindow, opensThePaneOfTheKeyboard) {
    fakes.privacy.trusted = false;
    open();
    click(acc());
    EXPECT_THAT(fakes.privacy.opened, ElementsAre(accessibilityPane));
}

TEST_F(OnboardWindow, opensTheSettingsForTheHotkeysAndStaysOpen) {
    open();
    click(hotkeys());
    EXPECT_NE(appWindows->settingsWC, nullptr);
    EXPECT_TRUE(window().isVisible());
}

TEST_F(OnboardWindow, closesThroughDoneByReturnAndPollsAgainWhenReopened) {
    fakes.privacy.trusted = false;
    open();
    EXPECT_TRUE(controller().polls());
    QTest::keyClick(&window(), Qt::Key_Return);
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(controller().polls());
    open();
    EXPECT_TRUE(controller().polls());
    fakes.privacy.trusted = true;
    EXPECT_TRUE(test::waitUntil([&] { return accStatus() == ready; }, aboutASecond));
}

TEST_F(OnboardWindow, takesReturnForDoneWhateverHasTheKeyboard) {
    fakes.privacy.trusted = false;
    open();
    acc()->setFocus();
    QTest::keyClick(acc(), Qt::Key_Return);
    EXPECT_FALSE(window().isVisible());
    EXPECT_THAT(fakes.privacy.opened, IsEmpty());
}

TEST_F(OnboardWindow, stopsPollingHoweverItIsClosed) {
    open();
    click(done());
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(controller().polls());
    open();
    window().close();
    EXPECT_FALSE(controller().polls());
    open();
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(controller().polls());
    open();
    QTest::keyClick(&window(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(controller().polls());
}

TEST_F(OnboardWindow, looksAtNothingWhileItIsClosed) {
    open();
    window().close();
    fakes.privacy.trusted = false;
    test::turnEventLoopFor(aboutASecond);
    EXPECT_EQ(accStatus(), ready);
}

TEST_F(OnboardWindow, writesNoConfigurationWhenNothingIsMissing) {
    test::writeFile(Config::url(), R"({"model":"multilingual","of":"another version"})");
    open();
    EXPECT_EQ(test::readFile(Config::url()), R"({"model":"multilingual","of":"another version"})");
}

TEST_F(OnboardWindow, isWalkedThroughWithTheKeyboard) {
    fakes.privacy.trusted = false;
    fakes.audio.answer = Authorization::denied;
    open();
    mic()->setFocus();
    QTest::keyClick(mic(), Qt::Key_Space);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), acc());
    QTest::keyClick(acc(), Qt::Key_Space);
    EXPECT_THAT(fakes.privacy.opened, ElementsAre(microphonePane, accessibilityPane));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), hotkeys()) << "the disabled button is left out";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), done());
    QTest::keyClick(done(), Qt::Key_Space);
    EXPECT_FALSE(window().isVisible());
}

TEST_F(OnboardWindow, namesAndDescribesEveryButtonDifferently) {
    open();
    QStringList names;
    for (const QPushButton* each : window().findChildren<QPushButton*>()) {
        EXPECT_FALSE(each->accessibleDescription().isEmpty()) << each->text().toStdString();
        EXPECT_TRUE(each->accessibleName().startsWith(each->text().chopped(1)));
        names << each->accessibleName();
    }
    EXPECT_EQ(names.size(), 6);
    EXPECT_EQ(names.removeDuplicates(), 0);
}

TEST_F(OnboardWindow, saysHowToGetATrayOnceNoneHasCome) {
    const auto speaksOfTheTray = [this] {
        const QStringList shown = texts();
        return std::any_of(shown.begin(), shown.end(), [](const QString& text) {
            return text.startsWith(QStringLiteral("No tray here:"));
        });
    };
    fakes.trayItem.isThere = false;
    delegate->applicationDidFinishLaunching();
    open();
    EXPECT_FALSE(speaksOfTheTray());
    EXPECT_TRUE(test::waitUntil(speaksOfTheTray, 20s));
    fakes.trayItem.setShown(true);
    EXPECT_TRUE(test::waitUntil([&] { return !speaksOfTheTray(); }, aboutASecond));
}

TEST_F(OnboardWindow, fallsBackToTheMultilingualModelOnceTheControllerIsGone) {
    OnboardWindowController orphan(*delegate);
    delegate.reset();
    orphan.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&orphan.window()));
    const auto labels = orphan.window().findChildren<QLabel*>();
    const auto shows = [&labels](const QString& text) {
        return std::count_if(labels.begin(), labels.end(),
                             [&text](const QLabel* each) { return each->text() == text; });
    };
    EXPECT_EQ(shows(ready), 1);
    EXPECT_EQ(shows(notYet), 2);
    for (QPushButton* each : orphan.window().findChildren<QPushButton*>())
        QTest::mouseClick(each, Qt::LeftButton);
    EXPECT_FALSE(orphan.window().isVisible());
    EXPECT_FALSE(QFileInfo::exists(Config::url()));
}

}  // namespace
}  // namespace sayloft
