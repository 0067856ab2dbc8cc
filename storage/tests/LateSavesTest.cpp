// SPDX-License-Identifier: MIT
#include "storage/LateSaves.h"

#include "models/Paths.h"
#include "storage/Config.h"
#include "storage/History.h"
#include "tests/support/OwnNamespaces.h"
#include "tests/support/TempHome.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

/// Settings and history on a small disk that has become full.
class ALateSave : public testing::Test {
protected:
    ALateSave() {
        Config().save();
        m_history.add(QStringLiteral("older"));
        KeptFile::waitForDisk(std::chrono::seconds(10));
        m_disk.fill();
        m_config.replacements = {100, {QStringLiteral("from"), QStringLiteral("to")}};
        m_config.save();
        m_history.add(QStringLiteral("newer"));
    }

    test::TempHome m_home;
    test::SmallDisk m_disk{DATA_DIR, "size=2m"};
    Config m_config;
    History m_history;
};

TEST_F(ALateSave, isDoneOnceThereIsRoom) {
    saveWhatIsLate();
    EXPECT_EQ(Config::load(), Config());
    m_disk.makeRoom();
    saveWhatIsLate();
    EXPECT_EQ(Config::load(), m_config);
    EXPECT_EQ(History().items(), m_history.items());
}

TEST_F(ALateSave, isForgottenOnceALaterOneWorked) {
    m_disk.makeRoom();
    Config newest;
    newest.holdDuration = 3;
    newest.save();
    saveWhatIsLate();
    EXPECT_EQ(Config::load(), newest);
}

TEST_F(ALateSave, isDoneOnce) {
    m_disk.makeRoom();
    saveWhatIsLate();
    const QByteArray byHand = R"({"model":"starter"})";
    test::writeFile(Config::url(), byHand);
    saveWhatIsLate();
    EXPECT_EQ(test::readFile(Config::url()), byHand);
}

TEST_F(ALateSave, isDoneOnceTheDiskIsNotReadOnlyAnyMore) {
    m_disk.makeRoom();
    saveWhatIsLate();
    m_disk.makeReadOnly();
    Config newest;
    newest.holdDuration = 3;
    newest.save();
    EXPECT_EQ(Config::load(), m_config);
    m_disk.makeWritable();
    saveWhatIsLate();
    EXPECT_EQ(Config::load(), newest);
}

}  // namespace
}  // namespace sayloft
