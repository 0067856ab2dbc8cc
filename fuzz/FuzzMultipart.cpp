// SPDX-License-Identifier: MIT
// A form sent to the speech helper: a line with its Content-Type, then its body.
#include "fuzz/support/FuzzInput.h"
#include "helper/MultipartForm.h"

#include <functional>

using namespace sayloft;

namespace {

bool liesIn(std::string_view whole, std::string_view part) {
    const std::less_equal<> notAfter;
    return notAfter(whole.data(), part.data()) &&
           notAfter(part.data() + part.size(), whole.data() + whole.size());
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    const std::string_view contentType = input.line();
    const std::string_view body = input.rest();
    const auto parsed = helper::MultipartForm::parse(contentType, body);
    const auto* form = std::get_if<helper::MultipartForm>(&parsed);
    if (form == nullptr)
        return 0;
    fuzz::require(helper::isMultipartFormData(contentType));
    for (const std::string_view name : {"file", "response_format"}) {
        if (const auto value = form->value(name))
            fuzz::require(liesIn(body, *value));
    }
    return 0;
}
