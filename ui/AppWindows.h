// SPDX-License-Identifier: MIT
#pragma once

#include "app/Windows.h"

#include <memory>

namespace sayloft {

class AppDelegate;
class DictWindowController;
class OnboardWindowController;
class SettingsWindowController;

/// The three windows, each made when it is first opened and kept from then on. Main thread.
class AppWindows : public Windows {
public:
    explicit AppWindows(AppDelegate& app);
    ~AppWindows() override;
    AppWindows(const AppWindows&) = delete;
    AppWindows& operator=(const AppWindows&) = delete;

    void openOnboarding() override;
    void openSettings() override;
    void openDict() override;
    void refreshSettings() override;
    void refreshOnboarding() override;

    std::unique_ptr<SettingsWindowController> settingsWC;
    std::unique_ptr<DictWindowController> dictWC;
    std::unique_ptr<OnboardWindowController> onboardWC;

private:
    AppDelegate& m_app;
};

}  // namespace sayloft
