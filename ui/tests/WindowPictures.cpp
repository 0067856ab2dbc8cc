// SPDX-License-Identifier: MIT
#include "ui/tests/WindowPictures.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QStyle>
#include <QStyleFactory>
#include <QWidget>

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

}  // namespace

DesktopLooks::DesktopLooks(const DesktopLook& look) : m_style(QApplication::style()->name()) {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    m_before.useFontOf(look.fontScale);
    QApplication::setPalette(look.isDark ? darkPalette()
                                         : QApplication::style()->standardPalette());
    QApplication::processEvents();
}

DesktopLooks::~DesktopLooks() {
    QApplication::setStyle(m_style);
}

void takePicture(QWidget& window, const QString& name, double scale) {
    QPixmap picture(window.size() * scale);
    picture.setDevicePixelRatio(scale);
    window.render(&picture);
    ASSERT_TRUE(QDir().mkpath(QStringLiteral(SAYLOFT_PICTURES)));
    ASSERT_TRUE(picture.save(QStringLiteral(SAYLOFT_PICTURES "/%1.png").arg(name)));
}

}  // namespace sayloft::test
