// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

namespace sayloft {

struct Notification {
    QString key;  ///< names it when it is withdrawn or replaced; never shown
    QString summary;
    QString body;                            ///< plain text
    QString actionLabel = {};                ///< what a click on it does, where there is
    std::function<void()> onActivated = {};  ///< something to do; on the main thread
};

/// Messages that the desktop shows to the user. Main thread; nothing here waits for the desktop,
/// and one that cannot show a message is no error.
class Notifier {
public:
    virtual ~Notifier() = default;

    /// In place of one with the same key. Where nothing can show it yet, it is shown as soon as
    /// something can, unless it has been withdrawn by then.
    virtual void show(Notification notification) = 0;

    /// Takes it off the screen, also where the user has not seen it yet.
    virtual void withdraw(const QString& key) = 0;
};

}  // namespace sayloft
