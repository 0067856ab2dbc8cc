// SPDX-License-Identifier: MIT
#include "helper/HttpService.h"

#include "helper/tests/SpeechHttpService.h"

#include <gtest/gtest.h>

#include <string>

namespace sayloft::helper::test {
namespace {

using namespace std::chrono_literals;
using sayloft::test::RawConnection;
using sayloft::test::RawReply;

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

TEST_F(SpeechHttpService, takesChunksOfAnySize) {
    for (const std::size_t size : {1U, 7U, 5000U}) {
        const RawReply reply = ask(post(chunkedType(), chunked(appForm(wavFile(300)), size)));
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
}  // namespace
}  // namespace sayloft::helper::test
