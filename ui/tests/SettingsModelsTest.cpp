// SPDX-License-Identifier: MIT
// The models in the settings window, by mouse.
#include "models/ModelCatalogue.h"
#include "tests/support/WaitUntil.h"
#include "ui/tests/KeptLook.h"
#include "ui/tests/SettingsFixture.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QtTest>

#include <gmock/gmock.h>

namespace sayloft {
namespace {

const QString multilingual = QStringLiteral("multilingual");
const QString english = QStringLiteral("english");
const QString starter = QStringLiteral("starter");

class SettingsModels : public SettingsFixture {
protected:
    [[nodiscard]] static QString named(const char* action, const QString& key) {
        return QLatin1String(action) + QLatin1Char(' ') + modelInfo(key).label;
    }

    [[nodiscard]] QString barOf(const QString& key) const {
        return QStringLiteral("Download of ") + modelInfo(key).label;
    }
};

TEST_F(SettingsModels, areListedWithTheOneInUse) {
    provideModel(multilingual);
    open();
    for (const ModelInfo& model : MODELS)
        EXPECT_TRUE(showsText(model.label));
    EXPECT_TRUE(showsText(QStringLiteral("Active")));
    EXPECT_TRUE(showsText(QStringLiteral("✓")));
    EXPECT_FALSE(isVisible(named("Use", multilingual)));
    EXPECT_FALSE(isVisible(named("Delete", multilingual)));
}

TEST_F(SettingsModels, thatAreMissingCanBeDownloaded) {
    open();
    EXPECT_TRUE(isVisible(named("Download", english)));
    EXPECT_FALSE(isVisible(named("Use", english)));
    EXPECT_TRUE(showsText(QStringLiteral("○")));
}

TEST_F(SettingsModels, thatAreThereCanBeUsedAndDeleted) {
    provideModel(english);
    open();
    EXPECT_TRUE(isVisible(named("Use", english)));
    EXPECT_TRUE(isVisible(named("Delete", english)));
    EXPECT_FALSE(isVisible(named("Download", english)));
}

TEST_F(SettingsModels, areUsedAfterAClick) {
    provideModel(english);
    provideModel(multilingual);
    open();
    click(named("Use", english));
    EXPECT_EQ(stored().model, english);
    EXPECT_FALSE(isVisible(named("Use", english)));
    EXPECT_TRUE(isVisible(named("Use", multilingual)));
}

TEST_F(SettingsModels, showABarAndNothingElseWhileTheyAreDownloaded) {
    open();
    ASSERT_TRUE(beginSlowDownload(english));
    const auto& bar = get<QProgressBar>(barOf(english));
    EXPECT_TRUE(bar.isVisible());
    const double progress = app->models().downloadProgress();
    EXPECT_EQ(bar.value(), static_cast<int>(progress * 1000));
    EXPECT_TRUE(showsText(QString::number(static_cast<int>(progress * 100)) + u'%'));
    EXPECT_FALSE(showsText(QStringLiteral("Active")));
    EXPECT_FALSE(isVisible(named("Use", english)));
    EXPECT_FALSE(isVisible(named("Download", english)));
    EXPECT_EQ(stored().model, english);
}

TEST_F(SettingsModels, areDownloadedAfterAClick) {
    serve(english, "model");
    open();
    click(named("Download", english));
    EXPECT_EQ(stored().model, english);
    EXPECT_TRUE(isVisible(barOf(english)));
    EXPECT_TRUE(test::waitUntil([this] { return showsText(QStringLiteral("Active")); }));
    EXPECT_TRUE(hasModel(english));
    EXPECT_FALSE(isVisible(barOf(english)));
}

TEST_F(SettingsModels, areSelectedEvenWhenTheDownloadFails) {
    serve(multilingual, "model");
    open();
    click(named("Download", english));
    EXPECT_TRUE(test::waitUntil([this] { return !app->models().downloading(); }));
    EXPECT_EQ(stored().model, english);
    EXPECT_TRUE(showsText(QStringLiteral("Active")));
    EXPECT_FALSE(isVisible(barOf(english)));
    EXPECT_FALSE(hasModel(english));
}

TEST_F(SettingsModels, thatAreAskedForDuringADownloadShowThatOne) {
    open(R"({"model":"starter"})");
    ASSERT_TRUE(beginSlowDownload(english));
    click(named("Download", multilingual));
    EXPECT_EQ(stored().model, multilingual);
    EXPECT_TRUE(isVisible(barOf(english)));
    EXPECT_FALSE(isVisible(barOf(multilingual)));
    EXPECT_TRUE(showsText(QStringLiteral("Active")));
}

TEST_F(SettingsModels, areDeletedAfterAYes) {
    provideModel(english);
    open();
    click(named("Delete", english));
    EXPECT_TRUE(hasModel(english));
    answer(QStringLiteral("Delete"));
    EXPECT_FALSE(hasModel(english));
    EXPECT_TRUE(isVisible(named("Download", english)));
}

TEST_F(SettingsModels, stayAfterACancel) {
    provideModel(english);
    const QByteArray config = "{}";
    open(config);
    click(named("Delete", english));
    answer(QStringLiteral("Cancel"));
    EXPECT_TRUE(hasModel(english));
    EXPECT_TRUE(isVisible(named("Delete", english)));
    EXPECT_EQ(test::readFile(Config::url()), config);
}

TEST_F(SettingsModels, areNamedBeforeTheyAreDeleted) {
    provideModel(english);
    open();
    click(named("Delete", english));
    const auto* alert = window->findChild<QMessageBox*>();
    ASSERT_NE(alert, nullptr);
    EXPECT_TRUE(alert->isModal());
    EXPECT_EQ(alert->text(), QStringLiteral("Delete “English only (v2) — best for English”?"));
    EXPECT_EQ(alert->informativeText(),
              QStringLiteral("The model file is removed. You can download it again later."));
}

TEST_F(SettingsModels, thatComeWithTheProgramCannotBeDeleted) {
    provideModel(starter);
    open();
    EXPECT_TRUE(isVisible(named("Use", starter)));
    EXPECT_FALSE(isVisible(named("Delete", starter)));
}

TEST_F(SettingsModels, thatShouldHaveComeWithTheProgramCannotBeDownloadedAndSayWhy) {
    open();
    const auto& download = get<QPushButton>(named("Download", starter));
    EXPECT_FALSE(download.isEnabled());
    EXPECT_TRUE(download.toolTip().contains(QStringLiteral("comes with Sayloft")));
    EXPECT_EQ(download.accessibleDescription(), download.toolTip());
}

TEST_F(SettingsModels, thatNobodyKnowsAreKept) {
    provideModel(multilingual);
    const QByteArray config = R"({"model":"huge"})";
    open(config);
    EXPECT_FALSE(showsText(QStringLiteral("Active")));
    EXPECT_TRUE(isVisible(named("Use", multilingual)));
    EXPECT_EQ(test::readFile(Config::url()), config);
}

TEST_F(SettingsModels, takeAPressDuringADownloadWhateverIsRefreshed) {
    provideModel(multilingual);
    open();
    ASSERT_TRUE(beginSlowDownload(english));
    auto& use = get<QPushButton>(named("Use", multilingual));
    QTest::mousePress(&use, Qt::LeftButton);
    app->windows->refreshSettings();
    QTest::mouseRelease(&use, Qt::LeftButton);
    EXPECT_EQ(stored().model, multilingual);
}

TEST_F(SettingsModels, moveNothingWhenADownloadBegins) {
    const test::KeptLook before;
    before.useFontOf(1.3);
    open();
    const auto placeOfChips = [this] {
        const auto& add = get<QPushButton>(QStringLiteral("Add combo to Dictate"));
        return add.mapTo(window, QPoint());
    };
    const QPoint place = placeOfChips();
    EXPECT_TRUE(beginSlowDownload(english));
    test::turnEventLoopFor(std::chrono::milliseconds(20));
    EXPECT_EQ(placeOfChips(), place);
}

}  // namespace
}  // namespace sayloft
