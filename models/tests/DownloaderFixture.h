// SPDX-License-Identifier: MIT
#pragma once

#include "models/Downloader.h"
#include "models/PartialFile.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QString>
#include <QUrl>

#include <chrono>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace sayloft::test {

/// Bytes that are the same in every run and repeat nowhere.
[[nodiscard]] QByteArray modelBytes(qsizetype count);

/// A downloader and everything that it has said.
class DownloaderFixture : public testing::Test {
protected:
    DownloaderFixture() { renew(std::chrono::seconds(60)); }

    /// A new downloader, as after a restart of the program.
    void renew(std::chrono::milliseconds stall);
    void start(const QUrl& url) { m_downloader->download(url, m_destination); }

    /// True when the download reported success; false also when it did not end.
    [[nodiscard]] bool download(const QUrl& url);

    [[nodiscard]] QByteArray content() const { return readFile(m_destination); }
    [[nodiscard]] qint64 partSize() const { return QFileInfo(part()).size(); }
    [[nodiscard]] QString part() const { return m_destination + PartialFile::suffix; }
    [[nodiscard]] QString note() const { return m_destination + PartialFile::noteSuffix; }
    /// Everything in the destination's folder.
    [[nodiscard]] QStringList files() const;

    TempHome m_home;
    QString m_destination = m_home.path() + QStringLiteral("/.sayloft/models/some.gguf");
    std::vector<double> m_progress;
    std::vector<bool> m_done;
    std::unique_ptr<Downloader> m_downloader;
};

}  // namespace sayloft::test
