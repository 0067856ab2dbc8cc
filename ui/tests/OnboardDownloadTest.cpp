// SPDX-License-Identifier: MIT
#include "tests/support/Nginx.h"
#include "tests/support/ServedCatalogue.h"
#include "ui/tests/OnboardFixture.h"

#include <QRegularExpression>

#include <gmock/gmock.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

const QString english = QStringLiteral("english");
const QString multilingual = QStringLiteral("multilingual");

/// Models come slowly from a server of the test.
class OnboardDownload : public test::OnboardFixture {
protected:
    [[nodiscard]] static QString pathOf(const QString& key) {
        return DOWNLOAD_MODELS_DIR + QLatin1Char('/') + modelInfo(key).file;
    }

    [[nodiscard]] int percentShown() const {
        static const QRegularExpression pattern(QStringLiteral("^Downloading… (\\d+)%$"));
        const auto match = pattern.match(modelStatus());
        return match.hasMatch() ? match.captured(1).toInt() : -1;
    }

    [[nodiscard]] bool downloadEnds() const {
        return test::waitUntil([this] { return !delegate->models().downloading(); });
    }

    const QByteArray content = QByteArray(60'000, 'm');
    test::Nginx nginx{"location / { limit_rate 40k; }"};
    test::ServedCatalogue catalogue{nginx};
};

TEST_F(OnboardDownload, beginsByItselfWhenTheModelIsMissing) {
    catalogue.serve(multilingual, content);
    open();
    EXPECT_EQ(delegate->models().downloadingKey(), multilingual);
    EXPECT_GE(percentShown(), 0);
    EXPECT_FALSE(model()->isEnabled());
    EXPECT_TRUE(test::waitUntil([this] { return percentShown() > 0 && percentShown() < 100; }));
    ASSERT_TRUE(downloadEnds());
    EXPECT_EQ(modelStatus(), ready);
    EXPECT_FALSE(model()->isEnabled());
    EXPECT_EQ(test::readFile(pathOf(multilingual)), content);
}

TEST_F(OnboardDownload, isStartedOnlyOnceHoweverOftenTheWindowIsShown) {
    catalogue.serve(multilingual, content);
    open();
    open();
    window().close();
    open();
    ASSERT_TRUE(downloadEnds());
    open();
    test::turnEventLoopFor(200ms);
    EXPECT_THAT(nginx.requests(1), testing::SizeIs(1));
}

TEST_F(OnboardDownload, ofAnotherModelIsShownToo) {
    provideModel(multilingual);
    catalogue.serve(english, content);
    open();
    EXPECT_EQ(modelStatus(), ready);
    delegate->models().downloadModel(modelInfo(english), {});
    EXPECT_EQ(modelStatus(), QStringLiteral("Downloading… 0%"));
    EXPECT_FALSE(model()->isEnabled());
    EXPECT_TRUE(test::waitUntil([this] { return percentShown() > 0; }));
    EXPECT_EQ(percentShown(), static_cast<int>(delegate->models().downloadProgress() * 100));
    ASSERT_TRUE(downloadEnds());
    EXPECT_EQ(modelStatus(), ready);
}

TEST_F(OnboardDownload, ofAnotherModelKeepsTheConfiguredOneFromBeingFetched) {
    catalogue.serve(english, content);
    delegate->models().downloadModel(modelInfo(english), {});
    open();
    EXPECT_EQ(delegate->models().downloadingKey(), english);
    ASSERT_TRUE(downloadEnds());
    EXPECT_EQ(modelStatus(), notYet);
    EXPECT_TRUE(model()->isEnabled());
}

TEST_F(OnboardDownload, isTakenUpByTheButtonAfterAFailure) {
    open();
    ASSERT_TRUE(downloadEnds());
    EXPECT_EQ(modelStatus(), notYet);
    EXPECT_TRUE(model()->isEnabled());
    catalogue.serve(multilingual, content);
    click(model());
    EXPECT_FALSE(model()->isEnabled());
    ASSERT_TRUE(downloadEnds());
    EXPECT_EQ(modelStatus(), ready);
    EXPECT_EQ(Config::load().model, multilingual);
}

TEST_F(OnboardDownload, isOfTheModelThatIsConfigured) {
    catalogue.serve(english, content);
    delegate->cfg.model = english;
    open();
    EXPECT_EQ(delegate->models().downloadingKey(), english);
    ASSERT_TRUE(downloadEnds());
    EXPECT_EQ(test::readFile(pathOf(english)), content);
    EXPECT_EQ(Config::load().model, english);
}

TEST_F(OnboardDownload, leavesAnUnknownModelInTheConfiguration) {
    provideModel(multilingual);
    test::writeFile(Config::url(), R"({"model":"of another version"})");
    delegate->cfg = Config::load();
    open();
    EXPECT_EQ(modelStatus(), ready);
    EXPECT_EQ(Config::load().model, QStringLiteral("of another version"));
}

}  // namespace
}  // namespace sayloft
