// SPDX-License-Identifier: MIT
#include "platform/linux/SettingsPrograms.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace sayloft {
namespace {

using testing::ElementsAreArray;

struct Row {
    const char* name;
    PrivacyPane pane;
    const char* desktops;
    std::vector<std::string> commands;
};

class SettingsProgramsOf : public testing::TestWithParam<Row> {};

constexpr auto accessibility = PrivacyPane::accessibility;
constexpr auto microphone = PrivacyPane::microphone;
const std::string mixer = "pavucontrol --tab=4";

INSTANTIATE_TEST_SUITE_P(
    Desktop, SettingsProgramsOf,
    testing::Values(
        Row{"gnomeMicrophone", microphone, "GNOME", {"gnome-control-center sound", mixer}},
        Row{"gnomeKeys", accessibility, "GNOME", {"gnome-control-center universal-access"}},
        Row{"gnomeOfUbuntu",
            accessibility,
            "ubuntu:GNOME",
            {"gnome-control-center universal-access"}},
        Row{"kdeMicrophone",
            microphone,
            "KDE",
            {"systemsettings kcm_pulseaudio", "systemsettings5 kcm_pulseaudio", mixer}},
        Row{"kdeKeys",
            accessibility,
            "KDE",
            {"systemsettings kcm_access", "systemsettings5 kcm_access"}},
        Row{"xfceMicrophone", microphone, "XFCE", {mixer}},
        Row{"xfceKeys", accessibility, "XFCE", {"xfce4-accessibility-settings"}},
        Row{"inOtherLetters", accessibility, "xfce", {"xfce4-accessibility-settings"}},
        Row{"unknownMicrophone", microphone, "i3", {mixer}},
        Row{"unknownKeys", accessibility, "i3", {}}, Row{"noneMicrophone", microphone, "", {mixer}},
        Row{"noneKeys", accessibility, "", {}}),
    [](const auto& row) { return row.param.name; });

TEST_P(SettingsProgramsOf, areThoseOfTheRunningDesktopAndTheMixer) {
    std::vector<std::string> commands;
    for (const QStringList& command :
         settingsPrograms(GetParam().pane, QString::fromLatin1(GetParam().desktops)))
        commands.push_back(command.join(QLatin1Char(' ')).toStdString());
    EXPECT_THAT(commands, ElementsAreArray(GetParam().commands));
}

}  // namespace
}  // namespace sayloft
