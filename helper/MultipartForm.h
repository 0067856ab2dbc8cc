// SPDX-License-Identifier: MIT
#pragma once

#include "helper/Problem.h"

#include <optional>
#include <string_view>
#include <vector>

namespace sayloft::helper {

/// A form sent as multipart/form-data. Its values point into the body that it was read from.
class MultipartForm {
public:
    /// Reads the form strictly: every part needs a field name, and the closing boundary has to be
    /// there. `body` must outlive the form. Source: RFC 7578, RFC 2046 section 5.1.
    [[nodiscard]] static Result<MultipartForm> parse(std::string_view contentType,
                                                     std::string_view body);

    /// The first field of that name; names are compared exactly.
    [[nodiscard]] std::optional<std::string_view> value(std::string_view name) const;

private:
    struct Field {
        std::string_view name;
        std::string_view value;
    };

    static Result<Field> parsePart(std::string_view part);

    std::vector<Field> m_fields;
};

/// Whether a Content-Type header says multipart/form-data, in whatever case.
[[nodiscard]] bool isMultipartFormData(std::string_view contentType);

}  // namespace sayloft::helper
