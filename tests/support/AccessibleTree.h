// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/AccessibilityBus.h"
#include "tests/support/AccessibleObject.h"

#include <QString>

#include <optional>
#include <vector>

namespace sayloft::test {

/// The windows and controls of the programs on an accessibility bus. Only what shows is found.
/// Functions that wait throw std::runtime_error when that takes too long.
class AccessibleTree {
public:
    /// What a user calls a control: its name, and its label where the name is what it shows.
    [[nodiscard]] static QString titleOf(const AccessibleObject& control);

    explicit AccessibleTree(const AccessibilityBus& bus);

    /// Of several with one title the one that has the keyboard.
    [[nodiscard]] std::optional<AccessibleObject> findWindow(const QString& title) const;
    /// Waits until the window shows and has the keyboard.
    [[nodiscard]] AccessibleObject window(const QString& title) const;
    /// Waits until the window is gone.
    void waitUntilGone(const QString& windowTitle) const;

    [[nodiscard]] std::optional<AccessibleObject> findControl(const QString& windowTitle,
                                                              const QString& title) const;
    /// Waits until the window has it.
    [[nodiscard]] AccessibleObject control(const QString& windowTitle, const QString& title) const;

    /// Does with a button or a check box what assistive technology does.
    void press(const QString& windowTitle, const QString& title) const;

    /// What a label says, which is found by what it is about; empty when there is none.
    [[nodiscard]] QString textAbout(const QString& windowTitle, const QString& description) const;
    /// Waits until the label says that.
    [[nodiscard]] bool says(const QString& windowTitle, const QString& description,
                            const QString& text) const;

    /// What can get the keyboard, in the order of the tree.
    [[nodiscard]] std::vector<AccessibleObject> controls(const QString& windowTitle) const;

private:
    AccessibleObject m_programs;
};

}  // namespace sayloft::test
