// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppDelegate.h"
#include "models/ModelCatalogue.h"
#include "models/Paths.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"
#include "ui/AppWindows.h"
#include "ui/OnboardWindowController.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>

namespace sayloft::test {

/// The window of the program's first run, on fake services. Nothing is missing unless the test
/// takes it away.
class OnboardFixture : public testing::Test {
protected:
    static void provideModel(const QString& key = QStringLiteral("multilingual")) {
        writeFile(DOWNLOAD_MODELS_DIR + QLatin1Char('/') + modelInfo(key).file, "model");
    }

    void open() {
        delegate->windows->openOnboarding();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    }

    [[nodiscard]] OnboardWindowController& controller() const { return *appWindows->onboardWC; }
    [[nodiscard]] QWidget& window() const { return controller().window(); }

    [[nodiscard]] QPushButton* button(const char* name) const {
        for (QPushButton* each : window().findChildren<QPushButton*>()) {
            if (each->accessibleName() == QString::fromUtf8(name))
                return each;
        }
        throw std::runtime_error(name);
    }
    [[nodiscard]] QPushButton* mic() const { return button("Grant microphone"); }
    [[nodiscard]] QPushButton* acc() const { return button("Grant accessibility"); }
    [[nodiscard]] QPushButton* model() const { return button("Download model"); }
    [[nodiscard]] QPushButton* starter() const { return button("Use Starter"); }
    [[nodiscard]] QPushButton* hotkeys() const { return button("Customize hotkeys…"); }
    [[nodiscard]] QPushButton* done() const { return button("Done"); }

    /// The label with the state of a step.
    [[nodiscard]] QLabel* label(const char* description) const {
        for (QLabel* each : window().findChildren<QLabel*>()) {
            if (each->accessibleDescription() == QString::fromUtf8(description))
                return each;
        }
        throw std::runtime_error(description);
    }
    [[nodiscard]] QString micStatus() const { return label("State of the microphone")->text(); }
    [[nodiscard]] QString accStatus() const {
        return label("State of the keyboard's reach")->text();
    }
    [[nodiscard]] QString modelStatus() const { return label("State of the speech model")->text(); }

    static void click(QPushButton* button) { QTest::mouseClick(button, Qt::LeftButton); }

    const QString ready = QStringLiteral("✓ Ready");
    const QString notYet = QStringLiteral("✕ Not yet");
    TempHome home;
    FakePlatform fakes;
    AppWindows* appWindows = nullptr;
    std::unique_ptr<AppDelegate> delegate = makeDelegate();

private:
    [[nodiscard]] std::unique_ptr<AppDelegate> makeDelegate() {
        auto made = std::make_unique<AppDelegate>(fakes.platform());
        auto windows = std::make_unique<AppWindows>(*made);
        appWindows = windows.get();
        made->windows = std::move(windows);
        return made;
    }
};

}  // namespace sayloft::test
