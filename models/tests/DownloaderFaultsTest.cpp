// SPDX-License-Identifier: MIT
// The downloader and hosts that break off, stall or lie, on plain sockets.
#include "models/Downloader.h"

#include "models/tests/DownloaderFixture.h"
#include "tests/support/RawHttpServer.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::modelBytes;
using test::RawAnswer;
using test::RawHttpServer;

class DownloadFromAFaultyHost : public test::DownloaderFixture {
protected:
    [[nodiscard]] QUrl listen(const std::vector<RawAnswer>& script) {
        m_server = std::make_unique<RawHttpServer>(script);
        return QUrl(QStringLiteral("http://127.0.0.1:%1/model").arg(m_server->port()));
    }

    [[nodiscard]] static RawAnswer answer(const QByteArray& head, const QByteArray& body,
                                          RawAnswer::Then then = RawAnswer::Then::close) {
        return {.bytes = "HTTP/1.1 " + head + "\r\n\r\n" + body, .then = then};
    }

    [[nodiscard]] static QByteArray length(qsizetype count) {
        return "\r\nContent-Length: " + QByteArray::number(count);
    }

    /// The whole model in chunks of the transfer encoding, of which the last one is empty.
    [[nodiscard]] QByteArray chunked() const {
        QByteArray body;
        for (qsizetype at = 0; at < m_model.size(); at += 4096) {
            const QByteArray piece = m_model.mid(at, 4096);
            body += QByteArray::number(piece.size(), 16) + "\r\n" + piece + "\r\n";
        }
        return body + "0\r\n\r\n";
    }

    void expectFailure(const QUrl& url, const QString& reason) {
        test::writeFile(m_destination, "earlier");
        EXPECT_FALSE(download(url));
        EXPECT_EQ(content(), "earlier");
        EXPECT_EQ(m_home.log().toStdString(), "download error: " + reason.toStdString() + '\n');
    }

    void expectNothingLeft() const { EXPECT_EQ(files(), QStringList(QStringLiteral("some.gguf"))); }

    const QByteArray m_model = modelBytes(200'000);
    std::unique_ptr<RawHttpServer> m_server;
};

TEST_F(DownloadFromAFaultyHost, withoutALengthArrivesWithoutProgress) {
    ASSERT_TRUE(download(listen({answer("200 OK", m_model)})));
    EXPECT_EQ(content(), m_model);
    EXPECT_TRUE(m_progress.empty());
}

TEST_F(DownloadFromAFaultyHost, inChunksArrivesWithoutProgress) {
    ASSERT_TRUE(download(listen({answer("200 OK\r\nTransfer-Encoding: chunked", chunked())})));
    EXPECT_EQ(content(), m_model);
    EXPECT_TRUE(m_progress.empty());
}

TEST_F(DownloadFromAFaultyHost, inAPartThatIsTheWholeArrives) {
    ASSERT_TRUE(
        download(listen({answer("206 Partial Content" + length(m_model.size()), m_model)})));
    EXPECT_EQ(content(), m_model);
}

TEST_F(DownloadFromAFaultyHost, reportsAtMostTenTimesASecond) {
    RawAnswer slow = answer("200 OK" + length(1500), m_model.left(1500));
    slow.trickleMs = 1;
    std::vector<std::chrono::steady_clock::time_point> reports;
    m_downloader->onProgress = [&](double fraction) {
        reports.push_back(std::chrono::steady_clock::now());
        m_progress.push_back(fraction);
    };
    ASSERT_TRUE(download(listen({slow})));
    EXPECT_EQ(m_progress.back(), 1.0);
    ASSERT_GT(reports.size(), 11U);
    // A report may have waited for the main loop.
    for (std::size_t i = 11; i < reports.size(); ++i)
        EXPECT_GT(reports[i] - reports[i - 11], 950ms);
}

class CutByTheHost : public DownloadFromAFaultyHost, public testing::WithParamInterface<int> {
protected:
    [[nodiscard]] qsizetype cut() const { return m_model.size() * GetParam() / 10; }

    void expectPart() const {
        EXPECT_EQ(partSize(), cut());
        EXPECT_EQ(test::readFile(part()), m_model.left(cut()));
    }
};

INSTANTIATE_TEST_SUITE_P(AtTenth, CutByTheHost, testing::Range(0, 10));

TEST_P(CutByTheHost, failsAndKeepsNothingThatCannotGoOn) {
    const QUrl url = listen({answer("200 OK" + length(m_model.size()), m_model.left(cut()))});
    expectFailure(url, QStringLiteral("transfer closed with %1 bytes remaining to read")
                           .arg(m_model.size() - cut()));
    expectNothingLeft();
}

TEST_P(CutByTheHost, failsInChunksToo) {
    const QByteArray body = chunked();
    const QUrl url = listen(
        {answer("200 OK\r\nTransfer-Encoding: chunked", body.left(body.size() * GetParam() / 10))});
    expectFailure(url, QStringLiteral("transfer closed with outstanding read data remaining"));
    expectNothingLeft();
}

TEST_P(CutByTheHost, failsOnAResetToo) {
    const QUrl url = listen(
        {answer("200 OK" + length(m_model.size()), m_model.left(cut()), RawAnswer::Then::reset)});
    EXPECT_FALSE(download(url));
    EXPECT_EQ(files(), QStringList());
    EXPECT_TRUE(m_home.log().startsWith(QStringLiteral("download error: ")));
}

TEST_P(CutByTheHost, goesOnFromThereTheNextTime) {
    const QByteArray tag = "\r\nETag: \"1\"";
    const QByteArray whole = length(m_model.size()) + tag;
    const QByteArray rest = length(m_model.size() - cut()) + tag + "\r\nContent-Range: bytes " +
                            QByteArray::number(cut()) + '-' +
                            QByteArray::number(m_model.size() - 1) + '/' +
                            QByteArray::number(m_model.size());
    const QUrl url =
        listen({answer("200 OK" + whole, m_model.left(cut())),
                cut() == 0 ? answer("200 OK" + whole, m_model)
                           : answer("206 Partial Content" + rest, m_model.mid(cut()))});
    EXPECT_FALSE(download(url));
    if (cut() > 0)
        expectPart();
    ASSERT_TRUE(download(url)) << m_home.log().toStdString();
    EXPECT_EQ(content(), m_model);
    EXPECT_GT(m_progress.front() * 10, GetParam());
    EXPECT_EQ(m_progress.back(), 1.0);
    EXPECT_EQ(files(), QStringList(QStringLiteral("some.gguf")));
    const QByteArray range = "range: bytes=" + QByteArray::number(cut()) + "-\r\n";
    EXPECT_EQ(m_server->requests().back().toLower().contains(range), cut() > 0);
}

TEST_F(DownloadFromAFaultyHost, failsWhereverTheHeadIsCutOffAndKeepsWhatHasCome) {
    const QByteArray tag = "\r\nETag: \"1\"";
    const QByteArray head =
        "HTTP/1.1 206 Partial Content" + tag + "\r\nContent-Range: bytes 1000-" +
        QByteArray::number(m_model.size() - 1) + '/' + QByteArray::number(m_model.size()) + "\r\n";
    std::vector<RawAnswer> script{
        answer("200 OK" + length(m_model.size()) + tag, m_model.left(1000))};
    for (qsizetype size = 0; size < head.size(); ++size)
        script.push_back({.bytes = head.left(size)});
    const QUrl url = listen(script);
    for (std::size_t attempt = 0; attempt < script.size(); ++attempt) {
        ASSERT_FALSE(download(url)) << attempt;
        ASSERT_EQ(partSize(), 1000) << script[attempt].bytes.toStdString();
    }
}

TEST_F(DownloadFromAFaultyHost, failsWhenTheHostFallsSilent) {
    renew(300ms);
    const QUrl url = listen({answer("200 OK" + length(m_model.size()) + "\r\nETag: \"1\"",
                                    m_model.left(1000), RawAnswer::Then::hang)});
    expectFailure(url, QStringLiteral("nothing has come for 0.3 s"));
    EXPECT_EQ(partSize(), 1000);
}

TEST_F(DownloadFromAFaultyHost, failsWhenTheHostNeverAnswers) {
    renew(300ms);
    expectFailure(listen({RawAnswer::hang()}), QStringLiteral("nothing has come for 0.3 s"));
}

TEST_F(DownloadFromAFaultyHost, isPatientWithAHostThatIsSlow) {
    renew(600ms);
    RawAnswer slow = answer("200 OK" + length(200), m_model.left(200));
    slow.trickleMs = 5;
    ASSERT_TRUE(download(listen({slow})));
    EXPECT_EQ(content(), m_model.left(200));
}

TEST_F(DownloadFromAFaultyHost, takesNoMoreThanWasAnnounced) {
    ASSERT_TRUE(download(listen({answer("200 OK" + length(1000), m_model)})));
    EXPECT_EQ(content(), m_model.left(1000));
}

TEST_F(DownloadFromAFaultyHost, refusesMoreThanTheRedirectAnnounced) {
    expectFailure(
        listen({answer("302 Found\r\nLocation: /other\r\nX-Linked-Size: 1000" + length(0), {}),
                answer("200 OK\r\nTransfer-Encoding: chunked", chunked())}),
        QStringLiteral("more has come than the 1000 bytes announced"));
    expectNothingLeft();
}

TEST_F(DownloadFromAFaultyHost, refusesLessThanTheRedirectAnnounced) {
    expectFailure(
        listen({answer("302 Found\r\nLocation: /other\r\nX-Linked-Size: 200001" + length(0), {}),
                answer("200 OK\r\nTransfer-Encoding: chunked", chunked())}),
        QStringLiteral("the connection ended after 200000 of 200001 bytes"));
}

TEST_F(DownloadFromAFaultyHost, refusesAPartThatWasNotAskedFor) {
    expectFailure(
        listen({answer("206 Partial Content" + length(10) + "\r\nContent-Range: bytes 5-14/200000",
                       m_model.mid(5, 10))}),
        QStringLiteral("the host sends a part of the file only"));
}

TEST_F(DownloadFromAFaultyHost, refusesACompressedFile) {
    expectFailure(listen({answer("200 OK\r\nContent-Encoding: gzip" + length(10), "0123456789")}),
                  QStringLiteral("the host sends the file in a form that was not asked for"));
}

TEST_F(DownloadFromAFaultyHost, failsOnARedirectToNowhereWithoutAWord) {
    EXPECT_FALSE(download(listen({answer("302 Found" + length(0), {})})));
    EXPECT_EQ(m_home.log(), QString());
}

TEST_F(DownloadFromAFaultyHost, failsOnAnAnswerThatIsNoHttp) {
    EXPECT_FALSE(download(listen({{.bytes = "220 mail server\r\n"}})));
    EXPECT_TRUE(m_home.log().startsWith(QStringLiteral("download error: ")));
    EXPECT_EQ(files(), QStringList());
}

TEST_F(DownloadFromAFaultyHost, isGivenUpPromptlyWhenTheProgramEnds) {
    const QUrl url = listen({answer("200 OK" + length(m_model.size()) + "\r\nETag: \"1\"",
                                    m_model.left(1000), RawAnswer::Then::hang)});
    start(url);
    ASSERT_TRUE(test::waitUntil([this] { return partSize() == 1000; }));
    const auto before = std::chrono::steady_clock::now();
    m_downloader.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - before, 1s);
    EXPECT_EQ(partSize(), 1000);
    EXPECT_TRUE(m_done.empty());
}

}  // namespace
}  // namespace sayloft
