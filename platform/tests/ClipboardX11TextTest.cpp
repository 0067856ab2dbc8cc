// SPDX-License-Identifier: MIT
#include "platform/tests/ClipboardX11Fixture.h"
#include "tests/support/Xclip.h"

#include <cstring>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class ClipboardX11Text : public ClipboardX11Fixture {
protected:
    /// Starts to wait for the fetch; `fetched` becomes true when it is reported.
    void awaitFetch(std::chrono::milliseconds deadline = 20s) {
        clipboard->whenTextFetched(deadline, [this] { fetched = true; });
        settle();
    }

    /// Turns the event loop long enough for a report that was on its way.
    bool isReported() {
        settle();
        turnEventLoopFor(50ms);
        return fetched;
    }

    bool fetched = false;
};

struct TextRow {
    const char* description;
    QString text;
};

class EveryText : public ClipboardX11Fixture, public testing::WithParamInterface<TextRow> {};

TEST_P(EveryText, arrivesUnchanged) {
    const QString& text = GetParam().text;
    setText(text);
    EXPECT_EQ(QString::fromUtf8(pasteWithXclip()), text);
    for (const char* type : {"text/plain;charset=utf-8", "text/plain"})
        EXPECT_EQ(QString::fromUtf8(requestor.read(type)->data), text);
}

INSTANTIATE_TEST_SUITE_P(
    ClipboardX11, EveryText,
    testing::Values(
        TextRow{"oneWord", QStringLiteral("Hello.")},
        TextRow{"severalLines", QStringLiteral("first\nsecond\n\n\tthird\n")},
        TextRow{"emoji", QStringLiteral("👩‍👩‍👧‍👦 and 🎙️🏳️‍🌈")},
        TextRow{"combiningMarks", QStringLiteral("e\u0301 a\u030A\u0323 n\u0303")},
        TextRow{"rightToLeft", QStringLiteral("שלום עולם, مرحبا")},
        TextRow{"twentyThousandCharacters", QStringLiteral("zwölf é€ ").repeated(2223)},
        TextRow{"moreThanOneRequestHolds", QStringLiteral("длинный ").repeated(1500000)}),
    [](const auto& row) { return row.param.description; });

TEST_F(ClipboardX11Text, isOfferedInEveryTypeThatProgramsAskForAndAsASecret) {
    setText(QStringLiteral("caf\u00e9"));
    EXPECT_EQ(requestor.targets(),
              (QList<QByteArray>{"TARGETS", "MULTIPLE", "TIMESTAMP", "UTF8_STRING",
                                 "text/plain;charset=utf-8", "text/plain", "STRING", "TEXT",
                                 "x-kde-passwordManagerHint"}));
    EXPECT_EQ(requestor.read("x-kde-passwordManagerHint")->data, "secret");
    EXPECT_EQ(requestor.read("STRING")->data, "caf\xe9");
    EXPECT_EQ(requestor.read("TEXT")->type, "STRING");
}

TEST_F(ClipboardX11Text, isNotOfferedInLatin1WhereThatCannotHoldIt) {
    setText(QStringLiteral("5 €"));
    EXPECT_FALSE(requestor.targets().contains("STRING"));
    EXPECT_FALSE(requestor.read("STRING").has_value());
    EXPECT_EQ(requestor.read("TEXT")->type, "UTF8_STRING");
    EXPECT_EQ(requestor.read("TEXT")->data, "5 €");
}

TEST_F(ClipboardX11Text, isOwnedSinceARealTimeOfTheServer) {
    setText(QStringLiteral("text"));
    const auto reply = requestor.read("TIMESTAMP");
    ASSERT_TRUE(reply.has_value());
    EXPECT_EQ(reply->type, "INTEGER");
    std::uint32_t time = 0;
    std::memcpy(&time, reply->data.constData(), sizeof time);
    EXPECT_NE(time, 0U);
}

TEST_F(ClipboardX11Text, isServedInSeveralTypesAtOnce) {
    setText(QStringLiteral("text"));
    const auto replies = requestor.readMultiple({"UTF8_STRING", "image/png", "TARGETS", "STRING"});
    ASSERT_EQ(replies.size(), 4U);
    EXPECT_EQ(replies[0].value().data, "text");
    EXPECT_FALSE(replies[1].has_value());
    EXPECT_EQ(replies[2].value().type, "ATOM");
    EXPECT_EQ(replies[3].value().type, "STRING");
}

TEST_F(ClipboardX11Text, isServedInSeveralTypesAtOncePieceByPiece) {
    const QString text = QStringLiteral("piece ").repeated(100000);
    setText(text);
    const auto replies = requestor.readMultiple({"UTF8_STRING", "text/plain"});
    ASSERT_EQ(replies.size(), 2U);
    EXPECT_TRUE(replies[0].value().wasIncremental);
    EXPECT_EQ(QString::fromUtf8(replies[0]->data), text);
    EXPECT_EQ(QString::fromUtf8(replies[1].value().data), text);
}

TEST_F(ClipboardX11Text, isServedWhileTheMainThreadIsBusy) {
    setText(QStringLiteral("text"));
    // The requestor waits without turning the event loop.
    EXPECT_EQ(requestor.read("UTF8_STRING", "CLIPBOARD", 1s)->data, "text");
}

TEST_F(ClipboardX11Text, isServedToEverybodyThoughOneRequestorStopsInTheMiddle) {
    const QString text = QStringLiteral("piece ").repeated(200000);
    setText(text);
    auto leaver = std::make_unique<SelectionRequestor>();
    ASSERT_TRUE(leaver->beginIncremental("UTF8_STRING"));
    EXPECT_EQ(QString::fromUtf8(requestor.read("UTF8_STRING")->data), text);
    leaver = nullptr;
    EXPECT_EQ(QString::fromUtf8(requestor.read("UTF8_STRING")->data), text);
}

TEST_F(ClipboardX11Text, thatIsBeingFetchedArrivesWholeThoughTheClipboardIsRestored) {
    const QString text = QStringLiteral("piece ").repeated(200000);
    setText(text);
    ASSERT_TRUE(requestor.beginIncremental("UTF8_STRING"));
    restore({});
    EXPECT_EQ(QString::fromUtf8(requestor.finishIncremental()), text);
}

TEST_F(ClipboardX11Text, isFetchedWhenTheFocusedProgramHasReadIt) {
    requestor.takeFocus("Editor");
    setText(QStringLiteral("text"));
    awaitFetch();
    EXPECT_FALSE(isReported());
    ASSERT_TRUE(requestor.read("UTF8_STRING").has_value());
    EXPECT_TRUE(isReported());
}

TEST_F(ClipboardX11Text, thatWasFetchedBeforeAnybodyAskedIsReportedAtOnce) {
    requestor.takeFocus("Editor");
    setText(QStringLiteral("text"));
    ASSERT_TRUE(requestor.read("UTF8_STRING").has_value());
    awaitFetch();
    EXPECT_TRUE(isReported());
}

TEST_F(ClipboardX11Text, setAnewIsNotYetFetched) {
    requestor.takeFocus("Editor");
    setText(QStringLiteral("first"));
    ASSERT_TRUE(requestor.read("UTF8_STRING").has_value());
    setText(QStringLiteral("second"));
    awaitFetch();
    EXPECT_FALSE(isReported());
}

TEST_F(ClipboardX11Text, isNotFetchedByAQuestionForItsTypesOrTheHint) {
    requestor.takeFocus("Editor");
    setText(QStringLiteral("text"));
    awaitFetch();
    for (const char* target :
         {"TARGETS", "TIMESTAMP", "SAVE_TARGETS", "image/png", "x-kde-passwordManagerHint"})
        static_cast<void>(requestor.read(target));
    ASSERT_EQ(requestor.readMultiple({"TARGETS", "TIMESTAMP"}).size(), 2U);
    EXPECT_FALSE(isReported());
}

TEST_F(ClipboardX11Text, isNotFetchedByAnotherProgram) {
    requestor.takeFocus("Editor");
    setText(QStringLiteral("text"));
    awaitFetch();
    // As a clipboard manager would.
    EXPECT_EQ(pasteWithXclip(), "text");
    EXPECT_FALSE(isReported());
    ASSERT_TRUE(requestor.read("UTF8_STRING").has_value());
    EXPECT_TRUE(isReported());
}

TEST_F(ClipboardX11Text, isFetchedByASecondConnectionOfTheFocusedProcess) {
    requestor.takeFocus("Alacritty");
    setText(QStringLiteral("text"));
    awaitFetch();
    SelectionRequestor secondConnection;
    ASSERT_TRUE(secondConnection.read("UTF8_STRING").has_value());
    EXPECT_TRUE(isReported());
}

TEST_F(ClipboardX11Text, isFetchedOnlyWhenTheLastPieceIsThere) {
    requestor.takeFocus("Editor");
    const QString text = QStringLiteral("piece ").repeated(200000);
    setText(text);
    awaitFetch();
    ASSERT_TRUE(requestor.beginIncremental("UTF8_STRING"));
    EXPECT_FALSE(isReported());
    EXPECT_EQ(QString::fromUtf8(requestor.finishIncremental()), text);
    EXPECT_TRUE(isReported());
}

TEST_F(ClipboardX11Text, thatNobodyFetchesIsReportedAtTheDeadlineAndOnlyOnce) {
    requestor.takeFocus("Editor");
    setText(QStringLiteral("text"));
    int reports = 0;
    const auto start = Clock::now();
    clipboard->whenTextFetched(300ms, [&] { ++reports; });
    ASSERT_TRUE(waitUntil([&] { return reports > 0; }));
    EXPECT_GE(Clock::now() - start, 295ms);
    ASSERT_TRUE(requestor.read("UTF8_STRING").has_value());
    turnEventLoopFor(100ms);
    EXPECT_EQ(reports, 1);
}

TEST_F(ClipboardX11Text, restoredContentIsNoFetchOfTheText) {
    requestor.takeFocus("Editor");
    setText(QStringLiteral("text"));
    restore({{{{"UTF8_STRING", "before"}}}});
    awaitFetch();
    EXPECT_EQ(requestor.read("UTF8_STRING").value().data, "before");
    EXPECT_FALSE(isReported());
}

}  // namespace
}  // namespace sayloft::test
