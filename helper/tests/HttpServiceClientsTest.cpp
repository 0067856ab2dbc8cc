// SPDX-License-Identifier: MIT
// Clients that are silent, slow, many, gone or out of their mind.
#include "helper/tests/SpeechHttpService.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace sayloft::helper::test {
namespace {

using namespace std::chrono_literals;
using sayloft::test::RawConnection;
using sayloft::test::RawReply;

TEST_F(SpeechHttpService, endsAConnectionThatNeverSendsAnything) {
    RawConnection connection(m_service.port());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(connection.readReply(5s).status, 0);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 900ms);
}

TEST_F(SpeechHttpService, endsAClientThatSendsAByteNowAndThen) {
    RawConnection connection(m_service.port());
    const std::string request = postOf(appForm(wavFile(1000)));
    connection.send(request.substr(0, 400));
    std::atomic<bool> answered = false;
    std::jthread sender([&] {
        for (std::size_t i = 400; i < request.size() && !answered; ++i) {
            connection.send(request.substr(i, 1));
            std::this_thread::sleep_for(50ms);
        }
    });
    const RawReply reply = connection.readReply(5s);
    answered = true;
    EXPECT_EQ(reply.status, 400);
    EXPECT_EQ(reply.body, "the request ended early or took too long\n");
}

TEST_F(SpeechHttpService, answersOthersWhileManyClientsAreSilent) {
    std::vector<std::unique_ptr<RawConnection>> silent;
    silent.reserve(100);
    for (int i = 0; i < 100; ++i)
        silent.push_back(std::make_unique<RawConnection>(m_service.port()));
    expectStillWorks();  // after a few deadlines of a second each
}

TEST_F(SpeechHttpService, outlivesClientsThatLeaveEarly) {
    const std::string good = postOf(appForm(wavFile(400)));
    for (std::size_t kept = 0; kept < good.size(); kept += 13) {
        RawConnection connection(m_service.port());
        connection.send(good.substr(0, kept));
    }
    expectStillWorks();
}

TEST_F(SpeechHttpService, answersFiftyClientsAtOnce) {
    std::vector<std::jthread> clients;
    std::atomic<int> right = 0;
    for (std::size_t i = 0; i < 50; ++i) {
        clients.emplace_back([&, i] {
            RawConnection connection(m_service.port());
            connection.send(postOf(appForm(wavFile(100 + i))));
            const RawReply reply = connection.readReply();
            right += reply.body == "heard " + std::to_string(100 + i) ? 1 : 0;
        });
    }
    clients.clear();
    EXPECT_EQ(right, 50);
}

// One random change: a byte replaced, bytes taken out, put in or doubled.
std::string changed(std::string text, std::mt19937& random) {
    if (text.empty())
        return text;
    const std::size_t at = random() % text.size();
    switch (random() % 5) {
        case 0:
            text[at] = static_cast<char>(random());
            break;
        case 1:
            text.erase(at, random() % 40);
            break;
        case 2:
            text.insert(at, 1 + random() % 20, static_cast<char>(random()));
            break;
        case 3:
            text.insert(at, text.substr(random() % text.size(), random() % 200));
            break;
        default:
            text.resize(at);
    }
    return text;
}

TEST_F(SpeechHttpService, survivesThousandsOfRandomChangesOfARequest) {
    std::mt19937 random(8090);  // NOLINT(bugprone-*): the same run every time
    const std::vector<std::string> seeds = {
        postOf(appForm(wavFile(100))), post(chunkedType(), chunked(appForm(wavFile(50)), 40)),
        postOf(appForm(wavFile(10)), "Expect: 100-continue\r\nRange: bytes=0-1,3-\r\n")};
    int accepted = 0;
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string request = seeds[static_cast<std::size_t>(round) % seeds.size()];
        for (auto changes = 1 + random() % 3; changes > 0; --changes)
            request = changed(std::move(request), random);
        const RawReply reply = ask(request);
        accepted += reply.status == 200 ? 1 : 0;
        refused += reply.status == 400 || reply.status == 404 ? 1 : 0;
        ASSERT_TRUE(reply.status != 0 || request.empty()) << round << ":\n" << request;
        ASSERT_NE(reply.status, 500) << round << ":\n" << request;
    }
    EXPECT_GT(accepted, 100);
    EXPECT_GT(refused, 1000);
    expectStillWorks();
}

}  // namespace
}  // namespace sayloft::helper::test
