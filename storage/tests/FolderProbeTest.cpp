// SPDX-License-Identifier: MIT
#include "storage/FolderProbe.h"

#include "tests/support/OwnNamespaces.h"
#include "tests/support/TempHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <csignal>

#include <sys/resource.h>

namespace sayloft {
namespace {

/// A disk of two megabytes for a folder that is not there yet.
class AFolder : public testing::Test {
protected:
    /// From here on a file may get as many bytes as that: whoever writes more of one fails.
    static void limitFilesTo(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{bytes, RLIM_INFINITY};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~AFolder() override { limitFilesTo(RLIM_INFINITY); }

    /// All but so many bytes of the disk are taken.
    void leave(qsizetype bytes) {
        test::writeFile(m_home.path() + QStringLiteral("/room"), QByteArray(bytes, 'r'));
        m_disk.fill();
        ASSERT_TRUE(QFile::remove(m_home.path() + QStringLiteral("/room")));
    }

    static constexpr rlim_t aBlock = 4096;

    test::TempHome m_home;
    test::SmallDisk m_disk{m_home.path(), "size=2m"};
    const QString m_folder = m_home.path() + QStringLiteral("/data/tmp");
};

TEST_F(AFolder, withRoomIsWritableAndLeftAsItWas) {
    EXPECT_EQ(tryFolder(m_folder), FolderState::writable);
    EXPECT_TRUE(QFileInfo(m_folder).isDir());
    EXPECT_TRUE(QDir(m_folder).isEmpty());
}

TEST_F(AFolder, onAFullDiskIsFull) {
    QDir().mkpath(m_folder);
    m_disk.fill();
    EXPECT_EQ(tryFolder(m_folder), FolderState::full);
    m_disk.makeRoom();
    EXPECT_EQ(tryFolder(m_folder), FolderState::writable);
}

TEST_F(AFolder, withoutRoomForSomeSecondsOfSoundIsFull) {
    QDir().mkpath(m_folder);
    leave(200'000);
    EXPECT_EQ(tryFolder(m_folder), FolderState::full);
}

TEST_F(AFolder, withRoomForSomeSecondsOfSoundIsWritable) {
    QDir().mkpath(m_folder);
    leave(300'000);
    EXPECT_EQ(tryFolder(m_folder), FolderState::writable);
}

TEST_F(AFolder, isTriedWithoutTakingTheRoomOfOthers) {
    QDir().mkpath(m_folder);
    limitFilesTo(aBlock);
    EXPECT_EQ(tryFolder(m_folder), FolderState::writable);
}

// Whoever has a quota is told of it by a write alone.
TEST_F(AFolder, isTriedByAWrite) {
    QDir().mkpath(m_folder);
    limitFilesTo(0);
    EXPECT_EQ(tryFolder(m_folder), FolderState::refuses);
}

TEST_F(AFolder, onAReadOnlyDiskRefuses) {
    QDir().mkpath(m_folder);
    m_disk.makeReadOnly();
    EXPECT_EQ(tryFolder(m_folder), FolderState::refuses);
}

TEST_F(AFolder, inWhosePlaceIsAFileRefuses) {
    test::writeFile(m_folder, "no folder");
    EXPECT_EQ(tryFolder(m_folder), FolderState::refuses);
}

}  // namespace
}  // namespace sayloft
