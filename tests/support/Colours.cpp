// SPDX-License-Identifier: MIT
#include "tests/support/Colours.h"

#include <algorithm>
#include <cstdlib>
#include <map>

namespace sayloft::test {

bool isAlmost(const QColor& one, const QColor& other) {
    return std::abs(one.red() - other.red()) <= 1 && std::abs(one.green() - other.green()) <= 1 &&
           std::abs(one.blue() - other.blue()) <= 1 && std::abs(one.alpha() - other.alpha()) <= 1;
}

QColor mainColour(const QImage& picture) {
    std::map<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            counts[pixel] += qAlpha(pixel) > 0 ? 1 : 0;
        }
    }
    const auto most =
        std::max_element(counts.begin(), counts.end(),
                         [](const auto& a, const auto& b) { return a.second < b.second; });
    return most == counts.end() || most->second == 0 ? QColor(Qt::transparent)
                                                     : QColor::fromRgba(most->first);
}

}  // namespace sayloft::test
