// SPDX-License-Identifier: MIT
#include "helper/CommandLine.h"
#include "helper/GgufHandOver.h"
#include "helper/HttpService.h"
#include "helper/ModelFile.h"
#include "helper/StarterRecogniser.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include <unistd.h>

namespace sayloft::helper {
namespace {

int fail(Problem problem) {
    std::replace_if(
        problem.reason.begin(), problem.reason.end(),
        [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
    std::fprintf(stderr, "parakeet-server: %s\n", problem.reason.c_str());
    return EXIT_FAILURE;
}

// Nothing is kept outside our memory, so nothing has to be put in order, not even while decoding.
void endAtOnce(int /*signal*/) {
    ::_exit(EXIT_SUCCESS);
}

// The port is taken before the model is loaded: a port in use shows at once, and a client that
// comes while the model loads waits instead of being refused.
int serveStarter(const StarterModel& model, const CommandLine& commandLine) {
    HttpService service;
    const auto bound = service.bind(commandLine.port);
    if (const auto* problem = std::get_if<Problem>(&bound))
        return fail(*problem);
    const auto loaded = StarterRecogniser::load(model);
    if (const auto* problem = std::get_if<Problem>(&loaded))
        return fail(*problem);
    StarterRecogniser& recogniser = *std::get<std::unique_ptr<StarterRecogniser>>(loaded);
    service.serve([&recogniser](const Samples& samples) { return recogniser.recognise(samples); });
    return fail({"the server has stopped listening"});
}

int run(const std::vector<char*>& arguments) {
    std::signal(SIGTERM, endAtOnce);
    std::signal(SIGINT, endAtOnce);
    const std::vector<const char*> options(arguments.begin() + 1, arguments.end());
    const auto commandLine = parseCommandLine(options);
    if (const auto* problem = std::get_if<Problem>(&commandLine))
        return fail(*problem);
    const auto& asked = std::get<CommandLine>(commandLine);

    const auto model = inspectModelFile(asked.modelPath);
    if (const auto* problem = std::get_if<Problem>(&model))
        return fail(*problem);
    const auto& kind = std::get<ModelFile>(model);
    if (std::holds_alternative<GgufModel>(kind))
        return fail(handOverToGgufServer(arguments));
    return serveStarter(std::get<StarterModel>(kind), asked);
}

}  // namespace
}  // namespace sayloft::helper

int main(int argc, char** argv) {
    if (argc < 1)
        return EXIT_FAILURE;
    try {
        return sayloft::helper::run({argv, argv + argc});
    } catch (const std::exception& error) {
        return sayloft::helper::fail({error.what()});
    }
}
