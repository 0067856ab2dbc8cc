// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

namespace sayloft {

class AppDelegate;

/// The window in which the replacement dictionary is edited. Does nothing once the controller of
/// the program is gone. Main thread.
class DictWindowController : public QObject {
public:
    explicit DictWindowController(AppDelegate& app);

    void show();
    void refresh();

private:
    QPointer<AppDelegate> app;
};

}  // namespace sayloft
