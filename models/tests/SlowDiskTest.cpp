// SPDX-License-Identifier: MIT
// The downloader and a disk that takes as long as the test wants, or fails: in this program it is
// the test that answers fsync().
#include "models/tests/DownloaderFixture.h"
#include "tests/support/Nginx.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>

#include <unistd.h>

namespace {

std::atomic<bool> diskWaits = false;
std::atomic<int> diskError = 0;
std::atomic<int> syncsBegun = 0;
std::atomic<int> syncsEnded = 0;

}  // namespace

// NOLINTNEXTLINE(readability-redundant-declaration)
extern "C" int fsync(int /*file*/) {
    ++syncsBegun;
    diskWaits.wait(true);
    ++syncsEnded;
    errno = diskError;
    return errno == 0 ? 0 : -1;
}

namespace sayloft {
namespace {

using namespace std::chrono_literals;

class SlowDisk : public test::DownloaderFixture {
protected:
    SlowDisk() {
        m_nginx.serve(m_path, m_model);
        syncsBegun = 0;
        syncsEnded = 0;
        diskError = 0;
    }

    ~SlowDisk() override { letGo(); }

    /// Downloads to where only the disk is waited for.
    void downloadUntilTheDiskWaits() {
        diskWaits = true;
        start(m_nginx.url(m_path));
        ASSERT_TRUE(test::waitUntil([] { return syncsBegun > 0; }));
    }

    static void letGo() {
        diskWaits = false;
        diskWaits.notify_all();
        EXPECT_TRUE(test::waitUntil([] { return syncsEnded == syncsBegun; }));
    }

    const QByteArray m_model = test::modelBytes(300'000);
    const QString m_path = QStringLiteral("/model");
    const test::Nginx m_nginx;
};

TEST_F(SlowDisk, isWaitedForBeforeTheFileStandsInItsPlace) {
    downloadUntilTheDiskWaits();
    test::turnEventLoopFor(100ms);
    EXPECT_TRUE(m_done.empty());
    EXPECT_EQ(partSize(), m_model.size());
    EXPECT_FALSE(QFileInfo::exists(m_destination));
    letGo();
    ASSERT_TRUE(test::waitUntil([this] { return !m_done.empty(); }));
    EXPECT_EQ(m_done, std::vector<bool>{true});
    EXPECT_EQ(content(), m_model);
}

TEST_F(SlowDisk, isNotWaitedForByWhoeverStops) {
    downloadUntilTheDiskWaits();
    m_downloader->stop();
    EXPECT_EQ(syncsEnded, 0);
    EXPECT_EQ(partSize(), m_model.size());
    EXPECT_TRUE(QFileInfo::exists(note()));
    m_downloader.reset();
    letGo();
    test::turnEventLoopFor(20ms);
    EXPECT_TRUE(m_done.empty());
    EXPECT_FALSE(QFileInfo::exists(m_destination));
}

TEST_F(SlowDisk, costsOneByteAfterwards) {
    downloadUntilTheDiskWaits();
    renew(60s);
    letGo();
    ASSERT_TRUE(download(m_nginx.url(m_path)));
    EXPECT_EQ(content(), m_model);
    EXPECT_EQ(m_nginx.requests(2).back(), "206 1 bytes=299999- " + m_nginx.etag(m_path));
}

TEST_F(SlowDisk, thatFailsLeavesAnEarlierFile) {
    test::writeFile(m_destination, "earlier");
    diskError = EIO;
    EXPECT_FALSE(download(m_nginx.url(m_path)));
    EXPECT_EQ(content(), "earlier");
    EXPECT_EQ(m_home.log(), QStringLiteral("move failed: Input/output error\n"));
}

}  // namespace
}  // namespace sayloft
