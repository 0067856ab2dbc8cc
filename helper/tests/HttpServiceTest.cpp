// SPDX-License-Identifier: MIT
#include "helper/HttpService.h"

#include "helper/tests/SampleRequests.h"
#include "tests/support/RawHttp.h"
#include "tests/support/WaitUntil.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace sayloft::helper {
namespace {

using namespace std::chrono_literals;
using sayloft::test::exchange;
using sayloft::test::RawConnection;
using sayloft::test::RawReply;
using test::appForm;
using test::filePart;
using test::form;
using test::formType;
using test::post;
using test::postOf;
using test::wavFile;

constexpr std::size_t bodyLimit = std::size_t{1024} * 1024;

// A service whose recogniser counts samples; smaller and less patient than the real one.
class RunningService {
public:
    RunningService() {
        const auto bound = m_service->bind(m_port);
        if (std::holds_alternative<Problem>(bound))
            throw std::runtime_error(std::get<Problem>(bound).reason);
        m_thread = std::jthread([this] {
            m_service->serve([this](const Samples& samples) {
                if (samples.size() == 13)
                    throw std::runtime_error("unlucky");
                ++m_recognised;
                return "heard " + std::to_string(samples.size());
            });
        });
        static_cast<void>(exchange(m_port, "GET / HTTP/1.1\r\n\r\n"));  // it is running
    }

    ~RunningService() { m_service->stop(); }

    [[nodiscard]] std::uint16_t port() const { return m_port; }
    [[nodiscard]] int recognised() const { return m_recognised; }

private:
    std::uint16_t m_port = sayloft::test::freePort();
    std::atomic<int> m_recognised = 0;
    std::unique_ptr<HttpService> m_service = std::make_unique<HttpService>(
        RequestLimits{.bodyBytes = bodyLimit, .transferTime = 1s, .lingerTime = 500ms});
    std::jthread m_thread;
};

class SpeechHttpService : public testing::Test {
protected:
    [[nodiscard]] RawReply ask(std::string_view request) const {
        return exchange(m_service.port(), request);
    }

    void expectStillWorks() const {
        const RawReply reply = ask(postOf(appForm(wavFile(7))));
        EXPECT_EQ(reply.status, 200);
        EXPECT_EQ(reply.body, "heard 7");
    }

    RunningService m_service;
};

TEST_F(SpeechHttpService, answersTheReadinessProbe) {
    const RawReply reply = ask("GET / HTTP/1.1\r\nHost: 127.0.0.1:8090\r\n\r\n");
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.body, "The speech server is ready.\n");
}

TEST_F(SpeechHttpService, answersTheRequestOfTheAppWithTheBareTranscript) {
    const RawReply reply = ask(postOf(appForm(wavFile(160))));
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.body, "heard 160");
    EXPECT_NE(reply.head.find("\r\nContent-Type: text/plain"), std::string::npos) << reply.head;
}

TEST_F(SpeechHttpService, answersInJsonWhenAskedAndWhenNothingIsAsked) {
    const std::string json = "Content-Disposition: form-data; name=\"response_format\"\r\n\r\njson";
    const std::string model = "Content-Disposition: form-data; name=\"model\"\r\n\r\nwhisper-1";
    for (const std::string& body :
         {form({filePart(wavFile(5)), json}), form({json, filePart(wavFile(5))}),
          form({model, filePart(wavFile(5))})}) {
        const RawReply reply = ask(postOf(body));
        EXPECT_EQ(reply.status, 200);
        EXPECT_EQ(reply.body, "{\"text\":\"heard 5\"}");
        EXPECT_NE(reply.head.find("\r\nContent-Type: application/json"), std::string::npos);
    }
}

TEST_F(SpeechHttpService, answersWithTheTranscriptOfAnEmptyRecording) {
    EXPECT_EQ(ask(postOf(appForm(wavFile(0)))).body, "heard 0");
}

TEST_F(SpeechHttpService, keepsToTheAnswerWhateverCompressionOrRangeIsAskedFor) {
    const RawReply reply =
        ask(postOf(appForm(wavFile(160)), "Accept-Encoding: gzip, br\r\nRange: bytes=2-3\r\n"));
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.body, "heard 160");
}

TEST_F(SpeechHttpService, takesARequestInTinyPieces) {
    RawConnection connection(m_service.port());
    const std::string request = postOf(appForm(wavFile(20)));
    for (const char byte : request)
        ASSERT_TRUE(connection.send(std::string_view(&byte, 1)));
    EXPECT_EQ(connection.readReply().body, "heard 20");
}

std::string chunked(std::string_view body, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < body.size(); i += size) {
        const std::string_view part = body.substr(i, size);
        std::array<char, 20> length{};
        std::snprintf(length.data(), length.size(), "%zx\r\n", part.size());
        text += length.data() + std::string(part) + "\r\n";
    }
    return text + "0\r\n\r\n";
}

const std::string chunkedType = "Transfer-Encoding: chunked\r\n" + formType();

TEST_F(SpeechHttpService, takesChunksOfAnySize) {
    for (const std::size_t size : {1U, 7U, 5000U}) {
        const RawReply reply = ask(post(chunkedType, chunked(appForm(wavFile(300)), size)));
        EXPECT_EQ(reply.status, 200) << size;
        EXPECT_EQ(reply.body, "heard 300") << size;
    }
}

TEST_F(SpeechHttpService, sendsTheContinueThatAClientWaitsFor) {
    const std::string body = appForm(wavFile(9));
    RawConnection connection(m_service.port());
    connection.send(post("Expect: 100-continue\r\n" + formType() +
                             "Content-Length: " + std::to_string(body.size()) + "\r\n",
                         {}));
    ASSERT_TRUE(connection.waitForBytes("HTTP/1.1 100 Continue\r\n\r\n", 5s));
    connection.send(body);
    EXPECT_EQ(connection.readReply().body, "heard 9");
}

TEST_F(SpeechHttpService, refusesAtOnceWhatAClientOnlyAnnounces) {
    RawConnection connection(m_service.port());
    connection.send(
        post("Expect: 100-continue\r\n" + formType() + "Content-Length: 99999999\r\n", {}));
    const RawReply reply = connection.readReply();
    EXPECT_EQ(reply.status, 400);
    EXPECT_EQ(reply.head.find("100 Continue"), std::string::npos);
}

TEST_F(SpeechHttpService, isOutOfTheWayOfOtherPrograms) {
    HttpService second;
    const auto bound = second.bind(m_service.port());
    ASSERT_TRUE(std::holds_alternative<Problem>(bound));
    EXPECT_EQ(std::get<Problem>(bound).reason, "cannot listen on 127.0.0.1 port " +
                                                   std::to_string(m_service.port()) +
                                                   ": Address already in use");
}

TEST_F(SpeechHttpService, outlivesAnExceptionOfTheRecogniser) {
    const RawReply reply = ask(postOf(appForm(wavFile(13))));
    EXPECT_EQ(reply.status, 500);
    EXPECT_EQ(reply.body, "the server could not work on the request\n");
    expectStillWorks();
}

struct Malformed {
    const char* name;
    std::string request;
    int status;
    std::string reason;
};

class SpeechHttpRefusal : public testing::TestWithParam<Malformed> {
protected:
    static RunningService& service() {
        static RunningService running;
        return running;
    }
};

TEST_P(SpeechHttpRefusal, answersWithAPlainReasonAndGoesOn) {
    const RawReply reply = exchange(service().port(), GetParam().request);
    EXPECT_EQ(reply.status, GetParam().status) << reply.head;
    EXPECT_EQ(reply.body, GetParam().reason + "\n");
    EXPECT_EQ(exchange(service().port(), postOf(appForm(wavFile(7)))).body, "heard 7");
}

const std::string tooLong = "the request is longer than 1 MiB";
const std::string tooEarly = "the request ended early or took too long";
const std::string badHead = "the request's head is malformed";
const std::string notUnderstood = "the request is not understood";
const std::string notForm = "the request is not multipart/form-data";
const std::string badForm = "the form is truncated or does not fit its boundary";

std::string withLength(const std::string& length) {
    return post(formType() + "Content-Length: " + length + "\r\n", appForm(wavFile(4)));
}

std::string asType(const std::string& type) {
    const std::string body = appForm(wavFile(4));
    return post(
        "Content-Type: " + type + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n",
        body);
}

std::string withFormat(const std::string& format) {
    return postOf(
        form({filePart(wavFile(4)),
              "Content-Disposition: form-data; name=\"response_format\"\r\n\r\n" + format}));
}

const std::string good = postOf(appForm(wavFile(400)));

INSTANTIATE_TEST_SUITE_P(
    Head, SpeechHttpRefusal,
    testing::Values(
        Malformed{"notHttp", "hello\r\n\r\n", 400, notUnderstood},
        Malformed{"binary", std::string("\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03\r\n\r\n", 15),
                  400, notUnderstood},
        Malformed{"noLineEnd", "GET / HTTP/1.1", 400, notUnderstood},
        Malformed{"endlessLine", "GET /" + std::string(1000000, 'a'), 400, badHead},
        Malformed{"longLine", "GET /" + std::string(9000, 'a') + " HTTP/1.1\r\n\r\n", 400,
                  notUnderstood},
        Malformed{"endlessHeaders",
                  [] {
                      std::string text = "GET / HTTP/1.1\r\n";
                      for (int i = 0; i < 50000; ++i)
                          text += "X-Header: value\r\n";
                      return text;
                  }(),
                  400, notUnderstood},
        Malformed{"headCutOff", "POST /v1/audio/transcriptions HTTP/1.1\r\nHost: x\r\n", 400,
                  notUnderstood},
        Malformed{"otherVersion", "GET / HTTP/3.0\r\n\r\n", 400, notUnderstood},
        Malformed{"badRange", "GET / HTTP/1.1\r\nRange: bytes=z\r\n\r\n", 400, notUnderstood},
        Malformed{"unknownMethod", "SPEAK / HTTP/1.1\r\n\r\n", 400, notUnderstood},
        Malformed{"connectMethod", "CONNECT / HTTP/1.1\r\nContent-Length: 0\r\n\r\n", 400,
                  notUnderstood},
        Malformed{"unknownPath", "GET /favicon.ico HTTP/1.1\r\n\r\n", 404,
                  "there is nothing at this address"},
        Malformed{"getOfTheTranscription", "GET /v1/audio/transcriptions HTTP/1.1\r\n\r\n", 404,
                  "there is nothing at this address"},
        Malformed{"noLength", post(formType(), ""), 400, "the request has no Content-Length"},
        Malformed{"lengthIsText", withLength("many"), 400,
                  "the request's Content-Length is not a number"},
        Malformed{"lengthIsNegative", withLength("-1"), 400,
                  "the request's Content-Length is not a number"},
        Malformed{"lengthIsEmpty", withLength(""), 400, "the request has no Content-Length"},
        Malformed{"lengthOverflows", withLength("99999999999999999999999"), 400,
                  "the request's Content-Length is not a number"},
        Malformed{"twoLengths", withLength("10\r\nContent-Length: 20"), 400,
                  "the request has more than one Content-Length"},
        Malformed{"lengthAndChunks", withLength("10\r\nTransfer-Encoding: chunked"), 400,
                  "the request has both a Content-Length and a Transfer-Encoding"},
        Malformed{"otherEncoding", post(formType() + "Transfer-Encoding: gzip\r\n", "x"), 400,
                  "of transfer encodings only chunked is understood"},
        Malformed{"compressed", postOf("x", "Content-Encoding: gzip\r\n"), 400,
                  "a compressed request is not understood"}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Length, SpeechHttpRefusal,
    testing::Values(
        Malformed{"announcedTooLong", withLength("1048577"), 400, tooLong},
        Malformed{"announcedEndless", withLength("9223372036854775807"), 400, tooLong},
        Malformed{"reallyTooLong", postOf(appForm(wavFile(bodyLimit))), 400, tooLong},
        Malformed{"chunksTooLong",
                  post(chunkedType, chunked(std::string(bodyLimit + 1, 'a'), 4096)), 400, tooLong},
        Malformed{"endlessChunk",
                  post(chunkedType, "ffffffffffffff\r\n" + std::string(3000000, 'a')), 400,
                  tooLong},
        Malformed{"chunkWithoutSize", post(chunkedType, "\r\nabc"), 400, tooEarly},
        Malformed{"chunkOfText", post(chunkedType, "zz\r\nabc\r\n0\r\n\r\n"), 400, tooEarly},
        Malformed{"chunksWithoutEnd", post(chunkedType, "3\r\nabc\r\n"), 400, tooEarly},
        Malformed{"endlessChunkSize", post(chunkedType, std::string(3000000, '1')), 400, tooEarly},
        Malformed{"bodyCutOff", good.substr(0, good.size() - 100), 400, tooEarly},
        Malformed{"bodyMissing", good.substr(0, good.find("\r\n\r\n") + 4), 400, tooEarly}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Form, SpeechHttpRefusal,
    testing::Values(
        Malformed{"noType", post("Content-Length: 3\r\n", "abc"), 400, notForm},
        Malformed{"jsonType", asType("application/json"), 400, notForm},
        Malformed{"wavAlone", asType("audio/wav"), 400, notForm},
        Malformed{"urlEncoded", asType("application/x-www-form-urlencoded"), 400, notForm},
        Malformed{"otherMultipart", asType("multipart/mixed; boundary=x"), 400, notForm},
        Malformed{"noBoundary", asType("multipart/form-data"), 400,
                  "the request is not multipart/form-data with a boundary"},
        Malformed{"otherBoundary", asType("multipart/form-data; boundary=x"), 400, badForm},
        Malformed{"emptyBody", postOf(""), 400, badForm},
        Malformed{"emptyForm", postOf(form({})), 400, "the form has no file"},
        Malformed{"noFile", postOf(form({"Content-Disposition: form-data; name=\"x\"\r\n\r\ny"})),
                  400, "the form has no file"},
        Malformed{"emptyFile", postOf(form({filePart("")})), 400, "the file is not a WAV file"},
        Malformed{"notAWav", postOf(form({filePart("ID3 this is something else")})), 400,
                  "the file is not a WAV file"},
        Malformed{"stereo", postOf(form({filePart(wavFile(4, {.channels = 2}))})), 400,
                  "the WAV file is not mono"},
        Malformed{"otherRate", postOf(form({filePart(wavFile(4, {.rate = 48000}))})), 400,
                  "the WAV file's sample rate is not 16000 Hz"},
        Malformed{"floatingPoint", postOf(form({filePart(wavFile(4, {.tag = 3, .bits = 32}))})),
                  400, "the WAV file is not PCM"},
        Malformed{"truncatedWav", postOf(form({filePart(wavFile(400).substr(0, 100))})), 400,
                  "the WAV file is truncated"},
        Malformed{"unknownFormat", withFormat("srt"), 400, "response_format must be text or json"},
        Malformed{"formatInOtherCase", withFormat("TEXT"), 400,
                  "response_format must be text or json"},
        Malformed{"emptyFormat", withFormat(""), 400, "response_format must be text or json"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(SpeechHttpService, endsAConnectionThatNeverSendsAnything) {
    RawConnection connection(m_service.port());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(connection.readReply(5s).status, 0);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 900ms);
}

TEST_F(SpeechHttpService, endsAClientThatSendsAByteNowAndThen) {
    RawConnection connection(m_service.port());
    const std::string request = postOf(appForm(wavFile(1000)));
    connection.send(request.substr(0, 400));
    std::atomic<bool> answered = false;
    std::jthread sender([&] {
        for (std::size_t i = 400; i < request.size() && !answered; ++i) {
            connection.send(request.substr(i, 1));
            std::this_thread::sleep_for(50ms);
        }
    });
    const RawReply reply = connection.readReply(5s);
    answered = true;
    EXPECT_EQ(reply.status, 400);
    EXPECT_EQ(reply.body, tooEarly + "\n");
}

TEST_F(SpeechHttpService, answersOthersWhileManyClientsAreSilent) {
    std::vector<std::unique_ptr<RawConnection>> silent;
    silent.reserve(100);
    for (int i = 0; i < 100; ++i)
        silent.push_back(std::make_unique<RawConnection>(m_service.port()));
    expectStillWorks();  // after a few deadlines of a second each
}

TEST_F(SpeechHttpService, outlivesClientsThatLeaveEarly) {
    for (std::size_t kept = 0; kept < good.size(); kept += 13) {
        RawConnection connection(m_service.port());
        connection.send(good.substr(0, kept));
    }
    expectStillWorks();
}

TEST_F(SpeechHttpService, answersFiftyClientsAtOnce) {
    std::vector<std::jthread> clients;
    std::atomic<int> right = 0;
    for (std::size_t i = 0; i < 50; ++i) {
        clients.emplace_back([&, i] {
            RawConnection connection(m_service.port());
            connection.send(postOf(appForm(wavFile(100 + i))));
            const RawReply reply = connection.readReply();
            right += reply.body == "heard " + std::to_string(100 + i) ? 1 : 0;
        });
    }
    clients.clear();
    EXPECT_EQ(right, 50);
}

// One random change: a byte replaced, bytes taken out, put in or doubled.
std::string changed(std::string text, std::mt19937& random) {
    if (text.empty())
        return text;
    const std::size_t at = random() % text.size();
    switch (random() % 5) {
        case 0:
            text[at] = static_cast<char>(random());
            break;
        case 1:
            text.erase(at, random() % 40);
            break;
        case 2:
            text.insert(at, 1 + random() % 20, static_cast<char>(random()));
            break;
        case 3:
            text.insert(at, text.substr(random() % text.size(), random() % 200));
            break;
        default:
            text.resize(at);
    }
    return text;
}

TEST_F(SpeechHttpService, survivesThousandsOfRandomChangesOfARequest) {
    std::mt19937 random(8090);  // NOLINT(bugprone-*): the same run every time
    const std::vector<std::string> seeds = {
        postOf(appForm(wavFile(100))), post(chunkedType, chunked(appForm(wavFile(50)), 40)),
        postOf(appForm(wavFile(10)), "Expect: 100-continue\r\nRange: bytes=0-1,3-\r\n")};
    int accepted = 0;
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string request = seeds[static_cast<std::size_t>(round) % seeds.size()];
        for (auto changes = 1 + random() % 3; changes > 0; --changes)
            request = changed(std::move(request), random);
        const RawReply reply = ask(request);
        accepted += reply.status == 200 ? 1 : 0;
        refused += reply.status == 400 || reply.status == 404 ? 1 : 0;
        ASSERT_TRUE(reply.status != 0 || request.empty()) << round << ":\n" << request;
        ASSERT_NE(reply.status, 500) << round << ":\n" << request;
    }
    EXPECT_GT(accepted, 100);
    EXPECT_GT(refused, 1000);
    expectStillWorks();
}

}  // namespace
}  // namespace sayloft::helper
