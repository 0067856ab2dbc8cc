// SPDX-License-Identifier: MIT
// What is given back to the clipboard, and what is not.
#include "platform/tests/ClipboardX11Fixture.h"
#include "tests/support/SelectionTestOwner.h"
#include "tests/support/Xclip.h"

#include <QRandomGenerator>

#include <thread>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

QByteArray randomBytes(qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator generator(7);
    generator.generate(bytes.begin(), bytes.end());
    return bytes;
}

class ClipboardX11Restore : public ClipboardX11Fixture {};

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

TEST_F(ClipboardX11Restore, offersExactlyTheSavedTypesInTheirOrder) {
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

TEST_F(ClipboardX11Restore, keepsTheFormOfPropertiesThatAreNotBytes) {
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

TEST_F(ClipboardX11Restore, isNeverPutOverANewerCopy) {
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

TEST_F(ClipboardX11Restore, isNeverPutOverACopyThatIsMadeAtTheSameMoment) {
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

TEST_F(ClipboardX11Restore, neverClearsANewerCopy) {
    setText(QStringLiteral("the transcript"));
    XclipOwner newer({.data = "newer", .type = {}});
    restore({});
    EXPECT_EQ(pasteWithXclip(), "newer");
}

TEST_F(ClipboardX11Restore, ofASecondPasteIsTheFirstTranscript) {
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

TEST_F(ClipboardX11Restore, canBeTakenAndRestoredAgain) {
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
