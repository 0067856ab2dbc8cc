// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

namespace sayloft {

class AppDelegate;

/// The window with every preference. Does nothing once the controller of the
/// program is gone. Main thread.
class SettingsWindowController : public QObject {
public:
    explicit SettingsWindowController(AppDelegate& app);

    void show();
    void refresh();

private:
    QPointer<AppDelegate> app;
};

}  // namespace sayloft
