// SPDX-License-Identifier: MIT
// Models are downloaded from both windows that can do it, at the catalogue's addresses.
#include "tests/outside/WindowDesk.h"
#include "tests/support/ModelHost.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

#include <gmock/gmock.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using State = AccessibleObject::State;

/// Of a download that takes some seconds, which begins with a fifth of the file.
constexpr const char* limits = "limit_rate 400k; limit_rate_after 400k;";
constexpr int size = 2'000'000;

class Downloads : public testing::Test {
protected:
    explicit Downloads(const char* model)
        : m_key(QString::fromLatin1(model)), m_host(m_key, QByteArray(size, 'm'), limits) {
        m_desk.connectTo(m_host);
    }

    [[nodiscard]] bool hasEnded(const char* result) {
        return m_desk.sayloft().waitForLog(QStringLiteral("model download ") + m_key +
                                           QStringLiteral(": ") + QString::fromLatin1(result));
    }

    /// What the window says of the progress, until it says nothing more.
    [[nodiscard]] static std::vector<int> percentages(const std::function<QString()>& says) {
        std::vector<int> seen;
        EXPECT_TRUE(waitUntil(
            [&] {
                const QString percent = says();
                if (percent.isEmpty())
                    return !seen.empty();
                const int now = percent.chopped(1).toInt();
                if (seen.empty() || seen.back() != now)
                    seen.push_back(now);
                return false;
            },
            30s));
        return seen;
    }

    /// More than its beginning and its end was to be seen, and it never went back.
    static void expectProgress(const std::vector<int>& seen) {
        EXPECT_GT(seen.size(), 5U) << testing::PrintToString(seen);
        EXPECT_THAT(seen, testing::Each(testing::AllOf(testing::Ge(0), testing::Le(100))));
        EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end())) << testing::PrintToString(seen);
    }

    void expectModelOnDisk(const QString& file) {
        EXPECT_TRUE(hasEnded("ok")) << m_desk.sayloft().log().toStdString();
        EXPECT_EQ(readFile(m_desk.home() + QStringLiteral("/.sayloft/models/") + file),
                  m_host.content());
        EXPECT_TRUE(m_desk.isSaved("model", m_key.toStdString()));
    }

    const QString m_key;
    WindowDesk m_desk;
    const ModelHost m_host;
};

class SettingsDownloads : public Downloads {
protected:
    SettingsDownloads() : Downloads("english") {
        m_desk.startSayloft();
        m_desk.openSettings();
    }

    [[nodiscard]] std::vector<int> percentagesOfTheRow() const {
        return percentages([this] {
            return m_desk.windows().textAbout(window, QStringLiteral("Download of ") + label);
        });
    }

    void expectActive() {
        EXPECT_TRUE(m_desk.windows().says(window, label, QStringLiteral("Active")));
        expectModelOnDisk(QStringLiteral("parakeet-tdt-0.6b-v2-f16.gguf"));
    }

    const QString window = WindowDesk::settings;
    const QString label = QStringLiteral("English only (v2) — best for English");
    const QString download = QStringLiteral("Download ") + label;
};

TEST_F(SettingsDownloads, showTheirProgressAndThatTheModelIsActiveByAssistiveTechnology) {
    m_host.offer();
    m_desk.press(window, download);
    expectProgress(percentagesOfTheRow());
    expectActive();
}

TEST_F(SettingsDownloads, beginWithAClick) {
    m_host.offer();
    m_desk.click(window, download);
    expectProgress(percentagesOfTheRow());
    expectActive();
}

TEST_F(SettingsDownloads, canBeTriedAgainWhenTheyHaveFailed) {
    m_desk.press(window, download);
    ASSERT_TRUE(hasEnded("FAILED"));
    m_host.offer();
    m_desk.click(window, QStringLiteral("Use Starter — English, offline, lower accuracy"));
    m_desk.click(window, download);
    expectActive();
}

class OnboardingDownloads : public Downloads {
protected:
    OnboardingDownloads() : Downloads("multilingual") {
        m_desk.startSayloft({});
        // The one that it begins with.
        EXPECT_TRUE(hasEnded("FAILED"));
        EXPECT_TRUE(waitUntil([this] { return button().is(State::sensitive); }));
        m_host.offer();
    }

    [[nodiscard]] AccessibleObject button() const { return m_desk.control(window, download); }

    void expectModel() {
        const QString prefix = QStringLiteral("Downloading… ");
        expectProgress(percentages([&] {
            const QString says = m_desk.windows().textAbout(window, about);
            return says.startsWith(prefix) ? says.mid(prefix.size()) : QString();
        }));
        EXPECT_TRUE(m_desk.windows().says(window, about, QStringLiteral("✓ Ready")));
        EXPECT_FALSE(button().is(State::sensitive));
        expectModelOnDisk(QStringLiteral("parakeet-tdt-0.6b-v3-f16.gguf"));
    }

    const QString window = WindowDesk::onboarding;
    const QString download = QStringLiteral("Download model");
    const QString about = QStringLiteral("State of the speech model");
};

TEST_F(OnboardingDownloads, showTheirProgressAndThatTheModelIsReadyByAssistiveTechnology) {
    m_desk.press(window, download);
    expectModel();
}

TEST_F(OnboardingDownloads, beginWithAClick) {
    m_desk.click(window, download);
    expectModel();
}

}  // namespace
}  // namespace sayloft::test
