// SPDX-License-Identifier: MIT
#include "ui/OnboardWindowController.h"

#include "app/AppDelegate.h"

namespace sayloft {

OnboardWindowController::OnboardWindowController(AppDelegate& theApp) : app(&theApp) {
    refresh();
}

void OnboardWindowController::show() {}

void OnboardWindowController::refresh() {}

}  // namespace sayloft
