// SPDX-License-Identifier: MIT
// Where the disk has no room for what is said.
#include "audio/FailedRecording.h"
#include "audio/tests/TheRecorder.h"
#include "models/Paths.h"
#include "tests/support/OwnNamespaces.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <string>

namespace sayloft::test {
namespace {

constexpr std::size_t second = 16000;

/// Two seconds of sound need 64,044 bytes.
class TheRecorderOnAFullDisk : public TheRecorder {
protected:
    TheRecorderOnAFullDisk() { m_recorder.boost = false; }

    void record() {
        m_recorder.start();
        for (std::size_t from = 0; from < m_said.size(); from += second / 10) {
            const auto begin = m_said.begin() + static_cast<std::ptrdiff_t>(from);
            capture().deliver({begin, begin + second / 10});
        }
    }

    [[nodiscard]] bool isWhole(const Samples& heard) const {
        return std::equal(
            heard.begin(), heard.end(), m_said.begin(), m_said.end(),
            [](std::int16_t one, float other) { return one == WavFile::toPcm16(other); });
    }

    static std::vector<float> spoken() {
        std::vector<float> frames;
        for (const std::int16_t sample : noise(2 * second))
            frames.push_back(static_cast<float>(sample) / 32768.0F);
        return frames;
    }

    const std::vector<float> m_said = spoken();
};

class TheRecorderOnADiskOf : public TheRecorderOnAFullDisk,
                             public testing::WithParamInterface<int> {};

TEST_P(TheRecorderOnADiskOf, hearsEveryWord) {
    const SmallDisk disk(TEMP_DIR, "size=" + QByteArray::number(GetParam()) + "k");
    record();
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    ASSERT_NE(recording, nullptr);
    const QString file = recording->waitUntilFinished();
    EXPECT_TRUE(isWhole(readSound(file)));
    const bool isOnDisk = GetParam() >= 64;
    EXPECT_EQ(file == m_recorder.wavURL(), isOnDisk);
    EXPECT_EQ(m_home.log().count(QStringLiteral("it goes on in memory\n")), isOnDisk ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(Pages, TheRecorderOnADiskOf, testing::Values(4, 8, 20, 40, 60, 64, 128),
                         [](const auto& row) { return std::to_string(row.param) + "Kilobytes"; });

TEST_F(TheRecorderOnAFullDisk, hearsEveryWordAndKeepsItWhenThereIsRoomAgain) {
    SmallDisk disk(TEMP_DIR, "size=64k");
    // As after an earlier dictation.
    m_recorder.start();
    ASSERT_FALSE(m_recorder.stop()->waitUntilFinished().isEmpty());
    disk.fill();
    record();
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    ASSERT_NE(recording, nullptr);
    const QString file = recording->waitUntilFinished();
    EXPECT_TRUE(isWhole(readSound(file)));
    FailedRecording::keep(file, 1);
    EXPECT_TRUE(isWhole(readSound(FailedRecording::file())));
}

/// Fewer files than that are in the folder.
constexpr const char* smallAndFewFiles = "size=1m,nr_inodes=10";

void useUpAllFiles(const QString& folder) {
    QDir().mkpath(folder);
    for (int i = 0; QFile(folder + QStringLiteral("/%1").arg(i)).open(QIODevice::WriteOnly); ++i) {
    }
}

TEST_F(TheRecorderOnAFullDisk, hasAFileForTheNextOneWhenTheLastOneWasKept) {
    const SmallDisk disk(DATA_DIR, smallAndFewFiles);
    record();
    FailedRecording::keep(m_recorder.stop()->waitUntilFinished(), 1);
    useUpAllFiles(DATA_DIR + QStringLiteral("/filler"));
    record();
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    ASSERT_NE(recording, nullptr) << m_home.log().toStdString();
    EXPECT_TRUE(isWhole(readSound(recording->waitUntilFinished())));
    EXPECT_TRUE(isWhole(readSound(FailedRecording::file())));
}

TEST_F(TheRecorder, keepsNoMoreInMemoryThanItSays) {
    std::optional<WavFile> file = WavFile::createInMemory();
    ASSERT_TRUE(file);
    const std::vector<float> minute(60 * second);
    for (int minutes = 0; minutes < 10; ++minutes)
        EXPECT_TRUE(file->write(minute));
    EXPECT_FALSE(file->write(tone(1, 0.5F)));
    EXPECT_EQ(QFileInfo(file->memory()->path()).size(), 44 + 2 * WavFile::mostFramesInMemory);
}

}  // namespace
}  // namespace sayloft::test
