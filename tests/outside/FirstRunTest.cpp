// SPDX-License-Identifier: MIT
// From an empty home directory to dictated text, on a machine without a network.
#include "helper/tests/SpeechSamples.h"
#include "tests/endtoend/DictationDesk.h"
#include "tests/support/AccessibilityBus.h"
#include "tests/support/AccessibleTree.h"
#include "tests/support/TestPointer.h"
#include "tests/support/WaitUntil.h"

#include <QTemporaryDir>

#include <string>

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using Key = TestKeyboard::Key;

const QString welcome = QStringLiteral("Welcome to Sayloft");

class FirstRun : public testing::Test {
protected:
    FirstRun() { qputenv("https_proxy", "http://127.0.0.1:9"); }
    ~FirstRun() override { qunsetenv("https_proxy"); }

    void click(const QString& window, const char* title) {
        const AccessibleObject control = m_windows.control(window, QString::fromUtf8(title));
        // Only now the window manager has put it where it stays.
        static_cast<void>(m_windows.window(window));
        m_pointer.click(control.place().center());
    }

    /// What the first window says of a step.
    [[nodiscard]] bool says(const char* step, const char* state) const {
        return m_windows.says(welcome, QString::fromUtf8(step), QString::fromUtf8(state));
    }

    void expectDictation(const std::string& words) {
        ASSERT_TRUE(m_desk.sayloft().waitForHelper());
        const helper::test::SpeechSample sample = helper::test::speak(m_directory, words);
        m_desk.say(sample.file);
        ASSERT_TRUE(m_desk.waitForTranscripts(1, 60s)) << m_desk.sayloft().log().toStdString();
        const QString heard = m_desk.transcripts().constFirst();
        EXPECT_LT(helper::test::errorRate({sample}, {heard.toStdString()}), 30)
            << heard.toStdString();
        EXPECT_EQ(m_desk.editor().textOnce(heard), heard);
    }

    QTemporaryDir m_directory;
    DictationDesk m_desk;
    AccessibilityBus m_accessibility{m_desk.bus()};
    AccessibleTree m_windows{m_accessibility};
    TestPointer m_pointer;
};

TEST_F(FirstRun, leadsFromNothingToDictatedText) {
    m_desk.startSayloftForTheFirstTime();
    static_cast<void>(m_windows.window(welcome));
    EXPECT_TRUE(says("State of the microphone", "✓ Ready"));
    EXPECT_TRUE(says("State of the keyboard's reach", "✓ Ready"));
    EXPECT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("model download multilingual: FAILED")));
    EXPECT_TRUE(says("State of the speech model", "✕ Not yet"));

    click(welcome, "Use Starter");
    EXPECT_TRUE(says("State of the speech model", "✓ Ready"));
    m_desk.keyboard().tap(Key::returnKey);
    m_windows.waitUntilGone(welcome);
    ASSERT_NO_FATAL_FAILURE(expectDictation("good morning how are you today"));

    m_desk.restartSayloft();
    ASSERT_TRUE(m_desk.sayloft().waitForHelper());
    EXPECT_FALSE(m_windows.findWindow(welcome));
}

}  // namespace
}  // namespace sayloft::test
