// SPDX-License-Identifier: MIT
#include "app/ModelActions.h"

#include "audio/Recorder.h"
#include "models/Downloader.h"
#include "models/PartialFile.h"
#include "models/Paths.h"
#include "models/StarterModel.h"
#include "storage/Config.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/FakeUserInterface.h"
#include "tests/support/Nginx.h"
#include "tests/support/ServedCatalogue.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QFileInfo>

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// What the controller is to the actions.
class FakeModelHost : public ModelHost {
public:
    void setState(IconState state) override { m_item.setState(state); }
    void buildMenu() override { m_item.buildMenu(); }
    void restartServer() override { seen.push_back("restart"); }
    [[nodiscard]] Overlay* configuredOverlay() override {
        return hasInterface ? &m_overlay : nullptr;
    }
    [[nodiscard]] Windows* openWindows() override { return hasInterface ? &m_windows : nullptr; }

    test::Seen seen;
    bool hasInterface = true;

private:
    test::FakeStatusItem m_item{seen};
    test::FakeOverlay m_overlay{seen};
    test::FakeWindows m_windows{seen};
};

/// The actions with a real downloader and models that nginx serves.
class Models : public testing::Test {
protected:
    [[nodiscard]] ModelInfo served(const QString& content = QStringLiteral("/model")) const {
        return {.key = QStringLiteral("some"),
                .file = QStringLiteral("some.gguf"),
                .url = m_nginx.url(content).toString(),
                .label = QStringLiteral("Some")};
    }

    [[nodiscard]] static ModelInfo unparsable() {
        return {.key = QStringLiteral("broken"),
                .file = QStringLiteral("broken.gguf"),
                .url = QStringLiteral("http://["),
                .label = QStringLiteral("Broken")};
    }

    void download(const ModelInfo& info) {
        m_models.downloadModel(info, [this](bool succeeded) { m_done.push_back(succeeded); });
    }

    [[nodiscard]] bool waitForDone() const {
        return test::waitUntil([this] { return !m_done.empty(); });
    }

    [[nodiscard]] static QString pathOf(const QString& key) {
        return DOWNLOAD_MODELS_DIR + QLatin1Char('/') + modelInfo(key).file;
    }

    static void provideModel(const QString& key) { test::writeFile(pathOf(key), "model"); }

    static void settle() { test::turnEventLoopFor(5ms); }

    [[nodiscard]] long count(const char* word) const {
        return std::count(m_host.seen.begin(), m_host.seen.end(), word);
    }

    const QString m_english = QStringLiteral("english");
    test::TempHome m_home;
    test::Nginx m_nginx{"location = /slow { limit_rate 10k; }"};
    const test::ServedCatalogue m_catalogue{m_nginx};
    test::FakePlatform m_fakes;
    Platform m_platform = m_fakes.platform();
    Config m_cfg;
    Recorder m_recorder{m_fakes.audio};
    Downloader m_downloader;
    FakeModelHost m_host;
    ModelActions m_models{{.cfg = m_cfg, .downloader = m_downloader, .recorder = m_recorder},
                          m_host};
    std::vector<bool> m_done;
};

TEST_F(Models, showAtOnceThatADownloadHasBegun) {
    EXPECT_FALSE(m_models.downloading());
    download(served());
    EXPECT_TRUE(m_models.downloading());
    EXPECT_EQ(m_models.downloadingKey(), QStringLiteral("some"));
    EXPECT_EQ(m_models.downloadProgress(), 0);
    EXPECT_THAT(m_host.seen, ElementsAre("warming", "settings refreshed", "onboarding refreshed"));
    EXPECT_THAT(m_done, IsEmpty());
}

TEST_F(Models, areDownloadedToTheirFileAndLogged) {
    m_nginx.serve(QStringLiteral("/model"), "content");
    download(served());
    ASSERT_TRUE(waitForDone());
    EXPECT_THAT(m_done, ElementsAre(true));
    EXPECT_EQ(test::readFile(DOWNLOAD_MODELS_DIR + QStringLiteral("/some.gguf")), "content");
    EXPECT_FALSE(m_models.downloading());
    EXPECT_EQ(m_models.downloadProgress(), 1);
    EXPECT_EQ(m_home.log(), QStringLiteral("model download some: ok\n"));
    // At the beginning, with the only progress, and at the end.
    EXPECT_EQ(count("settings refreshed"), 3);
    EXPECT_EQ(count("onboarding refreshed"), 3);
    EXPECT_EQ(count("warming"), 1);
    EXPECT_EQ(count("ready"), 0);
}

TEST_F(Models, replaceTheCopyThatIsFoundFirst) {
    const QString development = ROOT_DIR + QStringLiteral("/models/some.gguf");
    test::writeFile(development, "old");
    m_nginx.serve(QStringLiteral("/model"), "content");
    download(served());
    ASSERT_TRUE(waitForDone());
    EXPECT_EQ(test::readFile(development), "content");
}

TEST_F(Models, showTheFailureOfADownloadByNothingButTheLog) {
    download(served());
    ASSERT_TRUE(waitForDone());
    EXPECT_THAT(m_done, ElementsAre(false));
    EXPECT_FALSE(m_models.downloading());
    EXPECT_EQ(m_home.log(), QStringLiteral("model download some: FAILED\n"));
    EXPECT_THAT(m_host.seen, ElementsAre("warming", "settings refreshed", "onboarding refreshed",
                                         "settings refreshed", "onboarding refreshed"));
}

TEST_F(Models, dropASecondDownloadWhileOneRuns) {
    m_nginx.serve(QStringLiteral("/model"), "content");
    download(served());
    m_host.seen.clear();
    bool secondIsDone = false;
    m_models.downloadModel(modelInfo(m_english), [&](bool) { secondIsDone = true; });
    EXPECT_THAT(m_host.seen, IsEmpty());
    EXPECT_EQ(m_models.downloadingKey(), QStringLiteral("some"));
    ASSERT_TRUE(waitForDone());
    settle();
    EXPECT_FALSE(secondIsDone);
    EXPECT_THAT(m_nginx.requests(1), testing::SizeIs(1));
}

TEST_F(Models, canBeDownloadedAfterAFailure) {
    download(served());
    ASSERT_TRUE(waitForDone());
    m_nginx.serve(QStringLiteral("/model"), "content");
    m_done.clear();
    download(served());
    ASSERT_TRUE(waitForDone());
    EXPECT_THAT(m_done, ElementsAre(true));
}

TEST_F(Models, withAnAddressThatIsNoneFailAtOnceAndBlockEveryFurtherDownload) {
    download(unparsable());
    EXPECT_THAT(m_done, ElementsAre(false));
    EXPECT_EQ(m_models.downloadingKey(), QStringLiteral("broken"));
    EXPECT_EQ(m_home.log(), QString());
    EXPECT_THAT(m_host.seen, ElementsAre("warming", "settings refreshed", "onboarding refreshed"));
    download(served());
    settle();
    EXPECT_THAT(m_done, ElementsAre(false));
    EXPECT_THAT(m_nginx.requests(0), IsEmpty());
}

TEST_F(Models, thatAreBundledAreNotDownloaded) {
    const auto starter = starterModel();
    ASSERT_TRUE(starter);
    download(*starter);
    EXPECT_THAT(m_done, ElementsAre(false));
    EXPECT_FALSE(m_models.downloading());
    EXPECT_THAT(m_host.seen, IsEmpty());
}

TEST_F(Models, forgetTheirDownloadWhenTheActionsAreGone) {
    m_nginx.serve(QStringLiteral("/model"), "content");
    auto models = std::make_unique<ModelActions>(
        ModelParts{.cfg = m_cfg, .downloader = m_downloader, .recorder = m_recorder}, m_host);
    models->downloadModel(served(), [this](bool succeeded) { m_done.push_back(succeeded); });
    models.reset();
    m_host.seen.clear();
    ASSERT_TRUE(test::waitUntil(
        [] { return QFileInfo::exists(DOWNLOAD_MODELS_DIR + QStringLiteral("/some.gguf")); }));
    test::turnEventLoopFor(50ms);
    EXPECT_THAT(m_done, IsEmpty());
    EXPECT_THAT(m_host.seen, IsEmpty());
}

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
    m_models.removeDeadDownloads();
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
