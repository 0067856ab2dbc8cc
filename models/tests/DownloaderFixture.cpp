// SPDX-License-Identifier: MIT
#include "models/tests/DownloaderFixture.h"

#include <random>

namespace sayloft::test {

QByteArray modelBytes(qsizetype count) {
    std::mt19937 generator(1);  // NOLINT(bugprone-random-generator-seed)
    QByteArray bytes(count, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = static_cast<char>(generator());
    return bytes;
}

void DownloaderFixture::renew(std::chrono::milliseconds stall) {
    m_downloader.reset();
    m_downloader = std::make_unique<Downloader>(stall);
    m_downloader->onProgress = [this](double fraction) { m_progress.push_back(fraction); };
    m_downloader->onDone = [this](bool succeeded) { m_done.push_back(succeeded); };
}

bool DownloaderFixture::download(const QUrl& url) {
    m_done.clear();
    m_progress.clear();
    start(url);
    if (!waitUntil([this] { return !m_done.empty(); }, std::chrono::seconds(30))) {
        ADD_FAILURE() << "the download does not end";
        return false;
    }
    // A second report would come now.
    turnEventLoopFor(std::chrono::milliseconds(20));
    EXPECT_EQ(m_done.size(), 1U);
    return m_done.front();
}

QStringList DownloaderFixture::files() const {
    return QDir(QFileInfo(m_destination).path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

}  // namespace sayloft::test
