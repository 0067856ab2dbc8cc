// SPDX-License-Identifier: MIT
// Three version numbers of a feed, a line each: sorting needs an order without contradictions.
#include "fuzz/support/FuzzInput.h"
#include "updates/VersionOrder.h"

using namespace sayloft;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    const QString a = QString::fromUtf8(fuzz::byteArray(input.line()));
    const QString b = QString::fromUtf8(fuzz::byteArray(input.line()));
    const QString c = QString::fromUtf8(fuzz::byteArray(input.line()));
    fuzz::require(std::is_eq(compareVersions(a, a)));
    fuzz::require(std::is_lt(compareVersions(a, b)) == std::is_gt(compareVersions(b, a)));
    if (std::is_lteq(compareVersions(a, b)) && std::is_lteq(compareVersions(b, c)))
        fuzz::require(std::is_lteq(compareVersions(a, c)));
    return 0;
}
