// SPDX-License-Identifier: MIT
// Switching models under the controller with the real speech helper. Both models are the starter:
// what counts is the file that the helper is given.
#include "app/AppDelegate.h"
#include "helper/tests/SpeechSamples.h"
#include "models/ModelCatalogue.h"
#include "models/Paths.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/FakeUserInterface.h"
#include "tests/support/Nginx.h"
#include "tests/support/SayloftProgram.h"
#include "tests/support/ServedCatalogue.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/Waveform.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>

#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class ModelSwitch : public testing::Test {
protected:
    ModelSwitch() {
        fixPaths(QStringLiteral(SAYLOFT_BUNDLE_DIR), m_home.path());
        test::writeFile(Config::url(), R"({"model":"starter","boostMic":false})");
        m_fakes.audio.deviceList = {{.id = 1,
                                     .transport = fourCharCode("bltn"),
                                     .uid = QStringLiteral("laptop"),
                                     .format = {.sampleRate = 16000, .channels = 1}}};
        m_delegate = std::make_unique<AppDelegate>(m_fakes.platform());
        m_delegate->statusItem = std::make_unique<test::FakeStatusItem>(m_seen);
    }

    ~ModelSwitch() override { m_delegate->applicationWillTerminate(); }

    void launch() {
        m_delegate->applicationDidFinishLaunching();
        ASSERT_TRUE(waitForReady());
    }

    [[nodiscard]] bool waitForReady() {
        return test::waitUntil([this] { return m_delegate->parakeet().ready(); }, 30s);
    }

    [[nodiscard]] static QByteArray starterContent() {
        return test::readFile(modelPath(modelInfo(QStringLiteral("starter")).file));
    }

    void provideEnglish() const { test::writeFile(pathOfEnglish(), starterContent()); }

    [[nodiscard]] QString pathOfEnglish() const {
        return DOWNLOAD_MODELS_DIR + QLatin1Char('/') + modelInfo(m_english).file;
    }

    /// The process ids of all helpers.
    [[nodiscard]] static QList<QByteArray> helpers() {
        QProcess pgrep;
        pgrep.start(QStringLiteral("pgrep"), {QStringLiteral("-x"), QStringLiteral("-P"),
                                              QString::number(QCoreApplication::applicationPid()),
                                              QStringLiteral("parakeet-server")});
        pgrep.waitForFinished(5000);
        return pgrep.readAllStandardOutput().simplified().split(' ');
    }

    /// The models that helpers have been given, one for each.
    [[nodiscard]] static QStringList modelsOfHelpers() {
        QStringList models;
        for (const QByteArray& pid : helpers()) {
            const auto arguments =
                test::readFile(QStringLiteral("/proc/%1/cmdline").arg(QString::fromLatin1(pid)))
                    .split('\0');
            models.append(QString::fromUtf8(arguments.value(arguments.indexOf("--model") + 1)));
        }
        return models;
    }

    void signalHelper(int number) const {
        const int helper = helpers().front().toInt();
        ASSERT_GT(helper, 1);
        ASSERT_EQ(::kill(helper, number), 0);
    }

    /// One helper answers, with this model, and stays the only one.
    void expectHelperWith(const QString& model) {
        ASSERT_TRUE(waitForReady());
        EXPECT_EQ(modelsOfHelpers(), QStringList(model));
        test::turnEventLoopFor(1s);
        EXPECT_EQ(modelsOfHelpers(), QStringList(model));
        EXPECT_TRUE(m_delegate->parakeet().ready());
    }

    /// Holds the chord while these words are said.
    void dictate(const std::string& words) {
        const QTemporaryDir directory;
        const test::Samples samples = test::readSound(helper::test::speak(directory, words).file);
        std::vector<float> frames;
        std::transform(samples.begin(), samples.end(), std::back_inserter(frames),
                       [](std::int16_t sample) { return static_cast<float>(sample) / 32768.0F; });
        m_fakes.modifierWatch.hold(KeyFlag::shift | KeyFlag::command);
        ASSERT_TRUE(m_fakes.audio.isCapturing());
        m_fakes.audio.captures.back()->deliver(frames);
        m_fakes.modifierWatch.hold(0);
    }

    /// Whether the helper's port has a connection: the local end of one to 127.0.0.1 port 8090.
    [[nodiscard]] static bool helperIsAsked() {
        return test::readFile(QStringLiteral("/proc/net/tcp")).contains(" 0100007F:1F9A 01 ");
    }

    [[nodiscard]] bool waitForTranscript(const QString& words) const {
        const QString line = QStringLiteral("trusted=true text='%1'\n").arg(words);
        return test::waitUntil([&] { return m_home.log().contains(line); }, 30s);
    }

    const QString m_english = QStringLiteral("english");
    const QString m_starter = QStringLiteral("starter");
    test::TempHome m_home;
    test::Nginx m_nginx;
    const test::ServedCatalogue m_catalogue{m_nginx};
    test::FakePlatform m_fakes;
    test::Seen m_seen;
    std::unique_ptr<AppDelegate> m_delegate;
};

TEST_F(ModelSwitch, bringsUpTheOtherModel) {
    provideEnglish();
    launch();
    m_delegate->models().setModel(m_english);
    EXPECT_FALSE(m_delegate->parakeet().ready());
    expectHelperWith(pathOfEnglish());
}

TEST_F(ModelSwitch, whileTheHelperIsWarmingLeavesOneHelperWithTheNewModel) {
    provideEnglish();
    m_delegate->applicationDidFinishLaunching();
    ASSERT_TRUE(test::waitUntil([] { return test::helperRuns(); }));
    signalHelper(SIGSTOP);
    ASSERT_FALSE(m_delegate->parakeet().ready());
    m_delegate->models().setModel(m_english);
    expectHelperWith(pathOfEnglish());
    EXPECT_EQ(std::count(m_seen.begin(), m_seen.end(), "ready"), 1);
}

TEST_F(ModelSwitch, beforeTheHelperIsThereLeavesOneHelperWithTheNewModel) {
    provideEnglish();
    m_delegate->applicationDidFinishLaunching();
    m_delegate->models().setModel(m_english);
    expectHelperWith(pathOfEnglish());
    EXPECT_EQ(std::count(m_seen.begin(), m_seen.end(), "ready"), 1);
}

TEST_F(ModelSwitch, twiceInARowLeavesOneHelperWithTheLastModel) {
    provideEnglish();
    launch();
    const QString before = modelsOfHelpers().value(0);
    m_delegate->models().setModel(m_english);
    m_delegate->models().setModel(m_starter);
    expectHelperWith(before);
    m_delegate->models().setModel(m_starter);
    m_delegate->models().setModel(m_english);
    expectHelperWith(pathOfEnglish());
}

TEST_F(ModelSwitch, whileADictationIsBeingTranscribedLosesNothing) {
    provideEnglish();
    launch();
    signalHelper(SIGSTOP);
    dictate("the weather is nice today");
    ASSERT_TRUE(test::waitUntil([] { return helperIsAsked(); }));
    m_delegate->models().setModel(m_english);
    // It does not answer any more, and is not waited for in vain.
    EXPECT_TRUE(waitForTranscript(QStringLiteral("the weather is nice today")))
        << m_home.log().toStdString();
    EXPECT_THAT(m_fakes.clipboard.texts, ElementsAre(QStringLiteral("the weather is nice today")));
    expectHelperWith(pathOfEnglish());
}

TEST_F(ModelSwitch, leavesTheHelperItsDictationWhereTheNextOneNeverComes) {
    test::writeFile(pathOfEnglish(), "no model");
    launch();
    const auto before = helpers();
    signalHelper(SIGSTOP);
    dictate("the weather is nice today");
    ASSERT_TRUE(test::waitUntil([] { return helperIsAsked(); }));
    m_delegate->models().setModel(m_english);
    test::turnEventLoopFor(2s);
    EXPECT_EQ(helpers(), before);
    signalHelper(SIGCONT);
    EXPECT_TRUE(waitForTranscript(QStringLiteral("the weather is nice today")))
        << m_home.log().toStdString();
    EXPECT_TRUE(test::waitUntil([&] { return helpers() != before; }));
    EXPECT_FALSE(m_delegate->parakeet().ready());
    EXPECT_EQ(m_seen.back(), "warming");
}

TEST_F(ModelSwitch, downloadsTheModelAndOnlyThenEndsTheHelper) {
    m_catalogue.serve(m_english, starterContent());
    launch();
    const auto before = helpers();
    bool isThen = false;
    m_delegate->models().setModel(m_english, [&] {
        isThen = true;
        EXPECT_FALSE(m_delegate->parakeet().ready());
    });
    EXPECT_EQ(helpers(), before);
    EXPECT_TRUE(m_delegate->parakeet().ready());
    ASSERT_TRUE(test::waitUntil([&] { return isThen; }));
    expectHelperWith(pathOfEnglish());
    EXPECT_EQ(test::readFile(pathOfEnglish()), starterContent());
}

TEST_F(ModelSwitch, leavesTheHelperAsItWasWhenTheDownloadFails) {
    launch();
    const auto before = helpers();
    bool isThen = false;
    m_delegate->models().setModel(m_english, [&] { isThen = true; });
    ASSERT_TRUE(test::waitUntil([&] { return isThen; }));
    test::turnEventLoopFor(300ms);
    EXPECT_EQ(helpers(), before);
    EXPECT_TRUE(m_delegate->parakeet().ready());
    EXPECT_EQ(m_seen.back(), "warming");
    dictate("the weather is nice today");
    EXPECT_TRUE(waitForTranscript(QStringLiteral("the weather is nice today")));
}

TEST_F(ModelSwitch, doesNotHappenOnAReset) {
    provideEnglish();
    test::writeFile(Config::url(), R"({"model":"english"})");
    m_delegate->cfg = Config::load();
    launch();
    const auto before = helpers();
    m_delegate->models().resetConfig();
    EXPECT_EQ(m_delegate->cfg.dictateChords, std::vector<std::int64_t>{12});
    test::turnEventLoopFor(300ms);
    EXPECT_EQ(helpers(), before);
    EXPECT_TRUE(m_delegate->parakeet().ready());
}

}  // namespace
}  // namespace sayloft
