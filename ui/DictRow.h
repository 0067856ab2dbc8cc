// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>

#include <functional>

class QLineEdit;
class QPushButton;

namespace sayloft {

struct DictTexts {
    QString heard;
    QString replacement;
};

/// One row of the dictionary window: the heard text, an arrow, the replacement and a button that
/// removes the row. Main thread.
class DictRow : public QWidget {
public:
    explicit DictRow(const DictTexts& texts);

    [[nodiscard]] DictTexts texts() const;
    void setTexts(const DictTexts& texts);

    /// Names the controls after the row's place, which begins at 1.
    void setPlace(int place);

    /// Puts its controls after `before` in the tab order; returns its last one.
    QWidget* followInTabOrder(QWidget* before);

    void focusHeard();

    /// From now on it reports nothing, whatever happens to its controls.
    void retire();

    std::function<void()> onCommit;
    std::function<void()> onRemove;

private:
    QLineEdit* m_heard;
    QLineEdit* m_replacement;
    QPushButton* m_remove;
};

}  // namespace sayloft
