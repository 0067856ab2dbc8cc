// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

/// What a fuzzer calls with every input that it makes up.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace sayloft::fuzz {

/// Takes values off the front of an input. Past its end there are zeros and empty pieces.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size)
        : m_rest(reinterpret_cast<const char*>(data), size) {}

    [[nodiscard]] bool isEmpty() const { return m_rest.empty(); }

    std::uint8_t byte() {
        const std::string_view taken = bytes(1);
        return taken.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(taken.front());
    }

    /// As many as there are.
    std::string_view bytes(std::size_t count) {
        const std::string_view taken = m_rest.substr(0, count);
        m_rest.remove_prefix(taken.size());
        return taken;
    }

    /// Up to the next line feed, which is taken too: inputs of lines can be written by hand.
    std::string_view line() {
        const std::string_view taken = m_rest.substr(0, m_rest.find('\n'));
        m_rest.remove_prefix(std::min(m_rest.size(), taken.size() + 1));
        return taken;
    }

    [[nodiscard]] std::string_view rest() const { return m_rest; }

private:
    std::string_view m_rest;
};

inline QByteArray byteArray(std::string_view bytes) {
    return {bytes.data(), static_cast<qsizetype>(bytes.size())};
}

/// What has to hold for every input, whatever it is.
inline void require(bool condition) {
    if (!condition)
        std::abort();
}

}  // namespace sayloft::fuzz
