// SPDX-License-Identifier: MIT
#include "ui/tests/WindowPictures.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QScrollArea>
#include <QStyle>
#include <QStyleFactory>

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

QPalette darkPalette() {
    QPalette palette(QColor(0x35, 0x35, 0x35), QColor(0x35, 0x35, 0x35));
    palette.setColor(QPalette::Base, QColor(0x2a, 0x2a, 0x2a));
    palette.setColor(QPalette::ToolTipBase, QColor(0x35, 0x35, 0x35));
    palette.setColor(QPalette::ToolTipText, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(0x2a, 0x82, 0xda));
    palette.setColor(QPalette::PlaceholderText, QColor(255, 255, 255, 128));
    for (const auto role : {QPalette::Text, QPalette::ButtonText, QPalette::WindowText})
        palette.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x80));
    return palette;
}

bool isInScrolledContent(const QWidget* widget) {
    for (; widget != nullptr; widget = widget->parentWidget()) {
        if (qobject_cast<const QScrollArea*>(widget->parentWidget()) != nullptr)
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
    return !isInScrolledContent(&control) && (place.top() < 0 || place.bottom() >= window.height());
}

}  // namespace

DesktopLooks::DesktopLooks(const DesktopLook& look)
    : m_font(QApplication::font()),
      m_palette(QApplication::palette()),
      m_style(QApplication::style()->name()) {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font = m_font;
    font.setPointSizeF(font.pointSizeF() * look.fontScale);
    QApplication::setFont(font);
    QApplication::setPalette(look.isDark ? darkPalette()
                                         : QApplication::style()->standardPalette());
    QApplication::processEvents();
}

DesktopLooks::~DesktopLooks() {
    QApplication::setStyle(m_style);
    QApplication::setFont(m_font);
    QApplication::setPalette(m_palette);
    QApplication::processEvents();
}

void takePicture(QWidget& window, const QString& name, double scale) {
    QPixmap picture(window.size() * scale);
    picture.setDevicePixelRatio(scale);
    window.render(&picture);
    ASSERT_TRUE(QDir().mkpath(QStringLiteral(SAYLOFT_PICTURES)));
    ASSERT_TRUE(picture.save(QStringLiteral(SAYLOFT_PICTURES "/%1.png").arg(name)));
}

QStringList cutControls(const QWidget& window) {
    QStringList cut;
    const auto look = [&](const QWidget& control, const QString& text) {
        if (control.isVisible() && isCut(control, window))
            cut << text;
    };
    for (const QLabel* label : window.findChildren<QLabel*>())
        look(*label, label->text());
    for (const QAbstractButton* button : window.findChildren<QAbstractButton*>())
        look(*button, button->text());
    for (const QLineEdit* field : window.findChildren<QLineEdit*>())
        look(*field, field->placeholderText());
    return cut;
}

}  // namespace sayloft::test
