// SPDX-License-Identifier: MIT
// A program that is killed in the middle of a download, and started again.
#include "models/DeadDownloads.h"
#include "models/tests/DownloaderFixture.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/Nginx.h"

#include <gtest/gtest.h>

#include <csignal>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::ChildProgram;
using test::modelBytes;

class KilledDownload : public test::DownloaderFixture {
protected:
    KilledDownload() {
        m_environment.insert(QStringLiteral("HOME"), m_home.path());
        m_nginx.serve(m_path, m_model);
    }

    [[nodiscard]] std::unique_ptr<ChildProgram> startProgram(const QString& path) const {
        return std::make_unique<ChildProgram>(
            QStringLiteral(DOWNLOAD_ONCE), QStringList{m_nginx.url(path).toString(), m_destination},
            m_environment);
    }

    const QByteArray m_model = modelBytes(3'000'000);
    const QString m_path = QStringLiteral("/model");
    const QString m_file = QStringLiteral("some.gguf");
    const test::Nginx m_nginx{
        "location = /slow { limit_rate 50k; limit_rate_after 1m; "
        "try_files /model =404; }"};
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(KilledDownload, goesOnWhereItWas) {
    const QString slow = QStringLiteral("/slow");
    test::writeFile(m_destination, "earlier");
    qint64 there = 0;
    for (int start = 0; start < 3; ++start) {
        auto program = startProgram(slow);
        ASSERT_TRUE(test::waitUntil([&] { return partSize() > there + 100'000; }));
        program->signal(SIGKILL);
        ASSERT_TRUE(program->waitForEnd(5s));
        there = partSize();
        ASSERT_LT(there, m_model.size());
        EXPECT_EQ(test::readFile(part()), m_model.left(there));
        EXPECT_EQ(content(), "earlier");
        EXPECT_EQ(
            deadDownloads(QFileInfo(m_destination).path(), {.chosen = m_file, .offered = {m_file}}),
            QStringList());
    }
    ASSERT_TRUE(download(m_nginx.url(slow)));
    EXPECT_EQ(content(), m_model);
    EXPECT_EQ(files(), QStringList(m_file));
    EXPECT_TRUE(m_nginx.requests(4).back().contains(" bytes=" + QByteArray::number(there) + "- "));
}

}  // namespace
}  // namespace sayloft
