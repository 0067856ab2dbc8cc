// SPDX-License-Identifier: MIT
#pragma once

namespace sayloft {

class AppDelegate;
class SettingsForm;

/// Brings the controls of the settings form in line with the program. Only what differs is touched,
/// since this comes many times a second while a model is downloaded. Main thread.
class SettingsDisplay {
public:
    /// The form outlives it.
    explicit SettingsDisplay(SettingsForm& form) : m_form(form) {}

    /// Shows defaults when there is no controller any more.
    void refresh(AppDelegate* app);

    /// Shows the milliseconds that the sliders stand for.
    void updateAnimLabels();

private:
    void showHotkeys(AppDelegate* app);
    void showStyle(AppDelegate* app);
    void showPreferences(AppDelegate* app);
    void showPermissions(AppDelegate* app);
    void showModels(AppDelegate* app);
    void showMicrophones(AppDelegate* app);

    SettingsForm& m_form;
};

}  // namespace sayloft
