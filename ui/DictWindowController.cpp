// SPDX-License-Identifier: MIT
#include "ui/DictWindowController.h"

#include "app/AppDelegate.h"

namespace sayloft {

DictWindowController::DictWindowController(AppDelegate& theApp) : app(&theApp) {
    refresh();
}

void DictWindowController::show() {}

void DictWindowController::refresh() {}

}  // namespace sayloft
