// SPDX-License-Identifier: MIT
#include "helper/CommandLine.h"

#include <array>
#include <charconv>
#include <optional>
#include <string_view>
#include <utility>

namespace sayloft::helper {
namespace {

constexpr std::string_view loopback = "127.0.0.1";

Problem usage() {
    return {"usage: parakeet-server --model PATH --host 127.0.0.1 --port PORT"};
}

std::optional<std::uint16_t> parsePort(std::string_view text) {
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size() || port == 0)
        return std::nullopt;
    return port;
}

struct Option {
    std::string_view name;
    std::optional<std::string_view> value;
};

// False for a name that is not an option, and for an option that has its value already.
bool assign(std::span<Option> options, std::string_view name, std::string_view value) {
    for (Option& option : options) {
        if (option.name != name)
            continue;
        return !std::exchange(option.value, value).has_value();
    }
    return false;
}

}  // namespace

Result<CommandLine> parseCommandLine(std::span<const char* const> arguments) {
    std::array<Option, 3> options{{{"--model", {}}, {"--host", {}}, {"--port", {}}}};
    if (arguments.size() != 2 * options.size())
        return usage();
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        if (!assign(options, arguments[i], arguments[i + 1]))
            return usage();
    }
    const auto& [model, host, port] = options;
    if (!model.value || !host.value || !port.value)
        return usage();

    if (*host.value != loopback)
        return Problem{"--host must be 127.0.0.1, this server is for this machine alone"};
    const std::optional<std::uint16_t> number = parsePort(*port.value);
    if (!number)
        return Problem{"--port must be a number from 1 to 65535"};
    return CommandLine{std::string(*model.value), std::string(*host.value), *number};
}

}  // namespace sayloft::helper
