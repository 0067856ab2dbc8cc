// SPDX-License-Identifier: MIT
#include "models/BodyDecoder.h"

#include "models/ResponseHead.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

class Body : public testing::Test {
protected:
    /// Feeds `bytes` in pieces of `size`; true when all of it was understood.
    [[nodiscard]] bool decode(BodyDecoder& decoder, const QByteArray& bytes, qsizetype size) {
        m_file.clear();
        for (qsizetype at = 0; at < bytes.size(); at += size) {
            const bool isWell = decoder.decode(bytes.mid(at, size), [this](QByteArrayView piece) {
                m_file.append(piece);
                return true;
            });
            if (!isWell)
                return false;
        }
        return true;
    }

    [[nodiscard]] static BodyDecoder ofLength(qint64 length) {
        ResponseHead head;
        head.length = length;
        return BodyDecoder(head);
    }

    [[nodiscard]] static BodyDecoder inChunks() {
        ResponseHead head;
        head.isChunked = true;
        return BodyDecoder(head);
    }

    const QByteArray m_chunks =
        "5\r\nhello\r\n000A;name=value\r\n, big worl\r\n1\r\nd\r\n0\r\n"
        "X-Trailer: 1\r\n\r\n";
    QByteArray m_file;
};

TEST_F(Body, ofALengthEndsThere) {
    BodyDecoder decoder = ofLength(5);
    EXPECT_FALSE(decoder.isComplete());
    EXPECT_TRUE(decode(decoder, "hell", 4));
    EXPECT_FALSE(decoder.isComplete());
    EXPECT_TRUE(decode(decoder, "o and more", 100));
    EXPECT_TRUE(decoder.isComplete());
    EXPECT_EQ(m_file, "o");
}

TEST_F(Body, ofNoLengthIsCompleteAtOnce) {
    EXPECT_TRUE(ofLength(0).isComplete());
}

TEST_F(Body, withoutALengthEndsWithTheConnectionOnly) {
    BodyDecoder decoder{ResponseHead()};
    EXPECT_TRUE(decoder.endsWithTheConnection());
    EXPECT_TRUE(decode(decoder, "hello", 2));
    EXPECT_EQ(m_file, "hello");
    EXPECT_FALSE(decoder.isComplete());
    EXPECT_FALSE(ofLength(1).endsWithTheConnection());
    EXPECT_FALSE(inChunks().endsWithTheConnection());
}

TEST_F(Body, inChunksIsPutTogetherHoweverItComes) {
    for (qsizetype size = 1; size <= m_chunks.size(); ++size) {
        BodyDecoder decoder = inChunks();
        EXPECT_TRUE(decode(decoder, m_chunks, size)) << size;
        EXPECT_EQ(m_file, "hello, big world") << size;
        EXPECT_TRUE(decoder.isComplete()) << size;
    }
}

TEST_F(Body, inChunksIsIncompleteWhereverItIsCut) {
    for (qsizetype length = 0; length < m_chunks.size() - 1; ++length) {
        BodyDecoder decoder = inChunks();
        EXPECT_TRUE(decode(decoder, m_chunks.left(length), 100)) << length;
        EXPECT_FALSE(decoder.isComplete()) << length;
    }
}

TEST_F(Body, inChunksIsRefusedWhenItIsMalformed) {
    for (const QByteArray& bytes : {QByteArray("hello\r\n"), QByteArray("-5\r\nhello\r\n"),
                                    QByteArray("\r\n"), QByteArray("5\r\nhello!\r\n"),
                                    QByteArray("fffffffffffffffff\r\n"), QByteArray(10000, '0')}) {
        BodyDecoder decoder = inChunks();
        EXPECT_FALSE(decode(decoder, bytes, 100)) << bytes.left(20).constData();
    }
}

TEST_F(Body, isHandedToNobodyWhoWantsNoMore) {
    BodyDecoder decoder = inChunks();
    int pieces = 0;
    EXPECT_FALSE(decoder.decode(m_chunks, [&pieces](QByteArrayView /*piece*/) {
        ++pieces;
        return false;
    }));
    EXPECT_EQ(pieces, 1);
}

}  // namespace
}  // namespace sayloft
