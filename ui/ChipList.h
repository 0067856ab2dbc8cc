// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <cstddef>
#include <cstdint>
#include <vector>

class QPushButton;

namespace sayloft {

class FlowLayout;

/// The chords of one list as removable chips, and a button that adds one, in as many lines as they
/// need.
class ChipList : public QWidget {
    Q_OBJECT

public:
    /// What is going on in this list and in the other one.
    enum class Capture { none, here, elsewhere };

    /// `name` is what the list is called beside it.
    explicit ChipList(QString name);

    /// Chips that stay are the same buttons as before.
    void setChords(const std::vector<std::int64_t>& chords);
    void setCapture(Capture capture);

    [[nodiscard]] QPushButton* addButton() const { return m_add; }

Q_SIGNALS:
    void removeRequested(std::int64_t chord);

private:
    void provideChip(std::size_t index, std::int64_t chord);
    void insertChip(std::size_t index, std::int64_t chord);
    void removeChip(std::size_t index);
    void orderTabs();

    QString m_name;
    FlowLayout* m_flow;
    QPushButton* m_add;
    std::vector<std::int64_t> m_chords;
    std::vector<QPushButton*> m_chips;  ///< one for each chord, in the same order
};

}  // namespace sayloft
