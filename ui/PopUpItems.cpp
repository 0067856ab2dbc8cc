// SPDX-License-Identifier: MIT
#include "ui/PopUpItems.h"

#include <QComboBox>
#include <QSignalBlocker>

namespace sayloft {
namespace {

std::vector<PopUpItem> shownItems(const QComboBox& popUp) {
    std::vector<PopUpItem> items;
    items.reserve(static_cast<std::size_t>(popUp.count()));
    for (int index = 0; index < popUp.count(); ++index)
        items.push_back({popUp.itemText(index), popUp.itemData(index)});
    return items;
}

}  // namespace

void showItems(QComboBox& popUp, const std::vector<PopUpItem>& items, int selected) {
    const QSignalBlocker blocker(popUp);
    if (shownItems(popUp) != items) {
        popUp.clear();
        for (const PopUpItem& item : items)
            popUp.addItem(item.title, item.value);
    }
    if (popUp.currentIndex() != selected)
        popUp.setCurrentIndex(selected);
}

}  // namespace sayloft
