// SPDX-License-Identifier: MIT
#include "helper/CommandLine.h"

#include <gtest/gtest.h>

#include <vector>

namespace sayloft::helper {
namespace {

Result<CommandLine> parse(const std::vector<const char*>& arguments) {
    return parseCommandLine(arguments);
}

TEST(HelperCommandLine, takesModelHostAndPort) {
    const auto parsed = parse({"--model", "/a b/c.gguf", "--host", "127.0.0.1", "--port", "8090"});
    ASSERT_TRUE(std::holds_alternative<CommandLine>(parsed));
    const auto& commandLine = std::get<CommandLine>(parsed);
    EXPECT_EQ(commandLine.modelPath, "/a b/c.gguf");
    EXPECT_EQ(commandLine.host, "127.0.0.1");
    EXPECT_EQ(commandLine.port, 8090);
}

TEST(HelperCommandLine, takesTheOptionsInAnyOrder) {
    const auto parsed = parse({"--port", "1", "--model", "--host", "--host", "127.0.0.1"});
    ASSERT_TRUE(std::holds_alternative<CommandLine>(parsed));
    EXPECT_EQ(std::get<CommandLine>(parsed).modelPath, "--host");
    EXPECT_EQ(std::get<CommandLine>(parsed).port, 1);
}

struct BadLine {
    const char* name;
    std::vector<const char*> arguments;
    const char* reason;
};

class HelperCommandLineRefusal : public testing::TestWithParam<BadLine> {};

TEST_P(HelperCommandLineRefusal, saysWhatIsWrong) {
    const auto parsed = parse(GetParam().arguments);
    ASSERT_TRUE(std::holds_alternative<Problem>(parsed));
    EXPECT_EQ(std::get<Problem>(parsed).reason.find(GetParam().reason), 0U)
        << std::get<Problem>(parsed).reason;
}

constexpr const char* usage = "usage: parakeet-server --model PATH --host 127.0.0.1 --port PORT";
constexpr const char* badPort = "--port must be";
constexpr const char* badHost = "--host must be";

INSTANTIATE_TEST_SUITE_P(
    Table, HelperCommandLineRefusal,
    testing::Values(
        BadLine{"nothing", {}, usage},
        BadLine{"noPort", {"--model", "m", "--host", "127.0.0.1"}, usage},
        BadLine{"noValue", {"--model", "m", "--host", "127.0.0.1", "--port"}, usage},
        BadLine{"oneTwice", {"--model", "m", "--model", "m", "--port", "1"}, usage},
        BadLine{"unknown", {"--model", "m", "--host", "127.0.0.1", "--ports", "1"}, usage},
        BadLine{"withEquals", {"--model=m", "--host=127.0.0.1", "--port=1", "", "", ""}, usage},
        BadLine{"more", {"--model", "m", "--host", "127.0.0.1", "--port", "1", "x", "y"}, usage},
        BadLine{"portZero", {"--model", "m", "--host", "127.0.0.1", "--port", "0"}, badPort},
        BadLine{"portTooBig", {"--model", "m", "--host", "127.0.0.1", "--port", "65536"}, badPort},
        BadLine{"portNegative", {"--model", "m", "--host", "127.0.0.1", "--port", "-1"}, badPort},
        BadLine{"portText", {"--model", "m", "--host", "127.0.0.1", "--port", "80x"}, badPort},
        BadLine{"portEmpty", {"--model", "m", "--host", "127.0.0.1", "--port", ""}, badPort},
        BadLine{"everywhere", {"--model", "m", "--host", "0.0.0.0", "--port", "8090"}, badHost},
        BadLine{"hostName", {"--model", "m", "--host", "localhost", "--port", "8090"}, badHost},
        BadLine{"hostSix", {"--model", "m", "--host", "::1", "--port", "8090"}, badHost},
        BadLine{"hostEmpty", {"--model", "m", "--host", "", "--port", "8090"}, badHost}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace sayloft::helper
