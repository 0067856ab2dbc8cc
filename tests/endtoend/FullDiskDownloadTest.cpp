// SPDX-License-Identifier: MIT
// The real program downloads a model to a disk that has no room for it.
#include "models/ModelCatalogue.h"
#include "models/PartialFile.h"
#include "tests/endtoend/Dictation.h"
#include "tests/endtoend/SettingsSwitch.h"
#include "tests/support/ModelHost.h"
#include "tests/support/OwnNamespaces.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QByteArray>
#include <QFileInfo>
#include <QString>

#include <gtest/gtest.h>

#include <chrono>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

const QString key = QStringLiteral("english");

class ADownloadToAFullDisk : public Dictation {
protected:
    ADownloadToAFullDisk() {
        m_desk.connectTo(m_host);
        m_host.offer();
    }

    /// The room ends when a part is there.
    void fillInTheMiddle() {
        m_desk.startSayloft({RawAnswer::ok("words")});
        m_settings.open();
        m_settings.downloadEnglish();
        ASSERT_TRUE(waitUntil([this] { return QFileInfo(part()).size() > 1'200'000; }, 20s))
            << m_desk.sayloft().log().toStdString();
        m_disk.fill();
        ASSERT_TRUE(logged(QStringLiteral("model download english: FAILED")));
    }

    [[nodiscard]] bool logged(const QString& text) {
        return m_desk.sayloft().waitForLog(text, 30s);
    }

    [[nodiscard]] QString file() const {
        return m_desk.dataFile(QStringLiteral("models/") + modelInfo(key).file);
    }
    [[nodiscard]] QString part() const { return file() + PartialFile::suffix; }

    SmallDisk m_disk{m_desk.dataFile(QStringLiteral("models")), "size=6m"};
    const ModelHost m_host{key, QByteArray(3'000'000, 'm'),
                           "limit_rate 400k; limit_rate_after 1m;"};
    const SettingsSwitch m_settings{m_desk};
};

TEST_F(ADownloadToAFullDisk, saysWhyItEndsAndPutsNothingInPlace) {
    ASSERT_NO_FATAL_FAILURE(fillInTheMiddle());
    EXPECT_TRUE(m_desk.sayloft().log().contains(
        QStringLiteral("\ndownload error: No space left on device\n")))
        << m_desk.sayloft().log().toStdString();
    EXPECT_FALSE(QFileInfo::exists(file()));
    EXPECT_FALSE(QFileInfo::exists(part()));
}

TEST_F(ADownloadToAFullDisk, costsNoWordsOfADictation) {
    ASSERT_NO_FATAL_FAILURE(fillInTheMiddle());
    m_settings.close();
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
    expectWholeSoundInLastRecording();
}

TEST_F(ADownloadToAFullDisk, isCompleteAtTheNextTryThatFindsRoom) {
    ASSERT_NO_FATAL_FAILURE(fillInTheMiddle());
    m_disk.makeRoom();
    // The model of a download that has failed is the chosen one, which has no button.
    m_settings.press(QStringLiteral("Use Starter — English, offline, lower accuracy"));
    m_settings.downloadEnglish();
    ASSERT_TRUE(logged(QStringLiteral("model download english: ok")))
        << m_desk.sayloft().log().toStdString();
    EXPECT_EQ(readFile(file()), m_host.content());
}

TEST_F(ADownloadToAFullDisk, thatHasTooLittleRoomFromTheStartIsNotBegun) {
    m_desk.startSayloft({RawAnswer::ok("words")});
    m_disk.fill();
    m_settings.open();
    m_settings.downloadEnglish();
    ASSERT_TRUE(logged(QStringLiteral("model download english: FAILED")));
    EXPECT_TRUE(m_desk.sayloft().log().contains(
        QStringLiteral("not enough disk space: 3000000 bytes are needed and 0 are free")))
        << m_desk.sayloft().log().toStdString();
    EXPECT_FALSE(QFileInfo::exists(file()));
}

}  // namespace
}  // namespace sayloft::test
