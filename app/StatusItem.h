// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sayloft {

/// What the program's icon shows.
enum class IconState { warming, ready, recording, processing, error };

/// The program's item in the menu bar or tray. Main thread.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    virtual void setState(IconState state) = 0;

    /// Why the state is what it is, in a few words; empty when there is nothing to say.
    virtual void setReason(const QString& reason) = 0;

    /// Builds the whole menu anew from the configuration and the history.
    virtual void buildMenu() = 0;
};

}  // namespace sayloft
