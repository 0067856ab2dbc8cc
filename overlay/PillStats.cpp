// SPDX-License-Identifier: MIT
#include "overlay/PillStats.h"

#include "overlay/PillColours.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace sayloft {
namespace {

QFont systemFont(int size, QFont::Weight weight) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

double widestDigit(const QFontMetricsF& metrics) {
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

/// A line of text whose digits all have the same width.
class TabularLine {
public:
    TabularLine(QString text, const QFont& font)
        : m_text(std::move(text)),
          m_font(font),
          m_metrics(m_font),
          m_digitWidth(widestDigit(m_metrics)) {}

    [[nodiscard]] double height() const { return m_metrics.height(); }

    void draw(QPainter& painter, double centerX, double top) const {
        painter.setFont(m_font);
        double x = centerX - width() / 2;
        for (const QChar character : m_text) {
            const double cell = widthOf(character);
            const double inCell = (cell - m_metrics.horizontalAdvance(character)) / 2;
            painter.drawText(QPointF(x + inCell, top + m_metrics.ascent()), QString(character));
            x += cell;
        }
    }

private:
    [[nodiscard]] double widthOf(QChar character) const {
        return character.isDigit() ? m_digitWidth : m_metrics.horizontalAdvance(character);
    }
    [[nodiscard]] double width() const {
        double sum = 0;
        for (const QChar character : m_text)
            sum += widthOf(character);
        return sum;
    }

    QString m_text;
    QFont m_font;
    QFontMetricsF m_metrics;
    double m_digitWidth;
};

}  // namespace

PillStats pillStats(const PillAnimation& pill, PillAnimation::TimePoint now) {
    if (pill.mode == StatMode::wpm)
        return {QString::number(std::llround(pill.wpmDisplay)), QStringLiteral("wpm")};
    return {QString::number(pill.elapsed(now), 'f', 1), QStringLiteral("sec")};
}

void paintPillStats(QPainter& painter, const PillStats& stats, QPointF center, double opacity) {
    const TabularLine value(stats.value, systemFont(18, QFont::DemiBold));
    const QFont unitFont = systemFont(9, QFont::Medium);
    const QFontMetricsF unitMetrics(unitFont);
    const double top = center.y() - (value.height() + unitMetrics.height()) / 2;

    painter.setPen(white(opacity));
    value.draw(painter, center.x(), top);

    painter.setPen(white(0.5 * opacity));
    painter.setFont(unitFont);
    painter.drawText(QPointF(center.x() - unitMetrics.horizontalAdvance(stats.unit) / 2,
                             top + value.height() + unitMetrics.ascent()),
                     stats.unit);
}

}  // namespace sayloft
