// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariant>

#include <vector>

class QComboBox;

namespace sayloft {

struct PopUpItem {
    QString title;
    QVariant value;

    bool operator==(const PopUpItem&) const = default;
};

/// Shows these items. Nothing happens, not even to an open list, where they are shown already.
void showItems(QComboBox& popUp, const std::vector<PopUpItem>& items, int selected);

}  // namespace sayloft
