// SPDX-License-Identifier: MIT
#pragma once

#include "helper/tests/RunningService.h"
#include "helper/tests/SampleRequests.h"
#include "tests/support/RawHttp.h"

#include <stdexcept>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace sayloft::helper::test {

/// Smaller and less patient than the real service.
constexpr RequestLimits tightLimits{.bodyBytes = std::size_t{1024} * 1024,
                                    .transferTime = std::chrono::seconds(1),
                                    .lingerTime = std::chrono::milliseconds(500)};

/// "Hears" how many samples there are, and throws at thirteen.
inline std::string countSamples(const Samples& samples) {
    if (samples.size() == 13)
        throw std::runtime_error("unlucky");
    return "heard " + std::to_string(samples.size());
}

/// A service that counts samples, with tight limits.
class SpeechHttpService : public testing::Test {
protected:
    [[nodiscard]] sayloft::test::RawReply ask(std::string_view request) const {
        return sayloft::test::exchange(m_service.port(), request);
    }

    void expectStillWorks() const {
        const sayloft::test::RawReply reply = ask(postOf(appForm(wavFile(7))));
        EXPECT_EQ(reply.status, 200);
        EXPECT_EQ(reply.body, "heard 7");
    }

    RunningService m_service{tightLimits, countSamples};
};

}  // namespace sayloft::helper::test
