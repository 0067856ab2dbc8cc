// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>

#include <vector>

namespace sayloft::test {

/// What a panel reads of an item before it paints it.
struct TrayItemProperties {
    QString title;
    QString iconName;  ///< empty: the pictures count
    std::vector<QImage> pictures;
    QString toolTipTitle;
    QString toolTipText;

    /// From the answer to GetAll as gdbus prints it; throws std::runtime_error where that lacks
    /// something.
    [[nodiscard]] static TrayItemProperties fromGdbus(const QString& answer);
};

}  // namespace sayloft::test
