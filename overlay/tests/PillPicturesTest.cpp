// SPDX-License-Identifier: MIT
// The pill as it was when somebody looked at it and found it right.
#include "overlay/PillPainter.h"

#include "overlay/PillGeometry.h"

#include <QDir>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ostream>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

const QColor lightPage(250, 250, 247);
const QColor darkPage(30, 32, 36);

struct Picture {
    const char* name;
    PillAnimation pill;
    PillBackground background;
    QColor page;
    double scale;
};

void PrintTo(const Picture& picture, std::ostream* stream) {
    *stream << picture.name;
}

PillAnimation shown(double level, double phase) {
    PillAnimation pill;
    pill.presence = 1;
    pill.level = level;
    pill.phase = phase;
    pill.frozenElapsed = 12.34;
    return pill;
}

PillAnimation minimal(PillAnimation pill) {
    pill.minimal = true;
    return pill;
}

PillAnimation withWords(PillAnimation pill) {
    pill.mode = StatMode::wpm;
    pill.wpmDisplay = 136.6;
    return pill;
}

PillAnimation appearing(PillAnimation pill, double presence) {
    pill.presence = presence;
    return pill;
}

QImage paint(const Picture& picture) {
    const QSizeF size(PillGeometry::viewW * picture.scale, PillGeometry::viewH * picture.scale);
    QImage image(size.toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(picture.scale);
    image.fill(picture.page);
    QPainter painter(&image);
    PillPainter::Layers layers;
    PillPainter(painter, picture.pill, {}).paint(layers, picture.background);
    return image;
}

int difference(QRgb a, QRgb b) {
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b))});
}

/// How many pixels differ by more than what another version of the painting engine rounds
/// differently.
int differentPixels(const QImage& a, const QImage& b) {
    if (a.size() != b.size())
        return a.width() * a.height();
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            count += difference(a.pixel(x, y), b.pixel(x, y)) > 6 ? 1 : 0;
    }
    return count;
}

constexpr int toleratedPixels = 10;

QImage kept(const char* name) {
    return QImage(QStringLiteral(SAYLOFT_PILL_PICTURES "/%1.png").arg(QLatin1String(name)));
}

/// Where the picture can be looked at when it is not the one that was kept.
QString save(const QImage& image, const char* name) {
    QString path = QDir::temp().filePath(QStringLiteral("pill-%1.png").arg(QLatin1String(name)));
    image.save(path);
    return path;
}

class PillPictures : public testing::TestWithParam<Picture> {};

TEST_P(PillPictures, isAsItWasKept) {
    const QImage image = paint(GetParam());
    if (differentPixels(image, kept(GetParam().name)) > toleratedPixels)
        FAIL() << "now it is " << save(image, GetParam().name).toStdString();
}

const Picture fullOnDark{"full-dark", shown(0.8, 10), PillBackground::clear, darkPage, 1};
const Picture wordsOnLight{"words-light-double", withWords(shown(0.1, 3)), PillBackground::clear,
                           lightPage, 2};

INSTANTIATE_TEST_SUITE_P(
    Table, PillPictures,
    testing::Values(
        fullOnDark, wordsOnLight,
        Picture{"full-light", shown(0.8, 10), PillBackground::clear, lightPage, 1},
        Picture{"full-dark-double", shown(0.8, 10), PillBackground::clear, darkPage, 2},
        Picture{"full-light-1-25", shown(0.8, 10), PillBackground::clear, lightPage, 1.25},
        Picture{"full-dark-1-5", shown(0.8, 10), PillBackground::clear, darkPage, 1.5},
        Picture{"minimal-silent-light", minimal(shown(0, 0)), PillBackground::clear, lightPage, 1},
        Picture{"minimal-loud-dark-double", minimal(shown(1, 21)), PillBackground::clear, darkPage,
                2},
        Picture{"appearing-light", appearing(shown(0.5, 4), 0.4), PillBackground::clear, lightPage,
                1},
        Picture{"blurred-light", shown(0.6, 7), PillBackground::blurred, lightPage, 1},
        Picture{"no-compositor", shown(0.6, 7), PillBackground::black, Qt::black, 1}),
    [](const auto& row) {
        std::string name = row.param.name;
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    });

TEST(PillPictureComparison, seesAPillThatIsAPointLower) {
    const QImage image = paint(fullOnDark);
    EXPECT_GT(differentPixels(image.copy(0, 1, image.width(), image.height()), image),
              toleratedPixels);
}

TEST(PillPictureComparison, seesACornerOfAnotherRadius) {
    QImage image = paint(fullOnDark);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(image.pixelColor(85, 55));
    painter.drawRoundedRect(onScreen(QRectF(75, 28, 20, 54)), 24, 24);
    painter.end();
    EXPECT_GT(differentPixels(image, paint(fullOnDark)), toleratedPixels);
}

TEST(PillPictureComparison, seesBarsThatAreALittleDimmer) {
    Picture dimmer = fullOnDark;
    dimmer.pill.presence = 0.96;
    EXPECT_GT(differentPixels(paint(dimmer), paint(fullOnDark)), toleratedPixels);
}

TEST(PillPictureComparison, seesAnotherFigure) {
    Picture other = wordsOnLight;
    other.pill.wpmDisplay = 138;
    EXPECT_GT(differentPixels(paint(other), paint(wordsOnLight)), toleratedPixels);
}

TEST(PillPicture, leavesNothingOfTheShadowAtTheEdge) {
    const QImage image = paint(wordsOnLight);
    for (int y = 0; y < image.height(); ++y)
        EXPECT_LE(difference(image.pixel(image.width() - 1, y), lightPage.rgb()), 2) << y;
}

QImage emptyPage(double scale) {
    Picture hidden = fullOnDark;
    hidden.scale = scale;
    hidden.pill.presence = 0;
    return paint(hidden);
}

QImage paintBackdrop(double scale, double presence) {
    QImage image = emptyPage(scale);
    QPainter painter(&image);
    PillBackdrop().paint(
        painter, {.minimal = false, .background = PillBackground::clear, .presence = presence});
    return image;
}

TEST(PillBackdrop, isTheSameKeptAndDrawnAtEveryScale) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0})
        EXPECT_LE(differentPixels(paintBackdrop(scale, 1), paintBackdrop(scale, 0.9989)),
                  toleratedPixels)
            << scale;
}

QImage paintFigures(double scale, double presence) {
    QImage image = emptyPage(scale);
    QPainter painter(&image);
    PillFigures().paint(painter, pillStats(fullOnDark.pill, {}), presence);
    return image;
}

TEST(PillFigures, areTheSameKeptAndDrawnAtEveryScale) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        const QImage kept = paintFigures(scale, 1);
        EXPECT_LE(differentPixels(kept, paintFigures(scale, 0.9989)), toleratedPixels) << scale;
        EXPECT_GT(differentPixels(kept, emptyPage(scale)), toleratedPixels) << scale;
    }
}

TEST(PillPicture, isAlwaysThatOfTheNewestLook) {
    PillPainter::Layers layers;
    for (const Picture& picture : {fullOnDark, wordsOnLight, fullOnDark}) {
        QImage image = paint(picture);
        image.fill(picture.page);
        QPainter painter(&image);
        PillPainter(painter, picture.pill, {}).paint(layers, picture.background);
        painter.end();
        EXPECT_EQ(image, paint(picture)) << picture.name;
    }
}

TEST(PillPicture, isNothingBelowTheThreshold) {
    Picture hidden = fullOnDark;
    hidden.pill.presence = 0.003;
    const QImage image = paint(hidden);
    QImage page = image;
    page.fill(darkPage);
    EXPECT_EQ(image, page);
}

}  // namespace
}  // namespace sayloft
