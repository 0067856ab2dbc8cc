// SPDX-License-Identifier: MIT
#pragma once

#include <QKeySequence>
#include <QString>

#include <functional>
#include <vector>

namespace sayloft {

/// One line of a menu: an entry, an entry with a submenu or a separator.
struct MenuItem {
    QString title;
    QKeySequence keyEquivalent = {};
    /// Called on the main thread when the line is chosen. Without one the line only informs and is
    /// shown disabled.
    std::function<void()> action = {};
    std::vector<MenuItem> submenu = {};
    bool isSeparator = false;

    [[nodiscard]] bool isEnabled() const { return action || !submenu.empty(); }
    [[nodiscard]] static MenuItem separator() { return {.title = {}, .isSeparator = true}; }
};

using Menu = std::vector<MenuItem>;

}  // namespace sayloft
