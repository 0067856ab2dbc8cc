// SPDX-License-Identifier: MIT
// What a large download costs the program that makes it. Each test is a process of its own.
#include "models/tests/DownloaderFixture.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/Nginx.h"

#include <QEventLoop>
#include <QFile>

#include <gtest/gtest.h>

#include <time.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::Nginx;

constexpr qint64 largeSize = 200'000'000;

class DownloadCost : public test::DownloaderFixture {
protected:
    /// A file of zeros.
    static void serveLarge(const Nginx& nginx) {
        QFile file(nginx.root() + QStringLiteral("/model"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(largeSize));
    }

    /// As another program computes it.
    [[nodiscard]] static QByteArray digestOfLarge() {
        const QString command = QStringLiteral("head -c %1 /dev/zero | sha256sum").arg(largeSize);
        return test::run(QStringLiteral("sh"), {QStringLiteral("-c"), command}).left(64);
    }

    [[nodiscard]] static long peakKb() {
        const QByteArray status = test::readFile(QStringLiteral("/proc/self/status"));
        return status.mid(status.indexOf("VmHWM:") + 6).simplified().split(' ').front().toLong();
    }

    /// Seconds of processor time.
    [[nodiscard]] static double used(clockid_t clock) {
        timespec now = {};
        ::clock_gettime(clock, &now);
        return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
    }

    /// Without the polling of the other tests.
    [[nodiscard]] bool downloadQuietly(const QUrl& url) {
        bool succeeded = false;
        QEventLoop loop;
        m_downloader->onDone = [&](bool success) {
            succeeded = success;
            loop.quit();
        };
        start(url);
        loop.exec();
        return succeeded;
    }

    const QString m_path = QStringLiteral("/model");
};

TEST_F(DownloadCost, isNoMoreMemoryForALargeFileOverHttps) {
    const Nginx nginx({}, Nginx::Scheme::https);
    qputenv("SSL_CERT_FILE", nginx.authority().toLocal8Bit());
    nginx.serve(QStringLiteral("/small"), test::modelBytes(1'000'000));
    serveLarge(nginx);
    ASSERT_TRUE(downloadQuietly(nginx.url(QStringLiteral("/small"))));
    const long before = peakKb();
    ASSERT_TRUE(downloadQuietly(nginx.url(m_path))) << m_home.log().toStdString();
    EXPECT_LT(peakKb() - before, 4096);
    EXPECT_EQ(QFileInfo(m_destination).size(), largeSize);
    qunsetenv("SSL_CERT_FILE");
}

TEST_F(DownloadCost, isNoWorkForTheMainThread) {
    const Nginx nginx("location = /link { add_header X-Linked-ETag '\"" + digestOfLarge() +
                      "\"' always; return 302 /model; }");
    serveLarge(nginx);
    const double process = used(CLOCK_PROCESS_CPUTIME_ID);
    const double mainThread = used(CLOCK_THREAD_CPUTIME_ID);
    ASSERT_TRUE(downloadQuietly(nginx.url(QStringLiteral("/link"))));
    const double worked = used(CLOCK_PROCESS_CPUTIME_ID) - process;
    // All of it together is less than a frame.
    EXPECT_LT(used(CLOCK_THREAD_CPUTIME_ID) - mainThread, 0.016) << worked;
    EXPECT_GT(worked, 0.1);
    EXPECT_EQ(m_progress.back(), 1.0);
}

}  // namespace
}  // namespace sayloft
