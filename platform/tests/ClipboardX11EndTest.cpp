// SPDX-License-Identifier: MIT
// The clipboard when Sayloft, its windows or the X server go.
#include "platform/tests/ClipboardX11Fixture.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/SelectionTestOwner.h"
#include "tests/support/Xclip.h"

#include <csignal>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class ClipboardX11End : public ClipboardX11Fixture {
protected:
    std::chrono::milliseconds handOver() {
        const auto start = Clock::now();
        clipboard->handOver();
        return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    }
};

/// A session bus, which Xfce's programs need to start.
class SessionBus {
public:
    SessionBus()
        : m_daemon(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"), QStringLiteral("--nofork"),
                    QStringLiteral("--print-address")}) {
        if (!waitUntil([&] {
                m_address += m_daemon.standardOutput();
                return m_address.endsWith('\n');
            }))
            throw std::runtime_error("the session bus did not come up");
    }

    [[nodiscard]] QString address() const { return QString::fromLatin1(m_address.trimmed()); }

private:
    ChildProgram m_daemon;
    QByteArray m_address;
};

class RealClipboardManager : public ClipboardX11End {
protected:
    void startManager(const QString& program, const QStringList& arguments) {
        QProcessEnvironment environment = server.environment();
        environment.insert(QStringLiteral("HOME"), home.path());
        environment.insert(QStringLiteral("NO_AT_BRIDGE"), QStringLiteral("1"));
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
        m_manager = std::make_unique<ChildProgram>(program, arguments, environment);
        ASSERT_TRUE(waitUntil(
            [&] { return requestor.owner("CLIPBOARD_MANAGER") != XCB_WINDOW_NONE; }, 20s));
    }

    /// Xfce's settings daemon, which keeps clipboards of programs that ask for it.
    void startKeeper() {
        startManager(QStringLiteral("xfsettingsd"), {QStringLiteral("--disable-wm-check")});
    }

    SessionBus bus;

private:
    std::unique_ptr<ChildProgram> m_manager;
};

TEST_F(RealClipboardManager, keepsTheTextAfterSayloftHasEnded) {
    startKeeper();
    setText(QStringLiteral("kept after the end: é"));
    EXPECT_LT(handOver(), 950ms);
    clipboard = nullptr;
    EXPECT_EQ(pasteWithXclip(), "kept after the end: é");
}

TEST_F(RealClipboardManager, keepsEveryRestoredType) {
    startKeeper();
    const QByteArray image = "\x89PNG" + QByteArray(700000, 'x');
    SelectionTestOwner copied({{.name = "text/html", .data = "<b>copied</b>", .type = {}},
                               {.name = "image/png", .data = image, .type = {}}});
    const auto snapshot = take().snapshot;
    setText(QStringLiteral("the transcript"));
    restore(snapshot.value());
    EXPECT_LT(handOver(), 950ms);
    clipboard = nullptr;
    EXPECT_EQ(pasteWithXclip("text/html"), "<b>copied</b>");
    EXPECT_EQ(pasteWithXclip("image/png"), image);
}

TEST_F(RealClipboardManager, doesNotKeepWhatWasNotHandedOver) {
    startKeeper();
    setText(QStringLiteral("text"));
    clipboard = nullptr;
    EXPECT_TRUE(waitUntil([&] { return requestor.owner("CLIPBOARD") == XCB_WINDOW_NONE; }, 2s));
}

// WORKAROUND: xfce4-clipman 1.6.2 claims to be the clipboard manager and never answers.
TEST_F(RealClipboardManager, thatNeverAnswersHoldsUpTheEndForASecondOnly) {
    startManager(QStringLiteral("xfce4-clipman"), {});
    setText(QStringLiteral("text"));
    EXPECT_LT(handOver(), 1300ms);
}

TEST_F(RealClipboardManager, thatReadsTheTextIsNotTheFocusedProgram) {
    startKeeper();
    requestor.takeFocus("Editor");
    setText(QStringLiteral("text"));
    bool fetched = false;
    clipboard->whenTextFetched(20s, [&] { fetched = true; });
    // The manager reads all of it, and owns it afterwards.
    EXPECT_LT(handOver(), 950ms);
    turnEventLoopFor(100ms);
    EXPECT_FALSE(fetched);
}

TEST_F(ClipboardX11End, handsNothingOverWhereThereIsNoManager) {
    setText(QStringLiteral("text"));
    EXPECT_LT(handOver(), 300ms);
}

TEST_F(ClipboardX11End, handsNothingOverThatIsNotOurs) {
    SelectionTestOwner manager({{.name = "SAVE_TARGETS", .data = {}, .type = {}}},
                               "CLIPBOARD_MANAGER");
    EXPECT_LT(handOver(), 300ms);
    EXPECT_TRUE(manager.asked().isEmpty());
}

TEST_F(ClipboardX11End, waitsForAManagerUntilItHasSavedEverything) {
    SelectionTestOwner manager(
        {{.name = "SAVE_TARGETS", .data = {}, .type = "NULL", .delay = 200ms}},
        "CLIPBOARD_MANAGER");
    setText(QStringLiteral("text"));
    const auto took = handOver();
    EXPECT_GE(took, 195ms);
    EXPECT_LT(took, 900ms);
    EXPECT_EQ(manager.asked(), QList<QByteArray>{"SAVE_TARGETS"});
}

TEST_F(ClipboardX11End, waitsForAManagerThatHangsForASecondOnly) {
    SelectionTestOwner manager({{.name = "SAVE_TARGETS",
                                 .data = {},
                                 .type = {},
                                 .manner = SelectionTestOwner::Manner::staysSilent}},
                               "CLIPBOARD_MANAGER");
    setText(QStringLiteral("text"));
    const auto took = handOver();
    EXPECT_GE(took, 990ms);
    EXPECT_LT(took, 1300ms);
}

TEST_F(ClipboardX11End, callsNobodyBackOnceItIsDestroyed) {
    bool called = false;
    XclipOwner owner({.data = "frozen", .type = {}});
    owner.program().signal(SIGSTOP);
    clipboard->takeSnapshot([&](const auto&) { called = true; });
    clipboard->whenTextFetched(20ms, [&] { called = true; });
    clipboard->whenOffered([&] { called = true; });
    clipboard->offerOnPrimary([&] { called = true; });
    clipboard = nullptr;
    turnEventLoopFor(600ms);
    EXPECT_FALSE(called);
}

TEST_F(ClipboardX11End, mayBeDestroyedInACallback) {
    bool called = false;
    clipboard->takeSnapshot([&](const auto&) {
        called = true;
        clipboard = nullptr;
    });
    EXPECT_TRUE(waitUntil([&] { return called; }));
}

TEST_F(ClipboardX11End, answersEverythingAfterTheServerHasGone) {
    setText(QStringLiteral("text"));
    bool fetched = false;
    clipboard->whenTextFetched(400ms, [&] { fetched = true; });
    server.program().signal(SIGKILL);
    ASSERT_TRUE(server.program().waitForEnd(5s));
    EXPECT_FALSE(take().snapshot.has_value());
    clipboard->prepareSnapshot();
    EXPECT_FALSE(take().snapshot.has_value());
    setText(QStringLiteral("into the void"));
    offerOnPrimary();
    restore({});
    EXPECT_LT(handOver(), 300ms);
    EXPECT_TRUE(waitUntil([&] { return fetched; }, 2s));
}

TEST_F(ClipboardX11End, answersASnapshotThatIsUnderWayWhenTheServerGoes) {
    XclipOwner owner({.data = "frozen", .type = {}});
    owner.program().signal(SIGSTOP);
    bool called = false;
    clipboard->takeSnapshot([&](const auto& snapshot) {
        called = true;
        EXPECT_FALSE(snapshot.has_value());
    });
    settle();
    server.program().signal(SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return called; }, 350ms));
}

TEST_F(ClipboardX11End, answersAndEndsThoughTheServerHangs) {
    server.program().signal(SIGSTOP);
    const Taken taken = take();
    EXPECT_FALSE(taken.snapshot.has_value());
    EXPECT_LT(taken.after, 1800ms);
    const auto start = Clock::now();
    clipboard = nullptr;
    EXPECT_LT(Clock::now() - start, 500ms);
    server.program().signal(SIGCONT);
}

TEST(ClipboardX11WithoutServer, answersEverything) {
    const TempHome home;
    const QByteArray before = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":4711");
    ClipboardX11 clipboard;
    qputenv("DISPLAY", before);
    int answers = 0;
    clipboard.prepareSnapshot();
    clipboard.takeSnapshot([&](const auto& snapshot) {
        EXPECT_FALSE(snapshot.has_value());
        ++answers;
    });
    clipboard.setText(QStringLiteral("text"), ClipboardStay::forOnePaste);
    clipboard.whenOffered([&] { ++answers; });
    clipboard.offerOnPrimary([&] { ++answers; });
    clipboard.whenTextFetched(10s, [&] { ++answers; });
    clipboard.restore({});
    clipboard.handOver();
    EXPECT_TRUE(waitUntil([&] { return answers == 4; }, 2s));
    EXPECT_TRUE(home.log().contains(QStringLiteral("clipboard: no X server")));
}

}  // namespace
}  // namespace sayloft::test
