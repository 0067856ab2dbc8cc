// SPDX-License-Identifier: MIT
#pragma once

#include "app/ModelActions.h"
#include "audio/Recorder.h"
#include "models/Downloader.h"
#include "models/Paths.h"
#include "storage/Config.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/FakeUserInterface.h"
#include "tests/support/Nginx.h"
#include "tests/support/ServedCatalogue.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

namespace sayloft::test {

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

    Seen seen;
    bool hasInterface = true;

private:
    FakeStatusItem m_item{seen};
    FakeOverlay m_overlay{seen};
    FakeWindows m_windows{seen};
};

/// The actions with a real downloader and models that nginx serves.
class ModelActionsFixture : public testing::Test {
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
        return waitUntil([this] { return !m_done.empty(); });
    }

    [[nodiscard]] static QString pathOf(const QString& key) {
        return DOWNLOAD_MODELS_DIR + QLatin1Char('/') + modelInfo(key).file;
    }

    static void provideModel(const QString& key) { writeFile(pathOf(key), "model"); }

    static void settle() { turnEventLoopFor(std::chrono::milliseconds(5)); }

    [[nodiscard]] long count(const char* word) const {
        return std::count(m_host.seen.begin(), m_host.seen.end(), word);
    }

    const QString m_english = QStringLiteral("english");
    TempHome m_home;
    Nginx m_nginx{"location = /slow { limit_rate 10k; }"};
    const ServedCatalogue m_catalogue{m_nginx};
    FakePlatform m_fakes;
    Platform m_platform = m_fakes.platform();
    Config m_cfg;
    Recorder m_recorder{m_fakes.audio};
    Downloader m_downloader;
    FakeModelHost m_host;
    ModelActions m_models{{.cfg = m_cfg, .downloader = m_downloader, .recorder = m_recorder},
                          m_host};
    std::vector<bool> m_done;
};

}  // namespace sayloft::test
