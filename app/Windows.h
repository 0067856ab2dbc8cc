// SPDX-License-Identifier: MIT
#pragma once

namespace sayloft {

/// The windows, as far as the rest of the program opens or updates them. Main thread.
class Windows {
public:
    virtual ~Windows() = default;

    virtual void openOnboarding() = 0;
    virtual void openSettings() = 0;
    virtual void openDict() = 0;

    /// Shows changed settings where the settings window exists.
    virtual void refreshSettings() = 0;

    /// Shows which models are there, and how far a download is, where the onboarding window exists.
    virtual void refreshOnboarding() = 0;
};

}  // namespace sayloft
