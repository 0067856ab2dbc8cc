// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QFont>
#include <QPalette>

namespace sayloft::test {

/// Gives the application its font and colours back when it goes.
class KeptLook {
public:
    KeptLook() : m_font(QApplication::font()), m_palette(QApplication::palette()) {}
    ~KeptLook() {
        QApplication::setFont(m_font);
        QApplication::setPalette(m_palette);
    }
    KeptLook(const KeptLook&) = delete;
    KeptLook& operator=(const KeptLook&) = delete;

    [[nodiscard]] const QFont& font() const { return m_font; }
    [[nodiscard]] const QPalette& palette() const { return m_palette; }

    /// The desktop's font is now larger by that factor than it was first.
    void useFontOf(double factor) const {
        QFont font = m_font;
        font.setPointSizeF(m_font.pointSizeF() * factor);
        QApplication::setFont(font);
    }

private:
    const QFont m_font;
    const QPalette m_palette;
};

}  // namespace sayloft::test
