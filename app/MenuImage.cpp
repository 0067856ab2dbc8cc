// SPDX-License-Identifier: MIT
#include "app/MenuImage.h"

#include "models/Paths.h"

#include <algorithm>

namespace sayloft {

std::optional<TrayImage> menuImage(const QString& name, bool isTemplate) {
    constexpr double height = 18;
    const QImage picture(BUNDLE_DIR + QStringLiteral("/Contents/Resources/images/") + name +
                         QStringLiteral(".png"));
    if (picture.isNull())
        return std::nullopt;
    const double naturalHeight = std::max(picture.height(), 1);
    return TrayImage{.name = name,
                     .picture = picture,
                     .size = {picture.width() * height / naturalHeight, height},
                     .isTemplate = isTemplate};
}

}  // namespace sayloft
