// SPDX-License-Identifier: MIT
#include "app/ModelActions.h"

#include "app/tests/ModelActionsFixture.h"
#include "models/PartialFile.h"

#include <QDir>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sayloft {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Models = test::ModelActionsFixture;

TEST_F(Models, thatArePresentAreSelectedWithARestart) {
    provideModel(m_english);
    bool isThen = false;
    m_models.setModel(m_english, [&] {
        isThen = true;
        EXPECT_EQ(count("restart"), 1);
    });
    EXPECT_TRUE(isThen);
    EXPECT_EQ(m_cfg.model, m_english);
    EXPECT_EQ(Config::load().model, m_english);
    EXPECT_THAT(m_host.seen,
                ElementsAre("menu", "settings refreshed", "onboarding refreshed", "restart"));
    EXPECT_FALSE(m_models.downloading());
}

TEST_F(Models, areSelectedWithoutAnyoneToTell) {
    provideModel(m_english);
    m_models.setModel(m_english);
    EXPECT_EQ(count("restart"), 1);
}

TEST_F(Models, areSelectedForGoodEvenWhileAnotherIsBeingDownloaded) {
    m_nginx.serve(QStringLiteral("/slow"), QByteArray(1'000'000, 'x'));
    download(served(QStringLiteral("/slow")));
    m_host.seen.clear();
    bool isThen = false;
    m_models.setModel(m_english, [&] { isThen = true; });
    EXPECT_EQ(Config::load().model, m_english);
    EXPECT_THAT(m_host.seen, ElementsAre("menu", "settings refreshed", "onboarding refreshed"));
    settle();
    EXPECT_FALSE(isThen);
    EXPECT_EQ(m_models.downloadingKey(), QStringLiteral("some"));
}

TEST_F(Models, thatAreSelectedAndAbsentAreDownloadedBeforeTheRestart) {
    m_catalogue.serve(m_english, "content");
    bool isThen = false;
    m_models.setModel(m_english, [&] {
        isThen = true;
        EXPECT_EQ(count("restart"), 1);
    });
    EXPECT_EQ(Config::load().model, m_english);
    EXPECT_EQ(m_models.downloadingKey(), m_english);
    EXPECT_EQ(count("restart"), 0);
    ASSERT_TRUE(test::waitUntil([&] { return isThen; }));
    EXPECT_EQ(count("restart"), 1);
    EXPECT_EQ(test::readFile(pathOf(m_english)), "content");
}

TEST_F(Models, staySelectedWithoutARestartWhenTheirDownloadFails) {
    bool isThen = false;
    m_models.setModel(m_english, [&] { isThen = true; });
    ASSERT_TRUE(test::waitUntil([&] { return isThen; }));
    EXPECT_EQ(count("restart"), 0);
    EXPECT_EQ(count("ready"), 0);
    EXPECT_EQ(Config::load().model, m_english);
    EXPECT_EQ(m_home.log(), QStringLiteral("model download english: FAILED\n"));
}

TEST_F(Models, thatAreUnknownAreTakenForTheFirst) {
    m_catalogue.serve(QStringLiteral("multilingual"), "content");
    bool isThen = false;
    m_models.setModel(QStringLiteral("unknown"), [&] { isThen = true; });
    EXPECT_EQ(Config::load().model, QStringLiteral("unknown"));
    EXPECT_EQ(m_models.downloadingKey(), QStringLiteral("multilingual"));
    ASSERT_TRUE(test::waitUntil([&] { return isThen; }));
    EXPECT_EQ(count("restart"), 1);
}

TEST_F(Models, thatAreNotInUseAreDeleted) {
    provideModel(m_english);
    m_models.deleteModel(m_english);
    EXPECT_FALSE(QFileInfo::exists(pathOf(m_english)));
    EXPECT_TRUE(test::waitUntil([] { return QDir(DOWNLOAD_MODELS_DIR).isEmpty(); }));
    EXPECT_EQ(m_home.log(), QStringLiteral("deleted model english\n"));
    EXPECT_THAT(m_host.seen, ElementsAre("settings refreshed", "onboarding refreshed", "menu"));
}

TEST_F(Models, thatAreAbsentAreDeletedAllTheSame) {
    m_models.deleteModel(m_english);
    EXPECT_EQ(m_home.log(), QStringLiteral("deleted model english\n"));
    EXPECT_EQ(count("menu"), 1);
}

TEST_F(Models, inUseAreNotDeleted) {
    m_cfg.model = m_english;
    provideModel(m_english);
    m_models.deleteModel(m_english);
    EXPECT_TRUE(QFileInfo::exists(pathOf(m_english)));
    EXPECT_EQ(m_home.log(), QString());
    EXPECT_THAT(m_host.seen, IsEmpty());
}

TEST_F(Models, areInUseByTheNameThatIsConfiguredOnly) {
    m_cfg.model = QStringLiteral("unknown");
    const QString first = MODELS.front().key;
    provideModel(first);
    m_models.deleteModel(first);
    EXPECT_FALSE(QFileInfo::exists(pathOf(first)));
    EXPECT_EQ(m_home.log(), QStringLiteral("deleted model ") + first + QLatin1Char('\n'));
}

TEST_F(Models, thatAreBundledAreNotDeleted) {
    const QString key = QStringLiteral("starter");
    const QString bundled =
        BUNDLE_DIR + QStringLiteral("/Contents/Resources/models/") + modelInfo(key).file;
    test::writeFile(bundled, "model");
    m_models.deleteModel(key);
    EXPECT_TRUE(QFileInfo::exists(bundled));
    EXPECT_THAT(m_host.seen, IsEmpty());
    EXPECT_EQ(m_home.log(), QString());
}

TEST_F(Models, loseWhatDeadDownloadsHaveLeft) {
    const QString dead = DOWNLOAD_MODELS_DIR + QStringLiteral("/old.gguf") + PartialFile::suffix;
    const QString alive = pathOf(m_english);
    test::writeFile(dead, "part");
    test::writeFile(alive + PartialFile::suffix, "part");
    ResumeNote{.url = QUrl(modelInfo(m_english).url), .etag = "\"1\"", .size = {}, .sha256 = {}}
        .save(alive + PartialFile::noteSuffix);
    m_models.removeLeftovers();
    EXPECT_TRUE(test::waitUntil([&] { return !QFileInfo::exists(dead); }));
    EXPECT_TRUE(QFileInfo::exists(alive + PartialFile::suffix));
    EXPECT_TRUE(QFileInfo::exists(alive + PartialFile::noteSuffix));
}

TEST_F(Models, andEverythingElseAreAsAtFirstAfterAReset) {
    m_cfg.dictateChords = {1, 2};
    m_cfg.dictateEnterChords = {4};
    m_cfg.inputDeviceUID = QStringLiteral("usb-mic");
    m_cfg.pillStyle = QStringLiteral("minimal");
    m_cfg.boostMic = false;
    m_cfg.model = m_english;
    m_cfg.save();
    m_recorder.deviceUID = m_cfg.inputDeviceUID;
    m_recorder.boost = false;
    m_models.resetConfig();
    EXPECT_EQ(m_cfg, Config());
    EXPECT_EQ(Config::load(), Config());
    EXPECT_EQ(m_recorder.deviceUID, std::nullopt);
    EXPECT_TRUE(m_recorder.boost);
    EXPECT_THAT(m_host.seen, ElementsAre("menu", "settings refreshed"));
    settle();
    EXPECT_THAT(m_host.seen, ElementsAre("menu", "settings refreshed", "full 0.3 0.3 1"));
}

TEST_F(Models, areOfNoConcernToThePillWhoseStyleIsMinimalOrElseFull) {
    for (const char* style : {"minimal", "full", "Minimal", "", "other"}) {
        m_host.seen.clear();
        m_cfg.pillStyle = QString::fromUtf8(style);
        m_models.applyOverlayConfig();
        EXPECT_THAT(m_host.seen, IsEmpty());
        settle();
        const bool isMinimal = m_cfg.pillStyle == QStringLiteral("minimal");
        EXPECT_THAT(m_host.seen, ElementsAre(isMinimal ? "minimal 0.3 0.3 1" : "full 0.3 0.3 1"));
    }
}

TEST_F(Models, needNoUserInterface) {
    m_host.hasInterface = false;
    provideModel(m_english);
    m_models.setModel(m_english);
    m_models.deleteModel(QStringLiteral("multilingual"));
    m_models.resetConfig();
    m_nginx.serve(QStringLiteral("/model"), "content");
    download(served());
    ASSERT_TRUE(waitForDone());
    EXPECT_THAT(m_done, ElementsAre(true));
}

}  // namespace
}  // namespace sayloft
