// SPDX-License-Identifier: MIT
#include "ui/AppWindows.h"

#include "ui/DictWindowController.h"
#include "ui/OnboardWindowController.h"
#include "ui/SettingsWindowController.h"

namespace sayloft {

AppWindows::AppWindows(AppDelegate& app) : m_app(app) {}

AppWindows::~AppWindows() = default;

void AppWindows::openOnboarding() {
    if (!onboardWC)
        onboardWC = std::make_unique<OnboardWindowController>(m_app);
    onboardWC->show();
}

void AppWindows::openSettings() {
    if (!settingsWC)
        settingsWC = std::make_unique<SettingsWindowController>(m_app);
    settingsWC->refresh();
    settingsWC->show();
}

void AppWindows::openDict() {
    if (!dictWC)
        dictWC = std::make_unique<DictWindowController>(m_app);
    dictWC->refresh();
    dictWC->show();
}

void AppWindows::refreshSettings() {
    if (settingsWC)
        settingsWC->refresh();
}

void AppWindows::refreshOnboarding() {
    if (onboardWC)
        onboardWC->refresh();
}

}  // namespace sayloft
