// SPDX-License-Identifier: MIT
#include "ui/DictRow.h"

#include "ui/GlyphText.h"
#include "ui/TextLabel.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

#include <limits>

namespace sayloft {
namespace {

class Field : public QLineEdit {
public:
    explicit Field(const QString& placeholder) {
        // A text of the configuration is never cut by being shown.
        setMaxLength(std::numeric_limits<int>::max());
        setPlaceholderText(placeholder);
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        followTextColour();
    }

    [[nodiscard]] QSize sizeHint() const override {
        return {widthForFont(150), QLineEdit::sizeHint().height()};
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void changeEvent(QEvent* event) override {
        QLineEdit::changeEvent(event);
        if (event->type() == QEvent::PaletteChange)
            followTextColour();
    }

private:
    // WORKAROUND: the dark colours that Qt 6.4 reads of KDE leave this one black.
    void followTextColour() {
        QColor colour = palette().color(QPalette::Text);
        colour.setAlpha(128);
        if (palette().color(QPalette::PlaceholderText) == colour)
            return;
        QPalette own;
        own.setColor(QPalette::PlaceholderText, colour);
        setPalette(own);
    }
};

/// A button for one sign, which styles would make as wide as for a word.
class SignButton : public QPushButton {
public:
    using QPushButton::QPushButton;

    [[nodiscard]] QSize sizeHint() const override {
        const int height = QPushButton::sizeHint().height();
        return {height + 8, height};
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
};

}  // namespace

DictRow::DictRow(const DictTexts& texts)
    : m_heard(new Field(QStringLiteral("heard"))),
      m_replacement(new Field(QStringLiteral("replace with"))),
      m_remove(new SignButton(displayable(QStringLiteral("✕"), QStringLiteral("×")))) {
    setTexts(texts);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(8);
    layout->addWidget(m_heard);
    layout->addWidget(new TextLabel(displayable(QStringLiteral("→"), QStringLiteral("->")),
                                    {.look = {.role = TextRole::secondary}}));
    layout->addWidget(m_replacement);
    layout->addWidget(m_remove);
    m_remove->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_heard->setAccessibleDescription(QStringLiteral("Text as it is recognised"));
    m_replacement->setAccessibleDescription(
        QStringLiteral("Text to write instead; nothing removes what was heard"));
    m_remove->setAccessibleDescription(QStringLiteral("Removes this row from the dictionary"));
    m_remove->setToolTip(QStringLiteral("Remove"));

    const auto commit = [this] {
        if (onCommit)
            onCommit();
    };
    connect(m_heard, &QLineEdit::editingFinished, this, commit);
    connect(m_replacement, &QLineEdit::editingFinished, this, commit);
    connect(m_remove, &QPushButton::clicked, this, [this] {
        // A copy: it retires this row.
        if (const auto remove = onRemove)
            remove();
    });
}

DictTexts DictRow::texts() const {
    return {.heard = m_heard->text(), .replacement = m_replacement->text()};
}

void DictRow::setTexts(const DictTexts& texts) {
    m_heard->setText(texts.heard);
    m_heard->setCursorPosition(0);
    m_replacement->setText(texts.replacement);
    m_replacement->setCursorPosition(0);
}

void DictRow::setPlace(int place) {
    m_heard->setAccessibleName(QStringLiteral("Heard %1").arg(place));
    m_replacement->setAccessibleName(QStringLiteral("Replace with %1").arg(place));
    m_remove->setAccessibleName(QStringLiteral("Remove %1").arg(place));
}

QWidget* DictRow::followInTabOrder(QWidget* before) {
    setTabOrder(before, m_heard);
    setTabOrder(m_heard, m_replacement);
    setTabOrder(m_replacement, m_remove);
    return m_remove;
}

void DictRow::focusHeard() {
    m_heard->setFocus(Qt::OtherFocusReason);
}

void DictRow::retire() {
    onCommit = nullptr;
    onRemove = nullptr;
}

}  // namespace sayloft
