// SPDX-License-Identifier: MIT
#include "helper/HttpService.h"

#include "helper/tests/RunningService.h"
#include "helper/tests/SampleRequests.h"
#include "tests/support/RawHttp.h"
#include "tests/support/WaitUntil.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace sayloft::helper {
namespace {

using namespace std::chrono_literals;
using sayloft::test::RawConnection;
using sayloft::test::waitUntil;
using test::appForm;
using test::postOf;
using test::wavFile;

constexpr auto aWhile = 300ms;  // several times as long as a departed client may go unnoticed

// Works on a recording until it is let go, and knows which ones it got, by their lengths.
class HeldRecogniser {
public:
    std::string recognise(const Samples& samples) {
        std::unique_lock lock(m_mutex);
        m_heard.push_back(samples.size());
        m_changed.wait(lock, [this] { return m_released; });
        if (std::exchange(m_failing, false))
            throw std::runtime_error("out of order");
        return "heard " + std::to_string(samples.size()) + " at " + std::to_string(m_heard.size());
    }

    void release() {
        const std::lock_guard lock(m_mutex);
        m_released = true;
        m_changed.notify_all();
    }

    void failOnce() {
        const std::lock_guard lock(m_mutex);
        m_failing = true;
    }

    [[nodiscard]] std::vector<std::size_t> heard() const {
        const std::lock_guard lock(m_mutex);
        return m_heard;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::size_t> m_heard;
    bool m_released = false;
    bool m_failing = false;
};

class RepeatedRequest : public testing::Test {
protected:
    ~RepeatedRequest() override { m_held.release(); }

    [[nodiscard]] std::unique_ptr<RawConnection> ask(const std::string& wav) const {
        auto connection = std::make_unique<RawConnection>(m_service.port());
        EXPECT_TRUE(connection->send(postOf(appForm(wav))));
        return connection;
    }

    // A client whose recording is being decoded until the recogniser is released.
    [[nodiscard]] std::unique_ptr<RawConnection> occupy(const std::string& wav) const {
        const std::size_t before = m_held.heard().size();
        auto connection = ask(wav);
        EXPECT_TRUE(waitUntil([&] { return m_held.heard().size() == before + 1; }));
        return connection;
    }

    static void expectToWait(RawConnection& connection) {
        EXPECT_FALSE(connection.waitForBytes("HTTP/1.1 ", aWhile));
    }

    // For the server a client that ends its side has left; unlike one that really has, it shows
    // when the server noticed.
    static void expectLetGo(RawConnection& connection) {
        connection.finishSending();
        EXPECT_EQ(connection.readReply().status, 503);
    }

    HeldRecogniser m_held;
    test::RunningService m_service{
        RequestLimits{.transferTime = 2s, .lingerTime = 200ms},
        [this](const Samples& samples) { return m_held.recognise(samples); }};
};

using Lengths = std::vector<std::size_t>;

TEST_F(RepeatedRequest, waitsForTheDecodingThatAnEarlierAttemptBegan) {
    static_cast<void>(occupy(wavFile(100)));  // this client is gone again
    const auto retry = ask(wavFile(100));
    expectToWait(*retry);
    m_held.release();
    EXPECT_EQ(retry->readReply().body, "heard 100 at 1");
    EXPECT_EQ(m_held.heard(), Lengths{100});
}

TEST_F(RepeatedRequest, servesEveryAttemptThatIsStillThereWithTheOneResult) {
    const auto first = occupy(wavFile(100));
    const auto second = ask(wavFile(100));
    const auto third = ask(wavFile(100));
    expectToWait(*third);
    m_held.release();
    for (const auto& client : {first.get(), second.get(), third.get()})
        EXPECT_EQ(client->readReply().body, "heard 100 at 1");
    EXPECT_EQ(m_held.heard(), Lengths{100});
}

TEST_F(RepeatedRequest, getsTheResultThatWasFinishedAfterItsClientHadLeft) {
    static_cast<void>(occupy(wavFile(100)));
    const auto next = ask(wavFile(100));
    m_held.release();
    ASSERT_EQ(next->readReply().status, 200);
    EXPECT_EQ(ask(wavFile(100))->readReply().body, "heard 100 at 1");
    EXPECT_EQ(m_held.heard(), Lengths{100});
}

TEST_F(RepeatedRequest, isOnlyTakenForTheLastRecordingWhenEverySampleIsAlike) {
    m_held.release();
    std::string almost = wavFile(100);
    almost.back() = static_cast<char>(almost.back() + 1);
    EXPECT_EQ(ask(wavFile(100))->readReply().body, "heard 100 at 1");
    EXPECT_EQ(ask(almost)->readReply().body, "heard 100 at 2");
    EXPECT_EQ(ask(wavFile(99))->readReply().body, "heard 99 at 3");
    EXPECT_EQ(ask(wavFile(100))->readReply().body, "heard 100 at 4");
}

TEST_F(RepeatedRequest, isNotDecodedWhenItsClientLeftBeforeItsTurn) {
    const auto first = occupy(wavFile(100));
    const auto departed = ask(wavFile(200));
    expectToWait(*departed);
    expectLetGo(*departed);
    const auto last = ask(wavFile(300));
    expectToWait(*last);
    m_held.release();
    EXPECT_EQ(first->readReply().body, "heard 100 at 1");
    EXPECT_EQ(last->readReply().body, "heard 300 at 2");
    EXPECT_EQ(m_held.heard(), (Lengths{100, 300}));
}

TEST_F(RepeatedRequest, isNotDecodedWhenItsClientClosedTheConnection) {
    const auto first = occupy(wavFile(100));
    auto departed = ask(wavFile(200));
    expectToWait(*departed);
    departed.reset();
    const auto last = ask(wavFile(300));
    expectToWait(*last);
    m_held.release();
    EXPECT_EQ(last->readReply().body, "heard 300 at 2");
    EXPECT_EQ(m_held.heard(), (Lengths{100, 300}));
}

TEST_F(RepeatedRequest, keepsItsTurnWhileOneOfItsClientsIsThere) {
    const auto first = occupy(wavFile(100));
    const auto departed = ask(wavFile(200));
    expectToWait(*departed);
    const auto retry = ask(wavFile(200));
    const auto last = ask(wavFile(300));
    expectToWait(*last);
    expectLetGo(*departed);
    m_held.release();
    EXPECT_EQ(retry->readReply().body, "heard 200 at 2");
    EXPECT_EQ(last->readReply().body, "heard 300 at 3");
}

TEST_F(RepeatedRequest, isTriedAgainAfterAFailureOfTheEarlierAttempt) {
    m_held.failOnce();
    const auto first = occupy(wavFile(100));
    const auto retry = ask(wavFile(100));
    expectToWait(*retry);
    m_held.release();
    EXPECT_EQ(first->readReply().status, 500);
    EXPECT_EQ(retry->readReply().body, "heard 100 at 2");
}

TEST_F(RepeatedRequest, leavesTheServiceFreeForTheNextAfterAFailure) {
    m_held.failOnce();
    m_held.release();
    EXPECT_EQ(ask(wavFile(100))->readReply().status, 500);
    EXPECT_EQ(ask(wavFile(200))->readReply().body, "heard 200 at 2");
}

TEST_F(RepeatedRequest, isServedWithNobodyInItsWayEvenWhenItsClientEndedItsSide) {
    m_held.release();
    const auto client = ask(wavFile(100));
    client->finishSending();
    EXPECT_EQ(client->readReply().body, "heard 100 at 1");
}

}  // namespace
}  // namespace sayloft::helper
