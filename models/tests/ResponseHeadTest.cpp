// SPDX-License-Identifier: MIT
#include "models/ResponseHead.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

std::optional<ResponseHead> parse(const QByteArray& bytes) {
    return ResponseHead::parse(bytes, QUrl(QStringLiteral("https://models.example/a/b?c")));
}

TEST(ResponseHead, isReadWhateverTheCaseOfItsNames) {
    const auto head = parse(
        "HTTP/1.1 206 Partial Content\r\ncontent-LENGTH: 7\r\nETAG: \"x\"\r\n"
        "Content-Range: bytes 3-9/10\r\nContent-Encoding: gzip");
    ASSERT_TRUE(head);
    EXPECT_EQ(head->status, 206);
    EXPECT_EQ(head->length, 7);
    EXPECT_EQ(head->etag, "\"x\"");
    EXPECT_EQ(head->range, (ContentRange{.first = 3, .last = 9, .size = 10}));
    EXPECT_TRUE(head->isEncoded);
    EXPECT_FALSE(head->isChunked);
}

TEST(ResponseHead, countsChunksMoreThanALength) {
    const auto head = parse("HTTP/1.1 200 OK\r\nContent-Length: 7\r\nTransfer-Encoding: Chunked");
    ASSERT_TRUE(head);
    EXPECT_TRUE(head->isChunked);
    EXPECT_EQ(head->length, std::nullopt);
}

TEST(ResponseHead, knowsTheAnswersThatNeverHaveABody) {
    EXPECT_EQ(parse("HTTP/1.1 204 No Content")->length, 0);
    EXPECT_EQ(parse("HTTP/1.1 304 Not Modified")->length, 0);
}

TEST(ResponseHead, isNoneWhenItIsNotHttpOrLeavesTheEndOfTheBodyOpen) {
    for (const char* bytes :
         {"", "220 mail server", "HTTP/2 200", "HTTP/1.1 20", "HTTP/1.1 2000 OK",
          "HTTP/1.1 200 OK\r\nContent-Length: -1", "HTTP/1.1 200 OK\r\nContent-Length: 1, 1",
          "HTTP/1.1 200 OK\r\nContent-Length: +1",
          "HTTP/1.1 200 OK\r\nTransfer-Encoding: gzip, chunked"})
        EXPECT_FALSE(parse(bytes)) << bytes;
}

TEST(ResponseHead, resolvesRedirects) {
    const auto redirect = [](const QByteArray& location) {
        return parse("HTTP/1.1 302 Found\r\nLocation: " + location)
            ->redirect.toString(QUrl::FullyEncoded);
    };
    EXPECT_EQ(redirect("d"), QStringLiteral("https://models.example/a/d"));
    EXPECT_EQ(redirect("/d?e=%20f"), QStringLiteral("https://models.example/d?e=%20f"));
    EXPECT_EQ(redirect("//other.example/d"), QStringLiteral("https://other.example/d"));
    EXPECT_EQ(redirect("http://other.example/d"), QStringLiteral("http://other.example/d"));
}

TEST(ResponseHead, isARedirectOnlyWithALocationAndAStatusThatSaysSo) {
    EXPECT_TRUE(parse("HTTP/1.1 302 Found")->redirect.isEmpty());
    for (const char* status : {"200", "300", "304", "404"})
        EXPECT_TRUE(
            parse("HTTP/1.1 " + QByteArray(status) + " Status\r\nLocation: /d")->redirect.isEmpty())
            << status;
}

TEST(ResponseHead, carriesWhatTheRedirectSaysAboutTheFile) {
    const QByteArray digest(64, 'a');
    const auto head =
        parse("HTTP/1.1 302 Found\r\nX-Linked-Size: 12\r\nX-Linked-ETag: \"" + digest + '"');
    EXPECT_EQ(head->linked, (LinkedEntity{.sha256 = digest, .size = 12}));
}

}  // namespace
}  // namespace sayloft
