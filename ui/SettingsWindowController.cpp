// SPDX-License-Identifier: MIT
#include "ui/SettingsWindowController.h"

#include "app/AppDelegate.h"

namespace sayloft {

SettingsWindowController::SettingsWindowController(AppDelegate& theApp) : app(&theApp) {
    refresh();
}

void SettingsWindowController::show() {}

void SettingsWindowController::refresh() {}

}  // namespace sayloft
