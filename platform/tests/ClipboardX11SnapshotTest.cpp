// SPDX-License-Identifier: MIT
#include "platform/tests/ClipboardX11Fixture.h"
#include "tests/support/SelectionTestOwner.h"
#include "tests/support/Xclip.h"

#include <QRandomGenerator>
#include <QTimer>

#include <csignal>
#include <thread>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using Manner = SelectionTestOwner::Manner;
using Clock = std::chrono::steady_clock;

QByteArray randomBytes(qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator generator(7);
    generator.generate(bytes.begin(), bytes.end());
    return bytes;
}

class ClipboardX11Snapshot : public ClipboardX11Fixture {};

struct ForeignRow {
    const char* description;
    QByteArray type;
    QByteArray data;
};

class ForeignClipboard : public ClipboardX11Fixture,
                         public testing::WithParamInterface<ForeignRow> {};

TEST_P(ForeignClipboard, comesBackByteForByte) {
    const ForeignRow& row = GetParam();
    XclipOwner owner({.data = row.data, .type = row.type});
    clipboard->prepareSnapshot();
    const auto snapshot = take().snapshot;
    ASSERT_TRUE(snapshot.has_value());
    EXPECT_EQ(dataOf(snapshot, row.type), row.data);

    setText(QStringLiteral("the transcript"));
    EXPECT_TRUE(owner.program().waitForEnd(5s));
    EXPECT_EQ(pasteWithXclip(), "the transcript");
    restore(*snapshot);
    EXPECT_EQ(pasteWithXclip(row.type), row.data);
}

INSTANTIATE_TEST_SUITE_P(
    ClipboardX11, ForeignClipboard,
    testing::Values(
        ForeignRow{"text", "UTF8_STRING", "what was copied before: \xC3\xA9\xF0\x9F\x8E\x99"},
        ForeignRow{"html", "text/html", "<p>fett <b>kopiert</b></p>"},
        ForeignRow{"image", "image/png",
                   QByteArray("\x89PNG\r\n\x1a\n", 8) + randomBytes(qsizetype{5} * 1024 * 1024)},
        ForeignRow{"uriList", "text/uri-list", "file:///tmp/a%20b\r\nfile:///tmp/c\r\n"},
        ForeignRow{"fileList", "x-special/gnome-copied-files", "cut\nfile:///tmp/a\nfile:///b"},
        ForeignRow{"bytesWithNul", "application/x-foo", QByteArray("a\0b\0\0c", 6)},
        ForeignRow{"longText", "UTF8_STRING", randomBytes(3000000).toBase64()}),
    [](const auto& row) { return row.param.description; });

TEST_F(ClipboardX11Snapshot, ofAnEmptyClipboardIsEmptyAndClearsIt) {
    const auto snapshot = take().snapshot;
    ASSERT_TRUE(snapshot.has_value());
    EXPECT_TRUE(snapshot->items.empty());
    setText(QStringLiteral("the transcript"));
    EXPECT_NE(requestor.owner("CLIPBOARD"), XCB_WINDOW_NONE);
    restore(*snapshot);
    EXPECT_EQ(requestor.owner("CLIPBOARD"), XCB_WINDOW_NONE);
}

TEST_F(ClipboardX11Snapshot, ofAnOwnerThatWasKilledIsEmpty) {
    XclipOwner owner({.data = "gone soon", .type = {}});
    clipboard->prepareSnapshot();
    settle();
    owner.program().signal(SIGKILL);
    ASSERT_TRUE(owner.program().waitForEnd(5s));
    ASSERT_TRUE(waitUntil([&] { return requestor.owner("CLIPBOARD") == XCB_WINDOW_NONE; }));
    const Taken taken = take();
    ASSERT_TRUE(taken.snapshot.has_value());
    EXPECT_TRUE(taken.snapshot->items.empty());
    EXPECT_LT(taken.after, 300ms);
}

TEST_F(ClipboardX11Snapshot, ofAFrozenOwnerIsNothingAndBlocksNobody) {
    XclipOwner owner({.data = "frozen", .type = {}});
    owner.program().signal(SIGSTOP);
    auto lastTurn = Clock::now();
    Clock::duration longestPause{};
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, &ticker, [&] {
        longestPause = std::max(longestPause, Clock::now() - lastTurn);
        lastTurn = Clock::now();
    });
    ticker.start(5ms);
    lastTurn = Clock::now();

    const Taken taken = take();
    setText(QStringLiteral("stays"));

    EXPECT_FALSE(taken.snapshot.has_value());
    EXPECT_GE(taken.after, 390ms);
    EXPECT_LT(taken.after, 700ms);
    EXPECT_LT(longestPause, 200ms);
    RecordProperty("longestPauseMicroseconds",
                   static_cast<int>(longestPause / std::chrono::microseconds(1)));
    EXPECT_EQ(requestor.read("UTF8_STRING")->data, "stays");
}

TEST_F(ClipboardX11Snapshot, leavesAnOwnerThatAnswersTooLateAliveAndWithItsContent) {
    XclipOwner owner({.data = "frozen", .type = {}});
    owner.program().signal(SIGSTOP);
    ASSERT_FALSE(take().snapshot.has_value());
    owner.program().signal(SIGCONT);
    EXPECT_EQ(pasteWithXclip(), "frozen");
    EXPECT_EQ(dataOf(take().snapshot, "UTF8_STRING"), "frozen");
}

TEST_F(ClipboardX11Snapshot, ofAFrozenOwnerCostsNothingWhenItWasPreparedLongBefore) {
    XclipOwner owner({.data = "frozen", .type = {}});
    owner.program().signal(SIGSTOP);
    clipboard->prepareSnapshot();
    turnEventLoopFor(600ms);
    const Taken taken = take();
    EXPECT_FALSE(taken.snapshot.has_value());
    EXPECT_LT(taken.after, 200ms);
}

TEST_F(ClipboardX11Snapshot, isWhatTheClipboardHoldsAtTheCallAndNotWhenItWasPrepared) {
    XclipOwner first({.data = "first", .type = {}});
    clipboard->prepareSnapshot();
    settle();
    XclipOwner second({.data = "second", .type = {}});
    EXPECT_EQ(dataOf(take().snapshot, "UTF8_STRING"), "second");
}

TEST_F(ClipboardX11Snapshot, isAtHandWhenItWasPrepared) {
    SelectionTestOwner owner({{.name = "UTF8_STRING", .data = "slow", .type = {}, .delay = 150ms}});
    clipboard->prepareSnapshot();
    ASSERT_TRUE(waitUntil([&] { return owner.asked().contains("UTF8_STRING"); }));
    turnEventLoopFor(250ms);
    const Taken taken = take();
    EXPECT_EQ(dataOf(taken.snapshot, "UTF8_STRING"), "slow");
    EXPECT_LT(taken.after, 100ms);
    EXPECT_EQ(owner.asked().count("UTF8_STRING"), 1);
}

TEST_F(ClipboardX11Snapshot, preparedAheadWaitsLongerForAnOwnerThatIsSlowToEncode) {
    SelectionTestOwner owner({{.name = "image/png", .data = "png", .type = {}, .delay = 600ms}});
    clipboard->prepareSnapshot();
    turnEventLoopFor(800ms);
    EXPECT_EQ(dataOf(take().snapshot, "image/png"), "png");
}

TEST_F(ClipboardX11Snapshot, endsAfterASecondWhenTheDataFlowsWithoutEnd) {
    SelectionTestOwner owner(
        {{.name = "UTF8_STRING", .data = {}, .type = {}, .manner = Manner::dribbles}});
    const Taken taken = take();
    EXPECT_FALSE(taken.snapshot.has_value());
    EXPECT_GE(taken.after, 950ms);
    EXPECT_LT(taken.after, 1400ms);
}

TEST_F(ClipboardX11Snapshot, isNothingWhenOneOfTheTypesIsNeverAnswered) {
    SelectionTestOwner owner(
        {{.name = "UTF8_STRING", .data = "text", .type = {}},
         {.name = "text/html", .data = {}, .type = {}, .manner = Manner::staysSilent}});
    EXPECT_FALSE(take().snapshot.has_value());
}

TEST_F(ClipboardX11Snapshot, leavesOutATypeThatTheOwnerRefuses) {
    SelectionTestOwner owner(
        {{.name = "text/html", .data = {}, .type = {}, .manner = Manner::refuses},
         {.name = "UTF8_STRING", .data = "text", .type = {}}});
    EXPECT_EQ(take().snapshot, (ClipboardSnapshot{{{{"UTF8_STRING", "text"}}}}));
}

TEST_F(ClipboardX11Snapshot, ofAnOwnerThatOffersNothingIsEmpty) {
    SelectionTestOwner owner({{.name = "TARGETS", .data = {}, .type = "ATOM", .format = 32}});
    const auto snapshot = take().snapshot;
    ASSERT_TRUE(snapshot.has_value());
    EXPECT_TRUE(snapshot->items.empty());
    EXPECT_EQ(owner.asked(), QList<QByteArray>{"TARGETS"});
}

TEST_F(ClipboardX11Snapshot, readsPlainTextOfAnOwnerThatDoesNotSayWhatItHas) {
    SelectionTestOwner owner(
        {{.name = "TARGETS", .data = {}, .type = {}, .manner = Manner::refuses},
         {.name = "STRING", .data = "old", .type = {}}});
    EXPECT_EQ(take().snapshot, (ClipboardSnapshot{{{{"STRING", "old"}}}}));
}

TEST_F(ClipboardX11Snapshot, asksForNothingThatActsIsSynthesisedOrSuperfluous) {
    std::vector<SelectionTestOwner::Target> targets;
    for (const char* name :
         {"MULTIPLE", "TIMESTAMP", "SAVE_TARGETS", "DELETE", "INSERT_SELECTION", "INSERT_PROPERTY",
          "application/x-qt-image", "GTK_TEXT_BUFFER_CONTENTS", "PIXMAP", "COMPOUND_TEXT", "TEXT",
          "UTF8_STRING", "text/plain", "image/bmp", "image/svg+xml", "image/png", "image/xpm"})
        targets.push_back({.name = name, .data = name, .type = {}});
    SelectionTestOwner owner(targets);
    const auto snapshot = take().snapshot;
    EXPECT_EQ(owner.asked(), (QList<QByteArray>{"TARGETS", "UTF8_STRING", "text/plain",
                                                "image/svg+xml", "image/png"}));
    EXPECT_EQ(dataOf(snapshot, "image/png"), "image/png");
}

TEST_F(ClipboardX11Snapshot, takesTheFirstImageTypeWhereThereIsNoPng) {
    SelectionTestOwner owner({{.name = "image/jpeg", .data = "jpeg", .type = {}},
                              {.name = "image/bmp", .data = "bmp", .type = {}}});
    EXPECT_EQ(take().snapshot, (ClipboardSnapshot{{{{"image/jpeg", "jpeg"}}}}));
}

TEST_F(ClipboardX11Snapshot, keepsOldTextEncodingsWhereThereIsNoUtf8) {
    SelectionTestOwner owner({{.name = "TEXT", .data = "text", .type = "STRING"},
                              {.name = "COMPOUND_TEXT", .data = "compound", .type = {}}});
    const auto snapshot = take().snapshot;
    setText(QStringLiteral("the transcript"));
    restore(snapshot.value());
    EXPECT_EQ(requestor.read("TEXT")->data, "text");
    EXPECT_EQ(requestor.read("TEXT")->type, "STRING");
    EXPECT_EQ(requestor.read("COMPOUND_TEXT")->type, "COMPOUND_TEXT");
}

TEST_F(ClipboardX11Snapshot, restoredOffersExactlyTheSavedTypesInTheirOrder) {
    SelectionTestOwner owner({{.name = "text/html", .data = "<b>", .type = {}},
                              {.name = "UTF8_STRING", .data = "b", .type = {}},
                              {.name = "application/x-empty", .data = {}, .type = {}}});
    const auto snapshot = take().snapshot;
    setText(QStringLiteral("the transcript"));
    restore(snapshot.value());
    EXPECT_EQ(requestor.targets(),
              (QList<QByteArray>{"TARGETS", "MULTIPLE", "TIMESTAMP", "text/html", "UTF8_STRING",
                                 "application/x-empty"}));
    EXPECT_EQ(requestor.read("application/x-empty")->data, "");
}

TEST_F(ClipboardX11Snapshot, keepsTheFormOfPropertiesThatAreNotBytes) {
    const QByteArray twoNumbers("\1\0\0\0\2\0\0\0", 8);
    SelectionTestOwner owner(
        {{.name = "LENGTH", .data = twoNumbers, .type = "INTEGER", .format = 32}});
    const auto snapshot = take().snapshot;
    setText(QStringLiteral("the transcript"));
    restore(snapshot.value());
    const auto reply = requestor.read("LENGTH");
    ASSERT_TRUE(reply.has_value());
    EXPECT_EQ(reply->format, 32);
    EXPECT_EQ(reply->type, "INTEGER");
    EXPECT_EQ(reply->data, twoNumbers);
}

TEST_F(ClipboardX11Snapshot, isNeverPutOverANewerCopy) {
    const auto snapshot = [&] {
        const XclipOwner before({.data = "before", .type = {}});
        return take().snapshot.value();
    }();
    setText(QStringLiteral("the transcript"));
    XclipOwner newer({.data = "newer", .type = {}});
    restore(snapshot);
    EXPECT_EQ(pasteWithXclip(), "newer");
    EXPECT_TRUE(newer.program().isRunning());
}

TEST_F(ClipboardX11Snapshot, isNeverPutOverACopyThatIsMadeAtTheSameMoment) {
    SelectionRequestor user;
    const xcb_atom_t selection = internAtom(user.connection(), "CLIPBOARD");
    for (int round = 0; round < 300; ++round) {
        setText(QStringLiteral("the transcript"));
        clipboard->restore({{{{"UTF8_STRING", "before"}}}});
        std::this_thread::sleep_for(std::chrono::microseconds(round));
        xcb_set_selection_owner(user.connection(), user.window(), selection, XCB_CURRENT_TIME);
        xcb_flush(user.connection());
        settle();
        // Whichever came first: the user's copy is the newer one.
        ASSERT_EQ(user.owner("CLIPBOARD"), user.window()) << round;
    }
}

TEST_F(ClipboardX11Snapshot, neverClearsANewerCopy) {
    setText(QStringLiteral("the transcript"));
    XclipOwner newer({.data = "newer", .type = {}});
    restore({});
    EXPECT_EQ(pasteWithXclip(), "newer");
}

TEST_F(ClipboardX11Snapshot, ofASecondPasteIsTheFirstTranscript) {
    XclipOwner before({.data = "before", .type = {}});
    const auto first = take().snapshot;
    setText(QStringLiteral("first"));
    const auto second = take().snapshot;
    EXPECT_EQ(dataOf(second, "UTF8_STRING"), "first");
    setText(QStringLiteral("second"));
    restore(first.value());
    EXPECT_EQ(pasteWithXclip(), "before");
    restore(second.value());
    EXPECT_EQ(pasteWithXclip(), "first");
    EXPECT_EQ(requestor.read("STRING")->type, "STRING");
}

TEST_F(ClipboardX11Snapshot, restoredCanBeTakenAndRestoredAgain) {
    XclipOwner before({.data = "before", .type = "text/html"});
    for (int dictation = 0; dictation < 5; ++dictation) {
        clipboard->prepareSnapshot();
        const auto snapshot = take().snapshot;
        ASSERT_EQ(dataOf(snapshot, "text/html"), "before") << dictation;
        setText(QStringLiteral("transcript"));
        restore(*snapshot);
    }
    EXPECT_EQ(pasteWithXclip("text/html"), "before");
}

}  // namespace
}  // namespace sayloft::test
