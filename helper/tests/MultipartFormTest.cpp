// SPDX-License-Identifier: MIT
#include "helper/MultipartForm.h"

#include "helper/tests/SampleRequests.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace sayloft::helper {
namespace {

const std::string contentType = "multipart/form-data; boundary=x-y";

struct Parsed {
    std::string reason;
    std::optional<std::string> file;
};

Parsed parse(const std::string& body, const std::string& type = contentType) {
    const auto parsed = MultipartForm::parse(type, body);
    if (const auto* problem = std::get_if<Problem>(&parsed))
        return {problem->reason, {}};
    const auto file = std::get<MultipartForm>(parsed).value("file");
    return {{}, file ? std::optional<std::string>(*file) : std::nullopt};
}

std::string withDisposition(const std::string& value) {
    return "--x-y\r\nContent-Disposition: " + value + "\r\n\r\nABC\r\n--x-y--\r\n";
}

TEST(MultipartForm, readsTheFormOfTheAppByteForByte) {
    using namespace std::string_literals;
    const std::string wav = "RIFF\r\n\0--\r\n--Sayloft\r\n"s;
    const std::string body = test::appForm(wav);
    const std::string type = "multipart/form-data; boundary=SayloftBoundary7MA4YWxkTrZu0gW";
    const auto parsed = MultipartForm::parse(type, body);
    ASSERT_TRUE(std::holds_alternative<MultipartForm>(parsed));
    EXPECT_EQ(std::get<MultipartForm>(parsed).value("file"), wav);
    EXPECT_EQ(std::get<MultipartForm>(parsed).value("response_format"), "text");
    EXPECT_EQ(std::get<MultipartForm>(parsed).value("File"), std::nullopt);
}

struct GoodForm {
    const char* name;
    std::string type;
    std::string body;
};

class MultipartFormAcceptance : public testing::TestWithParam<GoodForm> {};

TEST_P(MultipartFormAcceptance, findsTheFile) {
    const Parsed parsed = parse(GetParam().body, GetParam().type);
    EXPECT_EQ(parsed.reason, "");
    EXPECT_EQ(parsed.file, "ABC");
}

INSTANTIATE_TEST_SUITE_P(
    Table, MultipartFormAcceptance,
    testing::Values(
        GoodForm{"plain", contentType, withDisposition("form-data; name=\"file\"")},
        GoodForm{"unquotedName", contentType, withDisposition("form-data; name=file")},
        GoodForm{"fileNameFirst", contentType,
                 withDisposition("form-data; filename=\"a;name=b\"; name=\"file\"")},
        GoodForm{"encodedFileName", contentType,
                 withDisposition("form-data; name=\"file\"; filename*=UTF-8''a.wav")},
        GoodForm{"otherCase", "Multipart/Form-Data; Boundary=x-y",
                 "--x-y\r\ncontent-disposition:form-data;NAME=\"file\"\r\n\r\nABC\r\n--x-y--"},
        GoodForm{"quotedBoundary", "multipart/form-data; boundary=\"x-y\"",
                 withDisposition("form-data; name=\"file\"")},
        GoodForm{"parameterAfterTheBoundary", "multipart/form-data; boundary=x-y; charset=utf-8",
                 withDisposition("form-data; name=\"file\"")},
        GoodForm{"preambleAndEpilogue", contentType,
                 "before\r\n" + withDisposition("form-data; name=\"file\"") + "after"},
        GoodForm{"moreHeaders", contentType,
                 "--x-y\r\nContent-Type: audio/wav\r\nX: y\r\nContent-Disposition: form-data; "
                 "name=\"file\"\r\n\r\nABC\r\n--x-y--\r\n"},
        GoodForm{"theFirstOfTwoFiles", contentType,
                 "--x-y\r\nContent-Disposition: form-data; name=\"file\"\r\n\r\nABC\r\n" +
                     withDisposition("form-data; name=\"file\"")}),
    [](const auto& row) { return std::string(row.param.name); });

struct BadForm {
    const char* name;
    std::string type;
    std::string body;
    const char* reason;
};

class MultipartFormRefusal : public testing::TestWithParam<BadForm> {};

TEST_P(MultipartFormRefusal, saysWhatIsWrong) {
    EXPECT_EQ(parse(GetParam().body, GetParam().type).reason, GetParam().reason);
}

constexpr const char* noBoundary = "the request is not multipart/form-data with a boundary";
constexpr const char* truncated = "the form is truncated or does not fit its boundary";
constexpr const char* badBoundary = "the form's boundary is empty or too long";
const std::string good = withDisposition("form-data; name=\"file\"");

INSTANTIATE_TEST_SUITE_P(
    Table, MultipartFormRefusal,
    testing::Values(
        BadForm{"noType", "", good, noBoundary},
        BadForm{"json", "application/json", good, noBoundary},
        BadForm{"noBoundary", "multipart/form-data", good, noBoundary},
        BadForm{"emptyBoundary", "multipart/form-data; boundary=", good, badBoundary},
        BadForm{"emptyQuotedBoundary", "multipart/form-data; boundary=\"\"", good, badBoundary},
        BadForm{"longBoundary", "multipart/form-data; boundary=" + std::string(71, 'x'), good,
                badBoundary},
        BadForm{"otherBoundary", "multipart/form-data; boundary=z", good, truncated},
        BadForm{"emptyBody", contentType, "", truncated},
        BadForm{"cutBeforeTheEnd", contentType, good.substr(0, good.size() - 5), truncated},
        BadForm{"cutInTheFile", contentType, good.substr(0, good.size() - 12), truncated},
        BadForm{"onlyTheOpening", contentType, "--x-y\r\n", truncated},
        BadForm{"boundaryWithATail", contentType, "--x-yz\r\n" + good.substr(7), truncated},
        BadForm{"lineFeedsOnly", contentType,
                "--x-y\nContent-Disposition: form-data; name=\"file\"\n\nABC\n--x-y--\n",
                truncated},
        BadForm{"headersWithoutEnd", contentType,
                "--x-y\r\nContent-Disposition: form-data; name=\"file\"\r\n--x-y--\r\n",
                "a part of the form has no end of its headers"},
        BadForm{"noName", contentType, withDisposition("form-data; filename=\"file\""),
                "a part of the form has no field name"},
        BadForm{"emptyName", contentType, withDisposition("form-data; name=\"\""),
                "a part of the form has no field name"},
        BadForm{"noHeaders", contentType, "--x-y\r\n\r\nABC\r\n--x-y--\r\n",
                "a part of the form has no field name"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(MultipartForm, refusesThousandsOfParts) {
    std::string body;
    for (int part = 0; part < 5000; ++part)
        body += "--x-y\r\nContent-Disposition: form-data; name=\"a\"\r\n\r\n\r\n";
    EXPECT_EQ(parse(body + "--x-y--\r\n").reason, truncated);
}

TEST(MultipartForm, survivesRandomChanges) {
    std::mt19937 random(4711);  // NOLINT(bugprone-*): the same run every time
    const std::string_view signs = "\r\n-\";=:xy \0a";
    int taken = 0;
    for (int round = 0; round < 50000; ++round) {
        std::string body = good;
        std::string type = contentType;
        for (auto changes = random() % 4; changes > 0; --changes) {
            std::string& text = random() % 4 == 0 ? type : body;
            const char sign = signs[random() % signs.size()];
            if (random() % 2 == 0)
                text[random() % text.size()] = sign;
            else
                text.insert(random() % text.size(), 1, sign);
        }
        const Parsed parsed = parse(body, type);
        taken += parsed.reason.empty() ? 1 : 0;
    }
    EXPECT_GT(taken, 5000);
    EXPECT_LT(taken, 49000);
}

}  // namespace
}  // namespace sayloft::helper
