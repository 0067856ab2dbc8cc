// SPDX-License-Identifier: MIT
#include "helper/GgufHandOver.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <unistd.h>

namespace sayloft::helper {
namespace {

namespace fs = std::filesystem;

// Holds the id of the process that has handed over. The id survives exec and nothing else shares
// it, so a copy of this program at one of the places cannot hand over for ever.
constexpr const char* guardName = "SAYLOFT_HELPER_HANDED_OVER";

bool hasHandedOverAlready() {
    const char* guard = std::getenv(guardName);
    return guard != nullptr && guard == std::to_string(::getpid());
}

bool isCandidate(const std::string& path, const std::string& executable) {
    std::error_code ignored;
    return fs::is_regular_file(path, ignored) && ::access(path.c_str(), X_OK) == 0 &&
           !fs::equivalent(path, executable, ignored);
}

void replaceProcess(const std::string& server, std::vector<char*> arguments) {
    std::string name = server;
    arguments.front() = name.data();
    arguments.push_back(nullptr);
    ::setenv(guardName, std::to_string(::getpid()).c_str(), 1);
    ::execv(server.c_str(), arguments.data());
}

}  // namespace

std::vector<std::string> ggufServerPlaces(const std::string& executable) {
    const fs::path helpers = fs::path(executable).parent_path();
    const fs::path root = helpers.parent_path().parent_path().parent_path();
    return {helpers / "parakeet.cpp/parakeet-server",
            root / "parakeet.cpp/build/examples/server/parakeet-server"};
}

Problem handOverToGgufServer(const std::vector<char*>& arguments) {
    if (hasHandedOverAlready())
        return {"the server found for GGUF models is a copy of this program"};
    std::error_code error;
    const std::string executable = fs::read_symlink("/proc/self/exe", error);
    if (error)
        return {"cannot tell where this program lies: " + error.message()};

    const std::vector<std::string> places = ggufServerPlaces(executable);
    std::string failures;
    for (const std::string& place : places) {
        if (!isCandidate(place, executable))
            continue;
        replaceProcess(place, arguments);
        failures += (failures.empty() ? "" : "; ") + place + ": " + std::strerror(errno);
    }
    if (!failures.empty())
        return {"cannot start the server for GGUF models: " + failures};
    return {"this is a GGUF model, and no server for it was found at " + places[0] + " or " +
            places[1]};
}

}  // namespace sayloft::helper
