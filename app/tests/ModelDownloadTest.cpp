// SPDX-License-Identifier: MIT
#include "app/ModelActions.h"

#include "app/tests/ModelActionsFixture.h"
#include "models/StarterModel.h"

#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Models = test::ModelActionsFixture;

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

}  // namespace
}  // namespace sayloft
