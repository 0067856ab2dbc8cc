// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sayloft::helper::test {

/// The format fields of a WAV header; what the helper takes unless said otherwise.
struct WavFormat {
    std::uint16_t tag = 1;
    std::uint16_t channels = 1;
    std::uint32_t rate = 16000;
    std::uint16_t bits = 16;
};

[[nodiscard]] std::string littleEndian(std::uint32_t value, std::size_t bytes);
[[nodiscard]] std::string wavFile(std::size_t samples, const WavFormat& format = {});

/// The form exactly as the app posts it, byte for byte.
[[nodiscard]] std::string appForm(std::string_view wav);

/// A form with these fields, each part's text from its headers on.
[[nodiscard]] std::string form(const std::vector<std::string>& parts);
[[nodiscard]] std::string filePart(std::string_view wav);

/// The request that carries a form; `headers` come before Content-Type and Content-Length.
[[nodiscard]] std::string postOf(std::string_view body, std::string_view headers = {});
[[nodiscard]] std::string post(std::string_view headers, std::string_view body);

/// The Content-Type header's line, with its end.
[[nodiscard]] std::string formType();

/// The same for a form that comes in chunks, and a body cut into chunks of `size` bytes.
[[nodiscard]] std::string chunkedType();
[[nodiscard]] std::string chunked(std::string_view body, std::size_t size);

}  // namespace sayloft::helper::test
