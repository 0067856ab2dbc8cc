// SPDX-License-Identifier: MIT
#include "app/StatusMenu.h"

#include "app/MenuImage.h"
#include "app/TextFigures.h"
#include "platform/Mods.h"
#include "storage/Config.h"
#include "storage/History.h"

#include <QStringList>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <utility>

namespace sayloft {
namespace {

constexpr std::size_t historyLines = 12;
constexpr int historyTitleCharacters = 44;

TrayTint tint(IconState state) {
    switch (state) {
        case IconState::warming:
            return TrayTint::dimmed;
        case IconState::processing:
            return TrayTint::accent;
        case IconState::error:
            return TrayTint::warning;
        case IconState::ready:
        case IconState::recording:
            break;
    }
    return TrayTint::none;
}

QString inWords(IconState state) {
    switch (state) {
        case IconState::warming:
            return QStringLiteral("Sayloft: one moment…");
        case IconState::ready:
            return QStringLiteral("Sayloft: ready");
        case IconState::recording:
            return QStringLiteral("Sayloft: listening");
        case IconState::processing:
            return QStringLiteral("Sayloft: transcribing");
        case IconState::error:
            return QStringLiteral("Sayloft: that did not work");
    }
    return {};
}

/// Where the first `count` characters end, as users perceive them; −1 when there are no more.
qsizetype endOfCharacters(const QString& text, int count) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    for (int i = 0; i < count && end != -1; ++i)
        end = finder.toNextBoundary();
    return end == text.size() ? -1 : end;
}

}  // namespace

StatusMenu::StatusMenu(TrayItem& tray, const Config& cfg, const History& history,
                       StatusMenuActions actions)
    : m_tray(tray),
      m_cfg(cfg),
      m_history(history),
      m_actions(std::move(actions)),
      m_menuIcon(menuImage(QStringLiteral("MenuIcon"), true)),
      m_menuIconActive(menuImage(QStringLiteral("MenuIconActive"), false)) {}

void StatusMenu::setState(IconState state) {
    m_state = state;
    m_tray.setLook(look());
}

void StatusMenu::setReason(const QString& reason) {
    m_reason = reason;
    m_tray.setLook(look());
}

TrayLook StatusMenu::look() const {
    const TrayImage symbol{
        .name = QStringLiteral("mic"), .picture = {}, .size = {}, .isTemplate = true};
    const TrayImage normal = m_menuIcon.value_or(symbol);
    return {.image = m_state == IconState::recording ? m_menuIconActive.value_or(normal) : normal,
            .tint = tint(m_state),
            .title = inWords(m_state),
            .reason = m_reason};
}

void StatusMenu::buildMenu() {
    m_tray.setMenu({
        {.title = QStringLiteral("Sayloft 1.0 · Parakeet v3")},
        MenuItem::separator(),
        {.title = QStringLiteral("Dictate:  ") + chordList(m_cfg.dictateChords)},
        {.title = QStringLiteral("Dictate + Enter:  ") + chordList(m_cfg.dictateEnterChords)},
        MenuItem::separator(),
        {.title = QStringLiteral("History"), .submenu = historyMenu()},
        MenuItem::separator(),
        {.title = QStringLiteral("Settings…"),
         .keyEquivalent = Qt::CTRL | Qt::Key_Comma,
         .action = m_actions.openSettings},
        {.title = QStringLiteral("Check for Updates…"), .action = m_actions.checkForUpdates},
        MenuItem::separator(),
        {.title = QStringLiteral("Quit"),
         .keyEquivalent = Qt::CTRL | Qt::Key_Q,
         .action = m_actions.quit},
    });
}

Menu StatusMenu::historyMenu() const {
    const std::vector<QString>& entries = m_history.items();
    if (entries.empty())
        return {{.title = QStringLiteral("(empty)")}};
    Menu menu;
    const std::size_t count = std::min(entries.size(), historyLines);
    for (std::size_t i = 0; i < count; ++i)
        menu.push_back({.title = historyTitle(entries[i]), .action = [this, entry = entries[i]] {
                            m_actions.copyHistoryItem(entry);
                        }});
    menu.push_back(MenuItem::separator());
    menu.push_back({.title = QStringLiteral("Clear History"), .action = m_actions.clearHistory});
    return menu;
}

QString chordList(const std::vector<std::int64_t>& chords) {
    QStringList names;
    for (const std::int64_t chord : chords)
        names.append(Mods(chord).name());
    return names.isEmpty() ? QStringLiteral("—") : names.join(QStringLiteral(", "));
}

QString historyTitle(const QString& transcript) {
    QString title = transcript;
    title.replace(QLatin1Char('\n'), QLatin1Char(' '));
    const qsizetype end = endOfCharacters(title, historyTitleCharacters);
    if (end != -1)
        title = title.left(end) + QStringLiteral("…");
    // Only now: a space is one character with an accent that follows it, a line break is not, and
    // these are not to move the place of the cut.
    std::replace_if(title.begin(), title.end(), isLineBreak, QLatin1Char(' '));
    return title;
}

}  // namespace sayloft
