// SPDX-License-Identifier: MIT
#pragma once

#include "models/Paths.h"
#include "speech/ParakeetServer.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QFile>
#include <QProcess>

#include <vector>

#include <gtest/gtest.h>

namespace sayloft {

inline std::vector<qint64> runningHelpers() {
    QProcess pgrep;
    pgrep.start(QStringLiteral("pgrep"), {QStringLiteral("-x"), QStringLiteral("parakeet-server")});
    pgrep.waitForFinished(5000);
    std::vector<qint64> pids;
    for (const QByteArray& line : pgrep.readAllStandardOutput().split('\n')) {
        if (!line.isEmpty())
            pids.push_back(line.toLongLong());
    }
    return pids;
}

/// A bundle with a foreign helper in it, whose behaviour is the model's.
class Server : public testing::Test {
protected:
    Server() {
        installHelper();
        m_server.onReady = [this] { ++m_readyCalls; };
    }

    static QString installedHelper() {
        return BUNDLE_DIR + QStringLiteral("/Contents/Helpers/parakeet-server");
    }

    void installHelper() {
        ASSERT_TRUE(QFile::copy(QStringLiteral(SAYLOFT_FOREIGN_HELPER), installedHelper()));
        fixPaths(BUNDLE_DIR, m_home.path());
    }

    QString model(const QByteArray& behaviour) {
        QString path = DOWNLOAD_MODELS_DIR + QLatin1Char('/') + QString::fromLatin1(behaviour) +
                       QStringLiteral(".gguf");
        test::writeFile(path, behaviour);
        return path;
    }

    /// What the helper has noted of its starts with this model.
    static QList<QByteArray> startsWith(const QString& modelPath) {
        QList<QByteArray> lines = test::readFile(modelPath + QStringLiteral(".log")).split('\n');
        lines.removeAll(QByteArray());
        return lines;
    }

    [[nodiscard]] bool waitForReady(int calls = 1) {
        return test::waitUntil([&] { return m_readyCalls >= calls; });
    }

    [[nodiscard]] bool waitForStart(const QString& modelPath, int starts = 1) {
        return test::waitUntil([&] { return startsWith(modelPath).size() >= starts; });
    }

    test::TempHome m_home;
    ParakeetServer m_server;
    int m_readyCalls = 0;
};

}  // namespace sayloft
