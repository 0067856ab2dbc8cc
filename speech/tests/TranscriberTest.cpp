// SPDX-License-Identifier: MIT
#include "speech/Transcriber.h"

#include "tests/support/RawHttpServer.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <future>
#include <vector>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::RawAnswer;
using test::RawHttpServer;

class Transcription : public testing::Test {
protected:
    Transcription() { test::writeFile(m_wav, m_audio); }

    static QUrl urlOf(const RawHttpServer& server) {
        return QUrl(
            QStringLiteral("http://127.0.0.1:%1/v1/audio/transcriptions").arg(server.port()));
    }

    /// Transcribes on a thread of its own, as the program does.
    std::optional<QString> transcribe(const QUrl& url, const QString& wav,
                                      Transcriber::Schedule schedule = {}) {
        return std::async(std::launch::async,
                          [&] { return Transcriber(url, schedule).transcribe(wav); })
            .get();
    }

    std::optional<QString> transcribe(const RawHttpServer& server) {
        return transcribe(urlOf(server), m_wav);
    }

    /// One attempt that is not repeated.
    std::optional<QString> tryOnce(const RawHttpServer& server) {
        return transcribe(urlOf(server), m_wav, {.attempts = 1, .pause = 0ms, .timeout = 400ms});
    }

    QTemporaryDir m_directory;
    const QString m_wav = m_directory.filePath(QStringLiteral("sayloft_rec.wav"));
    // Everything that could upset a careless encoder.
    const QByteArray m_audio =
        QByteArrayLiteral("RIFF\0\r\n\xff\xfe--SayloftBoundary") + QByteArray(70000, '\x80');
};

TEST_F(Transcription, isAskedForByteForByteAsTheServerExpects) {
    RawHttpServer server({RawAnswer::ok("hello")});
    ASSERT_EQ(transcribe(server), QStringLiteral("hello"));

    ASSERT_EQ(server.requests().size(), 1U);
    const QByteArray request = server.requests().front();
    const qsizetype headerEnd = request.indexOf("\r\n\r\n");
    const QByteArray host = "127.0.0.1:" + QByteArray::number(server.port());
    const QByteArray body =
        "--SayloftBoundary7MA4YWxkTrZu0gW\r\n"
        "Content-Disposition: form-data; name=\"file\"; filename=\"a.wav\"\r\n"
        "Content-Type: audio/wav\r\n\r\n" +
        m_audio +
        "\r\n--SayloftBoundary7MA4YWxkTrZu0gW\r\n"
        "Content-Disposition: form-data; name=\"response_format\"\r\n\r\n"
        "text\r\n--SayloftBoundary7MA4YWxkTrZu0gW--\r\n";
    EXPECT_EQ(request.left(headerEnd),
              "POST /v1/audio/transcriptions HTTP/1.1\r\n"
              "Host: " +
                  host +
                  "\r\n"
                  "User-Agent: Sayloft\r\n"
                  "Accept: */*\r\n"
                  "Content-Type: multipart/form-data; boundary=SayloftBoundary7MA4YWxkTrZu0gW\r\n"
                  "Connection: close\r\n"
                  "Content-Length: " +
                  QByteArray::number(body.size()));
    EXPECT_EQ(request.mid(headerEnd + 4), body);
}

TEST_F(Transcription, sendsNothingWhereItMayNot) {
    RawHttpServer server({RawAnswer::ok("hello")});
    int asked = 0;
    const Transcriber transcriber(urlOf(server), {.pause = 1ms}, [&asked] {
        ++asked;
        return false;
    });
    EXPECT_FALSE(transcriber.transcribe(m_wav));
    EXPECT_EQ(asked, 4);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(Transcription, isSentOnceItMayBe) {
    RawHttpServer server({RawAnswer::ok("hello")});
    int asked = 0;
    const Transcriber transcriber(urlOf(server), {.pause = 1ms}, [&asked] { return ++asked == 3; });
    EXPECT_EQ(transcriber.transcribe(m_wav), QStringLiteral("hello"));
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(Transcription, goesToTheHelperOnThisMachine) {
    EXPECT_EQ(Transcriber::endpoint().toString(),
              QStringLiteral("http://127.0.0.1:8090/v1/audio/transcriptions"));
}

TEST_F(Transcription, isTriedFourTimesHalfASecondApart) {
    RawHttpServer server({RawAnswer::status(503), RawAnswer::status(503), RawAnswer::status(503),
                          RawAnswer::ok("  hello world\n")});
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EQ(transcribe(server), QStringLiteral("hello world"));
    const std::vector<QByteArray> requests = server.requests();
    EXPECT_EQ(requests, std::vector(4, requests.front()));
    EXPECT_GE(elapsed.elapsed(), 1500);
    EXPECT_LT(elapsed.elapsed(), 2500);
}

TEST_F(Transcription, isGivenUpAfterTheFourthFailure) {
    RawHttpServer server({RawAnswer::status(503)});
    EXPECT_FALSE(transcribe(server));
    EXPECT_EQ(server.requests().size(), 4U);
}

TEST_F(Transcription, failsFastWithoutAServer) {
    QUrl nobody;
    {
        const RawHttpServer server({RawAnswer::ok("")});
        nobody = urlOf(server);
    }
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_FALSE(transcribe(nobody, m_wav));
    EXPECT_GE(elapsed.elapsed(), 1500);
    EXPECT_LT(elapsed.elapsed(), 2500);
}

TEST_F(Transcription, ofAFileThatIsMissingOrUnreadableAsksNobody) {
    RawHttpServer server({RawAnswer::ok("hello")});
    EXPECT_FALSE(transcribe(urlOf(server), m_directory.filePath(QStringLiteral("none.wav"))));
    EXPECT_FALSE(transcribe(urlOf(server), m_directory.path()));
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(Transcription, mayBeEmptyAndIsThenNotRepeated) {
    RawHttpServer empty({RawAnswer::ok("")});
    EXPECT_EQ(transcribe(empty), QString());
    EXPECT_TRUE(transcribe(empty).has_value());
    RawHttpServer blank({RawAnswer::ok(" \r\n\t ")});
    EXPECT_EQ(transcribe(blank), QString());
    EXPECT_EQ(blank.requests().size(), 1U);
}

struct StatusRow {
    const char* name;
    int status;
    bool accepted;
};

class AnswerStatus : public Transcription, public testing::WithParamInterface<StatusRow> {};

TEST_P(AnswerStatus, decidesWhetherTheAnswerIsTaken) {
    RawHttpServer server({RawAnswer{.bytes = "HTTP/1.1 " + QByteArray::number(GetParam().status) +
                                             " X\r\nContent-Length: 2\r\n"
                                             "Location: http://127.0.0.1:1/\r\n\r\nok"}});
    EXPECT_EQ(tryOnce(server).has_value(), GetParam().accepted);
}

INSTANTIATE_TEST_SUITE_P(
    Codes, AnswerStatus,
    testing::Values(StatusRow{"ok", 200, true}, StatusRow{"created", 201, true},
                    StatusRow{"last2xx", 299, true}, StatusRow{"redirect", 307, false},
                    StatusRow{"badRequest", 400, false}, StatusRow{"notFound", 404, false},
                    StatusRow{"serverError", 500, false}),
    [](const auto& row) { return row.param.name; });

struct BadAnswerRow {
    const char* name;
    RawAnswer answer;
};

class BadAnswer : public Transcription, public testing::WithParamInterface<BadAnswerRow> {};

TEST_P(BadAnswer, isNoTranscript) {
    RawHttpServer server({GetParam().answer});
    EXPECT_FALSE(tryOnce(server));
    EXPECT_EQ(server.requests().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, BadAnswer,
    testing::Values(
        BadAnswerRow{"notUtf8", RawAnswer::ok("caf\xe9 \xff")},
        BadAnswerRow{"cutUtf8", RawAnswer::ok("caf\xc3")},
        BadAnswerRow{"surrogateUtf8", RawAnswer::ok("\xed\xa0\x80")},
        BadAnswerRow{"closesMidAnswer",
                     RawAnswer{.bytes = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhello"}},
        BadAnswerRow{"closesMidHeader", RawAnswer{.bytes = "HTTP/1.1 200 OK\r\nContent-Le"}},
        BadAnswerRow{"closesWithoutAWord", RawAnswer{}},
        BadAnswerRow{"endsInTheStatusLine", RawAnswer{.bytes = "HTTP/1.1 200"}},
        BadAnswerRow{"endsInTheHead", RawAnswer{.bytes = "HTTP/1.1 200 OK\r\nX: some"}},
        BadAnswerRow{"endsAfterALineOfTheHead", RawAnswer{.bytes = "HTTP/1.1 200 OK\r\nX: y\r\n"}},
        BadAnswerRow{"endsInTheHeadAfterTheServerSaidThatItGoesOn",
                     RawAnswer{.bytes = "HTTP/1.1 100 Continue\r\n\r\n"
                                        "HTTP/1.1 200 OK\r\nX: y\r\n"}},
        BadAnswerRow{"notHttp", RawAnswer{.bytes = "hello there\r\n\r\n"}},
        BadAnswerRow{"hangs", RawAnswer::hang()},
        BadAnswerRow{"hangsMidAnswer",
                     RawAnswer{.bytes = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhello",
                               .then = RawAnswer::Then::hang}},
        BadAnswerRow{"tricklesForever",
                     RawAnswer{.bytes = "HTTP/1.1 200 OK\r\nContent-Length: 900\r\n\r\n" +
                                        QByteArray(900, 'a'),
                               .trickleMs = 20}}),
    [](const auto& row) { return row.param.name; });

struct GoodAnswerRow {
    const char* name;
    QByteArray bytes;
};

class GoodAnswer : public Transcription, public testing::WithParamInterface<GoodAnswerRow> {};

TEST_P(GoodAnswer, isTheTranscript) {
    RawHttpServer server({RawAnswer{.bytes = GetParam().bytes}});
    EXPECT_EQ(tryOnce(server), QStringLiteral("hello"));
}

INSTANTIATE_TEST_SUITE_P(
    Answers, GoodAnswer,
    testing::Values(GoodAnswerRow{"ofALength", "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello"},
                    GoodAnswerRow{"toTheEndOfTheConnection", "HTTP/1.1 200 OK\r\n\r\nhello"},
                    GoodAnswerRow{"inChunks",
                                  "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                  "2\r\nhe\r\n3\r\nllo\r\n0\r\n\r\n"},
                    GoodAnswerRow{"inChunksWithALineAfterThem",
                                  "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                  "5\r\nhello\r\n0\r\nX: some\r\n\r\n"},
                    GoodAnswerRow{"afterTheServerSaidThatItGoesOn",
                                  "HTTP/1.1 100 Continue\r\n\r\n"
                                  "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello"}),
    [](const auto& row) { return row.param.name; });

struct LongAnswerRow {
    const char* name;
    QByteArray bytes;
};

class LongAnswer : public Transcription, public testing::WithParamInterface<LongAnswerRow> {};

TEST_P(LongAnswer, isCutOff) {
    RawHttpServer server({RawAnswer{.bytes = GetParam().bytes, .then = RawAnswer::Then::hang}});
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_FALSE(transcribe(urlOf(server), m_wav, {.attempts = 1, .pause = 0ms, .timeout = 20s}));
    EXPECT_LT(elapsed.elapsed(), 10000);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, LongAnswer,
    testing::Values(LongAnswerRow{"text", "HTTP/1.1 200 OK\r\n\r\n" +
                                              QByteArray(qsizetype{2} * 1024 * 1024, 'a')},
                    LongAnswerRow{"line", QByteArray(qsizetype{40} * 1024 * 1024, 'a')},
                    LongAnswerRow{
                        "lineOfTheHead",
                        "HTTP/1.1 200 OK\r\nX: " + QByteArray(qsizetype{40} * 1024 * 1024, 'a')},
                    LongAnswerRow{"head", "HTTP/1.1 200 OK\r\n" +
                                              QByteArray("X: some words\r\n").repeated(1'000'000)}),
    [](const auto& row) { return row.param.name; });

TEST_F(Transcription, mayHaveAMillionCharacters) {
    const QByteArray text(1'000'000, 'a');
    RawHttpServer server({RawAnswer::ok(text)});
    EXPECT_EQ(transcribe(server), QString::fromUtf8(text));
}

TEST_F(Transcription, isAskedForWithoutAProxy) {
    const RawHttpServer proxy({RawAnswer::ok("I heard you")});
    RawHttpServer server({RawAnswer::ok("hello")});
    qputenv("http_proxy", "http://127.0.0.1:" + QByteArray::number(proxy.port()));
    EXPECT_EQ(transcribe(server), QStringLiteral("hello"));
    qunsetenv("http_proxy");
    EXPECT_TRUE(proxy.requests().empty());
}

TEST_F(Transcription, keepsUnicodeAndTrimsOnlyTheEnds) {
    RawHttpServer server({RawAnswer::ok(" \n\u00a0Größe  😀\nzweite Zeile\u2028\r\n")});
    EXPECT_EQ(transcribe(server), QStringLiteral("Größe  😀\nzweite Zeile"));
}

TEST_F(Transcription, endsPromptlyWhenItIsNoLongerWanted) {
    RawHttpServer server({RawAnswer::hang()});
    std::stop_source stop;
    auto result = std::async(std::launch::async, [&] {
        return Transcriber(urlOf(server), {}).transcribe(m_wav, stop.get_token());
    });
    ASSERT_TRUE(test::waitUntil([&] { return server.requests().size() == 1; }));
    QElapsedTimer elapsed;
    elapsed.start();
    stop.request_stop();
    EXPECT_FALSE(result.get());
    EXPECT_LT(elapsed.elapsed(), 300);
}

TEST_F(Transcription, ofSeveralRecordingsRunsSideBySide) {
    RawHttpServer server({RawAnswer::ok("one")});
    const Transcriber transcriber(urlOf(server), {});
    std::vector<std::future<std::optional<QString>>> results;
    results.reserve(8);
    for (int i = 0; i < 8; ++i)
        results.push_back(
            std::async(std::launch::async, [&] { return transcriber.transcribe(m_wav); }));
    for (auto& result : results)
        EXPECT_EQ(result.get(), QStringLiteral("one"));
}

}  // namespace
}  // namespace sayloft
