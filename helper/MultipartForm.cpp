// SPDX-License-Identifier: MIT
#include "helper/MultipartForm.h"

#include <algorithm>
#include <string>

namespace sayloft::helper {
namespace {

constexpr std::string_view crlf = "\r\n";
constexpr std::size_t mostParts = 64;
constexpr std::size_t longestBoundary = 70;  // RFC 2046 section 5.1.1

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameText(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

// Takes the text up to `separator` off the front, the separator with it.
std::string_view takeUntil(std::string_view& rest, std::string_view separator) {
    const std::size_t end = rest.find(separator);
    const std::string_view taken = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + separator.size());
    return taken;
}

// The value that follows `name=`, its quotes taken off. What is quoted may hold a semicolon.
std::string_view takeValue(std::string_view& rest) {
    rest = trimmed(rest);
    if (!rest.starts_with('"'))
        return trimmed(takeUntil(rest, ";"));
    rest.remove_prefix(1);
    const std::string_view quoted = takeUntil(rest, "\"");
    takeUntil(rest, ";");
    return quoted;
}

// A parameter of a header value such as `form-data; name="file"; filename="a.wav"`.
std::optional<std::string_view> parameter(std::string_view header, std::string_view wanted) {
    takeUntil(header, ";");
    while (!header.empty()) {
        const std::size_t end = header.find_first_of("=;");
        if (end == std::string_view::npos)
            return std::nullopt;
        const std::string_view name = trimmed(header.substr(0, end));
        const bool hasValue = header[end] == '=';
        header.remove_prefix(end + 1);
        if (!hasValue)
            continue;
        const std::string_view value = takeValue(header);
        if (sameText(name, wanted))
            return value;
    }
    return std::nullopt;
}

std::optional<std::string_view> fieldName(std::string_view headers) {
    while (!headers.empty()) {
        std::string_view value = takeUntil(headers, crlf);
        const std::string_view name = trimmed(takeUntil(value, ":"));
        if (sameText(name, "content-disposition"))
            return parameter(value, "name");
    }
    return std::nullopt;
}

// What stands between the boundaries; none when the closing one is missing or something foreign
// follows a boundary.
std::optional<std::vector<std::string_view>> splitParts(std::string_view body,
                                                        const std::string& delimiter) {
    // The first boundary may stand at the very beginning, without a line break before it.
    const std::string_view opening = std::string_view(delimiter).substr(crlf.size());
    if (body.starts_with(opening))
        body.remove_prefix(opening.size());
    else if (const std::size_t begin = body.find(delimiter); begin != std::string_view::npos)
        body.remove_prefix(begin + delimiter.size());
    else
        return std::nullopt;

    std::vector<std::string_view> parts;
    while (!body.starts_with("--")) {
        const std::size_t end = body.find(delimiter);
        if (!body.starts_with(crlf) || end == std::string_view::npos || parts.size() == mostParts)
            return std::nullopt;
        parts.push_back(body.substr(0, end));
        body.remove_prefix(end + delimiter.size());
    }
    return parts;
}

}  // namespace

bool isMultipartFormData(std::string_view contentType) {
    return sameText(trimmed(takeUntil(contentType, ";")), "multipart/form-data");
}

// `part` begins with the line break that ends the boundary's line.
Result<MultipartForm::Field> MultipartForm::parsePart(std::string_view part) {
    const std::size_t end = part.find("\r\n\r\n");
    if (end == std::string_view::npos)
        return Problem{"a part of the form has no end of its headers"};
    const std::optional<std::string_view> name =
        fieldName(part.substr(0, end).substr(std::min(end, crlf.size())));
    if (!name || name->empty())
        return Problem{"a part of the form has no field name"};
    return Field{*name, part.substr(end + 4)};
}

Result<MultipartForm> MultipartForm::parse(std::string_view contentType, std::string_view body) {
    const std::optional<std::string_view> boundary = parameter(contentType, "boundary");
    if (!isMultipartFormData(contentType) || !boundary)
        return Problem{"the request is not multipart/form-data with a boundary"};
    if (boundary->empty() || boundary->size() > longestBoundary)
        return Problem{"the form's boundary is empty or too long"};
    const auto parts = splitParts(body, "\r\n--" + std::string(*boundary));
    if (!parts)
        return Problem{"the form is truncated or does not fit its boundary"};

    MultipartForm form;
    for (const std::string_view part : *parts) {
        Result<Field> field = parsePart(part);
        if (auto* problem = std::get_if<Problem>(&field))
            return *problem;
        form.m_fields.push_back(std::get<Field>(field));
    }
    return form;
}

std::optional<std::string_view> MultipartForm::value(std::string_view name) const {
    const auto found = std::find_if(m_fields.begin(), m_fields.end(),
                                    [&](const Field& field) { return field.name == name; });
    if (found == m_fields.end())
        return std::nullopt;
    return found->value;
}

}  // namespace sayloft::helper
