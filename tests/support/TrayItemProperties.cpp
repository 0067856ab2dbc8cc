// SPDX-License-Identifier: MIT
#include "tests/support/TrayItemProperties.h"

#include <QRegularExpression>
#include <QStringList>

#include <stdexcept>

namespace sayloft::test {
namespace {

QRegularExpressionMatch find(const QString& answer, const QString& pattern) {
    QRegularExpressionMatch match = QRegularExpression(pattern).match(answer);
    if (!match.hasMatch())
        throw std::runtime_error("the item has no " + pattern.toStdString());
    return match;
}

/// `bytes` are alpha, red, green and blue of one pixel after the other: "byte 0x00, 0xff, …".
QImage picture(int width, int height, QString bytes) {
    const QStringList numbers =
        bytes.remove(QStringLiteral("byte ")).split(QStringLiteral(", "), Qt::SkipEmptyParts);
    if (numbers.size() != 4LL * width * height)
        throw std::runtime_error("a picture lacks pixels");
    QImage image(width, height, QImage::Format_ARGB32);
    const auto channel = [&](qsizetype at) { return numbers[at].toInt(nullptr, 16); };
    for (int pixel = 0; pixel < width * height; ++pixel) {
        const qsizetype at = 4LL * pixel;
        image.setPixel(pixel % width, pixel / width,
                       qRgba(channel(at + 1), channel(at + 2), channel(at + 3), channel(at)));
    }
    return image;
}

std::vector<QImage> pictures(const QString& answer) {
    static const QRegularExpression form(QStringLiteral("\\((\\d+), (\\d+), \\[([^]]*)\\]\\)"));
    const QString list =
        find(answer, QStringLiteral("'IconPixmap': <(\\[.*?\\]|@a\\(iiay\\) \\[\\])>")).captured(1);
    std::vector<QImage> pictures;
    for (const QRegularExpressionMatch& match : form.globalMatch(list))
        pictures.push_back(
            picture(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3)));
    return pictures;
}

}  // namespace

TrayItemProperties TrayItemProperties::fromGdbus(const QString& answer) {
    const auto text = [&](const char* name) {
        return find(answer, QStringLiteral("'%1': <'([^']*)'>").arg(QLatin1String(name)))
            .captured(1);
    };
    const QRegularExpressionMatch toolTip = find(
        answer, QStringLiteral("'ToolTip': <\\('', @a\\(iiay\\) \\[\\], '([^']*)', '([^']*)'\\)>"));
    return {.title = text("Title"),
            .iconName = text("IconName"),
            .pictures = test::pictures(answer),
            .toolTipTitle = toolTip.captured(1),
            .toolTipText = toolTip.captured(2)};
}

}  // namespace sayloft::test
