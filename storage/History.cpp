// SPDX-License-Identifier: MIT
#include "storage/History.h"

#include "models/Paths.h"
#include "storage/Json.h"
#include "storage/LateSaves.h"

namespace sayloft {
namespace {

constexpr std::size_t mostItems = 50;

std::vector<QString> loadItems() {
    const auto text = History::file().read().text;
    return text ? History::decode(*text).value_or(std::vector<QString>()) : std::vector<QString>();
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

std::optional<std::vector<QString>> History::decode(const QByteArray& json) {
    const auto items = parseJson(json);
    return items ? readArray(*items, readString) : std::nullopt;
}

QByteArray History::encode(const std::vector<QString>& items) {
    Json array = Json::array();
    for (const QString& item : items)
        array.push_back(toJson(item));
    return writeJson(array);
}

void History::save() const {
    saveNowOrLater(file(), encode(m_items));
}

}  // namespace sayloft
