// SPDX-License-Identifier: MIT
#include "models/ModelCatalogue.h"

#include "models/Paths.h"
#include "tests/support/TempHome.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

class ModelCatalogue : public testing::Test {
protected:
    test::TempHome m_home;
    const QString m_file = QStringLiteral("some.gguf");
};

TEST_F(ModelCatalogue, beginsWithTheTwoParakeetModels) {
    ASSERT_GE(MODELS.size(), 2U);
    const QString repository =
        QStringLiteral("https://huggingface.co/mudler/parakeet-cpp-gguf/resolve/main/");
    EXPECT_EQ(MODELS[0].key, QStringLiteral("multilingual"));
    EXPECT_EQ(MODELS[0].file, QStringLiteral("parakeet-tdt-0.6b-v3-f16.gguf"));
    EXPECT_EQ(MODELS[0].url, repository + QStringLiteral("tdt-0.6b-v3-f16.gguf"));
    EXPECT_EQ(MODELS[0].label, QStringLiteral("Multilingual (v3) — 25 languages"));
    EXPECT_EQ(MODELS[1].key, QStringLiteral("english"));
    EXPECT_EQ(MODELS[1].file, QStringLiteral("parakeet-tdt-0.6b-v2-f16.gguf"));
    EXPECT_EQ(MODELS[1].url, repository + QStringLiteral("tdt-0.6b-v2-f16.gguf"));
    EXPECT_EQ(MODELS[1].label, QStringLiteral("English only (v2) — best for English"));
}

TEST_F(ModelCatalogue, findsModelsByTheirExactKeyAndFallsBackToTheFirst) {
    EXPECT_EQ(modelInfo(QStringLiteral("english")).key, MODELS[1].key);
    EXPECT_EQ(modelInfo(QStringLiteral("English")).key, MODELS[0].key);
    EXPECT_EQ(modelInfo(QString()).key, MODELS[0].key);
}

TEST_F(ModelCatalogue, prefersADownloadOverTheBundleAndTheBundleOverTheDevelopmentFolder) {
    EXPECT_FALSE(existingModelPath(m_file));

    const QString development = ROOT_DIR + QStringLiteral("/models/") + m_file;
    test::writeFile(development, "development");
    EXPECT_EQ(existingModelPath(m_file), development);

    const QString bundled = BUNDLE_DIR + QStringLiteral("/Contents/Resources/models/") + m_file;
    test::writeFile(bundled, "bundled");
    EXPECT_EQ(existingModelPath(m_file), bundled);

    const QString downloaded = DATA_DIR + QStringLiteral("/models/") + m_file;
    test::writeFile(downloaded, "downloaded");
    EXPECT_EQ(existingModelPath(m_file), downloaded);
    EXPECT_EQ(modelPath(m_file), downloaded);
}

TEST_F(ModelCatalogue, namesTheDownloadFolderForAFileThatExistsNowhere) {
    EXPECT_EQ(modelPath(m_file), DATA_DIR + QStringLiteral("/models/some.gguf"));
}

TEST_F(ModelCatalogue, countsAnEmptyFileAsPresent) {
    EXPECT_FALSE(modelDownloaded(QStringLiteral("english")));
    test::writeFile(DOWNLOAD_MODELS_DIR + QLatin1Char('/') + MODELS[1].file, "");
    EXPECT_TRUE(modelDownloaded(QStringLiteral("english")));
}

TEST_F(ModelCatalogue, reportsTheFirstModelForAnUnknownKey) {
    EXPECT_FALSE(modelDownloaded(QStringLiteral("no such key")));
    test::writeFile(DOWNLOAD_MODELS_DIR + QLatin1Char('/') + MODELS[0].file, "x");
    EXPECT_TRUE(modelDownloaded(QStringLiteral("no such key")));
}

}  // namespace
}  // namespace sayloft
