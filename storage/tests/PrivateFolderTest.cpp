// SPDX-License-Identifier: MIT
#include "storage/PrivateFolder.h"

#include "models/Paths.h"
#include "storage/Config.h"
#include "storage/History.h"
#include "storage/Log.h"
#include "storage/StoredFiles.h"
#include "tests/support/FileModes.h"
#include "tests/support/TempHome.h"

#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace sayloft {
namespace {

/// A process whose new files everybody may read and write.
class WithoutAUmask : public testing::Test {
protected:
    WithoutAUmask() : m_before(::umask(0)) {}
    ~WithoutAUmask() override { ::umask(m_before); }

    test::TempHome m_home;

private:
    mode_t m_before;
};

TEST_F(WithoutAUmask, allThatIsStoredIsTheUsersAlone) {
    Config().save();
    History().add(QStringLiteral("words"));
    logf(QStringLiteral("line"));
    KeptFile::waitForDisk(std::chrono::seconds(10));
    EXPECT_THAT(test::modesIn(DATA_DIR),
                testing::UnorderedElementsAre("0700 .", "0600 config.json",
                                              "0600 config.json.saved", "0600 history.json",
                                              "0600 history.json.saved", "0600 sayloft.log"));
}

TEST_F(WithoutAUmask, whatAnOlderVersionLeftIsClosedToOthersAtTheStart) {
    test::writeFile(Config::url(), "{}");
    test::writeFile(LOG_URL, "line\n");
    test::writeFile(TEMP_DIR + QStringLiteral("/sayloft_rec.wav"), "sound");
    test::writeFile(DOWNLOAD_MODELS_DIR + QStringLiteral("/some.gguf"), "model");
    test::writeFile(m_home.path() + QStringLiteral("/theirs"), "not ours");
    QFile::link(m_home.path() + QStringLiteral("/theirs"), DATA_DIR + QStringLiteral("/link"));
    ::chmod(QFile::encodeName(DATA_DIR).constData(), 0755);
    mendStoredFiles();
    KeptFile::waitForDisk(std::chrono::seconds(10));
    EXPECT_THAT(
        test::modesIn(DATA_DIR),
        testing::UnorderedElementsAre("0700 .", "0600 config.json", "0600 config.json.saved",
                                      "0600 sayloft.log", "0700 tmp", "0600 tmp/sayloft_rec.wav",
                                      "0700 models", "0666 models/some.gguf"));
    EXPECT_THAT(test::modesIn(m_home.path()), testing::Contains("0666 theirs"));
}

TEST_F(WithoutAUmask, aMissingFolderIsNotMadeByClosingIt) {
    mendStoredFiles();
    EXPECT_FALSE(QFileInfo::exists(DATA_DIR));
}

}  // namespace
}  // namespace sayloft
