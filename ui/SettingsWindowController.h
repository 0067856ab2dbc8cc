// SPDX-License-Identifier: MIT
#pragma once

#include "ui/SettingsDisplay.h"

#include <QObject>
#include <QPointer>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace sayloft {

class AppDelegate;
class SettingsForm;
class SettingsWindow;
class TimingRow;
struct Config;

/// The window with every preference: shows the configuration as it is, and writes every change back
/// at once. Does nothing once the controller of the program is gone. Main thread.
class SettingsWindowController : public QObject {
public:
    explicit SettingsWindowController(AppDelegate& app);
    ~SettingsWindowController() override;
    SettingsWindowController(const SettingsWindowController&) = delete;
    SettingsWindowController& operator=(const SettingsWindowController&) = delete;

    void show();

    /// Reads everything again. What the user is just typing stays.
    void refresh();

    [[nodiscard]] SettingsWindow& window() const { return *m_window; }

private:
    using Chords = std::vector<std::int64_t>;

    void windowDidBecomeKey();
    void connectPermissions();
    void connectHotkeys();
    void connectModels();
    void connectPreferences();
    void connectTimes();

    void openAcc();
    void openMic();
    void recordDictate();
    void recordEnter();
    void removeKey(Chords Config::*list, std::int64_t chord);
    void pickMic();
    void pickStyle();
    void toggleClipboard(bool isOn);
    void toggleBoost(bool isOn);
    void toggleSound(bool isOn);
    void toggleLogin(bool isOn);
    void openDictionary();
    void changeAnim();
    void editAnimValue(TimingRow& row);
    void controlTextDidEndEditing(TimingRow& row);
    void commitAnim();
    void useOrDownload(std::size_t index);
    void deleteModelRow(std::size_t index);
    void resetDefaults();

    QPointer<AppDelegate> app;
    SettingsForm* m_form;  ///< belongs to the window
    std::unique_ptr<SettingsWindow> m_window;
    SettingsDisplay m_display;
};

}  // namespace sayloft
