// SPDX-License-Identifier: MIT
#include "helper/WavUpload.h"

#include "helper/tests/SampleRequests.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace sayloft::helper {
namespace {

using test::littleEndian;
using test::wavFile;

std::string reasonAgainst(const std::string& file) {
    const auto parsed = parseWav(file);
    const auto* problem = std::get_if<Problem>(&parsed);
    return problem == nullptr ? std::string() : problem->reason;
}

std::string withFormat(const std::string& format, const std::string& rest) {
    return "RIFF" + littleEndian(0, 4) + "WAVEfmt " +
           littleEndian(static_cast<std::uint32_t>(format.size()), 4) + format + rest;
}

std::string goodFormat() {
    return wavFile(0).substr(20, 16);
}

std::string data(const std::string& bytes) {
    return "data" + littleEndian(static_cast<std::uint32_t>(bytes.size()), 4) + bytes;
}

TEST(WavUpload, givesTheSamplesAsTheyAre) {
    const std::string bytes("\x01\x00\xff\xff\x00\x80\xff\x7f", 8);
    const auto parsed = parseWav(withFormat(goodFormat(), data(bytes)));
    ASSERT_TRUE(std::holds_alternative<Samples>(parsed));
    EXPECT_EQ(std::get<Samples>(parsed), (Samples{1, -1, -32768, 32767}));
}

TEST(WavUpload, takesARecordingWithoutAnySample) {
    const auto parsed = parseWav(wavFile(0));
    ASSERT_TRUE(std::holds_alternative<Samples>(parsed));
    EXPECT_TRUE(std::get<Samples>(parsed).empty());
}

TEST(WavUpload, passesOverOtherChunksAndTheirPadding) {
    const std::string other = "LIST" + littleEndian(3, 4) + "abc" + '\0';
    const auto parsed = parseWav(withFormat(goodFormat(), other + data("ab") + "junk"));
    ASSERT_TRUE(std::holds_alternative<Samples>(parsed));
    EXPECT_EQ(std::get<Samples>(parsed).size(), 1U);
}

TEST(WavUpload, takesTheExtensibleFormThatMeansPcm) {
    std::string format = wavFile(0, {.tag = 0xFFFE}).substr(20, 16) + littleEndian(22, 2) +
                         littleEndian(16, 2) + littleEndian(4, 4) + littleEndian(1, 2) +
                         std::string(14, '\0');
    EXPECT_EQ(reasonAgainst(withFormat(format, data("abcd"))), "");
    format[24] = 3;  // floating point
    EXPECT_EQ(reasonAgainst(withFormat(format, data("abcd"))), "the WAV file is not PCM");
}

struct BadWav {
    const char* name;
    std::string file;
    const char* reason;
};

class WavUploadRefusal : public testing::TestWithParam<BadWav> {};

TEST_P(WavUploadRefusal, saysWhatIsWrong) {
    EXPECT_EQ(reasonAgainst(GetParam().file), GetParam().reason);
}

std::string withBlockSize(std::uint32_t size) {
    return goodFormat().substr(0, 12) + littleEndian(size, 2) + littleEndian(16, 2);
}

INSTANTIATE_TEST_SUITE_P(
    Table, WavUploadRefusal,
    testing::Values(
        BadWav{"empty", "", "the file is not a WAV file"},
        BadWav{"text", "this is not a WAV file at all", "the file is not a WAV file"},
        BadWav{"onlyRiff", "RIFF", "the file is not a WAV file"},
        BadWav{"riffOfAnotherKind", "RIFF" + littleEndian(4, 4) + "AVI LIST",
               "the file is not a WAV file"},
        BadWav{"bigEndian", "RIFX" + wavFile(4).substr(4), "the file is not a WAV file"},
        BadWav{"headerAlone", wavFile(4).substr(0, 12),
               "the WAV file is truncated, it has no data"},
        BadWav{"noData", wavFile(4).substr(0, 36), "the WAV file is truncated, it has no data"},
        BadWav{"cutInTheData", wavFile(4).substr(0, 50), "the WAV file is truncated"},
        BadWav{"cutAfterTheDataHeader", wavFile(4).substr(0, 44), "the WAV file is truncated"},
        BadWav{"dataOfUnknownSize",
               withFormat(goodFormat(), "data" + littleEndian(0xFFFFFFFF, 4) + "abcd"),
               "the WAV file is truncated"},
        BadWav{"oddNumberOfBytes", withFormat(goodFormat(), data("abc")),
               "the WAV file ends within a sample"},
        BadWav{"dataFirst", "RIFF" + littleEndian(0, 4) + "WAVE" + data("abcd"),
               "the WAV file has no format chunk before its data"},
        BadWav{"shortFormat", withFormat("short", data("abcd")),
               "the WAV file's format chunk is too short"},
        BadWav{"floatingPoint", wavFile(4, {.tag = 3, .bits = 32}), "the WAV file is not PCM"},
        BadWav{"aLaw", wavFile(4, {.tag = 6, .bits = 8}), "the WAV file is not PCM"},
        BadWav{"eightBit", wavFile(4, {.bits = 8}), "the WAV file is not 16-bit"},
        BadWav{"twentyFourBit", wavFile(4, {.bits = 24}), "the WAV file is not 16-bit"},
        BadWav{"stereo", wavFile(4, {.channels = 2}), "the WAV file is not mono"},
        BadWav{"noChannel", wavFile(4, {.channels = 0}), "the WAV file is not mono"},
        BadWav{"otherRate", wavFile(4, {.rate = 44100}),
               "the WAV file's sample rate is not 16000 Hz"},
        BadWav{"otherBlockSize", withFormat(withBlockSize(4), data("abcd")),
               "the WAV file's block size does not fit its format"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(WavUpload, survivesRandomHeaders) {
    std::mt19937 random(20240229);  // NOLINT(bugprone-*): the same run every time
    const std::string good = wavFile(20);
    int taken = 0;
    for (int round = 0; round < 100000; ++round) {
        std::string file = good;
        for (auto changes = random() % 6; changes > 0; --changes)
            file[random() % 44] = static_cast<char>(random());
        file.resize(random() % 4 == 0 ? random() % file.size() : file.size());
        const auto parsed = parseWav(file);
        if (const auto* samples = std::get_if<Samples>(&parsed)) {
            ++taken;
            ASSERT_LE(samples->size() * 2, file.size());
        } else {
            ASSERT_FALSE(std::get<Problem>(parsed).reason.empty());
        }
    }
    EXPECT_GT(taken, 100);
    EXPECT_LT(taken, 60000);
}

}  // namespace
}  // namespace sayloft::helper
