// SPDX-License-Identifier: MIT
#include "storage/History.h"

#include "models/Paths.h"
#include "storage/Json.h"
#include "storage/LateSaves.h"

#include <optional>

namespace sayloft {
namespace {

constexpr std::size_t mostItems = 50;

std::optional<std::vector<QString>> decode(const QByteArray& text) {
    const auto json = parseJson(text);
    return json ? readArray(*json, readString) : std::nullopt;
}

std::vector<QString> loadItems() {
    const auto text = History::file().read().text;
    return text ? decode(*text).value_or(std::vector<QString>()) : std::vector<QString>();
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

KeptFile History::file() {
    return {url(), [](const QByteArray& text) { return decode(text).has_value(); },
            KeptFile::Author::program};
}

void History::save() const {
    Json items = Json::array();
    for (const QString& item : m_items)
        items.push_back(toJson(item));
    saveNowOrLater(file(), writeJson(items));
}

}  // namespace sayloft
