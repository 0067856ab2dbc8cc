// SPDX-License-Identifier: MIT
#include "platform/tests/ClipboardX11Fixture.h"
#include "tests/support/SelectionTestOwner.h"
#include "tests/support/Xclip.h"

#include <QTimer>

#include <csignal>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using Manner = SelectionTestOwner::Manner;
using Clock = std::chrono::steady_clock;

class ClipboardX11Snapshot : public ClipboardX11Fixture {};

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

}  // namespace
}  // namespace sayloft::test
