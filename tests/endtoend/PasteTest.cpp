// SPDX-License-Identifier: MIT
// The paster with the real clipboard, keys and focus, into programs that are not ours.
#include "platform/linux/ClipboardX11.h"
#include "platform/linux/FocusX11.h"
#include "platform/linux/KeyPosterX11.h"
#include "platform/linux/ModifierWatchX11.h"
#include "speech/Paster.h"
#include "tests/support/Compositor.h"
#include "tests/support/TargetApplication.h"
#include "tests/support/TestKeyboard.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"
#include "tests/support/Xclip.h"

#include <QTimer>

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <tuple>
#include <vector>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::Target;
using test::TargetApplication;
using test::TestKeyboard;

constexpr std::uint8_t shiftMask = 1;

const std::vector everyTarget{Target::mousepad, Target::featherpad, Target::xterm,
                              Target::xfce4Terminal};
const std::vector editors{Target::mousepad, Target::featherpad};

/// Named rows are told apart by their target first.
std::string rowName(Target target, const std::string& rest = {}) {
    std::string name = test::nameOf(target);
    std::erase(name, '-');
    return name + rest;
}

class PasteFixture {
protected:
    PasteFixture() {
        if (!m_watch.start([](std::uint64_t) {}))
            throw std::runtime_error("the watch did not start");
    }

    /// What is on the clipboard, or nothing.
    static QByteArray clipboardText() {
        try {
            return test::pasteWithXclip();
        } catch (const std::exception&) {
            return {};
        }
    }

    [[nodiscard]] static bool clipboardComesBack() {
        return test::waitUntil([] { return clipboardText() == "before"; }, 5s);
    }

    test::XServer m_server;
    test::WindowManager m_windowManager{m_server};
    test::Compositor m_compositor{m_server};
    test::XclipOwner m_clipboardBefore{{.data = "before", .type = {}}};
    TestKeyboard m_keyboard;
    ModifierWatchX11 m_watch;
    ClipboardX11 m_clipboard;
    KeyPosterX11 m_keyPoster{
        m_watch,
        {.onClipboard =
             [this](KeyPosterX11::Ready ready) { m_clipboard.whenOffered(std::move(ready)); },
         .onPrimary =
             [this](KeyPosterX11::Ready ready) { m_clipboard.offerOnPrimary(std::move(ready)); }}};
    Paster m_paster{m_clipboard, m_keyPoster};
};

struct Circumstance {
    const char* name;
    const char* layouts = "us";
    std::uint8_t activeLayout = 0;
    std::vector<TestKeyboard::Key> held = {};
    std::vector<TestKeyboard::Key> lockKeys = {};
    std::uint8_t latched = 0;
};

const std::vector circumstances{
    Circumstance{.name = "WithNothingSpecial"},
    Circumstance{.name = "WithTheChordStillHeld",
                 .held = {TestKeyboard::shiftLeft, TestKeyboard::superLeft}},
    Circumstance{.name = "WithAltHeld", .held = {TestKeyboard::altLeft}},
    Circumstance{.name = "WithControlHeld", .held = {TestKeyboard::controlLeft}},
    Circumstance{.name = "WithCapsLock", .lockKeys = {TestKeyboard::capsLock}},
    Circumstance{.name = "WithNumLock", .lockKeys = {TestKeyboard::numLock}},
    Circumstance{.name = "WithShiftLatched", .latched = shiftMask},
    Circumstance{.name = "WithRussian", .layouts = "ru"},
    Circumstance{.name = "WithRussianBeforeLatin", .layouts = "ru,us"},
    Circumstance{.name = "WithRussianActiveAfterLatin", .layouts = "us,ru", .activeLayout = 1},
    Circumstance{.name = "WithGreek", .layouts = "gr"},
    Circumstance{.name = "WithGreekBeforeLatin", .layouts = "gr,us"},
    Circumstance{.name = "WithDvorak", .layouts = "us(dvorak)"},
};

class PasteUnder : public PasteFixture,
                   public testing::TestWithParam<std::tuple<Target, Circumstance>> {};

TEST_P(PasteUnder, arrivesUnchangedAndTheClipboardComesBack) {
    const auto& [target, circumstance] = GetParam();
    TargetApplication application(target, m_server);
    m_keyboard.setLayouts(QLatin1String(circumstance.layouts), circumstance.activeLayout);
    for (const TestKeyboard::Key key : circumstance.lockKeys)
        m_keyboard.tap(key);
    for (const TestKeyboard::Key key : circumstance.held)
        m_keyboard.press(key);
    m_keyboard.latch(circumstance.latched);

    const QString words = QStringLiteral("The quick brown Fox, 123.");
    m_paster.prepare();
    m_paster.paste(words, {});
    EXPECT_TRUE(test::waitUntil([] { return clipboardText() != "before"; }, 5s));
    EXPECT_TRUE(clipboardComesBack());
    for (const TestKeyboard::Key key : circumstance.held)
        m_keyboard.release(key);
    EXPECT_EQ(application.textOnce(words), words);
    EXPECT_EQ(m_keyboard.heldModifiers(), 0);
}

INSTANTIATE_TEST_SUITE_P(EndToEnd, PasteUnder,
                         testing::Combine(testing::ValuesIn(everyTarget),
                                          testing::ValuesIn(circumstances)),
                         [](const auto& row) {
                             return rowName(std::get<0>(row.param), std::get<1>(row.param).name);
                         });

struct TextRow {
    const char* name;
    QString text;
};

QString twentyThousandCharacters() {
    QString text;
    for (int i = 0; text.size() < 20000; ++i)
        text += QStringLiteral("word%1 ").arg(i);
    return text.left(19999) + QLatin1Char('.');
}

const std::vector texts{
    TextRow{"TwentyThousandCharacters", twentyThousandCharacters()},
    TextRow{"Emoji", QStringLiteral("🎙 👩‍👩‍👧‍👦 🏳️‍🌈 👍🏽 end")},
    TextRow{"CombiningMarks",
            QStringLiteral("e\u0301 a\u030A n\u0303 \u0928\u093F Z\u0351\u036B end")},
    TextRow{"RightToLeft", QStringLiteral("שלום עולם and مرحبا بالعالم end")},
    TextRow{"SeveralLines", QStringLiteral("first\nsecond\n\n\tfourth, indented\nlast")},
};

class PasteOf : public PasteFixture, public testing::TestWithParam<std::tuple<Target, TextRow>> {};

TEST_P(PasteOf, arrivesUnchanged) {
    const auto& [target, row] = GetParam();
    TargetApplication application(target, m_server);
    m_paster.paste(row.text, {});
    EXPECT_EQ(application.textOnce(row.text), row.text);
    EXPECT_TRUE(clipboardComesBack());
}

INSTANTIATE_TEST_SUITE_P(EndToEnd, PasteOf,
                         testing::Combine(testing::ValuesIn(everyTarget), testing::ValuesIn(texts)),
                         [](const auto& row) {
                             return rowName(std::get<0>(row.param), std::get<1>(row.param).name);
                         });

class PasteInto : public PasteFixture, public testing::TestWithParam<Target> {};

TEST_P(PasteInto, anApplicationThatIsFrozenMeanwhileStillBringsTheWords) {
    TargetApplication application(GetParam(), m_server);
    application.program().signal(SIGSTOP);
    QTimer::singleShot(1500ms, [&] { application.program().signal(SIGCONT); });
    m_paster.paste(QStringLiteral("the words"), {});
    test::turnEventLoopFor(1500ms);
    EXPECT_EQ(application.textOnce(QStringLiteral("the words")), QStringLiteral("the words"));
    EXPECT_TRUE(clipboardComesBack());
}

TEST_P(PasteInto, isAlwaysThereBeforeReturnActs) {
    constexpr int times = 200;
    TargetApplication application(GetParam(), m_server);
    QString expected;
    for (int i = 0; i < times; ++i) {
        const QString line = QStringLiteral("line %1").arg(i);
        expected += line + QLatin1Char('\n');
        m_paster.paste(line, {.pressEnter = true});
    }
    EXPECT_EQ(application.textOnce(expected, 60s), expected);
}

TEST_P(PasteInto, aSecondPasteRightAfterTheFirstFollowsIt) {
    TargetApplication application(GetParam(), m_server);
    m_paster.paste(QStringLiteral("first "), {});
    m_paster.paste(QStringLiteral("second"), {});
    EXPECT_EQ(application.textOnce(QStringLiteral("first second")), QStringLiteral("first second"));
    EXPECT_TRUE(test::waitUntil([] { return clipboardText() == "first "; }, 5s));
}

TEST_P(PasteInto, leavesTheSelectionOfTheUserAsItWas) {
    const test::XclipOwner selected({.data = "selected", .type = {}, .selection = "primary"});
    TargetApplication application(GetParam(), m_server);
    m_paster.paste(QStringLiteral("words"), {});
    EXPECT_EQ(application.textOnce(QStringLiteral("words")), QStringLiteral("words"));
    EXPECT_TRUE(clipboardComesBack());
    EXPECT_TRUE(test::waitUntil(
        [] { return test::pasteWithXclip("UTF8_STRING", "primary") == "selected"; }, 3s));
}

TEST_P(PasteInto, keepsWhatTheUserCopiesWhileTheChordIsStillHeld) {
    TargetApplication application(GetParam(), m_server);
    m_keyboard.press(TestKeyboard::superLeft);
    m_paster.prepare();
    m_paster.paste(QStringLiteral("words"), {});
    test::turnEventLoopFor(200ms);
    const test::XclipOwner copied({.data = "copied meanwhile", .type = {}});
    m_keyboard.release(TestKeyboard::superLeft);
    EXPECT_EQ(application.textOnce(QStringLiteral("words")), QStringLiteral("words"));
    EXPECT_TRUE(test::waitUntil([] { return clipboardText() == "copied meanwhile"; }, 5s));
}

TEST_P(PasteInto, staysOnTheClipboardWhenItIsToStayThere) {
    TargetApplication application(GetParam(), m_server);
    m_paster.paste(QStringLiteral("words"), {.keepInClipboard = true});
    EXPECT_EQ(application.textOnce(QStringLiteral("words")), QStringLiteral("words"));
    test::turnEventLoopFor(500ms);
    EXPECT_EQ(clipboardText(), "words");
}

INSTANTIATE_TEST_SUITE_P(EndToEnd, PasteInto, testing::ValuesIn(everyTarget),
                         [](const auto& row) { return rowName(row.param); });

class PasteIntoEditor : public PasteInto {};

TEST_P(PasteIntoEditor, replacesTheSelectedText) {
    TargetApplication application(GetParam(), m_server, QStringLiteral("what was there before"));
    application.selectAll();
    m_paster.paste(QStringLiteral("new words"), {});
    EXPECT_EQ(application.textOnce(QStringLiteral("new words")), QStringLiteral("new words"));
}

INSTANTIATE_TEST_SUITE_P(EndToEnd, PasteIntoEditor, testing::ValuesIn(editors),
                         [](const auto& row) { return rowName(row.param); });

class PasteIntoDialog : public PasteFixture, public testing::Test {};

TEST_F(PasteIntoDialog, returnConfirmsTheTextThatWasPasted) {
    QProcessEnvironment environment = m_server.environment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    test::ChildProgram dialog(QStringLiteral("zenity"), {QStringLiteral("--entry")}, environment);
    const XcbConnection connection = connectToXServer();
    ASSERT_TRUE(test::waitUntil(
        [&] { return FocusX11(connection.get()).focused().windowClass.toLower() == "zenity"; }));
    m_paster.paste(QStringLiteral("said in a field"), {.pressEnter = true});
    ASSERT_TRUE(test::waitUntil([&] { return !dialog.isRunning(); }));
    EXPECT_EQ(dialog.standardOutput(), "said in a field\n");
}

}  // namespace
}  // namespace sayloft
