// SPDX-License-Identifier: MIT
#include "ui/ChipList.h"

#include "ui/FlowLayout.h"
#include "ui/GlyphText.h"
#include "ui/KeyNames.h"
#include "ui/RoomyButton.h"

#include <algorithm>
#include <utility>

namespace sayloft {
namespace {

constexpr int spacing = 8;

}  // namespace

ChipList::ChipList(QString name)
    : m_name(std::move(name)), m_flow(new FlowLayout(spacing)), m_add(new RoomyButton) {
    setLayout(m_flow);
    m_flow->insertWidget(0, m_add);
    setCapture(Capture::none);
}

void ChipList::setChords(const std::vector<std::int64_t>& chords) {
    if (chords == m_chords)
        return;
    for (std::size_t index = 0; index < chords.size(); ++index)
        provideChip(index, chords[index]);
    while (m_chords.size() > chords.size())
        removeChip(m_chords.size() - 1);
    orderTabs();
}

void ChipList::setCapture(Capture capture) {
    const bool isHere = capture == Capture::here;
    m_add->setText(isHere ? QStringLiteral("Press a combo…")
                          : displayable(QStringLiteral("＋ Add combo"),
                                        QStringLiteral("+ Add combo"), m_add->font()));
    m_add->setAccessibleName(
        (isHere ? QStringLiteral("Press a combo for ") : QStringLiteral("Add combo to ")) + m_name);
    const bool isElsewhere = capture == Capture::elsewhere;
    m_add->setEnabled(!isElsewhere);
    const QString reason =
        QStringLiteral("The other list is recording: press and release its combo first");
    m_add->setToolTip(isElsewhere ? reason : QString());
    m_add->setAccessibleDescription(
        isElsewhere ? reason
                    : QStringLiteral("Records the modifier keys that you press and release next"));
}

void ChipList::provideChip(std::size_t index, std::int64_t chord) {
    const auto from = m_chords.begin() + static_cast<std::ptrdiff_t>(index);
    const bool comesLater = std::find(from, m_chords.end(), chord) != m_chords.end();
    if (!comesLater)
        return insertChip(index, chord);
    while (m_chords[index] != chord)
        removeChip(index);
}

void ChipList::insertChip(std::size_t index, std::int64_t chord) {
    const QString keys = keyNames(Mods(chord));
    auto* chip = new RoomyButton(displayable(Mods(chord).name(), keys, font()) +
                                 displayable(QStringLiteral("  ✕"), QStringLiteral("  ×"), font()));
    chip->setToolTip(keys + QStringLiteral(" – click to remove"));
    chip->setAccessibleName(QStringLiteral("Remove ") + keys + QStringLiteral(" from ") + m_name);
    chip->setAccessibleDescription(QStringLiteral("Holding these keys starts a dictation"));
    connect(chip, &QPushButton::clicked, this, [this, chord] { Q_EMIT removeRequested(chord); });
    const auto offset = static_cast<std::ptrdiff_t>(index);
    m_chords.insert(m_chords.begin() + offset, chord);
    m_chips.insert(m_chips.begin() + offset, chip);
    m_flow->insertWidget(static_cast<int>(index), chip);
    chip->show();
}

// The chip may be the one whose click is being handled, so it lives until that is over.
void ChipList::removeChip(std::size_t index) {
    const auto offset = static_cast<std::ptrdiff_t>(index);
    QPushButton* const chip = m_chips[index];
    m_chords.erase(m_chords.begin() + offset);
    m_chips.erase(m_chips.begin() + offset);
    if (chip->hasFocus())
        (index < m_chips.size() ? m_chips[index] : m_add)->setFocus();
    m_flow->removeWidget(chip);
    chip->hide();
    chip->deleteLater();
}

// The chips come between whatever is before the button and the button.
void ChipList::orderTabs() {
    QWidget* previous = m_add;
    for (QPushButton* const chip : m_chips) {
        setTabOrder(previous, chip);
        previous = chip;
    }
    if (previous != m_add)
        setTabOrder(previous, m_add);
}

}  // namespace sayloft
