// SPDX-License-Identifier: MIT
#include "platform/linux/FocusX11.h"
#include "platform/tests/ClipboardX11Fixture.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/SelectionTestOwner.h"
#include "tests/support/Xclip.h"

#include <QFile>

#include <csignal>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class ClipboardX11Primary : public ClipboardX11Fixture {
protected:
    QByteArray primary() {
        const auto reply = requestor.read("UTF8_STRING", "PRIMARY");
        return reply ? reply->data : QByteArray();
    }

    /// How PRIMARY is seen by a program that has not the focus.
    static QByteArray primarySeenByAnother() { return pasteWithXclip("UTF8_STRING", "primary"); }
};

TEST_F(ClipboardX11Primary, isLeftAloneByTheTextItself) {
    XclipOwner selected({.data = "selected", .type = {}, .selection = "primary"});
    setText(QStringLiteral("text"));
    EXPECT_EQ(primary(), "selected");
}

TEST_F(ClipboardX11Primary, offersTheTextAndComesBackSoonAfterTheTerminalHasReadIt) {
    XclipOwner selected({.data = "selected", .type = {}, .selection = "primary"});
    requestor.takeFocus("XTerm");
    setText(QStringLiteral("text"));
    const auto start = Clock::now();
    offerOnPrimary();
    EXPECT_EQ(primary(), "text");
    ASSERT_TRUE(waitUntil([&] { return primarySeenByAnother() == "selected"; }, 3s));
    EXPECT_GE(Clock::now() - start, 295ms);
    EXPECT_LT(Clock::now() - start, 900ms);
    EXPECT_EQ(requestor.read("UTF8_STRING").value().data, "text");
}

TEST_F(ClipboardX11Primary, waitsForATerminalThatIsSlow) {
    XclipOwner selected({.data = "selected", .type = {}, .selection = "primary"});
    requestor.takeFocus("XTerm");
    setText(QStringLiteral("text"));
    offerOnPrimary();
    turnEventLoopFor(700ms);
    EXPECT_EQ(primarySeenByAnother(), "text");
    EXPECT_EQ(primary(), "text");
    ASSERT_TRUE(waitUntil([&] { return primarySeenByAnother() == "selected"; }, 500ms));
}

TEST_F(ClipboardX11Primary, comesBackAfterTwoSecondsWhenNobodyReadsIt) {
    XclipOwner selected({.data = "selected", .type = {}, .selection = "primary"});
    setText(QStringLiteral("text"));
    const auto start = Clock::now();
    offerOnPrimary();
    ASSERT_TRUE(waitUntil([&] { return primarySeenByAnother() == "selected"; }, 5s));
    EXPECT_GE(Clock::now() - start, 1950ms);
    EXPECT_LT(Clock::now() - start, 2500ms);
}

TEST_F(ClipboardX11Primary, comesBackTogetherWithTheClipboard) {
    XclipOwner copied({.data = "copied", .type = {}});
    XclipOwner selected({.data = "selected", .type = {}, .selection = "primary"});
    const auto snapshot = take().snapshot;
    setText(QStringLiteral("text"));
    offerOnPrimary();
    restore(snapshot.value());
    EXPECT_EQ(primary(), "selected");
    EXPECT_EQ(requestor.read("UTF8_STRING").value().data, "copied");
}

TEST_F(ClipboardX11Primary, isEmptyAgainWhenItWasEmpty) {
    setText(QStringLiteral("text"));
    offerOnPrimary();
    EXPECT_EQ(primary(), "text");
    restore({});
    EXPECT_EQ(requestor.owner("PRIMARY"), xcb_window_t{XCB_WINDOW_NONE});
}

TEST_F(ClipboardX11Primary, isNotGivenBackOverANewerSelection) {
    XclipOwner selected({.data = "selected", .type = {}, .selection = "primary"});
    setText(QStringLiteral("text"));
    offerOnPrimary();
    XclipOwner newer({.data = "newer", .type = {}, .selection = "primary"});
    restore({});
    EXPECT_EQ(primary(), "newer");
}

TEST_F(ClipboardX11Primary, keepsTheUsersSelectionOverTwoPastesInARow) {
    XclipOwner selected({.data = "selected", .type = {}, .selection = "primary"});
    setText(QStringLiteral("first"));
    offerOnPrimary();
    setText(QStringLiteral("second"));
    offerOnPrimary();
    EXPECT_EQ(primary(), "second");
    restore({});
    EXPECT_EQ(primary(), "selected");
}

TEST_F(ClipboardX11Primary, keepsTheTextWhereTheSelectionCouldNotBeSaved) {
    XclipOwner selected({.data = "selected", .type = {}, .selection = "primary"});
    selected.program().signal(SIGSTOP);
    setText(QStringLiteral("text"));
    const auto start = Clock::now();
    offerOnPrimary();
    EXPECT_LT(Clock::now() - start, 700ms);
    restore({});
    EXPECT_EQ(primary(), "text");
}

TEST_F(ClipboardX11Primary, countsAsAFetchOfTheText) {
    requestor.takeFocus("XTerm");
    setText(QStringLiteral("text"));
    offerOnPrimary();
    bool fetched = false;
    clipboard->whenTextFetched(20s, [&] { fetched = true; });
    settle();
    turnEventLoopFor(50ms);
    EXPECT_FALSE(fetched);
    EXPECT_EQ(primary(), "text");
    EXPECT_TRUE(waitUntil([&] { return fetched; }, 2s));
}

TEST_F(ClipboardX11Primary, isReadyAtOnceWhereNoTextWasEverSet) {
    offerOnPrimary();
    EXPECT_EQ(requestor.owner("PRIMARY"), xcb_window_t{XCB_WINDOW_NONE});
}

struct TerminalRow {
    const char* description;
    QString program;
    QStringList arguments;  ///< what runs in it follows
};

class RealTerminal : public ClipboardX11Fixture, public testing::WithParamInterface<TerminalRow> {
protected:
    /// A program that says that it is up and then writes what is typed to a file.
    QString typist() {
        QString path = home.path() + QStringLiteral("/typist");
        writeFile(path, QStringLiteral("#!/bin/sh\n>%1\nexec cat >%2\n").arg(up, typed).toUtf8());
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }

    [[nodiscard]] QProcessEnvironment environment() const {
        QProcessEnvironment environment = server.environment();
        environment.insert(QStringLiteral("HOME"), home.path());
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                           QStringLiteral("unix:path=/nonexistent"));
        return environment;
    }

    QString up = home.path() + QStringLiteral("/up");
    QString typed = home.path() + QStringLiteral("/typed");
};

TEST_P(RealTerminal, pastesTheTextWithShiftInsertAndIsSeenToFetchIt) {
    const XclipOwner selected({.data = "selected", .type = {}, .selection = "primary"});
    const auto windowManager = startWindowManager();
    const ChildProgram terminal(GetParam().program, GetParam().arguments + QStringList{typist()},
                                environment());
    const FocusX11 focus(requestor.connection());
    ASSERT_TRUE(waitUntil([&] { return QFile::exists(up); }, 20s));
    ASSERT_TRUE(waitUntil([&] { return pastesWithShiftInsert(focus.focused().windowClass); }, 20s))
        << focus.focused().windowClass.toStdString();

    setText(QStringLiteral("größer 🎙\n"));
    offerOnPrimary();
    run(QStringLiteral("xdotool"), {QStringLiteral("key"), QStringLiteral("shift+Insert")});
    bool fetched = false;
    clipboard->whenTextFetched(20s, [&] { fetched = true; });
    EXPECT_TRUE(waitUntil([&] { return fetched; }, 10s));
    EXPECT_TRUE(waitUntil([&] { return readFile(typed) == "größer 🎙\n"; }, 5s))
        << readFile(typed).toStdString();
    EXPECT_TRUE(
        waitUntil([&] { return pasteWithXclip("UTF8_STRING", "primary") == "selected"; }, 3s));
}

INSTANTIATE_TEST_SUITE_P(ClipboardX11, RealTerminal,
                         testing::Values(TerminalRow{"xterm",
                                                     QStringLiteral("xterm"),
                                                     {QStringLiteral("-u8"), QStringLiteral("-e")}},
                                         TerminalRow{"xfce4Terminal",
                                                     QStringLiteral("xfce4-terminal"),
                                                     {QStringLiteral("--disable-server"),
                                                      QStringLiteral("-e")}}),
                         [](const auto& row) { return row.param.description; });

}  // namespace
}  // namespace sayloft::test
