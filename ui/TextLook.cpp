// SPDX-License-Identifier: MIT
#include "ui/TextLook.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QWidget>

#include <algorithm>

namespace sayloft {
namespace {

constexpr double sizeOfDesktopFont = 13;
constexpr double pointsPerPixel = 0.75;
constexpr double largestOrdinaryPixels = 15;  ///< of the fonts that desktops come with

double scaled(double desktopSize, double smallestSize, int size) {
    return std::max(desktopSize * size / sizeOfDesktopFont, std::min(desktopSize, smallestSize));
}

bool digitsAreEquallyWide(const QFont& font) {
    const QFontMetricsF metrics(font);
    const QString digits = QStringLiteral("0123456789");
    return std::all_of(digits.begin(), digits.end(), [&metrics](QChar digit) {
        return qFuzzyCompare(metrics.horizontalAdvance(digit), metrics.horizontalAdvance(u'0'));
    });
}

// Only windows are told about the desktop.
class DesktopFollower : public QObject {
public:
    explicit DesktopFollower(QWidget& window) : QObject(&window) {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject* window, QEvent* event) override {
        if (event->type() == QEvent::ApplicationFontChange)
            forEachLook(*window, &TextLook::applyFont);
        else if (event->type() == QEvent::ApplicationPaletteChange)
            forEachLook(*window, &TextLook::applyColour);
        return QObject::eventFilter(window, event);
    }

private:
    static void forEachLook(const QObject& window, void (TextLook::*apply)()) {
        for (TextLook* const look : window.findChildren<TextLook*>())
            (look->*apply)();
    }
};

}  // namespace

QFont fontFor(const TextStyle& style, const QFont& desktopFont) {
    QFont font = desktopFont;
    font.setWeight(style.weight);
    if (font.pointSizeF() > 0)
        font.setPointSizeF(scaled(font.pointSizeF(), style.size * pointsPerPixel, style.size));
    else
        font.setPixelSize(qRound(scaled(font.pixelSize(), style.size, style.size)));
    if (style.digits == TextStyle::Digits::equallyWide && !digitsAreEquallyWide(font))
        font.setFamily(QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
    return font;
}

int widthForFont(int width) {
    const double pixels = QFontInfo(QApplication::font()).pixelSize();
    return qRound(width * std::max(1.0, pixels / largestOrdinaryPixels));
}

void followDesktop(QWidget& window) {
    new DesktopFollower(window);
}

TextLook::TextLook(QWidget* widget, const TextStyle& style)
    : QObject(widget), m_widget(widget), m_style(style) {
    applyFont();
    applyColour();
}

void TextLook::setRole(TextRole role) {
    if (role == m_style.role)
        return;
    m_style.role = role;
    applyColour();
}

void TextLook::applyFont() {
    m_widget->setFont(fontFor(m_style, QApplication::font(m_widget)));
}

void TextLook::applyColour() {
    if (m_style.role == TextRole::primary) {
        m_widget->setPalette({});
        return;
    }
    QPalette palette;
    palette.setColor(QPalette::WindowText, textColour(m_style.role, QApplication::palette()));
    m_widget->setPalette(palette);
}

}  // namespace sayloft
