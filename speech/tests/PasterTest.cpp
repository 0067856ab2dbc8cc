// SPDX-License-Identifier: MIT
#include "speech/Paster.h"

#include "platform/KeyPoster.h"
#include "platform/Mods.h"
#include "tests/support/WaitUntil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testing::ElementsAre;

struct Event {
    std::string what;
    Clock::time_point when;
};

/// What a user would see: everything that happens to the clipboard and the keyboard, in order.
struct Desktop {
    std::vector<Event> events;

    void note(std::string what) { events.push_back({std::move(what), Clock::now()}); }

    [[nodiscard]] std::vector<std::string> happened() const {
        std::vector<std::string> names;
        for (const Event& event : events)
            names.push_back(event.what);
        return names;
    }

    [[nodiscard]] bool has(const std::string& what) const {
        return std::any_of(events.begin(), events.end(),
                           [&](const Event& event) { return event.what == what; });
    }

    [[nodiscard]] std::chrono::milliseconds between(std::size_t one, std::size_t other) const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(events.at(other).when -
                                                                     events.at(one).when);
    }
};

ClipboardSnapshot plainText(const QByteArray& text) {
    return {.items = {{{.type = "text/plain", .data = text}}}};
}

std::string describe(const ClipboardSnapshot& snapshot) {
    return snapshot.items.empty() ? "nothing" : snapshot.items[0][0].data.toStdString();
}

enum class Answer { atOnce, whenTold };

class FakeClipboard : public Clipboard {
public:
    explicit FakeClipboard(Desktop& desktop) : m_desktop(desktop) {}

    void prepareSnapshot() override { m_desktop.note("prepare"); }
    void takeSnapshot(SnapshotTaken taken) override {
        m_desktop.note("snapshot");
        const auto now = m_readable ? std::optional(m_content) : std::nullopt;
        if (snapshots == Answer::atOnce)
            return taken(now);
        m_answerSnapshot = [taken = std::move(taken), now] { taken(now); };
    }
    void setText(const QString& text, ClipboardStay stay) override {
        stays.push_back(stay);
        m_content = plainText(text.toUtf8());
        m_desktop.note("set " + text.toStdString());
    }
    void whenTextFetched(std::chrono::milliseconds deadline, TextFetched fetched) override {
        m_deadline = deadline;
        if (fetches == Answer::atOnce)
            return fetched();
        m_answerFetch = std::move(fetched);
    }
    void restore(const ClipboardSnapshot& snapshot) override {
        m_content = snapshot;
        m_desktop.note("restore " + describe(snapshot));
    }
    void handOver() override {}

    void putByUser(const ClipboardSnapshot& content) { m_content = content; }
    void hangOwner() { m_readable = false; }
    [[nodiscard]] const ClipboardSnapshot& content() const { return m_content; }
    [[nodiscard]] std::chrono::milliseconds fetchDeadline() const { return m_deadline; }
    void fetch() { std::exchange(m_answerFetch, nullptr)(); }
    void answerSnapshot() { std::exchange(m_answerSnapshot, nullptr)(); }

    Answer snapshots = Answer::atOnce;
    Answer fetches = Answer::atOnce;
    std::vector<ClipboardStay> stays;

private:
    Desktop& m_desktop;
    ClipboardSnapshot m_content;
    bool m_readable = true;
    std::chrono::milliseconds m_deadline{0};
    TextFetched m_answerFetch;
    std::function<void()> m_answerSnapshot;
};

class FakeKeyPoster : public KeyPoster {
public:
    explicit FakeKeyPoster(Desktop& desktop) : m_desktop(desktop) {}

    void postKey(std::uint16_t virtualKey, std::uint64_t flags, Posted posted) override {
        m_desktop.note("key " + std::to_string(virtualKey) + " flags " + std::to_string(flags));
        if (keys == Answer::atOnce)
            return posted();
        m_posted = std::move(posted);
    }
    void whenReady(const Posted& ready) override {
        if (!isBusy)
            return ready();
        m_ready = ready;
    }
    void answer() { std::exchange(m_posted, nullptr)(); }
    void becomeReady() { std::exchange(m_ready, nullptr)(); }

    Answer keys = Answer::atOnce;
    bool isBusy = false;

private:
    Desktop& m_desktop;
    Posted m_posted;
    Posted m_ready;
};

const std::string pasteKey = "key 9 flags " + std::to_string(0x100000);
const std::string returnKey = "key 36 flags 0";

class PasterTest : public testing::Test {
protected:
    PasterTest() { m_clipboard.putByUser(plainText("before")); }

    [[nodiscard]] bool waitFor(const std::string& what, std::chrono::milliseconds deadline = 5s) {
        return test::waitUntil([&] { return m_desktop.has(what); }, deadline);
    }

    Desktop m_desktop;
    FakeClipboard m_clipboard{m_desktop};
    FakeKeyPoster m_keyPoster{m_desktop};
    Paster m_paster{m_clipboard, m_keyPoster};
};

TEST_F(PasterTest, leavesTheClipboardAndTheKeyboardAloneForAnEmptyText) {
    m_paster.paste(QString(), {.pressEnter = true});
    test::turnEventLoopFor(400ms);
    EXPECT_TRUE(m_desktop.events.empty());
}

TEST_F(PasterTest, preparesTheSnapshotWhenAPasteIsAboutToCome) {
    m_paster.prepare();
    EXPECT_THAT(m_desktop.happened(), ElementsAre("prepare"));
}

TEST_F(PasterTest, takesTheClipboardPressesThePasteKeyAndPutsTheClipboardBack) {
    m_paster.paste(QStringLiteral("words"), {});
    ASSERT_TRUE(waitFor("restore before"));
    EXPECT_THAT(m_desktop.happened(),
                ElementsAre("snapshot", "set words", pasteKey, "restore before"));
    EXPECT_GE(m_desktop.between(2, 3), 299ms);
    EXPECT_LT(m_desktop.between(2, 3), 500ms);
}

TEST_F(PasterTest, leavesTheTextOnTheClipboardWhenItIsToStayThere) {
    m_paster.paste(QStringLiteral("words"), {.keepInClipboard = true});
    test::turnEventLoopFor(500ms);
    EXPECT_THAT(m_desktop.happened(), ElementsAre("set words", pasteKey));
    EXPECT_EQ(m_clipboard.content(), plainText("words"));
}

TEST_F(PasterTest, marksOnlyATextThatIsToGoAgain) {
    m_paster.paste(QStringLiteral("words"), {.keepInClipboard = true});
    m_paster.paste(QStringLiteral("words"), {.keepInClipboard = false});
    EXPECT_THAT(m_clipboard.stays, ElementsAre(ClipboardStay::forGood, ClipboardStay::forOnePaste));
}

TEST_F(PasterTest, givesBackOnTheWayOutWhatWaitsForItsTime) {
    m_paster.paste(QStringLiteral("words"), {});
    m_paster.restoreNow();
    EXPECT_EQ(m_clipboard.content(), plainText("before"));
    m_clipboard.putByUser(plainText("newer"));
    test::turnEventLoopFor(400ms);
    EXPECT_EQ(m_clipboard.content(), plainText("newer"));
}

TEST_F(PasterTest, readsTheClipboardOnlyWhenTheKeysCanBeTyped) {
    m_keyPoster.isBusy = true;
    m_paster.paste(QStringLiteral("words"), {});
    EXPECT_TRUE(m_desktop.events.empty());
    m_clipboard.putByUser(plainText("copied meanwhile"));
    m_keyPoster.becomeReady();
    EXPECT_TRUE(waitFor("restore copied meanwhile"));
}

TEST_F(PasterTest, bringsAllTypesOfAnItemBackOnOneItem) {
    const ClipboardSnapshot imageWithText{
        .items = {{{.type = "image/png", .data = QByteArray("\x89PNG\0\x01", 6)},
                   {.type = "text/plain", .data = "a picture"}}}};
    m_clipboard.putByUser(imageWithText);
    m_paster.paste(QStringLiteral("words"), {});
    EXPECT_EQ(m_clipboard.content(), plainText("words"));
    EXPECT_TRUE(test::waitUntil([&] { return m_clipboard.content() == imageWithText; }, 1s));
}

TEST_F(PasterTest, emptiesAClipboardThatWasEmpty) {
    m_clipboard.putByUser({});
    m_paster.paste(QStringLiteral("words"), {});
    EXPECT_TRUE(waitFor("restore nothing", 1s));
    EXPECT_TRUE(m_clipboard.content().items.empty());
}

TEST_F(PasterTest, neverRestoresAClipboardThatCouldNotBeRead) {
    m_clipboard.hangOwner();
    m_paster.paste(QStringLiteral("words"), {});
    test::turnEventLoopFor(500ms);
    EXPECT_EQ(m_clipboard.content(), plainText("words"));
}

TEST_F(PasterTest, pressesReturnThirtyMillisecondsAfterThePasteKey) {
    m_paster.paste(QStringLiteral("words"), {.pressEnter = true});
    ASSERT_TRUE(waitFor("restore before"));
    EXPECT_THAT(m_desktop.happened(),
                ElementsAre("snapshot", "set words", pasteKey, returnKey, "restore before"));
    EXPECT_GE(m_desktop.between(2, 3), 30ms);
    EXPECT_LT(m_desktop.between(2, 3), 150ms);
    EXPECT_GE(m_desktop.between(3, 4), 299ms);
}

TEST_F(PasterTest, pressesReturnOnlyAfterTheTargetHasTheText) {
    m_clipboard.fetches = Answer::whenTold;
    m_paster.paste(QStringLiteral("words"), {.pressEnter = true});
    EXPECT_EQ(m_clipboard.fetchDeadline(), 2000ms);
    test::turnEventLoopFor(150ms);
    EXPECT_FALSE(m_desktop.has(returnKey));
    m_desktop.note("fetched");
    m_clipboard.fetch();
    ASSERT_TRUE(waitFor(returnKey));
    EXPECT_GE(m_desktop.between(3, 4), 30ms);
}

TEST_F(PasterTest, doesNotTakeTheTextAwayFromATargetThatIsLate) {
    m_clipboard.fetches = Answer::whenTold;
    m_paster.paste(QStringLiteral("words"), {});
    test::turnEventLoopFor(700ms);
    EXPECT_EQ(m_clipboard.content(), plainText("words"));
    m_desktop.note("fetched");
    m_clipboard.fetch();
    ASSERT_TRUE(waitFor("restore before"));
    EXPECT_GE(m_desktop.between(3, 4), 49ms);
    EXPECT_LT(m_desktop.between(3, 4), 250ms);
}

TEST_F(PasterTest, restoresTheClipboardAtOnceWhenNobodyHasFetchedForTwoSeconds) {
    m_clipboard.fetches = Answer::whenTold;
    m_paster.paste(QStringLiteral("words"), {});
    test::turnEventLoopFor(2010ms);
    m_desktop.note("gave up");
    m_clipboard.fetch();
    ASSERT_TRUE(waitFor("restore before"));
    EXPECT_LT(m_desktop.between(3, 4), 40ms);
}

TEST_F(PasterTest, waitsForTheSnapshotBeforeItReplacesTheClipboard) {
    m_clipboard.snapshots = Answer::whenTold;
    m_paster.paste(QStringLiteral("words"), {});
    EXPECT_THAT(m_desktop.happened(), ElementsAre("snapshot"));
    m_clipboard.answerSnapshot();
    ASSERT_TRUE(waitFor("restore before"));
}

TEST_F(PasterTest, countsTheTimeToTheRestoreFromTheMomentTheKeysAreOut) {
    m_keyPoster.keys = Answer::whenTold;
    m_paster.paste(QStringLiteral("words"), {});
    test::turnEventLoopFor(400ms);
    EXPECT_FALSE(m_desktop.has("restore before"));
    m_desktop.note("posted");
    m_keyPoster.answer();
    ASSERT_TRUE(waitFor("restore before"));
    EXPECT_GE(m_desktop.between(3, 4), 299ms);
}

TEST_F(PasterTest, aSecondPasteWithinTheDelayPutsBackTheFirstText) {
    m_paster.paste(QStringLiteral("first"), {});
    test::turnEventLoopFor(150ms);
    m_paster.paste(QStringLiteral("second"), {});
    ASSERT_TRUE(waitFor("restore first"));
    test::turnEventLoopFor(400ms);
    EXPECT_EQ(m_clipboard.content(), plainText("first"));
}

TEST_F(PasterTest, anOvertakenRestoreNeverReplacesTheNewerText) {
    m_paster.paste(QStringLiteral("first"), {});
    test::turnEventLoopFor(150ms);
    m_clipboard.fetches = Answer::whenTold;
    m_paster.paste(QStringLiteral("second"), {});
    test::turnEventLoopFor(400ms);
    EXPECT_EQ(m_clipboard.content(), plainText("second"));
    m_clipboard.fetch();
    ASSERT_TRUE(waitFor("restore first"));
    EXPECT_FALSE(m_desktop.has("restore before"));
}

TEST_F(PasterTest, aSecondPasteThatIsToStayIsNotUndoneByTheFirst) {
    m_paster.paste(QStringLiteral("first"), {});
    m_paster.paste(QStringLiteral("second"), {.keepInClipboard = true});
    test::turnEventLoopFor(500ms);
    EXPECT_EQ(m_clipboard.content(), plainText("second"));
}

TEST_F(PasterTest, aPasteThatComesAfterTheRestoreSeesTheUsersClipboard) {
    m_paster.paste(QStringLiteral("first"), {});
    ASSERT_TRUE(waitFor("restore before"));
    m_desktop.events.clear();
    m_paster.paste(QStringLiteral("second"), {});
    ASSERT_TRUE(waitFor("restore before"));
}

TEST_F(PasterTest, neverMixesTheKeysOfTwoPastes) {
    m_clipboard.fetches = Answer::whenTold;
    m_paster.paste(QStringLiteral("first"), {.pressEnter = true});
    m_paster.paste(QStringLiteral("second"), {.pressEnter = true});
    test::turnEventLoopFor(50ms);
    EXPECT_FALSE(m_desktop.has("set second"));
    m_clipboard.fetch();
    ASSERT_TRUE(waitFor("set second"));
    m_clipboard.fetch();
    ASSERT_TRUE(waitFor("restore first"));
    EXPECT_THAT(m_desktop.happened(),
                ElementsAre("snapshot", "set first", pasteKey, returnKey, "snapshot", "set second",
                            pasteKey, returnKey, "restore first"));
}

TEST_F(PasterTest, answersThatComeAfterItsEndDoNothing) {
    m_clipboard.fetches = Answer::whenTold;
    {
        Paster shortLived(m_clipboard, m_keyPoster);
        shortLived.paste(QStringLiteral("words"), {.pressEnter = true});
    }
    m_clipboard.fetch();
    test::turnEventLoopFor(400ms);
    EXPECT_THAT(m_desktop.happened(), ElementsAre("snapshot", "set words", pasteKey));
}

}  // namespace
}  // namespace sayloft
