// SPDX-License-Identifier: MIT
#include "storage/History.h"

#include "models/Paths.h"
#include "storage/Json.h"
#include "storage/WholeFile.h"

namespace sayloft {
namespace {

constexpr std::size_t mostItems = 50;

std::vector<QString> loadItems() {
    const auto content = readWholeFile(History::url());
    const auto json = content ? parseJson(*content) : std::nullopt;
    const auto items = json ? readArray(*json, readString) : std::nullopt;
    return items.value_or(std::vector<QString>());
}

}  // namespace

History::History() : m_items(loadItems()) {}

void History::add(const QString& text) {
    m_items.insert(m_items.begin(), text);
    if (m_items.size() > mostItems)
        m_items.resize(mostItems);
    save();
}

void History::clear() {
    m_items.clear();
    save();
}

QString History::url() {
    return DATA_DIR + QStringLiteral("/history.json");
}

void History::save() const {
    Json items = Json::array();
    for (const QString& item : m_items)
        items.push_back(toJson(item));
    writeWholeFile(url(), writeJson(items));
}

}  // namespace sayloft
