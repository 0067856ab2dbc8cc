// SPDX-License-Identifier: MIT
// The descriptors of a file whose header finds no room.
#include "audio/WavFile.h"
#include "audio/tests/SmallFiles.h"
#include "audio/tests/StrayCloses.h"
#include "tests/support/OwnNamespaces.h"
#include "tests/support/TempHome.h"

#include <QDir>

#include <gtest/gtest.h>

#include <optional>

#include <unistd.h>

namespace sayloft::test {
namespace {

class AWavFileWithoutRoom : public testing::Test {
protected:
    static qsizetype openDescriptors() {
        return QDir(QStringLiteral("/proc/self/fd"))
            .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
            .size();
    }

    void expectEachClosedOnce() const {
        EXPECT_EQ(openDescriptors(), m_open);
        EXPECT_EQ(strayCloses(), m_strayCloses);
    }

    TempHome m_home;
    const QString m_folder = m_home.path() + QStringLiteral("/tmp");
    const QString m_file = m_folder + QStringLiteral("/a.wav");
    const qsizetype m_open = openDescriptors();
    const int m_strayCloses = strayCloses();
};

TEST_F(AWavFileWithoutRoom, closesWhatItOpenedOnceWhereItGoesOnInMemory) {
    SmallDisk disk(m_folder, "size=64k");
    writeFile(m_file, {});
    disk.fill();
    {
        const std::optional<WavFile> file = WavFile::create(m_file);
        ASSERT_TRUE(file);
        EXPECT_NE(file->memory(), nullptr);
    }
    expectEachClosedOnce();
}

TEST_F(AWavFileWithoutRoom, closesWhatItOpenedOnceWhereMemoryHasNoneEither) {
    QDir().mkpath(m_folder);
    const SmallFiles none(0);
    EXPECT_FALSE(WavFile::create(m_file));
    expectEachClosedOnce();
}

TEST_F(AWavFileWithoutRoom, isToldFromOneThatClosesTwice) {
    const int descriptor = ::dup(0);
    ::close(descriptor);
    ::close(descriptor);
    EXPECT_EQ(strayCloses(), m_strayCloses + 1);
}

}  // namespace
}  // namespace sayloft::test
