// SPDX-License-Identifier: MIT
#include "models/BodyPlan.h"

#include <gtest/gtest.h>

#include <limits>

namespace sayloft {
namespace {

using Verdict = BodyPlan::Verdict;

/// The plan for the answer to a request for the rest of a file of 100 bytes, of which 40 are there.
class RestOfAFile : public testing::Test {
protected:
    RestOfAFile() {
        m_stored.note = {.url = QUrl(QStringLiteral("https://models.example/a")),
                         .etag = "\"tag\"",
                         .size = 100,
                         .sha256 = {}};
        m_stored.length = 40;
        m_head.status = 206;
        m_head.length = 60;
        m_head.etag = "\"tag\"";
        m_head.range = ContentRange{.first = 40, .last = 99, .size = 100};
    }

    [[nodiscard]] BodyPlan plan() const { return planBody(m_head, m_linked, m_stored); }

    StoredPart m_stored;
    ResponseHead m_head;
    LinkedEntity m_linked;
};

TEST_F(RestOfAFile, goesBehindWhatIsThere) {
    EXPECT_EQ(plan().verdict, Verdict::take);
    EXPECT_EQ(plan().offset, 40);
    EXPECT_EQ(plan().size, 100);
}

TEST_F(RestOfAFile, mayComeWithoutTagAndSize) {
    m_head.etag.clear();
    m_head.range->size.reset();
    EXPECT_EQ(plan().verdict, Verdict::take);
    EXPECT_EQ(plan().size, 100);
    m_head.length.reset();
    EXPECT_EQ(plan().size, 100);
}

TEST_F(RestOfAFile, isNotTheRestOfAFileWithAnotherTag) {
    m_head.etag = "\"other\"";
    EXPECT_EQ(plan().verdict, Verdict::startOver);
}

TEST_F(RestOfAFile, isNotTheRestOfAFileWithAnotherSize) {
    m_head.range->size = 101;
    EXPECT_EQ(plan().verdict, Verdict::startOver);
}

TEST_F(RestOfAFile, isNotTheRestOfAFileWithAnotherDigest) {
    m_linked.sha256 = "abc";
    EXPECT_EQ(plan().verdict, Verdict::startOver);
    m_stored.note.sha256 = "abc";
    EXPECT_EQ(plan().verdict, Verdict::take);
    m_linked.sha256.clear();
    EXPECT_EQ(plan().verdict, Verdict::startOver);
}

TEST_F(RestOfAFile, mustBeginWhereTheStoredPartEnds) {
    m_head.range->first = 41;
    EXPECT_EQ(plan().verdict, Verdict::startOver);
    m_head.range.reset();
    EXPECT_EQ(plan().verdict, Verdict::startOver);
}

TEST_F(RestOfAFile, isNotLongerThanAnyFileCanBe) {
    m_head.range->size.reset();
    m_head.length = std::numeric_limits<qint64>::max();
    EXPECT_EQ(plan().verdict, Verdict::startOver);
}

TEST_F(RestOfAFile, isTheWholeFileWhenTheHostSaysSo) {
    m_head.status = 200;
    m_head.range.reset();
    m_head.length = 70;
    m_head.etag = "\"other\"";
    EXPECT_EQ(plan().verdict, Verdict::take);
    EXPECT_EQ(plan().offset, 0);
    EXPECT_EQ(plan().size, 70);
}

class WholeFile : public testing::Test {
protected:
    WholeFile() { m_head.status = 200; }

    [[nodiscard]] BodyPlan plan() const { return planBody(m_head, m_linked, std::nullopt); }

    ResponseHead m_head;
    LinkedEntity m_linked;
};

TEST_F(WholeFile, isAsLargeAsTheHeaderOrTheRedirectSays) {
    EXPECT_EQ(plan().size, std::nullopt);
    m_linked.size = 7;
    EXPECT_EQ(plan().size, 7);
    m_head.length = 7;
    EXPECT_EQ(plan().size, 7);
}

TEST_F(WholeFile, isRefusedWhenTheTwoDisagree) {
    m_linked.size = 7;
    m_head.length = 8;
    EXPECT_EQ(plan().verdict, Verdict::refuse);
}

TEST_F(WholeFile, isRefusedInACompressedForm) {
    m_head.isEncoded = true;
    EXPECT_EQ(plan().verdict, Verdict::refuse);
}

TEST_F(WholeFile, mayComeAsAPartThatIsTheWhole) {
    m_head.status = 206;
    m_head.length = 10;
    EXPECT_EQ(plan().verdict, Verdict::take);
    m_head.range = ContentRange{.first = 0, .last = 9, .size = 10};
    EXPECT_EQ(plan().verdict, Verdict::take);
}

TEST_F(WholeFile, isRefusedWhenItIsAPart) {
    m_head.status = 206;
    m_head.range = ContentRange{.first = 1, .last = 9, .size = 10};
    EXPECT_EQ(plan().verdict, Verdict::refuse);
    m_head.range = ContentRange{.first = 0, .last = 8, .size = 10};
    EXPECT_EQ(plan().verdict, Verdict::refuse);
}

TEST_F(WholeFile, isRefusedWhenItsLastByteIsTheLastThatThereCanBe) {
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    m_head.status = 206;
    m_head.range = ContentRange{.first = 0, .last = largest, .size = largest};
    EXPECT_EQ(plan().verdict, Verdict::refuse);
}

TEST(ContentRange, isReadWithAndWithoutASize) {
    EXPECT_EQ(ContentRange::parse("bytes 1-2/3"), (ContentRange{.first = 1, .last = 2, .size = 3}));
    EXPECT_EQ(ContentRange::parse(" Bytes 1-2/* "),
              (ContentRange{.first = 1, .last = 2, .size = std::nullopt}));
    for (const char* value : {"", "bytes */3", "bytes 2-1/3", "lines 1-2/3", "bytes 1-2",
                              "bytes -1-2/3", "bytes 1-99999999999999999999/3"})
        EXPECT_EQ(ContentRange::parse(value), std::nullopt) << value;
}

}  // namespace
}  // namespace sayloft
