// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

namespace sayloft {

class AppDelegate;

/// The window of a first run: what dictation needs, and what of it is there. Does nothing once the
/// controller of the program is gone. Main thread.
class OnboardWindowController : public QObject {
public:
    explicit OnboardWindowController(AppDelegate& app);

    void show();
    void refresh();

private:
    QPointer<AppDelegate> app;
};

}  // namespace sayloft
