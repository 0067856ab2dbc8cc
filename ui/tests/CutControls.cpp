// SPDX-License-Identifier: MIT
#include "ui/tests/CutControls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>

#include <algorithm>

namespace sayloft::test {
namespace {

/// A text, and the size of its place.
struct Place {
    QString text;
    QSize room;
};

QSize roomIn(const QAbstractButton& button, QStyle::SubElement element) {
    QStyleOptionButton option;
    option.initFrom(&button);
    return button.style()->subElementRect(element, &option, &button).size();
}

QSize roomIn(const QComboBox& list) {
    QStyleOptionComboBox option;
    option.initFrom(&list);
    option.editable = list.isEditable();
    return list.style()
        ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &list)
        .size();
}

QSize roomIn(const QLineEdit& field) {
    QStyleOptionFrame option;
    option.initFrom(&field);
    option.lineWidth = field.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &field);
    // On both sides of its text a field leaves two pixels for the cursor.
    return field.style()->subElementRect(QStyle::SE_LineEditContents, &option, &field).size() -
           QSize(4, 0);
}

Place placeOf(const QWidget& control) {
    if (const auto* label = qobject_cast<const QLabel*>(&control))
        return {label->text(), label->contentsRect().size()};
    if (const auto* box = qobject_cast<const QCheckBox*>(&control))
        return {box->text(), roomIn(*box, QStyle::SE_CheckBoxContents)};
    if (const auto* button = qobject_cast<const QPushButton*>(&control))
        return {button->text(), roomIn(*button, QStyle::SE_PushButtonContents)};
    if (const auto* list = qobject_cast<const QComboBox*>(&control))
        return {list->currentText(), roomIn(*list)};
    if (const auto* field = qobject_cast<const QLineEdit*>(&control))
        return {field->text().isEmpty() ? field->placeholderText() : field->text(), roomIn(*field)};
    return {};
}

bool isTextCut(const QWidget& control, const Place& place) {
    const QFontMetrics metrics = control.fontMetrics();
    const auto* label = qobject_cast<const QLabel*>(&control);
    const bool wraps = label != nullptr && label->wordWrap();
    const auto isTooWide = [&](const QString& text) {
        return metrics.horizontalAdvance(text) > place.room.width();
    };
    if (!wraps)
        return isTooWide(place.text) || metrics.height() > place.room.height();
    const QStringList words = place.text.split(QLatin1Char(' '));
    return std::any_of(words.begin(), words.end(), isTooWide) ||
           metrics.boundingRect(QRect(QPoint(), QSize(place.room.width(), 0)), Qt::TextWordWrap,
                                place.text)
                   .height() > place.room.height();
}

bool isScrolled(const QWidget* control) {
    for (; control != nullptr; control = control->parentWidget()) {
        if (qobject_cast<const QScrollArea*>(control->parentWidget()) != nullptr)
            return true;
    }
    return false;
}

bool isCut(const QWidget& control, const QWidget& window) {
    const QSize needed = control.minimumSizeHint();
    if (control.width() < needed.width() || control.height() < needed.height())
        return true;
    const QRect place(control.mapTo(&window, QPoint()), control.size());
    if (place.left() < 0 || place.right() >= window.width())
        return true;
    return !isScrolled(&control) && (place.top() < 0 || place.bottom() >= window.height());
}

}  // namespace

QStringList cutControls(const QWidget& window) {
    QStringList cut;
    for (const QWidget* control : window.findChildren<QWidget*>()) {
        const Place place = control->isVisible() ? placeOf(*control) : Place{};
        if (!place.text.isEmpty() && (isCut(*control, window) || isTextCut(*control, place)))
            cut << place.text;
    }
    return cut;
}

}  // namespace sayloft::test
