// SPDX-License-Identifier: MIT
#pragma once

namespace sayloft {

/// What the program's icon shows.
enum class IconState { warming, ready, recording, processing, error };

/// The program's item in the menu bar or tray. Main thread.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    virtual void setState(IconState state) = 0;

    /// Builds the whole menu anew from the configuration and the history.
    virtual void buildMenu() = 0;
};

}  // namespace sayloft
