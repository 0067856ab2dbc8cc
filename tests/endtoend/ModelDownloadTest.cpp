// SPDX-License-Identifier: MIT
// A first start without the model: the real program downloads it from the catalogue's addresses.
// There stands an nginx of the test, to which a proxy leads, with a certificate for those hosts.
#include "models/ModelCatalogue.h"
#include "models/PartialFile.h"
#include "tests/support/ModelHost.h"
#include "tests/support/RawHttpServer.h"
#include "tests/support/SayloftProgram.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XServer.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <random>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

const QString key = QStringLiteral("english");
/// A model by which the stand-in for the helper serves.
QByteArray modelBytes() {
    QByteArray bytes = "serve\n";
    std::mt19937 generator(2);  // NOLINT(bugprone-random-generator-seed)
    while (bytes.size() < 3'000'000)
        bytes.append(static_cast<char>(generator()));
    return bytes;
}

class ModelDownload : public testing::Test {
protected:
    ModelDownload() {
        m_host.offer();
        test::writeConfig(home(), R"({"model":")" + key.toUtf8() + R"("})");
        for (const char* variable : {"DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"})
            m_environment.remove(QString::fromLatin1(variable));
        m_host.addTo(m_environment);
    }

    void startSayloft() {
        m_sayloft = std::make_unique<test::SayloftProgram>(home(), m_environment, m_bundle);
    }

    [[nodiscard]] bool logged(const QString& result) const {
        return m_sayloft->waitForLog(QStringLiteral("model download ") + key + result);
    }

    [[nodiscard]] QString home() const { return m_directory.filePath(QStringLiteral("home")); }
    [[nodiscard]] QString file() const {
        return home() + QStringLiteral("/.sayloft/models/") + modelInfo(key).file;
    }
    [[nodiscard]] QByteArray part() const { return test::readFile(file() + PartialFile::suffix); }

    const QTemporaryDir m_directory;
    const test::XServer m_display;
    const test::ModelHost m_host{key, modelBytes(), "limit_rate 400k; limit_rate_after 1m;"};
    const QByteArray& m_model = m_host.content();
    const QString m_bundle = test::bundleWithForeignHelper(m_directory.path());
    QProcessEnvironment m_environment = m_display.environment();
    std::unique_ptr<test::SayloftProgram> m_sayloft;
};

TEST_F(ModelDownload, goesOnWhereItWasAfterTheProgramWasKilled) {
    startSayloft();
    ASSERT_TRUE(test::waitUntil([this] { return part().size() > 1'200'000; }))
        << m_sayloft->log().toStdString();
    m_sayloft->program().signal(SIGKILL);
    ASSERT_TRUE(m_sayloft->program().waitForEnd(5s));
    const QByteArray there = part();
    ASSERT_LT(there.size(), m_model.size());
    EXPECT_EQ(there, m_model.left(there.size()));
    EXPECT_FALSE(QFileInfo::exists(file()));

    startSayloft();
    ASSERT_TRUE(logged(QStringLiteral(": ok"))) << m_sayloft->log().toStdString();
    EXPECT_EQ(test::readFile(file()), m_model);
    const QByteArray rest = QByteArray::number(m_model.size() - there.size());
    const QByteArray range = "bytes=" + QByteArray::number(there.size()) + '-';
    EXPECT_EQ(m_host.nginx().requests(4).back(),
              "206 " + rest + ' ' + range + ' ' + m_host.nginx().etag(test::ModelHost::path()));
    EXPECT_TRUE(m_sayloft->waitForHelper());
    EXPECT_TRUE(test::readFile(file() + QStringLiteral(".log")).contains(file().toUtf8()));
}

TEST_F(ModelDownload, isCompleteWhereItsNoteCannotBeWritten) {
    ASSERT_TRUE(QDir().mkpath(file() + PartialFile::noteSuffix));
    startSayloft();
    ASSERT_TRUE(logged(QStringLiteral(": ok"))) << m_sayloft->log().toStdString();
    EXPECT_EQ(test::readFile(file()), m_model);
    EXPECT_TRUE(QDir(file() + PartialFile::noteSuffix).isEmpty());
}

TEST_F(ModelDownload, goesThroughTheProxyToEveryHost) {
    startSayloft();
    ASSERT_TRUE(logged(QStringLiteral(": ok"))) << m_sayloft->log().toStdString();
    EXPECT_THAT(m_host.proxy().asked(), ElementsAre(m_host.host().toUtf8() + ":443",
                                                    QByteArray(test::ModelHost::storage) + ":443"));
}

TEST_F(ModelDownload, failsWithTheReasonWhereTheProxyRefuses) {
    const test::RawHttpServer proxy({test::RawAnswer::status(403)});
    m_environment.insert(QStringLiteral("https_proxy"),
                         QStringLiteral("http://127.0.0.1:%1").arg(proxy.port()));
    startSayloft();
    ASSERT_TRUE(logged(QStringLiteral(": FAILED")));
    EXPECT_TRUE(m_sayloft->log().contains(
        QStringLiteral("download error: CONNECT tunnel failed, response 403\n")))
        << m_sayloft->log().toStdString();
    EXPECT_TRUE(m_sayloft->program().isRunning());
    EXPECT_EQ(proxy.requests().size(), 1U);
}

TEST_F(ModelDownload, failsWithTheReasonWhereTheCertificateIsNotTrusted) {
    m_environment.remove(QStringLiteral("SSL_CERT_FILE"));
    startSayloft();
    ASSERT_TRUE(logged(QStringLiteral(": FAILED")));
    EXPECT_TRUE(
        m_sayloft->log().contains(QStringLiteral("download error: SSL certificate problem")))
        << m_sayloft->log().toStdString();
    EXPECT_EQ(part(), "");
}

}  // namespace
}  // namespace sayloft
