// SPDX-License-Identifier: MIT
// The downloader and disks that are small or may not be written to: each is a file system of its
// own, which only the program that downloads sees.
#include "models/tests/DownloaderFixture.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/Nginx.h"
#include "tests/support/RawHttpServer.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace sayloft {
namespace {

using test::modelBytes;

class DownloadToDisk : public testing::Test {
protected:
    /// Mounts a file system with these options, downloads into it, and lists what is there then.
    /// Names of files follow the line "ended with <status>".
    [[nodiscard]] QStringList downloadOnto(const QByteArray& options, const QUrl& url) const {
        const QString disk = m_home.path() + QStringLiteral("/disk");
        QDir().mkpath(disk);
        const QByteArray script = "mount -t tmpfs -o " + options +
                                  " tmpfs \"$1\" || exit 3\n"
                                  "\"$2\" \"$3\" \"$1/some.gguf\"\n"
                                  "echo ended with $?; ls -A \"$1\"";
        QStringList arguments{QStringLiteral("--mount")};
        // Whoever is not root may mount where he is alone.
        if (::geteuid() != 0)
            arguments.append(QStringLiteral("--map-root-user"));
        arguments += {QStringLiteral("sh"),
                      QStringLiteral("-c"),
                      QString::fromUtf8(script),
                      QStringLiteral("sh"),
                      disk,
                      QStringLiteral(DOWNLOAD_ONCE),
                      url.toString()};
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_home.path());
        const QByteArray output = test::run(QStringLiteral("unshare"), arguments, {}, environment);
        return QString::fromUtf8(output).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    const QByteArray m_model = modelBytes(3'000'000);
    const QString m_path = QStringLiteral("/model");
    const QStringList m_failure{QStringLiteral("ended with 1")};
    test::TempHome m_home;
};

TEST_F(DownloadToDisk, arrivesWhereThereIsRoom) {
    const test::Nginx nginx;
    nginx.serve(m_path, m_model);
    EXPECT_EQ(downloadOnto("size=4m", nginx.url(m_path)),
              (QStringList{QStringLiteral("ended with 0"), QStringLiteral("some.gguf")}));
    EXPECT_EQ(m_home.log(), QString());
}

TEST_F(DownloadToDisk, isRefusedBeforeTheFirstByteWhereThereIsTooLittleRoom) {
    const test::Nginx nginx;
    nginx.serve(m_path, m_model);
    EXPECT_EQ(downloadOnto("size=1m", nginx.url(m_path)), m_failure);
    EXPECT_EQ(m_home.log(),
              QStringLiteral("download error: not enough disk space: 3000000 bytes are needed and "
                             "1048576 are free\n"));
}

TEST_F(DownloadToDisk, leavesNothingOnADiskThatItHasFilled) {
    test::RawHttpServer server({{.bytes = "HTTP/1.1 200 OK\r\nETag: \"1\"\r\n\r\n" + m_model}});
    const QUrl url(QStringLiteral("http://127.0.0.1:%1/model").arg(server.port()));
    EXPECT_EQ(downloadOnto("size=1m", url), m_failure);
    EXPECT_EQ(m_home.log(), QStringLiteral("download error: No space left on device\n"));
}

TEST_F(DownloadToDisk, saysThatNothingCanBeMovedToAReadOnlyFolder) {
    const test::Nginx nginx;
    nginx.serve(m_path, m_model);
    EXPECT_EQ(downloadOnto("ro", nginx.url(m_path)), m_failure);
    EXPECT_EQ(m_home.log(), QStringLiteral("move failed: Read-only file system\n"));
}

}  // namespace
}  // namespace sayloft
