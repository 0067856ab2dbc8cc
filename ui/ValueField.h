// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

namespace sayloft {

/// A small field for a number. What is being typed stays until it is entered, whatever else changes
/// in the meantime; a field that was only visited changes nothing.
class ValueField : public QLineEdit {
    Q_OBJECT

public:
    ValueField();

    /// Shows a new text unless the user is typing another one.
    void showText(const QString& text);

    /// What is in the field is what it shows; nobody is typing.
    void settle();

    /// What has been typed counts, as if the field had been left.
    void endEditing();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// Return was pressed.
    void entered();
    /// The field was left with another text in it.
    void editingEnded();

private:
    /// Whether there is something that was not shown. What assistive technology writes does not
    /// count as modified.
    [[nodiscard]] bool isEdited() const { return isModified() || text() != m_shown; }

    QString m_shown;
};

}  // namespace sayloft
