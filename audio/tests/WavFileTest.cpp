// SPDX-License-Identifier: MIT
#include "audio/WavFile.h"

#include "tests/support/ChildProgram.h"
#include "tests/support/TempHome.h"
#include "tests/support/Waveform.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <limits>

namespace sayloft {
namespace {

class AWavFile : public testing::Test {
protected:
    [[nodiscard]] QString path() const { return m_directory.filePath(QStringLiteral("a.wav")); }

    QTemporaryDir m_directory;
};

std::uint32_t littleEndian32(const QByteArray& bytes, qsizetype offset) {
    return qFromLittleEndian<std::uint32_t>(bytes.constData() + offset);
}

TEST_F(AWavFile, isReadByAnotherProgramAs16KilohertzMono16Bit) {
    WavFile::create(path())->write(std::vector<float>(8000, 0.5F));
    const auto soxi = [this](const char* what) {
        return test::run(QStringLiteral("soxi"), {QString::fromLatin1(what), path()}).trimmed();
    };
    EXPECT_EQ(soxi("-t"), "wav");
    EXPECT_EQ(soxi("-r"), "16000");
    EXPECT_EQ(soxi("-c"), "1");
    EXPECT_EQ(soxi("-b"), "16");
    EXPECT_EQ(soxi("-e"), "Signed Integer PCM");
    EXPECT_EQ(soxi("-s"), "8000");
}

TEST_F(AWavFile, holdsWhatWasWritten) {
    const test::Samples samples = test::noise(5000, 32767);
    std::vector<float> floats;
    for (const std::int16_t sample : samples)
        floats.push_back(static_cast<float>(sample) / 32768);
    WavFile::create(path())->write(floats);
    EXPECT_EQ(test::readSound(path()), samples);
}

TEST_F(AWavFile, isCompleteAfterEveryWriteThoughNobodyClosesIt) {
    std::optional<WavFile> file = WavFile::create(path());
    for (std::uint32_t block = 0; block <= 3; ++block) {
        const QByteArray bytes = test::readFile(path());
        ASSERT_EQ(bytes.size(), 44 + 2000 * block);
        EXPECT_EQ(littleEndian32(bytes, 4), bytes.size() - 8);
        EXPECT_EQ(littleEndian32(bytes, 40), 2000 * block);
        file->write(std::vector<float>(1000, 0.1F));
    }
}

TEST_F(AWavFile, replacesALongerFile) {
    test::writeFile(path(), QByteArray(100000, 'x'));
    WavFile::create(path())->write(std::vector<float>(10, 0.0F));
    EXPECT_EQ(QFileInfo(path()).size(), 64);
}

TEST_F(AWavFile, isForTheUserAloneEvenWhereItWasNot) {
    constexpr auto forAll = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                            QFile::ReadOther | QFile::WriteOther;
    test::writeFile(path(), "open to everybody");
    QFile::setPermissions(path(), forAll);
    const std::optional<WavFile> file = WavFile::create(path());
    EXPECT_EQ(QFile::permissions(path()) & forAll, QFile::ReadOwner | QFile::WriteOwner);
}

TEST_F(AWavFile, isNotHeardByWhoeverHasAnOlderOneOpen) {
    test::writeFile(path(), "open to everybody");
    QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
    QFile older(path());
    ASSERT_TRUE(older.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    WavFile::create(path())->write(std::vector<float>(1000, 0.1F));
    EXPECT_EQ(older.readAll(), "open to everybody");
}

TEST_F(AWavFile, cannotBeCreatedWhereADirectoryIs) {
    EXPECT_FALSE(WavFile::create(m_directory.path()));
    EXPECT_FALSE(WavFile::create(m_directory.filePath(QStringLiteral("missing/a.wav"))));
}

struct PcmRow {
    const char* description;
    float sample;
    int pcm;
};

class Pcm16 : public testing::TestWithParam<PcmRow> {};

TEST_P(Pcm16, isTheNearestSample) {
    EXPECT_EQ(WavFile::toPcm16(GetParam().sample), GetParam().pcm);
}

INSTANTIATE_TEST_SUITE_P(
    WavFile, Pcm16,
    testing::Values(PcmRow{"silence", 0.0F, 0}, PcmRow{"half", 0.5F, 16384},
                    PcmRow{"fullScale", 1.0F, 32767}, PcmRow{"negativeFullScale", -1.0F, -32768},
                    PcmRow{"tooLoud", 3.0F, 32767}, PcmRow{"tooLoudNegative", -3.0F, -32768},
                    PcmRow{"roundedUp", 10.6F / 32768, 11},
                    PcmRow{"roundedDown", 10.4F / 32768, 10},
                    PcmRow{"infinite", std::numeric_limits<float>::infinity(), 32767},
                    PcmRow{"notANumber", std::numeric_limits<float>::quiet_NaN(), 0}),
    [](const auto& row) { return row.param.description; });

}  // namespace
}  // namespace sayloft
