// SPDX-License-Identifier: MIT
#pragma once

#include "app/StatusItem.h"
#include "platform/Menu.h"
#include "platform/TrayItem.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace sayloft {

struct Config;
class History;

/// What the lines of the menu do.
struct StatusMenuActions {
    std::function<void(const QString& transcript)> copyHistoryItem;
    std::function<void()> clearHistory;
    std::function<void()> openSettings;
    std::function<void()> checkForUpdates;
    std::function<void()> quit;
};

/// The tray item: its icon tells the dictation state, its menu shows the chords and the recent
/// transcripts. Main thread; what is referred to outlives it.
class StatusMenu : public StatusItem {
public:
    StatusMenu(TrayItem& tray, const Config& cfg, const History& history,
               StatusMenuActions actions);

    void setState(IconState state) override;
    void setReason(const QString& reason) override;
    void buildMenu() override;

private:
    [[nodiscard]] TrayLook look() const;
    [[nodiscard]] Menu historyMenu() const;

    TrayItem& m_tray;
    const Config& m_cfg;
    const History& m_history;
    const StatusMenuActions m_actions;
    const std::optional<TrayImage> m_menuIcon;
    const std::optional<TrayImage> m_menuIconActive;
    IconState m_state = IconState::warming;
    QString m_reason;
};

/// The names of the chords in their order, "—" when there is none.
[[nodiscard]] QString chordList(const std::vector<std::int64_t>& chords);

/// A transcript on one line of at most 44 characters, as users perceive them, and an ellipsis.
[[nodiscard]] QString historyTitle(const QString& transcript);

}  // namespace sayloft
