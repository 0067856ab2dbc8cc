// SPDX-License-Identifier: MIT
// What earlier runs have left in the models' folder, and the real program when it starts.
#include "models/FilesAside.h"
#include "models/ModelCatalogue.h"
#include "models/PartialFile.h"
#include "tests/support/SayloftProgram.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XServer.h"

#include <QDir>
#include <QUrl>

#include <gtest/gtest.h>

#include <csignal>
#include <memory>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

class Leftovers : public testing::Test {
protected:
    Leftovers() {
        QDir().mkpath(m_models);
        m_environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        m_environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    }

    /// Of a download that was cut short `days` ago.
    void leavePart(const QString& key, int days) const {
        const ModelInfo& model = modelInfo(key);
        const QString part = m_models + model.file + PartialFile::suffix;
        test::writeFile(part, "part");
        test::makeOlder(part, days);
        ResumeNote{.url = QUrl(model.url), .etag = "\"1\"", .size = {}, .sha256 = {}}.save(
            m_models + model.file + PartialFile::noteSuffix);
    }

    void startSayloft() {
        m_sayloft = std::make_unique<test::SayloftProgram>(m_home.path(), m_environment);
        ASSERT_TRUE(m_sayloft->waitForLog(QStringLiteral("event tap installed OK")));
    }

    /// Whatever it removes at its start is gone then.
    void expectOnlyThatStays(const QStringList& files) {
        EXPECT_TRUE(test::waitUntil([&] { return left() == files; }));
        m_sayloft->program().signal(SIGTERM);
        EXPECT_TRUE(m_sayloft->program().waitForEnd(8s));
        EXPECT_EQ(left(), files);
    }

    [[nodiscard]] QStringList left() const {
        return QDir(m_models).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    const test::TempHome m_home;
    const QString m_models = m_home.path() + QStringLiteral("/.sayloft/models/");
    const QString m_english = modelInfo(QStringLiteral("english")).file;
    const test::XServer m_display;
    QProcessEnvironment m_environment = m_display.environment();
    std::unique_ptr<test::SayloftProgram> m_sayloft;
};

TEST_F(Leftovers, ofDownloadsThatAreTooOldAreRemovedAndFreshOnesStay) {
    test::writeConfig(m_home.path(), R"({"model":"starter"})");
    leavePart(QStringLiteral("multilingual"), 31);
    leavePart(QStringLiteral("english"), 1);
    startSayloft();
    expectOnlyThatStays({m_english + PartialFile::suffix, m_english + PartialFile::noteSuffix});
}

TEST_F(Leftovers, ofDownloadsOfTheModelInUseStayForLonger) {
    test::writeConfig(m_home.path(), R"({"model":"english"})");
    // As if somebody had put the model there meanwhile, so that no download goes on at once.
    test::writeFile(m_models + m_english, "model");
    leavePart(QStringLiteral("multilingual"), 8);
    leavePart(QStringLiteral("english"), 8);
    startSayloft();
    expectOnlyThatStays(
        {m_english, m_english + PartialFile::suffix, m_english + PartialFile::noteSuffix});
}

TEST_F(Leftovers, ofDeletedModelsAreRemoved) {
    test::writeConfig(m_home.path(), R"({"model":"starter"})");
    test::writeFile(m_models + m_english, "model");
    ASSERT_TRUE(putAside(m_models + m_english));
    startSayloft();
    expectOnlyThatStays({});
}

}  // namespace
}  // namespace sayloft
