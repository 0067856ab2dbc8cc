// SPDX-License-Identifier: MIT
#include "models/HttpFetch.h"

#include "tests/support/RawHttpServer.h"
#include "tests/support/WaitUntil.h"

#include <QPointer>

#include <memory>
#include <optional>
#include <utility>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using test::RawAnswer;

class Fetch : public testing::Test {
protected:
    /// Fetches /a/b?c from a server that sends these bytes and then closes the connection.
    void fetch(const QByteArray& answer, const QList<QByteArray>& headers = {}) {
        m_server = std::make_unique<test::RawHttpServer>(
            std::vector<RawAnswer>{RawAnswer{.bytes = answer}});
        m_fetch = new HttpFetch(url(QStringLiteral("/a/b?c")), headers,
                                {.onHead = [this](const ResponseHead& head) { m_head = head; },
                                 .onBody = [this](QByteArrayView bytes) { return take(bytes); },
                                 .onEnd = [this](const QString& error) { m_error = error; }},
                                &m_parent);
        EXPECT_TRUE(test::waitUntil([this] { return m_fetch.isNull(); }));
    }

    [[nodiscard]] QUrl url(const QString& path) const {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server->port()).arg(path));
    }

    void expectWhole(const QByteArray& body) const {
        EXPECT_EQ(m_error, QString());
        EXPECT_EQ(m_body, body);
    }

    void expectFailure() const {
        ASSERT_TRUE(m_error);
        EXPECT_NE(*m_error, QString());
    }

    [[nodiscard]] QString redirect(const QByteArray& location) {
        fetch("HTTP/1.1 302 Found\r\nContent-Length: 0\r\nLocation: " + location + "\r\n\r\n");
        return m_head->redirect.toString(QUrl::FullyEncoded);
    }

    bool take(QByteArrayView bytes) {
        m_body += bytes;
        return m_body.size() < m_wanted;
    }

    std::unique_ptr<test::RawHttpServer> m_server;
    QObject m_parent;
    QPointer<HttpFetch> m_fetch;
    std::optional<ResponseHead> m_head;
    QByteArray m_body;
    std::optional<QString> m_error;
    qsizetype m_wanted = 1000;
};

TEST_F(Fetch, asksForThePathWithTheHeadersGiven) {
    fetch("HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nabc",
          {"Range: bytes=7-", "If-Range: \"x\""});
    const QByteArray request = m_server->requests().front();
    EXPECT_TRUE(request.startsWith("GET /a/b?c HTTP/1.1\r\n"));
    EXPECT_TRUE(request.contains("\r\nRange: bytes=7-\r\n"));
    EXPECT_TRUE(request.contains("\r\nIf-Range: \"x\"\r\n"));
    EXPECT_FALSE(request.contains("Accept-Encoding"));
    expectWhole("abc");
}

TEST_F(Fetch, readsTheHeadersWhateverTheCaseOfTheirNames) {
    fetch(
        "HTTP/1.1 206 Partial Content\r\ncontent-LENGTH: 7\r\nETAG: \"x\"\r\n"
        "Content-Range: bytes 3-9/10\r\nContent-Encoding: gzip\r\n\r\n0123456");
    ASSERT_TRUE(m_head);
    EXPECT_EQ(m_head->status, 206);
    EXPECT_EQ(m_head->length, 7);
    EXPECT_EQ(m_head->etag, "\"x\"");
    EXPECT_EQ(m_head->range, (ContentRange{.first = 3, .last = 9, .size = 10}));
    EXPECT_TRUE(m_head->isEncoded);
    expectWhole("0123456");
}

TEST_F(Fetch, takesABodyInChunks) {
    fetch(
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: "
        "chunked\r\n\r\n3\r\nabc\r\n2;x=y\r\nde\r\n0\r\n\r\n");
    EXPECT_EQ(m_head->length, std::nullopt);
    expectWhole("abcde");
}

TEST_F(Fetch, takesABodyThatEndsWithTheConnection) {
    fetch("HTTP/1.1 200 OK\r\n\r\nabc");
    EXPECT_EQ(m_head->length, std::nullopt);
    expectWhole("abc");
}

TEST_F(Fetch, passesInterimAnswersOver) {
    fetch(
        "HTTP/1.1 103 Early Hints\r\nETag: \"early\"\r\n\r\n"
        "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\na");
    EXPECT_EQ(m_head->status, 200);
    EXPECT_EQ(m_head->etag, "");
    expectWhole("a");
}

TEST_F(Fetch, knowsThatNoContentIsNoBody) {
    fetch("HTTP/1.1 204 No Content\r\n\r\n");
    EXPECT_EQ(m_head->length, 0);
    expectWhole("");
}

TEST_F(Fetch, failsForAnAnswerThatIsNotHttpOrNoSize) {
    for (const char* answer :
         {"", "220 mail server\r\n", "HTTP/1.1 200 OK\r\nContent-Length: -1\r\n\r\n",
          "HTTP/1.1 200 OK\r\nContent-Length: x\r\n\r\n"}) {
        fetch(answer);
        expectFailure();
        EXPECT_TRUE(m_body.isEmpty()) << answer;
    }
}

TEST_F(Fetch, failsForABodyThatIsCut) {
    for (const char* answer : {"HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc",
                               "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nabc",
                               "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n",
                               "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nx\r\n"}) {
        fetch(answer);
        expectFailure();
    }
}

TEST_F(Fetch, resolvesRedirectsOnTheSameHost) {
    for (const auto& [location, path] : {std::pair("d", "/a/d"), {"/d?e=%20f", "/d?e=%20f"}}) {
        const QString target = redirect(location);
        EXPECT_EQ(target, url(QLatin1String(path)).toString(QUrl::FullyEncoded));
    }
}

TEST_F(Fetch, resolvesRedirectsToOtherHostsAndDoesNotFollowThem) {
    EXPECT_EQ(redirect("//other.example/d"), QStringLiteral("http://other.example/d"));
    EXPECT_EQ(redirect("https://other.example/d"), QStringLiteral("https://other.example/d"));
    EXPECT_EQ(m_server->requests().size(), 1U);
}

TEST_F(Fetch, isRedirectedOnlyByALocationAndAStatusThatSaysSo) {
    fetch("HTTP/1.1 302 Found\r\nContent-Length: 0\r\n\r\n");
    EXPECT_TRUE(m_head->redirect.isEmpty());
    for (const char* status : {"200", "300", "404"}) {
        fetch("HTTP/1.1 " + QByteArray(status) +
              " Status\r\nContent-Length: 0\r\nLocation: /d\r\n\r\n");
        EXPECT_TRUE(m_head->redirect.isEmpty()) << status;
    }
}

TEST_F(Fetch, carriesWhatTheRedirectSaysAboutTheFile) {
    const QByteArray digest(64, 'a');
    fetch("HTTP/1.1 302 Found\r\nX-Linked-Size: 12\r\nX-Linked-ETag: \"" + digest +
          "\"\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(m_head->linked, (LinkedEntity{.sha256 = digest, .size = 12}));
}

TEST_F(Fetch, endsWhenNoMoreIsWanted) {
    m_wanted = 2;
    fetch("HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nabc");
    expectFailure();
}

TEST_F(Fetch, saysNothingAfterItWasGivenUp) {
    m_server = std::make_unique<test::RawHttpServer>(std::vector<RawAnswer>{RawAnswer::hang()});
    QPointer<HttpFetch> fetch(
        new HttpFetch(url(QStringLiteral("/")), {},
                      {.onHead = [](const ResponseHead&) { ADD_FAILURE(); },
                       .onBody = [](QByteArrayView) { return ADD_FAILURE(), false; },
                       .onEnd = [](const QString&) { ADD_FAILURE(); }},
                      &m_parent));
    ASSERT_TRUE(test::waitUntil([this] { return !m_server->requests().empty(); }));
    fetch->giveUp();
    EXPECT_TRUE(test::waitUntil([&] { return fetch.isNull(); }));
}

}  // namespace
}  // namespace sayloft
