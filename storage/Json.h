// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <type_traits>
#include <vector>

namespace sayloft {

/// Keeps the order in which keys were added.
using Json = nlohmann::ordered_json;

/// None when `text` is not one whole JSON value.
[[nodiscard]] std::optional<Json> parseJson(const QByteArray& text);

/// Whether `text` is only the beginning of a JSON value, or has holes, as a disk leaves it that was
/// interrupted in the middle of a write.
[[nodiscard]] bool isCutOffJson(const QByteArray& text);

/// Compact, on one line, UTF-8.
[[nodiscard]] QByteArray writeJson(const Json& value);

[[nodiscard]] Json toJson(const QString& text);

// Strict readers: none unless the value has exactly the type that the reader names.

[[nodiscard]] std::optional<QString> readString(const Json& value);
[[nodiscard]] std::optional<bool> readBool(const Json& value);
[[nodiscard]] std::optional<double> readDouble(const Json& value);
[[nodiscard]] std::optional<std::int64_t> readInteger(const Json& value);
[[nodiscard]] std::optional<std::uint16_t> readKeyCode(const Json& value);

/// An array of which every element reads; one that does not spoils the whole.
template <typename Read>
[[nodiscard]] auto readArray(const Json& value, Read readElement)
    -> std::optional<std::vector<typename std::invoke_result_t<Read, const Json&>::value_type>> {
    std::vector<typename std::invoke_result_t<Read, const Json&>::value_type> elements;
    if (!value.is_array())
        return std::nullopt;
    for (const Json& item : value) {
        auto element = readElement(item);
        if (!element)
            return std::nullopt;
        elements.push_back(std::move(*element));
    }
    return elements;
}

}  // namespace sayloft
