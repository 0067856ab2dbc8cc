// SPDX-License-Identifier: MIT
#pragma once

#include "updates/UpdateCheck.h"
#include "updates/UpdateSource.h"
#include "updates/UpdateWindow.h"

#include <memory>

namespace sayloft {

/// Looks for newer versions when the user asks for it and shows what it found. It never installs
/// anything. Main thread.
class Updater {
public:
    explicit Updater(UpdateSource source);

    /// Shows the window, in front of all others. While a look is under way there is no second one.
    void checkForUpdates();

    [[nodiscard]] const UpdateWindow& window() const { return m_window; }

private:
    void show();

    const UpdateSource m_source;
    UpdateWindow m_window;
    std::unique_ptr<UpdateCheck> m_check;
};

}  // namespace sayloft
