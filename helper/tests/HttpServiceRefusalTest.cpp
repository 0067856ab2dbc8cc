// SPDX-License-Identifier: MIT
#include "helper/tests/SpeechHttpService.h"

#include <gtest/gtest.h>

#include <string>

namespace sayloft::helper::test {
namespace {

using sayloft::test::exchange;
using sayloft::test::RawReply;

constexpr std::size_t bodyLimit = tightLimits.bodyBytes;

struct Malformed {
    const char* name;
    std::string request;
    int status;
    std::string reason;
};

class SpeechHttpRefusal : public testing::TestWithParam<Malformed> {
protected:
    static RunningService& service() {
        static RunningService running(tightLimits, countSamples);
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
                  post(chunkedType(), chunked(std::string(bodyLimit + 1, 'a'), 4096)), 400,
                  tooLong},
        Malformed{"endlessChunk",
                  post(chunkedType(), "ffffffffffffff\r\n" + std::string(3000000, 'a')), 400,
                  tooLong},
        Malformed{"chunkWithoutSize", post(chunkedType(), "\r\nabc"), 400, tooEarly},
        Malformed{"chunkOfText", post(chunkedType(), "zz\r\nabc\r\n0\r\n\r\n"), 400, tooEarly},
        Malformed{"chunksWithoutEnd", post(chunkedType(), "3\r\nabc\r\n"), 400, tooEarly},
        Malformed{"endlessChunkSize", post(chunkedType(), std::string(3000000, '1')), 400,
                  tooEarly},
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
}  // namespace
}  // namespace sayloft::helper::test
