// SPDX-License-Identifier: MIT
#include "platform/linux/SettingsPrograms.h"

#include <array>

namespace sayloft {
namespace {

struct SettingsProgram {
    const char* desktop;  ///< null for all of them
    PrivacyPane pane;
    const char* command;
};

// Plasma's had a number in its name until version 5.27.
constexpr std::array programs{
    SettingsProgram{"GNOME", PrivacyPane::microphone, "gnome-control-center sound"},
    SettingsProgram{"GNOME", PrivacyPane::accessibility, "gnome-control-center universal-access"},
    SettingsProgram{"KDE", PrivacyPane::microphone, "systemsettings kcm_pulseaudio"},
    SettingsProgram{"KDE", PrivacyPane::microphone, "systemsettings5 kcm_pulseaudio"},
    SettingsProgram{"KDE", PrivacyPane::accessibility, "systemsettings kcm_access"},
    SettingsProgram{"KDE", PrivacyPane::accessibility, "systemsettings5 kcm_access"},
    SettingsProgram{"XFCE", PrivacyPane::accessibility, "xfce4-accessibility-settings"},
    // Its fourth tab lists the microphones.
    SettingsProgram{nullptr, PrivacyPane::microphone, "pavucontrol --tab=4"}};

}  // namespace

std::vector<QStringList> settingsPrograms(PrivacyPane pane, const QString& desktops) {
    const QStringList running = desktops.split(QLatin1Char(':'));
    std::vector<QStringList> commands;
    for (const SettingsProgram& program : programs) {
        const bool fits = program.desktop == nullptr ||
                          running.contains(QLatin1String(program.desktop), Qt::CaseInsensitive);
        if (fits && program.pane == pane)
            commands.push_back(QString::fromLatin1(program.command).split(QLatin1Char(' ')));
    }
    return commands;
}

}  // namespace sayloft
