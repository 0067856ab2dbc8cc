// SPDX-License-Identifier: MIT
#include "storage/Json.h"

#include <cstddef>
#include <limits>

namespace sayloft {

std::optional<Json> parseJson(const QByteArray& text) {
    Json value = Json::parse(text.begin(), text.end(), nullptr, /*allow_exceptions=*/false);
    if (value.is_discarded())
        return std::nullopt;
    return value;
}

bool isCutOffJson(const QByteArray& text) {
    if (text.contains('\0'))
        return true;
    try {
        [[maybe_unused]] const Json value = Json::parse(text.begin(), text.end());
    } catch (const Json::parse_error& error) {
        // Where the parser gave up: all that there is was right as far as it went.
        return error.byte > static_cast<std::size_t>(text.size());
    } catch (const Json::out_of_range&) {
        return false;  // a number that is too large for any that is saved
    }
    return false;
}

QByteArray writeJson(const Json& value) {
    // Half a surrogate pair has no UTF-8 form; it must not cost the rest of the file.
    return QByteArray::fromStdString(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

Json toJson(const QString& text) {
    return text.toStdString();
}

std::optional<QString> readString(const Json& value) {
    if (!value.is_string())
        return std::nullopt;
    return QString::fromStdString(value.get_ref<const std::string&>());
}

std::optional<bool> readBool(const Json& value) {
    if (!value.is_boolean())
        return std::nullopt;
    return value.get<bool>();
}

std::optional<double> readDouble(const Json& value) {
    if (!value.is_number())
        return std::nullopt;
    return value.get<double>();
}

std::optional<std::int64_t> readInteger(const Json& value) {
    if (!value.is_number_integer())
        return std::nullopt;
    constexpr auto largest = std::numeric_limits<std::int64_t>::max();
    if (value.is_number_unsigned() && value.get<std::uint64_t>() > std::uint64_t{largest})
        return std::nullopt;
    return value.get<std::int64_t>();
}

std::optional<std::uint16_t> readKeyCode(const Json& value) {
    const auto number = readInteger(value);
    if (!number || *number < 0 || *number > std::numeric_limits<std::uint16_t>::max())
        return std::nullopt;
    return static_cast<std::uint16_t>(*number);
}

}  // namespace sayloft
