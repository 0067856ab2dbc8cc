// SPDX-License-Identifier: MIT
#include "audio/RecordingFiles.h"

#include "tests/support/TempHome.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace sayloft {
namespace {

class TheRecordingFiles : public testing::Test {
protected:
    [[nodiscard]] QString path(const char* name) const {
        return m_directory.filePath(QString::fromLatin1(name));
    }

    QTemporaryDir m_directory;
    std::shared_ptr<RecordingFiles> m_files =
        std::make_shared<RecordingFiles>(path("sayloft_rec.wav"));
};

TEST_F(TheRecordingFiles, areTheMainFileAgainAndAgainWhileItIsFree) {
    EXPECT_EQ(m_files->lease()->path(), path("sayloft_rec.wav"));
    EXPECT_EQ(m_files->lease()->path(), path("sayloft_rec.wav"));
}

TEST_F(TheRecordingFiles, areSiblingsWhileTheMainFileIsInUse) {
    const auto first = m_files->lease();
    auto second = m_files->lease();
    const auto third = m_files->lease();
    EXPECT_EQ(second->path(), path("sayloft_rec-2.wav"));
    EXPECT_EQ(third->path(), path("sayloft_rec-3.wav"));
    second.reset();
    EXPECT_EQ(m_files->lease()->path(), path("sayloft_rec-2.wav"));
}

TEST_F(TheRecordingFiles, leaveOnlyTheMainFileBehind) {
    auto first = m_files->lease();
    auto second = m_files->lease();
    test::writeFile(first->path(), "first");
    test::writeFile(second->path(), "second");
    first.reset();
    second.reset();
    EXPECT_EQ(test::readFile(path("sayloft_rec.wav")), "first");
    EXPECT_FALSE(QFileInfo::exists(path("sayloft_rec-2.wav")));
}

TEST_F(TheRecordingFiles, ofACrashAreRemoved) {
    const auto main = m_files->lease();
    const auto inUse = m_files->lease();
    for (const char* name :
         {"sayloft_rec.wav", "sayloft_rec-2.wav", "sayloft_rec-3.wav", "sayloft_rec-17.wav",
          "sayloft_rec-1.wav", "sayloft_rec-03.wav", "sayloft_rec-mine.wav", "other-2.wav"})
        test::writeFile(path(name), "sound");
    m_files->removeStaleSiblings();
    EXPECT_EQ(
        QDir(m_directory.path()).entryList(QDir::Files, QDir::Name),
        (QStringList{QStringLiteral("other-2.wav"), QStringLiteral("sayloft_rec-03.wav"),
                     QStringLiteral("sayloft_rec-1.wav"), QStringLiteral("sayloft_rec-2.wav"),
                     QStringLiteral("sayloft_rec-mine.wav"), QStringLiteral("sayloft_rec.wav")}));
}

TEST_F(TheRecordingFiles, neverBelongToTwoWhoeverGivesThemBack) {
    constexpr int threadCount = 4;
    std::vector<std::jthread> threads;
    threads.reserve(threadCount);
    std::atomic<int> lost = 0;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&, i] {
            for (int round = 0; round < 200; ++round) {
                const auto lease = m_files->lease();
                const QByteArray mine = QByteArray::number(i * 1000 + round);
                test::writeFile(lease->path(), mine);
                lost += test::readFile(lease->path()) == mine ? 0 : 1;
            }
        });
    }
    threads.clear();
    EXPECT_EQ(lost, 0);
}

}  // namespace
}  // namespace sayloft
